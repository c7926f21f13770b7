#pragma once

#include <functional>
#include <string_view>
#include <utility>

#include "platform/controls/caption_control.h"

namespace zenvora::controls {

/// A group of controls with a caption. Which controls stand in it is the view's; a disabled frame disables
/// them on the screen, and leaves their own state alone.
class Frame final : public CaptionControl {
  public:
    using CaptionControl::CaptionControl;
    [[nodiscard]] std::string_view TypeName() const noexcept override { return "FRAME"; }

    /// The user's double click on the frame itself, not on what stands in it. Nothing when disabled or
    /// hidden.
    void DblClick() {
        if (Enabled() && Visible() && dblClickRule_) dblClickRule_();
    }
    void OnDblClick(std::function<void()> rule) { dblClickRule_ = std::move(rule); }

  private:
    std::function<void()> dblClickRule_;
};

}  // namespace zenvora::controls
