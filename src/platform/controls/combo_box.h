#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/controls/list_box.h"

namespace zenvora::controls {

/// A text that is typed or picked from a list.
class ComboBox final : public ListControl {
  public:
    using ListControl::ListControl;
    [[nodiscard]] std::string_view TypeName() const noexcept override { return "COMBOBOX"; }

    [[nodiscard]] int ListCount() const noexcept override { return static_cast<int>(items_.size()); }
    [[nodiscard]] std::string List(int index) const override;
    void AddItem(std::string text);
    /// Adds entries at the end, in one go for the views.
    void AddItems(std::vector<std::string> texts);
    /// Drops the entries; the text stays.
    void Clear();

    [[nodiscard]] const std::string& Text() const noexcept { return text_; }
    /// As TextBox::SetText: a real change runs the change rule before this returns.
    void SetText(std::string text);
    /// Place of the first entry that equals the text, -1 when none does.
    [[nodiscard]] int ListIndex() const noexcept;
    /// The user picks an entry: the text takes it, with the change rule, and then the click rule runs, also
    /// when the text was the same. Fault 9: there is no such place.
    void Pick(int index);
    void OnChange(std::function<void()> rule) { changeRule_ = std::move(rule); }
    void OnClick(std::function<void()> rule) { clickRule_ = std::move(rule); }
    /// Asks the views to select the whole text.
    void SelectAll() { TellViews(Property::Selection); }

    /// True: the text can only be picked. Set before the form is shown.
    [[nodiscard]] bool PickOnly() const noexcept { return pickOnly_; }
    void SetPickOnly(bool pickOnly) noexcept { pickOnly_ = pickOnly; }

  private:
    std::vector<std::string> items_;
    std::string text_;
    bool pickOnly_ = false;
    std::function<void()> changeRule_;
    std::function<void()> clickRule_;
};

}  // namespace zenvora::controls
