#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "platform/controls/clickable.h"

namespace zenvora::controls {

/// A picture. One with a click rule is a button that the keyboard reaches too. The caption is its accessible
/// name and is not drawn.
class Image final : public Clickable {
  public:
    using Clickable::Clickable;
    [[nodiscard]] std::string_view TypeName() const noexcept override { return "IMAGE"; }

    /// Name of the picture among the program's own: "calendar". Set before the form is shown.
    [[nodiscard]] const std::string& Picture() const noexcept { return picture_; }
    void SetPicture(std::string picture) { picture_ = std::move(picture); }

  private:
    std::string picture_;
};

}  // namespace zenvora::controls
