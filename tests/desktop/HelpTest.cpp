#include "UserActions.h"
#include "app/ui/HelpWindow.h"

#include <QFile>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeWidget>

namespace rv52::test {

constexpr const char* kHelpFile = RV52_PROGRAM_FOLDER "/Corvane_RV52_Help.chm";

class HelpTest : public testing::Test {
 protected:
    void Open() {
        window.resize(960, 680);  // as on every screen that has the room
        window.Open(kHelpFile);
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    }
    std::string Title() { return FromQt(page.documentTitle()); }
    std::string Topic() { return FromQt(contents.currentItem()->text(0)); }
    static std::vector<QTreeWidgetItem*> TopicsOf(QTreeWidget& tree) {
        std::vector<QTreeWidgetItem*> topics;
        for (QTreeWidgetItemIterator item(&tree); *item != nullptr; ++item)
            topics.push_back(*item);
        return topics;
    }

    HelpWindow window{nullptr};
    QTreeWidget& contents = Find<QTreeWidget>(window, "tvwContents");
    HelpPage& page = Find<HelpPage>(window, "txtHelpPage");
};

// Each topic has its page, as wide as its pictures, and each link and picture of each page is in the file.
TEST_F(HelpTest, ShowsEveryPageWholeAndTheSameOnADarkDesktop) {
    Open();
    const ChmFile file(kHelpFile);
    const QRegularExpression reference(QStringLiteral("(?:href|src)=\"([^\"#]*)"));
    std::vector<QImage> light;
    qsizetype pictures = 0;
    for (auto* topic : TopicsOf(contents)) {
        contents.setCurrentItem(topic);
        QApplication::processEvents();
        light.push_back(page.viewport()->grab().toImage());
        EXPECT_EQ(Title(), Topic());
        EXPECT_EQ(page.horizontalScrollBar()->maximum(), 0) << Title();
        const auto html = ToQt(file.Read(FromQt(page.source().path())).value());
        pictures += html.count(QStringLiteral("<img"));
        for (auto match = reference.globalMatch(html); match.hasNext();) {
            const auto target = FromQt(match.next().captured(1));
            EXPECT_TRUE(file.Read("/" + target)) << Title() << ": " << target;
        }
    }
    EXPECT_GE(light.size(), 18U);
    EXPECT_GE(pictures, 5);
    const auto usual = QApplication::palette();
    QApplication::setPalette(QPalette(QColor(60, 60, 64), QColor(45, 45, 48)));
    HelpWindow dark(nullptr);
    dark.Open(kHelpFile);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&dark));
    dark.resize(window.size());
    for (auto* topic : TopicsOf(Find<QTreeWidget>(dark, "tvwContents"))) {
        topic->treeWidget()->setCurrentItem(topic);
        QApplication::processEvents();
        EXPECT_EQ(Find<HelpPage>(dark, "txtHelpPage").viewport()->grab().toImage(), light.front());
        light.erase(light.begin());
    }
    QApplication::setPalette(usual);
}

TEST_F(HelpTest, MarkedTextIsNotDraggedAway) {
    Open();
    EXPECT_FALSE(contents.dragEnabled());
    page.selectAll();
    QTest::mouseClick(page.viewport(), Qt::RightButton, {}, {60, 60});
    EXPECT_TRUE(page.textCursor().hasSelection()) << "its menu copies it";
    EXPECT_FALSE(DragsMarkedText(*page.viewport(), {60, 60}));
    EXPECT_TRUE(page.textCursor().hasSelection()) << "it marks anew";
    // Nor is there a menu that waits for its answer.
    auto* bar = page.verticalScrollBar();
    QTimer::singleShot(200, &page, [] {
        if (auto* menu = QApplication::activePopupWidget())
            menu->close(), ADD_FAILURE() << "a menu that waits";
    });
    QContextMenuEvent menu(QContextMenuEvent::Mouse, {5, 5}, bar->mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(bar, &menu);
    QTest::qWait(300);
}

TEST_F(HelpTest, FollowsLinksGoesBackAndClosesWithEscape) {
    Open();
    const std::string practice = "Practise with the simulated module";
    EXPECT_FALSE(Find(window, "cmdBack").isEnabled() || window.isModal());
    page.setSource(QUrl(QStringLiteral("practice.html")));
    for (const auto& [button, title] :
         {std::pair("cmdBack", "Corvane RV52"), std::pair("cmdForward", practice.c_str())}) {
        Click(Find(window, button));
        EXPECT_EQ(Title(), title);
        EXPECT_EQ(Topic(), title);
    }
    // Nothing but the file's own pages is ever loaded.
    for (const auto* outside : {"https://www.emberline.example/", "file:///etc/hostname", "/etc/hostname",
                                "../../etc/hostname", "nothere.html", "qrc:/x"}) {
        const QUrl url(QString::fromLatin1(outside));
        page.setSource(url);
        EXPECT_EQ(Title(), practice);
        EXPECT_FALSE(page.loadResource(QTextDocument::ImageResource, url).isValid()) << outside;
    }
    for (QWidget* focus : {static_cast<QWidget*>(&page), static_cast<QWidget*>(&contents)}) {
        QTest::keyClick(focus, Qt::Key_Escape);
        EXPECT_FALSE(window.isVisible());
        window.showMinimized();
        Open();
        EXPECT_TRUE(window.isVisible() && !window.isMinimized());
        EXPECT_EQ(Title(), "Corvane RV52");
        EXPECT_EQ(Topic(), "Corvane RV52");
    }
}

TEST_F(HelpTest, SaysWhenTheFileIsMissingOrDamaged) {
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("help.chm")));
    const auto message = [&] { return FailureOf([&] { window.Open(FromQt(file.fileName())); }); };
    EXPECT_EQ(message(), "The help file " + FromQt(file.fileName()) + " is not there.");

    QFile whole(QString::fromLatin1(kHelpFile));
    ASSERT_TRUE(whole.open(QIODevice::ReadOnly));
    const auto content = whole.readAll();
    QByteArray flipped = content;
    flipped[content.size() / 2] = static_cast<char>(flipped[content.size() / 2] ^ 1);
    for (const auto& damaged :
         {QByteArray(), QByteArray("no help at all"), content.left(40), content.left(600), content.chopped(1),
          QByteArray(content.size(), '\0'), flipped}) {
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(damaged);
        file.close();
        EXPECT_NE(message().find("damaged"), std::string::npos) << damaged.size();
    }
    EXPECT_FALSE(window.isVisible());
}

}  // namespace rv52::test
