#include "platform/controls/list_box.h"

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
    return items_[static_cast<std::size_t>(index)].text;
}

void ListBox::AddItem(std::string text) {
    AddItem(std::move(text), ListCount());
}

void ListBox::AddItem(std::string text, int index) {
    CheckPlace(index, ListCount() + 1);
    items_.insert(items_.begin() + index, Item{std::move(text)});
    TellViews(Property::Items);
}

void ListBox::AddItems(std::vector<std::string> texts) {
    if (texts.empty()) return;
    for (std::string& text : texts)
        items_.push_back(Item{std::move(text)});
    TellViews(Property::Items);
}

void ListBox::RemoveItem(int index) {
    CheckPlace(index, ListCount());
    items_.erase(items_.begin() + index);
    TellViews(Property::Items);
}

void ListBox::Clear() {
    if (items_.empty()) return;
    items_.clear();
    TellViews(Property::Items);
}

int ListBox::ListIndex() const noexcept {
    for (int index = ListCount() - 1; index >= 0; --index) {
        if (items_[static_cast<std::size_t>(index)].selected) return index;
    }
    return -1;
}

void ListBox::SetListIndex(int index) {
    if (index != -1) CheckPlace(index, ListCount());
    bool changed = false;
    for (int place = 0; place < ListCount(); ++place) {
        bool& selected = items_[static_cast<std::size_t>(place)].selected;
        changed |= std::exchange(selected, place == index) != (place == index);
    }
    if (changed) TellViews(Property::Selection);
}

bool ListBox::Selected(int index) const {
    CheckPlace(index, ListCount());
    return items_[static_cast<std::size_t>(index)].selected;
}

void ListBox::SetSelected(int index, bool selected) {
    CheckPlace(index, ListCount());
    if (selected && !multiSelect_) return SetListIndex(index);
    if (std::exchange(items_[static_cast<std::size_t>(index)].selected, selected) != selected)
        TellViews(Property::Selection);
}

void ListBox::DblClick() {
    if (Enabled() && dblClickRule_ && ListIndex() >= 0) dblClickRule_();
}

}  // namespace zenvora::controls
