#pragma once

#include <string_view>

#include "platform/controls/clickable.h"

namespace zenvora::controls {

/// A text that the user only reads; one with a click rule is shown as a link.
class Label final : public Clickable {
  public:
    using Clickable::Clickable;
    [[nodiscard]] std::string_view TypeName() const noexcept override { return "LABEL"; }
};

}  // namespace zenvora::controls
