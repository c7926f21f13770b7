#pragma once

#include <string>

#include "platform/controls/control.h"

namespace zenvora::controls {

/// A text that the user only reads. "&" marks a mnemonic and "&&" is one ampersand, as in every caption.
class Label final : public Control {
  public:
    using Control::Control;

    [[nodiscard]] const std::string& Caption() const noexcept { return caption_; }
    void SetCaption(std::string caption);

  private:
    std::string caption_;
};

}  // namespace zenvora::controls
