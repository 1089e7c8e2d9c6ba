#include "platform/qt/QtPrompts.h"

#include "platform/qt/BoxText.h"
#include "platform/qt/FileIcons.h"
#include "platform/qt/InputDialog.h"
#include "platform/qt/QtText.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPushButton>
#include <QStandardPaths>

#include <array>
#include <map>
#include <vector>

namespace rv52 {

namespace {

constexpr int kTitleButtons = 140;  // what a window manager puts beside a title

struct Button {
    Answer answer;
    const char* caption;
    const char* name;
};

const Button& ButtonFor(Answer answer) {
    static constexpr std::array buttons{
        Button{Answer::Ok, "OK", "cmdOK"},
        Button{Answer::Cancel, "Cancel", "cmdCancel"},
        Button{Answer::Yes, "&Yes", "cmdYes"},
        Button{Answer::No, "&No", "cmdNo"},
        Button{Answer::Retry, "&Retry", "cmdRetry"},
        Button{Answer::Abort, "&Abort", "cmdAbort"},
        Button{Answer::Ignore, "&Ignore", "cmdIgnore"},
    };
    return buttons[static_cast<std::size_t>(answer)];
}

std::vector<Answer> AnswersOf(Buttons buttons) {
    switch (buttons) {
        case Buttons::Ok:
            return {Answer::Ok};
        case Buttons::OkCancel:
            return {Answer::Ok, Answer::Cancel};
        case Buttons::RetryCancel:
            return {Answer::Retry, Answer::Cancel};
        case Buttons::YesNoCancel:
            return {Answer::Yes, Answer::No, Answer::Cancel};
        case Buttons::AbortRetryIgnore:
            break;
    }
    return {Answer::Abort, Answer::Retry, Answer::Ignore};
}

// One role for all, so that no desktop reorders them: the message says "Abort, Retry, Ignore" and so do they.
QPushButton* AddButton(QMessageBox& window, Answer answer) {
    const auto& button = ButtonFor(answer);
    auto* added = window.addButton(QString::fromLatin1(button.caption), QMessageBox::ActionRole);
    added->setObjectName(QString::fromLatin1(button.name));
    return added;
}

// Qt keeps a box wide enough for its text only, and a short text under a long title cuts the title.
void MakeRoomForTitle(QMessageBox& window) {
    auto font = window.font();
    font.setBold(true);
    const int width = QFontMetrics(font).horizontalAdvance(window.windowTitle()) + kTitleButtons;
    auto* grid = qobject_cast<QGridLayout*>(window.layout());
    if (grid != nullptr)
        grid->addItem(new QSpacerItem(width, 0), grid->rowCount(), 0, 1, grid->columnCount());
}

QMessageBox::Icon IconOf(Icon icon) {
    switch (icon) {
        case Icon::None:
            return QMessageBox::NoIcon;
        case Icon::Information:
            return QMessageBox::Information;
        case Icon::Warning:
            return QMessageBox::Warning;
        case Icon::Critical:
            break;
    }
    return QMessageBox::Critical;
}

const char* NameOf(Icon icon) {
    static constexpr std::array names{"", "Information", "Warning", "Critical"};
    return names[static_cast<std::size_t>(icon)];
}

// A press on a box's marked text marks anew. Dragging it away instead would hold up everything else for as
// long as the button is down.
class MarkingAnew : public QObject {
 public:
    explicit MarkingAnew(QLabel& label) : QObject(&label), label_(label) { label.installEventFilter(this); }

 private:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::MouseButtonPress && label_.hasSelectedText() &&
            static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton)
            label_.setSelection(0, 0);
        return false;
    }

    QLabel& label_;
};

void NameLabel(const QMessageBox& window, const char* label, const QString& name) {
    auto* found = window.findChild<QLabel*>(QString::fromLatin1(label));
    if (found == nullptr) return;
    found->setAccessibleName(name);
    new MarkingAnew(*found);
}

void NameList(const QFileDialog& window, const char* list, const QString& name) {
    auto* found = window.findChild<QComboBox*>(QString::fromLatin1(list));
    if (found == nullptr) return;
    found->setAccessibleName(name);
    found->view()->setAccessibleName(name);
}

// The toolkit calls a drop-down list by what is chosen in it, and its buttons nothing at all.
void NameParts(const QFileDialog& window) {
    NameList(window, "lookInCombo", QFileDialog::tr("Look in:"));
    NameList(window, "fileTypeCombo", QFileDialog::tr("Files of type:"));
    const auto* buttons = window.findChild<QDialogButtonBox*>();
    if (buttons == nullptr) return;
    for (auto* button : buttons->buttons()) {
        const bool rejects = buttons->buttonRole(button) == QDialogButtonBox::RejectRole;
        button->setObjectName(QString::fromLatin1(ButtonFor(rejects ? Answer::Cancel : Answer::Ok).name));
    }
}

