#pragma once

#include <functional>
#include <string_view>
#include <utility>

#include "platform/controls/control.h"
#include "platform/text/date.h"

namespace zenvora::controls {

/// A calendar of one month with one date, a whole day.
class MonthView final : public Control {
  public:
    using Control::Control;
    [[nodiscard]] std::string_view TypeName() const noexcept override { return "MONTHVIEW"; }

    [[nodiscard]] text::Date Value() const noexcept { return value_; }
    /// Fault 380: a day outside of the legal range, or one of a date without that day (February 31). The time
    /// of day is dropped.
    void SetValue(text::Date value);
    [[nodiscard]] int Year() const noexcept { return text::CalendarDayOf(value_).year; }
    [[nodiscard]] int Month() const noexcept { return text::CalendarDayOf(value_).month; }
    void SetYear(int year);
    void SetMonth(int month);
    /// A week back or forth, on the same weekday.
    void MoveWeeks(int weeks) { SetValue(value_ + 7 * weeks); }

    /// The user's click and double click on a day. The value is that day when the rules run.
    void ClickDate(text::Date day);
    void DblClickDate(text::Date day);
    void OnDateClick(std::function<void()> rule) { clickRule_ = std::move(rule); }
    void OnDateDblClick(std::function<void()> rule) { dblClickRule_ = std::move(rule); }

  private:
    void SetDay(int year, int month, int day);

    text::Date value_ = 2;
    std::function<void()> clickRule_;
    std::function<void()> dblClickRule_;
};

}  // namespace zenvora::controls
