#pragma once

#include <string_view>

#include "platform/controls/control.h"

namespace zenvora::controls {

/// How far long work has come.
class ProgressBar final : public Control {
  public:
    using Control::Control;
    [[nodiscard]] std::string_view TypeName() const noexcept override { return "PROGRESSBAR"; }

    [[nodiscard]] int Minimum() const noexcept { return minimum_; }
    [[nodiscard]] int Maximum() const noexcept { return maximum_; }
    [[nodiscard]] int Value() const noexcept { return value_; }
    void SetRange(int minimum, int maximum);
    void SetValue(int value);

  private:
    int minimum_ = 0;
    int maximum_ = 100;
    int value_ = 0;
};

}  // namespace zenvora::controls
