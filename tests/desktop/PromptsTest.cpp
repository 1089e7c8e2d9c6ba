#include "platform/qt/FileIcons.h"
#include "platform/qt/QtPrompts.h"

#include <QApplication>
#include <QFileInfo>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <gtest/gtest.h>

namespace rv52 {
namespace {

// What the user sees of a box that is answered by a key.
struct SeenBox {
    QString captions;  // of the buttons, from left to right; the default one in brackets
    int width = 0;
    Answer answer = Answer::Ok;
};

QString CaptionsOf(const QWidget& box) {
    auto buttons = box.findChildren<QPushButton*>();
    std::sort(buttons.begin(), buttons.end(), [](auto* a, auto* b) { return a->x() < b->x(); });
    QStringList captions;
    for (const auto* button : buttons)
        captions += (button->isDefault() ? QStringLiteral("[%1]") : QStringLiteral("%1")).arg(button->text());
    return captions.join(QLatin1Char(' '));
}

SeenBox Show(const MessageBox& box, Qt::Key key) {
    SeenBox seen;
    QTimer::singleShot(0, [&] {
        auto* window = QApplication::activeModalWidget();
        seen.captions = CaptionsOf(*window);
        seen.width = window->width();
        QTest::keyClick(window, key);
    });
    seen.answer = QtPrompts().Ask(box);
    return seen;
}

TEST(PromptsTest, ButtonsStandAsTheyAreNamedAndDismissingIsTheSafeAnswer) {
    const struct {
        Buttons buttons;
        const char* captions;
        Answer onReturn;
        Answer onEscape;
    } cases[] = {
        {Buttons::Ok, "[OK]", Answer::Ok, Answer::Ok},
        {Buttons::OkCancel, "[OK] Cancel", Answer::Ok, Answer::Cancel},
        {Buttons::RetryCancel, "[&Retry] Cancel", Answer::Retry, Answer::Cancel},
        {Buttons::YesNoCancel, "[&Yes] &No Cancel", Answer::Yes, Answer::Cancel},
        {Buttons::AbortRetryIgnore, "[&Abort] &Retry &Ignore", Answer::Abort, Answer::Abort},
    };
    for (const auto& [buttons, captions, onReturn, onEscape] : cases) {
        const MessageBox box{"Text", "Title", Icon::Warning, buttons};
        EXPECT_EQ(Show(box, Qt::Key_Return).captions.toStdString(), captions);
        EXPECT_EQ(Show(box, Qt::Key_Return).answer, onReturn) << captions;
        EXPECT_EQ(Show(box, Qt::Key_Escape).answer, onEscape) << captions;
    }
    const MessageBox replace{"Text", "Title", Icon::Warning, Buttons::YesNoCancel, Answer::No};
    EXPECT_EQ(Show(replace, Qt::Key_Return).answer, Answer::No);
}

TEST(PromptsTest, ABoxIsWideEnoughForItsTitle) {
    const QString title = QStringLiteral("Download From EEPROM, and then some more words");
    QFont bold;
    bold.setBold(true);
    const MessageBox box{"Short.", title.toStdString(), Icon::Warning, Buttons::Ok};
    EXPECT_GT(Show(box, Qt::Key_Return).width, QFontMetrics(bold).horizontalAdvance(title) + 100);
}

TEST(PromptsTest, TheFileDialogTellsKindsOfFilesWithoutOpeningThem) {
    const FileIcons icons;
    EXPECT_EQ(icons.type(QFileInfo(QStringLiteral("/"))), QStringLiteral("Drive"));
    EXPECT_EQ(icons.type(QFileInfo(QStringLiteral("/dev"))), QStringLiteral("Folder"));
    // Whoever looked into this one would not come back.
    EXPECT_EQ(icons.type(QFileInfo(QStringLiteral("/proc/kmsg"))), QStringLiteral("File"));
    EXPECT_EQ(icons.type(QFileInfo(QStringLiteral("/none/race.tbl"))), QStringLiteral("TBL file"));
    EXPECT_FALSE(icons.icon(QFileInfo(QStringLiteral("/proc/kmsg"))).isNull());
}

}  // namespace
}  // namespace rv52
