#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/controls/control.h"

namespace zenvora::controls {

/// Pages of controls, one of them shown. Pages count from 0; which controls stand on a page is the view's.
class TabPages final : public Control {
  public:
    /// Page 0 is shown first. `captions` gives one page each.
    TabPages(std::string name, const std::vector<std::string>& captions);
    [[nodiscard]] std::string_view TypeName() const noexcept override { return "SSTAB"; }

    [[nodiscard]] int Pages() const noexcept { return static_cast<int>(pages_.size()); }
    /// Fault 9 in all that take a page: there is no such page.
    [[nodiscard]] const std::string& TabCaption(int page) const;
    void SetTabCaption(int page, std::string caption);
    [[nodiscard]] bool TabEnabled(int page) const;
    /// An unavailable page cannot be gone to; the one that is shown stays shown.
    void SetTabEnabled(int page, bool enabled);

    [[nodiscard]] int Tab() const noexcept { return tab_; }
    /// Shows a page, for the user and for the program alike. A real change runs the page-change rule with the
    /// page left, before this returns. An unavailable page is not shown: nothing happens.
    void SetTab(int page);
    void OnTabChange(std::function<void(int previous)> rule) { changeRule_ = std::move(rule); }

  private:
    struct Page {
        std::string caption;
        bool enabled = true;
    };
    [[nodiscard]] std::size_t Place(int page) const;

    std::vector<Page> pages_;
    int tab_ = 0;
    std::function<void(int)> changeRule_;
};

}  // namespace zenvora::controls
