#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/controls/clickable.h"

namespace zenvora::controls {

/// A menu or an entry of one.
class MenuItem final : public Clickable {
  public:
    using Clickable::Clickable;
    [[nodiscard]] std::string_view TypeName() const noexcept override { return "MENU"; }

    [[nodiscard]] bool Checked() const noexcept { return checked_; }
    void SetChecked(bool checked);
    /// Key combination in the usual notation: "Ctrl+O", "F1". Set before the form is shown.
    [[nodiscard]] const std::string& Shortcut() const noexcept { return shortcut_; }
    void SetShortcut(std::string shortcut) { shortcut_ = std::move(shortcut); }

  private:
    bool checked_ = false;
    std::string shortcut_;
};

/// A menu of a form's menu bar.
struct Menu {
    struct Entry {
        MenuItem* item = nullptr;           ///< null: a separator
        std::vector<MenuItem*> children{};  ///< entries of a submenu; none for an entry that is pressed
    };
    MenuItem* title = nullptr;
    std::vector<Entry> entries;
};

}  // namespace zenvora::controls
