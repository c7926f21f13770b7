#pragma once

#include <functional>
#include <utility>

#include "platform/controls/caption_control.h"

namespace zenvora::controls {

/// A control that the user presses.
class Clickable : public CaptionControl {
  public:
    using CaptionControl::CaptionControl;

    /// What a press does; there is one rule, a later one replaces it.
    void OnClick(std::function<void()> rule) { clickRule_ = std::move(rule); }
    [[nodiscard]] bool HasClickRule() const noexcept { return static_cast<bool>(clickRule_); }
    /// The press. A control that is disabled or hidden cannot be pressed: nothing happens.
    void Click();

  private:
    std::function<void()> clickRule_;
};

}  // namespace zenvora::controls
