#include "common/dates.h"

#include "common/detail/normalized_day.h"
#include "common/primitives.h"
#include "platform/fault.h"
#include "platform/text/number.h"
#include "platform/text/utf8.h"

namespace zenvora::common {
namespace {

constexpr std::size_t kShortestDate = 6;  // "1/1/07"; "1/1/7" is too short
constexpr text::CalendarDay kDayZeroDay{1900, 1, 1};
constexpr text::CalendarDay kCountStart{1899, 12, 30};

std::string TwoDigits(int value) {
    return {static_cast<char>('0' + value / 10 % 10), static_cast<char>('0' + value % 10)};
}

/// The date of a text that passes IsDate.
std::optional<Date> DateOf(std::string_view text, const shell::Clock& clock) {
    const std::string_view trimmed = text::TrimView(text);
    if (text::Length(trimmed) < kShortestDate) return std::nullopt;
    const int year = clock.Year();
    const auto date = text::TextToDate(trimmed, year);
    if (!date || detail::NormalizedDay(text::CalendarDayOf(*date), year) == kCountStart) return std::nullopt;
    return date;
}

Date RequiredDate(std::string_view text, int year) {
    const auto date = text::TextToDate(text, year);
    if (!date) {
        throw Fault(
            fault::kTypeMismatch,
            "\"" + std::string(text) + "\" is no date. Write it as month/day/year, for example 3/15/2009.");
    }
    return *date;
}

bool EndsInFourDigits(std::string_view text) {
    if (text.size() < 4) return false;
    for (const char c : text.substr(text.size() - 4)) {
        if (c < '0' || c > '9') return false;
    }
    return true;
}

}  // namespace

namespace detail {

text::CalendarDay NormalizedDay(const text::CalendarDay& day, int currentYear) noexcept {
    const int shortYear = currentYear % 100;
    if (day.year < 0) return kDayZeroDay;
    // The years below 100 take the digits of the current year, not their own.
    if (day.year <= shortYear) return {2000 + shortYear, day.month, day.day};
    if (day.year <= 99) return {1900 + shortYear, day.month, day.day};
    if (day.year <= 1899) return kDayZeroDay;
    if (day.year <= 1999) return day;
    if (day.year <= currentYear) return {2000 + day.year % 100, day.month, day.day};
    return kDayZeroDay;
}

}  // namespace detail

bool IsDate(std::string_view text, const shell::Clock& clock) {
    return DateOf(text, clock).has_value();
}

Date ConvDate(std::string& text, const shell::Clock& clock) {
    text = UpTrim(text);
    return DateOf(text, clock).value_or(kDayZero);
}

Date ConvDate(std::string_view text, const shell::Clock& clock) {
    return DateOf(text, clock).value_or(kDayZero);
}

std::string NormalizeDateText(std::string_view text, const shell::Clock& clock) {
    const std::string_view trimmed = text::TrimView(text);
    if (trimmed.empty()) return {};
    const int year = clock.Year();
    const text::CalendarDay day = text::CalendarDayOf(RequiredDate(trimmed, year));
    const text::CalendarDay normal = detail::NormalizedDay(day, year);
    // Replaced by day zero: its text is the one with leading zeros.
    if (normal == kDayZeroDay && day != kDayZeroDay) return "01/01/1900";
    return text::IntegerText(normal.month) + "/" + text::IntegerText(normal.day) + "/" +
           TwoDigits(normal.year / 100) + TwoDigits(normal.year);
}

bool IsDayZero(std::string_view text, const shell::Clock& clock) {
    const std::string_view trimmed = text::TrimView(text);
    if (trimmed.empty()) return false;
    const int year = clock.Year();
    return detail::NormalizedDay(text::CalendarDayOf(RequiredDate(trimmed, year)), year) == kDayZeroDay;
}

bool IsDayZero(Date date, const shell::Clock& clock) {
    const text::CalendarDay day = text::CalendarDayOf(date);
    // Days of the 1900s do not hang on the clock, and most of the others are no later than it.
    if (day.year <= 1999) return day.year <= 1899 || day == kDayZeroDay;
    return day.year > clock.Year();
}

void SepDate(Date date, int& year, int& month, int& day) {
    const text::CalendarDay parts = text::CalendarDayOf(date);
    year = parts.year;
    month = parts.month;
    day = parts.day;
}

bool IsValidDateEntry(std::string_view text, const shell::Clock& clock) {
    const std::string_view trimmed = text::TrimView(text);
    if (!EndsInFourDigits(trimmed)) return false;
    const auto date = DateOf(trimmed, clock);
    return date && text::CalendarDayOf(*date) != kDayZeroDay;
}

bool IsValidDateEntry(Date date, const shell::Clock& /*clock*/) {
    // The text of a date number always passes IsDate. With a time of day it ends in letters, and with a year
    // below 1000 in a slash and three digits.
    const text::CalendarDay day = text::CalendarDayOf(date);
    return day.year >= 1000 && day != kDayZeroDay && text::SecondOfDay(date) == 0;
}

bool IsValidPriceEntry(std::string_view text) {
    return text::NumericValue(text::TrimView(text)).value_or(0) > 0;
}

}  // namespace zenvora::common
