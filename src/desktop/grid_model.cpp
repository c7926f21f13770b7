#include "desktop/grid_model.h"

#include <QIcon>
#include <utility>

#include "desktop/pictures.h"
#include "desktop/strings.h"

namespace zenvora::desktop {

GridModel::GridModel(const controls::Grid& grid, std::function<void(std::exception_ptr)> failed,
                     QObject* parent)
    : QAbstractTableModel(parent), grid_(&grid), failed_(std::move(failed)) {
    Refresh();
}

int GridModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : rows_;
}

int GridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columns_;
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
    if (grid_ == nullptr || !index.isValid()) return {};
    // The toolkit asks from its own loop, which no fault may cross.
    try {
        return Cell(index.row(), index.column(), role);
    } catch (...) {
        if (!std::exchange(told_, true)) failed_(std::current_exception());
        return {};
    }
}

QVariant GridModel::Cell(int row, int column, int role) const {
    const controls::GridColumn& shape = grid_->Columns().at(static_cast<std::size_t>(column));
    if (role == Qt::TextAlignmentRole) {
        return QVariant::fromValue(Qt::Alignment(Qt::AlignVCenter | (shape.rightAligned ? Qt::AlignRight
                                                                     : shape.pictures   ? Qt::AlignHCenter
                                                                                        : Qt::AlignLeft)));
    }
    if (shape.pictures) {
        if (role == Qt::DecorationRole) {
            const std::string picture = grid_->Shown(row, column);
            return picture.empty() ? QVariant() : QVariant::fromValue(Picture(picture));
        }
        if (role == Qt::AccessibleTextRole || role == Qt::ToolTipRole)
            return PictureMeaning(grid_->Shown(row, column));
        return {};
    }
    if (role == Qt::DisplayRole) return Shown(grid_->Shown(row, column));
    return {};
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (grid_ == nullptr || orientation != Qt::Horizontal || section < 0 || section >= columns_) return {};
    const controls::GridColumn& shape = grid_->Columns().at(static_cast<std::size_t>(section));
    if (role == Qt::DisplayRole) return Shown(shape.caption);
    if (role == Qt::AccessibleTextRole && shape.caption.empty()) return QStringLiteral("Status");
    if (role == Qt::TextAlignmentRole) {
        return QVariant::fromValue(
            Qt::Alignment(Qt::AlignVCenter | (shape.rightAligned ? Qt::AlignRight : Qt::AlignLeft)));
    }
    return {};
}

bool GridModel::Refresh() {
    told_ = false;
    int rows = 0;
    try {
        rows = grid_ == nullptr ? 0 : grid_->RowCount();
    } catch (...) {
        failed_(std::current_exception());
    }
    const int columns = grid_ == nullptr ? 0 : static_cast<int>(grid_->Columns().size());
    if (rows == rows_ && columns == columns_) {
        if (rows > 0 && columns > 0) emit dataChanged(index(0, 0), index(rows - 1, columns - 1));
        return false;
    }
    beginResetModel();
    rows_ = rows;
    columns_ = columns;
    endResetModel();
    return true;
}

}  // namespace zenvora::desktop
