#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/controls/control.h"

namespace zenvora::controls {

/// Anything that a view shows as a list of texts. Entries count from 0.
class ListControl : public Control {
  public:
    using Control::Control;

    [[nodiscard]] virtual int ListCount() const noexcept = 0;
    /// The entry at a place. Fault 9: there is no such place.
    [[nodiscard]] virtual std::string List(int index) const = 0;
};

/// A list of texts in the order of their adding, with at most one of them selected, or several.
class ListBox final : public ListControl {
  public:
    using ListControl::ListControl;
    [[nodiscard]] std::string_view TypeName() const noexcept override { return "LISTBOX"; }

    [[nodiscard]] int ListCount() const noexcept override { return static_cast<int>(items_.size()); }
    [[nodiscard]] std::string List(int index) const override;
    /// Adds an entry at the end.
    void AddItem(std::string text);
    /// Adds an entry in front of the one at `index`, which may be the count. Fault 9: beyond that.
    void AddItem(std::string text, int index);
    /// Adds entries at the end, in one go for the views.
    void AddItems(std::vector<std::string> texts);
    /// Fault 9: there is no such place.
    void RemoveItem(int index);
    void Clear();

    /// Place of the last selected entry, -1 when none is. A selection moves with its entry and is lost with
    /// it.
    [[nodiscard]] int ListIndex() const noexcept;
    /// Selects an entry alone, -1 for none. Fault 9: there is no such place.
    void SetListIndex(int index);
    /// Whether an entry is selected. Fault 9: there is no such place.
    [[nodiscard]] bool Selected(int index) const;
    /// Selects one entry more, or one less; without MultiSelect selecting one unselects the others.
    void SetSelected(int index, bool selected);
    /// True: the user can select several entries. Set before the form is shown.
    [[nodiscard]] bool MultiSelect() const noexcept { return multiSelect_; }
    void SetMultiSelect(bool several) noexcept { multiSelect_ = several; }

    /// The user's double click, or Enter, on the selected entry.
    void DblClick();
    void OnDblClick(std::function<void()> rule) { dblClickRule_ = std::move(rule); }
    [[nodiscard]] bool HasDblClickRule() const noexcept { return static_cast<bool>(dblClickRule_); }

  private:
    struct Item {
        std::string text;
        bool selected = false;
    };
    void CheckPlace(int index, int end) const;

    std::vector<Item> items_;
    bool multiSelect_ = false;
    std::function<void()> dblClickRule_;
};

}  // namespace zenvora::controls
