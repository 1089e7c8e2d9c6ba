#pragma once

#include <QHeaderView>
#include <QStyledItemDelegate>

namespace rv52 {

// How the grid paints its cells: data, headers, and the corner where both headers meet.

// Paints a cell of the grid: the system's colours, selection colours for what is selected and for the
// current cell, and a text without any padding, so that digits stay legible in 11-pixel rows.
class GridDelegate : public QStyledItemDelegate {
    Q_OBJECT

 public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
};

// A fixed header row or column of the grid: it selects nothing, and its texts fit as the cells' do.
class GridHeader : public QHeaderView {
    Q_OBJECT

 public:
    GridHeader(Qt::Orientation orientation, QWidget* parent);

 protected:
    void paintSection(QPainter* painter, const QRect& rect, int section) const override;
};

// The cell where both headers meet.
class GridCorner : public QWidget {
    Q_OBJECT

 public:
    explicit GridCorner(QWidget* parent);

    void SetText(const QString& text);
    // A frame, for the focus of a grid whose cursor stands here.
    void Mark(bool marked);

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    QString text_;
    bool marked_ = false;
};

}  // namespace rv52
