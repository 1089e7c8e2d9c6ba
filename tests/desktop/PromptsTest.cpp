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
        const auto seen = Show(box, Qt::Key_Return);
        EXPECT_EQ(seen.captions.toStdString(), captions);
        EXPECT_EQ(seen.answer, onReturn) << captions;
        EXPECT_EQ(Show(box, Qt::Key_Escape).answer, onEscape) << captions;
    }
    const MessageBox replace{"Text", "Title", Icon::Warning, Buttons::YesNoCancel, Answer::No};
    EXPECT_EQ(Show(replace, Qt::Key_Return).answer, Answer::No);
}

TEST(PromptsTest, ABoxIsWideEnoughForItsTitle) {
    const std::string title = "Download From EEPROM, and then some more words";
    QFont bold;
    bold.setBold(true);
    EXPECT_GT(Show({"Short.", title, Icon::Warning, Buttons::Ok}, Qt::Key_Return).width,
              QFontMetrics(bold).horizontalAdvance(QString::fromStdString(title)) + 100);
}

TEST(PromptsTest, TheFileDialogTellsKindsOfFilesWithoutOpeningThem) {
    const FileIcons icons;
    // Whoever looked into the kernel's messages would not come back.
    for (const auto& [path, kind] :
         {std::pair("/", "Drive"), std::pair("/dev", "Folder"), std::pair("/proc/kmsg", "File"),
          std::pair("/none/race.tbl", "TBL file")})
        EXPECT_EQ(icons.type(QFileInfo(QLatin1String(path))).toStdString(), kind);
    EXPECT_FALSE(icons.icon(QFileInfo(QStringLiteral("/proc/kmsg"))).isNull());
}

}  // namespace
}  // namespace rv52
