#pragma once

#include <functional>
#include <string_view>
#include <utility>

#include "platform/controls/caption_control.h"

namespace zenvora::controls {

/// A box with a check mark.
class CheckBox final : public CaptionControl {
  public:
    static constexpr int kUnchecked = 0;
    static constexpr int kChecked = 1;
    static constexpr int kGrayed = 2;

    using CaptionControl::CaptionControl;
    [[nodiscard]] std::string_view TypeName() const noexcept override { return "CHECKBOX"; }

    [[nodiscard]] int Value() const noexcept { return value_; }
    /// A real change runs the click rule before this returns. Fault 380: a value beyond 0 to 2.
    void SetValue(int value);
    /// The user's press: checked and unchecked in turn; a grey box becomes unchecked. Nothing when disabled
    /// or hidden.
    void Toggle();
    void OnClick(std::function<void()> rule) { clickRule_ = std::move(rule); }

  private:
    int value_ = kUnchecked;
    std::function<void()> clickRule_;
};

}  // namespace zenvora::controls
