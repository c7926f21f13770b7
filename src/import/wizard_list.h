#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/fault.h"

namespace zenvora::importing {

/// A list of texts, counted from 0, with at most one of them selected.
class WizardList {
  public:
    explicit WizardList(std::string name) : name_(std::move(name)) {}
    [[nodiscard]] int ListCount() const noexcept { return static_cast<int>(items_.size()); }
    [[nodiscard]] std::string List(int index) const { return items_[Checked(index)]; }
    void AddItem(std::string text) { items_.push_back(std::move(text)); }
    void RemoveItem(int index) {
        items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(Checked(index)));
        if (selected_ == index) selected_ = -1;
        if (selected_ > index) --selected_;
    }
    void Clear() {
        items_.clear();
        selected_ = -1;
    }
    [[nodiscard]] int ListIndex() const noexcept { return selected_; }
    void SetListIndex(int index) { selected_ = index == -1 ? -1 : static_cast<int>(Checked(index)); }

  private:
    [[nodiscard]] std::size_t Checked(int index) const {
        if (index < 0 || index >= ListCount())
            throw Fault{fault::kSubscript,
                        "The list " + name_ + " has no entry " + std::to_string(index) + "."};
        return static_cast<std::size_t>(index);
    }
    std::string name_;
    std::vector<std::string> items_;
    int selected_ = -1;
};

}  // namespace zenvora::importing
