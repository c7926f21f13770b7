#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/controls/control.h"

namespace zenvora::controls {

/// A cell of text that the user reads or types, with its change rule.
class TextBox final : public Control {
  public:
    using Control::Control;
    [[nodiscard]] std::string_view TypeName() const noexcept override { return "TEXTBOX"; }

    [[nodiscard]] const std::string& Text() const noexcept { return text_; }
    /// Sets the text. When it really differs from the old one the change rule runs before this returns;
    /// writing the same text again does nothing.
    void SetText(std::string text);
    /// The change rule; there is one, a later one replaces it. It may set texts, this one's included.
    void OnChange(std::function<void()> rule) { changeRule_ = std::move(rule); }

    /// Characters that the user can type, 0 for no limit. Texts that the program sets are not cut. Set before
    /// the form is shown.
    [[nodiscard]] int MaxLength() const noexcept { return maxLength_; }
    void SetMaxLength(int characters) noexcept { maxLength_ = characters; }
    /// Locked: the user reads and copies the text and cannot change it.
    [[nodiscard]] bool Locked() const noexcept { return locked_; }
    void SetLocked(bool locked);
    /// The user's click into the text, behind the focus that it may bring. Nothing when disabled or hidden.
    void Click();
    void OnClick(std::function<void()> rule) { clickRule_ = std::move(rule); }
    /// Asks the views to select the whole text.
    void SelectAll() { TellViews(Property::Selection); }

  private:
    std::string text_;
    int maxLength_ = 0;
    bool locked_ = false;
    std::function<void()> changeRule_;
    std::function<void()> clickRule_;
};

}  // namespace zenvora::controls
