#pragma once

#include "platform/PrintSystem.h"

#include <QDialog>

#include <optional>

class QComboBox;
class QLabel;
class QPushButton;
class QVBoxLayout;

namespace rv52 {

struct PrinterChoice {
    std::string queue;  // empty: pages become PDF documents
    PrintPaper paper;
    std::string tray;  // empty: whichever the printer takes
};

// Printer, paper and tray. It changes nothing by itself: what is chosen is taken over by who asked for it.
class PrinterSetupDialog : public QDialog {
 public:
    // Without queues it is about documents. Without a choice so far it starts at the default printer.
    PrinterSetupDialog(PrintSystem& system, const std::vector<PrintQueue>& queues,
                       const std::optional<PrinterChoice>& current, QWidget* parent);

    PrinterChoice Choice() const;

 private:
    QComboBox* AddList(QVBoxLayout& column, const QString& name, const QString& object);
    void ListPrinters(const std::vector<PrintQueue>& queues);
    // Of the printer that the list stands at.
    void ListMedia();
    void Fill(const PrintMedia& media);

    PrintSystem& system_;
    const std::optional<PrinterChoice> current_;
    std::vector<PrintPaper> papers_;
    std::vector<PaperTray> trays_;
    QComboBox* printer_;
    QComboBox* paper_;
    QComboBox* tray_;
    QLabel* trouble_;
    QPushButton* ok_;
};

}  // namespace rv52
