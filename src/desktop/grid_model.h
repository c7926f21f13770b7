#pragma once

#include <QAbstractTableModel>
#include <exception>
#include <functional>

#include "platform/controls/grid.h"

namespace zenvora::desktop {

/// The cells of a grid, read when they are asked for: the rows on the screen and no others.
class GridModel final : public QAbstractTableModel {
  public:
    /// `failed` is told, at most once until the next Refresh, of a fault in reading a cell; such cells are
    /// empty.
    GridModel(const controls::Grid& grid, std::function<void(std::exception_ptr)> failed, QObject* parent);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// The rows have changed; true when their number has, or the columns, and all was laid out anew.
    bool Refresh();
    /// The grid goes; nothing is read any more.
    void Drop() { grid_ = nullptr; }

  private:
    [[nodiscard]] QVariant Cell(int row, int column, int role) const;

    const controls::Grid* grid_;
    std::function<void(std::exception_ptr)> failed_;
    mutable bool told_ = false;
    int rows_ = 0;
    int columns_ = 0;
};

}  // namespace zenvora::desktop
