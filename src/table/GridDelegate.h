#pragma once

#include <QStyledItemDelegate>

namespace rv52 {

// Paints a cell of the grid: the system's colours, selection colours for what is selected and for the
// current cell, and a text without any padding, so that digits stay legible in 11-pixel rows.
class GridDelegate : public QStyledItemDelegate {
    Q_OBJECT

 public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
};

}  // namespace rv52
