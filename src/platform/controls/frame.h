#pragma once

#include <string_view>

#include "platform/controls/caption_control.h"

namespace zenvora::controls {

/// A group of controls with a caption. Which controls stand in it is the view's; a disabled frame disables
/// them on the screen, and leaves their own state alone.
class Frame final : public CaptionControl {
  public:
    using CaptionControl::CaptionControl;
    [[nodiscard]] std::string_view TypeName() const noexcept override { return "FRAME"; }
};

}  // namespace zenvora::controls
