#include "platform/controls/combo_box.h"

#include <algorithm>
#include <iterator>

#include "platform/fault.h"

namespace zenvora::controls {

std::string ComboBox::List(int index) const {
    if (index < 0 || index >= ListCount()) {
        throw Fault{fault::kSubscript, "The list " + Name() + " has no entry at place " +
                                           std::to_string(index) + "; it holds " +
                                           std::to_string(items_.size()) + "."};
    }
    return items_[static_cast<std::size_t>(index)];
}

void ComboBox::AddItem(std::string text) {
    items_.push_back(std::move(text));
    TellViews(Property::Items);
}

void ComboBox::AddItems(std::vector<std::string> texts) {
    if (texts.empty()) return;
    items_.insert(items_.end(), std::make_move_iterator(texts.begin()), std::make_move_iterator(texts.end()));
    TellViews(Property::Items);
}

void ComboBox::Clear() {
    if (items_.empty()) return;
    items_.clear();
    TellViews(Property::Items);
}

void ComboBox::SetText(std::string text) {
    if (text_ == text) return;
    text_ = std::move(text);
    TellViews(Property::Text);
    if (changeRule_) changeRule_();
}

int ComboBox::ListIndex() const noexcept {
    const auto found = std::find(items_.begin(), items_.end(), text_);
    return found == items_.end() ? -1 : static_cast<int>(found - items_.begin());
}

void ComboBox::Pick(int index) {
    SetText(List(index));
    if (clickRule_) clickRule_();
}

}  // namespace zenvora::controls
