#pragma once

#include <deque>
#include <functional>
#include <string>
#include <string_view>

#include "platform/controls/control.h"
#include "platform/fault.h"

namespace zenvora::controls {

/// Controls of one kind under one name, told apart by their index from 0.
template <class T>
class ControlArray {
  public:
    ControlArray(std::string_view name, int count) : name_(name) {
        for (int index = 0; index < count; ++index)
            elements_.emplace_back(name_, index);
    }

    [[nodiscard]] const std::string& Name() const noexcept { return name_; }
    [[nodiscard]] int Count() const noexcept { return static_cast<int>(elements_.size()); }

    /// The element of that index. Fault 9: there is none.
    [[nodiscard]] T& operator[](int index) { return elements_[Place(index)]; }
    [[nodiscard]] const T& operator[](int index) const { return elements_[Place(index)]; }

    [[nodiscard]] auto begin() noexcept { return elements_.begin(); }
    [[nodiscard]] auto end() noexcept { return elements_.end(); }
    [[nodiscard]] auto begin() const noexcept { return elements_.begin(); }
    [[nodiscard]] auto end() const noexcept { return elements_.end(); }

    /// One change rule for all elements; it is told the index of the one that changed.
    void OnChange(const std::function<void(int)>& rule) {
        for (T& element : elements_) {
            element.OnChange([rule, index = element.Index()] { rule(index); });
        }
    }

  private:
    [[nodiscard]] std::size_t Place(int index) const {
        if (index < 0 || index >= Count()) {
            throw Fault{fault::kSubscript,
                        "There is no control " + name_ + "(" + std::to_string(index) + ")."};
        }
        return static_cast<std::size_t>(index);
    }

    std::string name_;
    std::deque<T> elements_;  // a deque, because a control never moves
};

}  // namespace zenvora::controls
