#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// Controls without a toolkit: they hold what the rules touch and run the rules; a view binds to them.
///
/// One thread uses the controls of a program. A control stays where it was made, so that views and rules may
/// point at it. Faults: none, unless stated; a fault that a rule raises passes through the setter that ran
/// the rule, and the new value stays.
namespace zenvora::controls {

/// A colour, red component first: 0xRRGGBB.
using Color = std::uint32_t;

inline constexpr Color kWhite = 0xFFFFFF;
inline constexpr Color kLightYellow = 0xFFFFC0;
inline constexpr Color kLightGreen = 0xC0FFC0;
inline constexpr Color kGrey = 0xE0E0E0;

/// What a view is told to show anew.
enum class Property { Text, Enabled, Visible, BackColor, ToolTipText, Items, Selection };

/// Keeps an observation alive; letting go of it ends the observation, whether the control still exists or
/// not.
using Observation = std::shared_ptr<const std::function<void(Property)>>;

class Control {
  public:
    /// The index of a control that stands alone.
    static constexpr int kNoIndex = -1;

    explicit Control(std::string name, int index = kNoIndex);
    virtual ~Control();
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    [[nodiscard]] const std::string& Name() const noexcept { return name_; }
    /// Place in its control array, kNoIndex outside of one.
    [[nodiscard]] int Index() const noexcept { return index_; }

    [[nodiscard]] bool Enabled() const noexcept { return enabled_; }
    void SetEnabled(bool enabled);
    [[nodiscard]] bool Visible() const noexcept { return visible_; }
    void SetVisible(bool visible);
    [[nodiscard]] Color BackColor() const noexcept { return backColor_; }
    void SetBackColor(Color color);
    [[nodiscard]] const std::string& ToolTipText() const noexcept { return toolTipText_; }
    void SetToolTipText(std::string text);
    /// Free text of the dialog's rules; no view shows it.
    [[nodiscard]] const std::string& Tag() const noexcept { return tag_; }
    void SetTag(std::string tag) { tag_ = std::move(tag); }

    /// Calls `view` after each real change of a property, before the change rule of that property runs, so
    /// that the screen follows in the order of the changes. For views only: rules of the program are change
    /// rules.
    [[nodiscard]] Observation Observe(std::function<void(Property)> view);

  protected:
    void TellViews(Property property);

  private:
    std::string name_;
    int index_;
    bool enabled_ = true;
    bool visible_ = true;
    Color backColor_ = kWhite;
    std::string toolTipText_;
    std::string tag_;
    std::vector<std::weak_ptr<const std::function<void(Property)>>> views_;
};

}  // namespace zenvora::controls
