#include "table/ui/GridModel.h"

#include "platform/qt/QtText.h"

#include <algorithm>

namespace rv52 {

GridModel::GridModel(const GridSheet& sheet, QObject* parent) : QAbstractTableModel(parent), sheet_(sheet) {}

int GridModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : std::max(0, sheet_.RowCountWithHeader() - 1);
}

int GridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : std::max(0, sheet_.ColumnCountWithHeader() - 1);
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    switch (role) {
        case Qt::DisplayRole:
        case Qt::EditRole:
            return ToQt(sheet_.Text(CellOf(index)));
        case Qt::TextAlignmentRole:
            return static_cast<int>(Qt::AlignCenter);
        case Qt::ToolTipRole:
            return tr("Click to select or double click to edit cell");
        default:
            return {};
    }
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role == Qt::TextAlignmentRole) return static_cast<int>(Qt::AlignCenter);
    if (role != Qt::DisplayRole) return {};
    return ToQt(sheet_.Text(orientation == Qt::Horizontal ? GridCell{GridRow(0), GridColumn(section + 1)}
                                                          : GridCell{GridRow(section + 1), GridColumn(0)}));
}

QString GridModel::CornerText() const {
    return sheet_.RowCountWithHeader() == 0 ? QString() : ToQt(sheet_.Text({GridRow(0), GridColumn(0)}));
}

void GridModel::LaidOut() {
    beginResetModel();
    endResetModel();
}

void GridModel::TextsChanged() {
    if (rowCount() == 0) return;
    Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1),
                       {Qt::DisplayRole, Qt::EditRole});
}

}  // namespace rv52
