#include "platform/qt/PrinterSetupDialog.h"

#include "platform/Failure.h"
#include "platform/qt/Papers.h"
#include "platform/qt/QtText.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace rv52 {

namespace {

constexpr int kListWidth = 320;

QDialogButtonBox* MakeButtons(QDialog* dialog) {
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, dialog);
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("cmdOK"));
    buttons->button(QDialogButtonBox::Ok)->setDefault(true);
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cmdCancel"));
    for (auto* button : buttons->buttons())
        button->setIcon({});  // as in message boxes
    QObject::connect(buttons, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    return buttons;
}

}  // namespace

PrinterSetupDialog::PrinterSetupDialog(PrintSystem& system, const std::vector<PrintQueue>& queues,
                                       const std::optional<PrinterChoice>& current, QWidget* parent)
    : QDialog(parent), system_(system), current_(current) {
    setObjectName(QStringLiteral("PrinterSetup"));
    setWindowTitle(tr("Printer Setup"));
    auto* column = new QVBoxLayout(this);
    printer_ = AddList(*column, tr("P&rinter"), QStringLiteral("Printer"));
    paper_ = AddList(*column, tr("&Paper"), QStringLiteral("Paper"));
    tray_ = AddList(*column, tr("&Tray"), QStringLiteral("Tray"));
    trouble_ = new QLabel(this);
    trouble_->setObjectName(QStringLiteral("lblTrouble"));
    trouble_->setTextFormat(Qt::PlainText);
    trouble_->setWordWrap(true);
    trouble_->hide();
    column->addWidget(trouble_);
    auto* buttons = MakeButtons(this);
    ok_ = buttons->button(QDialogButtonBox::Ok);
    column->addWidget(buttons);
    column->setSizeConstraint(QLayout::SetFixedSize);
    ListPrinters(queues);
    ListMedia();
    connect(printer_, &QComboBox::currentIndexChanged, this, &PrinterSetupDialog::ListMedia);
}

PrinterChoice PrinterSetupDialog::Choice() const {
    PrinterChoice choice{FromQt(printer_->currentData().toString()), {}, {}};
    if (paper_->currentIndex() >= 0)
        choice.paper = papers_.at(static_cast<std::size_t>(paper_->currentIndex()));
    if (tray_->currentIndex() > 0)
        choice.tray = trays_.at(static_cast<std::size_t>(tray_->currentIndex()) - 1).key;
    return choice;
}

QComboBox* PrinterSetupDialog::AddList(QVBoxLayout& column, const QString& name, const QString& object) {
    auto* label = new QLabel(name, this);
    label->setObjectName(QStringLiteral("lbl") + object);
    auto* list = new QComboBox(this);
    list->setObjectName(QStringLiteral("cbo") + object);
    list->setAccessibleName(QString(name).remove(QLatin1Char('&')));
    list->view()->setAccessibleName(list->accessibleName());
    list->setMinimumWidth(kListWidth);
    label->setBuddy(list);
    column.addWidget(label);
    column.addWidget(list);
    return list;
}

// Where several printers have no default among them, none is proposed.
void PrinterSetupDialog::ListPrinters(const std::vector<PrintQueue>& queues) {
    if (queues.empty()) printer_->addItem(tr("PDF document"), QString());
    printer_->setPlaceholderText(tr("Choose a printer"));
    int start = queues.size() > 1 ? -1 : 0;
    for (const auto& [name, isDefault] : queues) {
        if (isDefault) start = printer_->count();
        printer_->addItem(ToQt(name), ToQt(name));
    }
    if (current_ && !current_->queue.empty()) {
        const int chosen = printer_->findData(ToQt(current_->queue));
        if (chosen >= 0) start = chosen;
    }
    printer_->setCurrentIndex(start);
}

void PrinterSetupDialog::ListMedia() {
    const auto queue = FromQt(printer_->currentData().toString());
    const bool chosen = printer_->currentIndex() >= 0;
    PrintMedia media;
    QString trouble;
    try {
        if (!queue.empty()) media = system_.Media(queue);
    } catch (const Failure& failure) {
        trouble = ToQt(failure.what());
    }
    const bool usable = chosen && trouble.isEmpty();
    if (media.papers.empty() && usable) media.papers = StandardPapers();
    Fill(media);
    trouble_->setText(trouble);
    trouble_->setVisible(!trouble.isEmpty());
    ok_->setEnabled(usable);
}

void PrinterSetupDialog::Fill(const PrintMedia& media) {
    papers_ = media.papers;
    trays_ = media.trays;
    const bool known = current_ && ToQt(current_->queue) == printer_->currentData().toString();
    paper_->clear();
    tray_->clear();
    for (const auto& paper : papers_)
        paper_->addItem(PaperName(paper));
    tray_->addItem(tr("Automatic"));
    for (const auto& tray : trays_)
        tray_->addItem(ToQt(tray.name));
    paper_->setEnabled(!papers_.empty());
    tray_->setEnabled(!trays_.empty());
    if (!known) return;
    const auto paper =
        std::ranges::find_if(papers_, [&](const auto& at) { return SameSize(at, current_->paper); });
    if (paper != papers_.end()) paper_->setCurrentIndex(static_cast<int>(paper - papers_.begin()));
    const auto tray = std::ranges::find(trays_, current_->tray, &PaperTray::key);
    if (tray != trays_.end()) tray_->setCurrentIndex(static_cast<int>(tray - trays_.begin()) + 1);
}

}  // namespace rv52
