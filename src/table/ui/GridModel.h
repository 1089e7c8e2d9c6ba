#pragma once

#include "app/state/GridSheet.h"

#include <QAbstractTableModel>

namespace rv52 {

// The sheet's data cells as a model, its header row and column as headers. It holds nothing of its own.
class GridModel : public QAbstractTableModel {
    Q_OBJECT

 public:
    GridModel(const GridSheet& sheet, QObject* parent);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    // The corner's text; empty before the first layout.
    QString CornerText() const;

    // The sheet was laid out anew.
    void LaidOut();
    // Some of its texts have changed: one notification for all of them.
    void TextsChanged();

    QModelIndex IndexOf(GridCell at) const { return index(at.row - 1, at.column - 1); }
    static GridCell CellOf(const QModelIndex& index) {
        return {GridRow(index.row() + 1), GridColumn(index.column() + 1)};
    }

 private:
    const GridSheet& sheet_;
};

}  // namespace rv52
