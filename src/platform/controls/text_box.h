#pragma once

#include <functional>
#include <string>
#include <utility>

#include "platform/controls/control.h"

namespace zenvora::controls {

/// A cell of text that the user reads or types, with its change rule.
class TextBox final : public Control {
  public:
    using Control::Control;

    [[nodiscard]] const std::string& Text() const noexcept { return text_; }
    /// Sets the text. When it really differs from the old one the change rule runs before this returns;
    /// writing the same text again does nothing.
    void SetText(std::string text);
    /// The change rule; there is one, a later one replaces it. It may set texts, this one's included.
    void OnChange(std::function<void()> rule) { changeRule_ = std::move(rule); }

  private:
    std::string text_;
    std::function<void()> changeRule_;
};

}  // namespace zenvora::controls
