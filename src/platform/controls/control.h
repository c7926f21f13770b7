#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Controls without a toolkit: they hold what the rules touch and run the rules; a view binds to them.
///
/// One thread uses the controls of a program. A control stays where it was made, so that views and rules may
/// point at it. Faults: none, unless stated; a fault that a rule raises passes through the setter that ran
/// the rule, and the new value stays.
namespace zenvora::controls {

/// A colour, red component first: 0xRRGGBB. From kSystemColor up it is no colour of its own: the view paints
/// the control as the screen's theme has it.
using Color = std::uint32_t;

inline constexpr Color kSystemColor = 0x80000000;

inline constexpr Color kWhite = 0xFFFFFF;
inline constexpr Color kLightYellow = 0xFFFFC0;
inline constexpr Color kLightRed = 0xFFC0C0;
inline constexpr Color kLightGreen = 0xC0FFC0;
inline constexpr Color kGrey = 0xE0E0E0;

/// What a view is told to show anew.
enum class Property {
    Text,  ///< the text or the caption
    Enabled,
    Visible,
    BackColor,
    ToolTipText,
    Items,      ///< entries of a list, rows or columns of a grid, captions and availability of pages
    Selection,  ///< selected text or entry, current cell of a grid, current page
    Value,      ///< state of a check box or option, position of a progress bar, date of a calendar
    Locked,
    Focus,  ///< the control has taken the focus
};

/// Keeps an observation alive; letting go of it ends the observation, whether the control still exists or
/// not.
using Observation = std::shared_ptr<const std::function<void(Property)>>;

class Form;

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
    /// The kind of the control as the dialogs' rules know it, in capitals: "TEXTBOX", "CHECKBOX".
    [[nodiscard]] virtual std::string_view TypeName() const noexcept = 0;
    /// Free text of the dialog's rules; no view shows it.
    [[nodiscard]] const std::string& Tag() const noexcept { return tag_; }
    void SetTag(std::string tag) { tag_ = std::move(tag); }

    /// The form that the control stands on, null outside of one.
    [[nodiscard]] Form* Owner() const noexcept { return form_; }
    /// Gives this control the focus of its form; see Form::SetFocus. Outside of a form nothing happens.
    void SetFocus();
    [[nodiscard]] bool HasFocus() const noexcept;
    /// What runs when the focus comes and when it leaves for another control of the same form.
    void OnGotFocus(std::function<void()> rule) { gotFocus_ = std::move(rule); }
    void OnLostFocus(std::function<void()> rule) { lostFocus_ = std::move(rule); }

    /// Calls `view` after each real change of a property, before the change rule of that property runs, so
    /// that the screen follows in the order of the changes. For views only: rules of the program are change
    /// rules.
    [[nodiscard]] Observation Observe(std::function<void(Property)> view);

  protected:
    void TellViews(Property property);

  private:
    friend class Form;

    std::string name_;
    int index_;
    Form* form_ = nullptr;
    std::function<void()> gotFocus_;
    std::function<void()> lostFocus_;
    bool enabled_ = true;
    bool visible_ = true;
    Color backColor_ = kWhite;
    std::string toolTipText_;
    std::string tag_;
    std::vector<std::weak_ptr<const std::function<void(Property)>>> views_;
};

}  // namespace zenvora::controls
