#pragma once

#include <functional>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/controls/caption_control.h"

namespace zenvora::controls {

/// One choice of a group, of which at most one is set.
class OptionButton final : public CaptionControl {
  public:
    using CaptionControl::CaptionControl;
    [[nodiscard]] std::string_view TypeName() const noexcept override { return "OPTIONBUTTON"; }

    [[nodiscard]] bool Value() const noexcept { return value_; }
    /// Setting one option clears the others of its group, without their click rule; a real change to true
    /// runs the click rule of this one. Clearing the set one leaves the group without any.
    void SetValue(bool value);
    /// The user's press. Nothing when disabled or hidden.
    void Select();
    void OnClick(std::function<void()> rule) { clickRule_ = std::move(rule); }

    /// Joins the group of `first`. All buttons of a group must live equally long.
    void JoinGroupOf(OptionButton& first);

  private:
    bool value_ = false;
    std::function<void()> clickRule_;
    std::shared_ptr<std::vector<OptionButton*>> group_;
};

}  // namespace zenvora::controls
