#pragma once

#include <QAbstractListModel>

#include "desktop/strings.h"
#include "platform/controls/list_box.h"

namespace zenvora::desktop {

/// The entries of a list, read when they are asked for.
class ListModel final : public QAbstractListModel {
  public:
    ListModel(const controls::ListControl& list, QObject* parent)
        : QAbstractListModel(parent), list_(&list), rows_(list.ListCount()) {}

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : rows_;
    }
    [[nodiscard]] QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override {
        if (role != Qt::DisplayRole || list_ == nullptr) return {};
        if (!index.isValid() || index.row() >= list_->ListCount()) return {};
        return Shown(list_->List(index.row()));
    }
    /// The entries have changed.
    void Refresh() {
        beginResetModel();
        rows_ = list_ == nullptr ? 0 : list_->ListCount();
        endResetModel();
    }
    /// The list goes; nothing is read any more.
    void Drop() { list_ = nullptr; }

  private:
    const controls::ListControl* list_;
    int rows_;
};

}  // namespace zenvora::desktop
