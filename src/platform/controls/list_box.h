#pragma once

#include <string>
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

/// A list of texts in the order of their adding, with at most one of them selected.
class ListBox final : public ListControl {
  public:
    using ListControl::ListControl;

    [[nodiscard]] int ListCount() const noexcept override { return static_cast<int>(items_.size()); }
    [[nodiscard]] std::string List(int index) const override;
    /// Adds an entry at the end.
    void AddItem(std::string text);
    /// Adds an entry in front of the one at `index`, which may be the count. Fault 9: beyond that.
    void AddItem(std::string text, int index);
    /// Fault 9: there is no such place.
    void RemoveItem(int index);
    void Clear();

    /// Place of the selected entry, -1 when none is. It moves with its entry and is lost with it.
    [[nodiscard]] int ListIndex() const noexcept { return selected_; }
    /// Selects an entry, -1 for none. Fault 9: there is no such place.
    void SetListIndex(int index);

  private:
    void CheckPlace(int index, int end) const;

    std::vector<std::string> items_;
    int selected_ = -1;
};

}  // namespace zenvora::controls
