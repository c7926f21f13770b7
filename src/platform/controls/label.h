#pragma once

#include <functional>
#include <string_view>
#include <utility>

#include "platform/controls/clickable.h"

namespace zenvora::controls {

/// A text that the user only reads; one with a click rule is shown as a link.
class Label final : public Clickable {
  public:
    using Clickable::Clickable;
    [[nodiscard]] std::string_view TypeName() const noexcept override { return "LABEL"; }

    /// The user's double click; the click of its first half comes by itself. Nothing when disabled or hidden.
    void DblClick() {
        if (Enabled() && Visible() && dblClickRule_) dblClickRule_();
    }
    void OnDblClick(std::function<void()> rule) { dblClickRule_ = std::move(rule); }

  private:
    std::function<void()> dblClickRule_;
};

}  // namespace zenvora::controls
