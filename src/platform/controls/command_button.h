#pragma once

#include <string_view>

#include "platform/controls/clickable.h"

namespace zenvora::controls {

/// A push button.
class CommandButton final : public Clickable {
  public:
    using Clickable::Clickable;
    [[nodiscard]] std::string_view TypeName() const noexcept override { return "COMMANDBUTTON"; }

    /// Pressed by Enter (Default) or by Escape (Cancel), wherever the focus is. Set before the form is shown.
    [[nodiscard]] bool Default() const noexcept { return default_; }
    void SetDefault(bool isDefault) noexcept { default_ = isDefault; }
    [[nodiscard]] bool Cancel() const noexcept { return cancel_; }
    void SetCancel(bool isCancel) noexcept { cancel_ = isCancel; }

  private:
    bool default_ = false;
    bool cancel_ = false;
};

}  // namespace zenvora::controls
