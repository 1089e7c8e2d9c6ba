#include "app/HelpWindow.h"
#include "platform/Failure.h"
#include "platform/qt/Text.h"

#include <QFile>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <gtest/gtest.h>

namespace rv52 {
namespace {

constexpr const char* kHelpFile = RV52_PROGRAM_FOLDER "/Corvane_RV52_Help.chm";

class HelpTest : public testing::Test {
 protected:
    void Open() {
        window_.Open(kHelpFile);
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window_));
    }
    template <class Widget>
    Widget& Find(const char* name) {
        return *window_.findChild<Widget*>(QString::fromLatin1(name));
    }
    QTreeWidget& Contents() { return Find<QTreeWidget>("tvwContents"); }
    HelpPage& Page() { return Find<HelpPage>("txtHelpPage"); }
    QString Title() { return Page().documentTitle(); }

    QTreeWidgetItem* Topic(const char* title) {
        const auto found =
            Contents().findItems(QString::fromLatin1(title), Qt::MatchExactly | Qt::MatchRecursive);
        return found.isEmpty() ? nullptr : found.front();
    }

    HelpWindow window_{nullptr};
};

// Each topic has its page, as wide as its pictures, and each link and picture of each page is in the file.
TEST_F(HelpTest, ShowsEveryPageWholeAndLeadsNowhereOutsideTheFile) {
    Open();
    const ChmFile file(kHelpFile);
    const QRegularExpression reference(QStringLiteral("(?:href|src)=\"([^\"#]*)"));
    int pages = 0;
    int pictures = 0;
    for (QTreeWidgetItemIterator item(&Contents()); *item != nullptr; ++item, ++pages) {
        Contents().setCurrentItem(*item);
        QApplication::processEvents();
        EXPECT_EQ(Title(), (*item)->text(0));
        EXPECT_EQ(Page().horizontalScrollBar()->maximum(), 0) << FromQt(Title());
        const auto html = file.Read(FromQt(Page().source().path()));
        ASSERT_TRUE(html) << FromQt((*item)->text(0));
        pictures += static_cast<int>(ToQt(*html).count(QStringLiteral("<img")));
        for (auto match = reference.globalMatch(ToQt(*html)); match.hasNext();) {
            const auto target = FromQt(match.next().captured(1));
            EXPECT_TRUE(file.Read("/" + target)) << FromQt(Title()) << ": " << target;
        }
    }
    EXPECT_GE(pages, 18);
    EXPECT_GE(pictures, 5);
}

TEST_F(HelpTest, FollowsLinksAndGoesBack) {
    Open();
    EXPECT_TRUE(window_.isVisible() && !window_.isModal());
    EXPECT_EQ(Contents().currentItem(), Contents().topLevelItem(0));
    EXPECT_EQ(Title(), QStringLiteral("Corvane RV52"));
    auto& back = Find<QPushButton>("cmdBack");
    EXPECT_FALSE(back.isEnabled());
    Page().setSource(QUrl(QStringLiteral("practice.html")));
    EXPECT_EQ(Title(), QStringLiteral("Practise with the simulated module"));
    EXPECT_EQ(Contents().currentItem(), Topic("Practise with the simulated module"));
    QTest::mouseClick(&back, Qt::LeftButton);
    EXPECT_EQ(Title(), QStringLiteral("Corvane RV52"));
    QTest::mouseClick(&Find<QPushButton>("cmdForward"), Qt::LeftButton);
    EXPECT_EQ(Title(), QStringLiteral("Practise with the simulated module"));

    Contents().setCurrentItem(Topic("After a failed upload"));
    EXPECT_TRUE(Page().toPlainText().contains(QStringLiteral("do not start the engine")));

    // Nothing but the file's own pages is ever loaded.
    const auto before = Title();
    for (const auto* outside : {"https://www.emberline.example/", "file:///etc/hostname", "/etc/hostname",
                                "../../etc/hostname", "nothere.html", "qrc:/x"})
        Page().setSource(QUrl(QString::fromLatin1(outside)));
    EXPECT_EQ(Title(), before);
    EXPECT_FALSE(Page()
                     .loadResource(QTextDocument::ImageResource, QUrl(QStringLiteral("file:///etc/hostname")))
                     .isValid());
}

TEST_F(HelpTest, ClosesWithEscapeAndOpensAgain) {
    Open();
    Contents().setCurrentItem(Topic("Printing"));
    for (QWidget* focus : {static_cast<QWidget*>(&Page()), static_cast<QWidget*>(&Contents())}) {
        QTest::keyClick(focus, Qt::Key_Escape);
        EXPECT_FALSE(window_.isVisible());
        Open();
        EXPECT_TRUE(window_.isVisible());
        EXPECT_EQ(Title(), QStringLiteral("Corvane RV52"));
    }
    window_.showMinimized();
    Open();
    EXPECT_FALSE(window_.isMinimized());
}

TEST_F(HelpTest, LooksTheSameOnADarkDesktop) {
    const auto pictures = [](HelpWindow& window) {
        window.Open(kHelpFile);
        auto& contents = *window.findChild<QTreeWidget*>();
        std::vector<QImage> taken;
        for (QTreeWidgetItemIterator item(&contents); *item != nullptr; ++item) {
            contents.setCurrentItem(*item);
            taken.push_back(window.findChild<HelpPage*>()->viewport()->grab().toImage());
        }
        return taken;
    };
    const auto light = pictures(window_);
    const auto usual = QApplication::palette();
    QApplication::setPalette(QPalette(QColor(60, 60, 64), QColor(45, 45, 48)));
    HelpWindow window(nullptr);
    const auto dark = pictures(window);
    QApplication::setPalette(usual);
    EXPECT_EQ(light, dark);
}

TEST_F(HelpTest, SaysWhenTheFileIsMissingOrDamaged) {
    const QTemporaryDir folder;
    const auto path = folder.filePath(QStringLiteral("help.chm"));
    const auto message = [&] {
        try {
            window_.Open(FromQt(path));
        } catch (const Failure& failure) {
            return std::string(failure.what());
        }
        return std::string();
    };
    EXPECT_EQ(message(), "The help file " + FromQt(path) + " is not there.");
    EXPECT_FALSE(window_.isVisible());

    QFile whole(QString::fromLatin1(kHelpFile));
    ASSERT_TRUE(whole.open(QIODevice::ReadOnly));
    const auto content = whole.readAll();
    const QByteArray wiped(content.size(), '\0');
    QByteArray flipped = content;
    flipped[content.size() / 2] = static_cast<char>(flipped[content.size() / 2] ^ 1);
    for (const auto& damaged : {QByteArray(), QByteArray("no help at all"), content.left(40),
                                content.left(600), content.chopped(1), wiped, flipped}) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(damaged);
        file.close();
        EXPECT_NE(message().find("damaged"), std::string::npos) << damaged.size();
    }
    EXPECT_FALSE(window_.isVisible());
}

}  // namespace
}  // namespace rv52
