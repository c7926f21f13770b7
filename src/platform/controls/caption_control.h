#pragma once

#include <string>

#include "platform/controls/control.h"

namespace zenvora::controls {

/// A control with a caption. "&" marks a mnemonic and "&&" is one ampersand.
class CaptionControl : public Control {
  public:
    using Control::Control;

    [[nodiscard]] const std::string& Caption() const noexcept { return caption_; }
    void SetCaption(std::string caption);

  private:
    std::string caption_;
};

/// A caption as the user reads it: without the marks of mnemonics.
[[nodiscard]] std::string PlainCaption(const std::string& caption);

}  // namespace zenvora::controls
