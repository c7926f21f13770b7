#include "platform/controls/month_view.h"

#include <optional>

#include "platform/fault.h"

namespace zenvora::controls {

void MonthView::SetValue(text::Date value) {
    if (value < text::kFirstDate || value >= text::kLastDate + 1) {
        throw Fault{fault::kInvalidProperty, "The calendar goes from 1/1/100 to 12/31/9999."};
    }
    const text::Date day = text::DayPart(value);
    if (value_ == day) return;
    value_ = day;
    TellViews(Property::Value);
}

void MonthView::SetDay(int year, int month, int day) {
    const std::optional<text::Date> date = text::DayNumber(year, month, day);
    if (!date) throw Fault{fault::kInvalidProperty, "That month has no such day."};
    SetValue(*date);
}

void MonthView::SetYear(int year) {
    const text::CalendarDay now = text::CalendarDayOf(value_);
    SetDay(year, now.month, now.day);
}

void MonthView::SetMonth(int month) {
    const text::CalendarDay now = text::CalendarDayOf(value_);
    SetDay(now.year, month, now.day);
}

void MonthView::ClickDate(text::Date day) {
    SetValue(day);
    if (clickRule_) clickRule_();
}

void MonthView::DblClickDate(text::Date day) {
    SetValue(day);
    if (dblClickRule_) dblClickRule_();
}

}  // namespace zenvora::controls
