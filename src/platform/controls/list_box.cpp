#include "platform/controls/list_box.h"

#include <utility>

#include "platform/fault.h"

namespace zenvora::controls {

void ListBox::CheckPlace(int index, int end) const {
    if (index < 0 || index >= end) {
        throw Fault{fault::kSubscript, "The list " + Name() + " has no entry at place " +
                                           std::to_string(index) + "; it holds " +
                                           std::to_string(items_.size()) + "."};
    }
}

std::string ListBox::List(int index) const {
    CheckPlace(index, ListCount());
    return items_[static_cast<std::size_t>(index)];
}

void ListBox::AddItem(std::string text) {
    AddItem(std::move(text), ListCount());
}

void ListBox::AddItem(std::string text, int index) {
    CheckPlace(index, ListCount() + 1);
    items_.insert(items_.begin() + index, std::move(text));
    if (selected_ >= index) ++selected_;
    TellViews(Property::Items);
}

void ListBox::RemoveItem(int index) {
    CheckPlace(index, ListCount());
    items_.erase(items_.begin() + index);
    if (selected_ == index) {
        selected_ = -1;
    } else if (selected_ > index) {
        --selected_;
    }
    TellViews(Property::Items);
}

void ListBox::Clear() {
    if (items_.empty()) return;
    items_.clear();
    selected_ = -1;
    TellViews(Property::Items);
}

void ListBox::SetListIndex(int index) {
    if (index != -1) CheckPlace(index, ListCount());
    if (selected_ == index) return;
    selected_ = index;
    TellViews(Property::Selection);
}

}  // namespace zenvora::controls