// "Advance table files (*.tbl)|*.tbl" as Qt wants it, and the extension that a bare name gets.
struct Filter {
    QString shown;
    QString extension;
};

Filter ReadFilter(const std::string& filter) {
    const auto text = ToQt(filter).section(QLatin1Char('|'), 0, 0);
    const auto pattern = ToQt(filter).section(QLatin1Char('|'), 1);
    const bool everything = pattern == QLatin1String("*.*");
    const auto name = text.section(QLatin1String(" ("), 0, 0);
    return {name + QStringLiteral(" (") + (everything ? QStringLiteral("*") : pattern) + QLatin1Char(')'),
            everything ? QString() : pattern.section(QLatin1Char('.'), -1)};
}

}  // namespace

// On top of the dialog that it comes from, else on the main window.
QWidget* QtPrompts::Parent() const {
    if (auto* modal = QApplication::activeModalWidget()) return modal;
    return parent_ != nullptr && parent_->isVisible() ? parent_ : nullptr;
}

Answer QtPrompts::Ask(const MessageBox& box) {
    if (dismissing_()) return DismissAnswer(box.buttons);
    QMessageBox window(Parent());
    window.setObjectName(QStringLiteral("MessageBox"));
    window.setTextFormat(Qt::PlainText);
    window.setWindowTitle(ToQt(box.title));
    const auto text = ForShowing(box.text);
    window.setText(Breakable(text));
    window.setIcon(IconOf(box.icon));
    MakeRoomForTitle(window);
    NameLabel(window, "qt_msgbox_label", text);
    NameLabel(window, "qt_msgboxex_icon_label", QString::fromLatin1(NameOf(box.icon)));
    const auto answers = AnswersOf(box.buttons);
    std::map<QAbstractButton*, Answer> meaning;
    for (const auto answer : answers) {
        auto* button = AddButton(window, answer);
        meaning[button] = answer;
        if (answer == box.defaultAnswer.value_or(answers.front())) window.setDefaultButton(button);
        if (answer == DismissAnswer(box.buttons)) window.setEscapeButton(button);
    }
    window.exec();
    const auto pressed = meaning.find(window.clickedButton());
    return pressed != meaning.end() ? pressed->second : DismissAnswer(box.buttons);
}

std::string QtPrompts::AskText(const InputBox& box) {
    if (dismissing_()) return {};
    InputDialog dialog(box, Parent());
    return dialog.exec() == QDialog::Accepted ? FromQt(dialog.Text()) : std::string();
}

std::string QtPrompts::AskOpenPath(const FileDialog& dialog) {
    return AskPath(dialog, false);
}

std::string QtPrompts::AskSavePath(const FileDialog& dialog) {
    return AskPath(dialog, true);
}

std::string QtPrompts::AskPath(const FileDialog& dialog, bool forSaving) {
    if (dismissing_()) return {};
    if (folder_.isEmpty() || !QDir(folder_).exists())
        folder_ = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (!QDir(folder_).exists()) folder_ = QDir::homePath();
    const auto filter = ReadFilter(dialog.filter);

    FileIcons icons;
    // Qt's own dialog, since a desktop's may insist on an existing file, or ask about one itself.
    QFileDialog window(Parent(), ToQt(dialog.title), folder_, filter.shown);
    window.setObjectName(forSaving ? QStringLiteral("SaveDialog") : QStringLiteral("OpenDialog"));
    window.setOptions(QFileDialog::DontUseNativeDialog | QFileDialog::DontConfirmOverwrite);
    window.setIconProvider(&icons);
    window.setAcceptMode(forSaving ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    window.setFileMode(QFileDialog::AnyFile);
    if (forSaving) window.setDefaultSuffix(filter.extension);
    if (!dialog.proposedName.empty()) window.selectFile(ToQt(dialog.proposedName));
    NameParts(window);
    // A drag, here of a file into a folder, holds up everything else for as long as the button is down.
    for (auto* list : window.findChildren<QAbstractItemView*>())
        list->setDragEnabled(false);
    if (window.exec() != QDialog::Accepted || window.selectedFiles().isEmpty()) return {};
    auto path = window.selectedFiles().first();
    // A name that was saved without its ending is opened without it.
    const auto whole = path + QLatin1Char('.') + filter.extension;
    if (!forSaving && !QFileInfo::exists(path) && QFileInfo::exists(whole)) path = whole;
    folder_ = QFileInfo(path).absolutePath();
    return FromQt(path);
}

}  // namespace rv52
