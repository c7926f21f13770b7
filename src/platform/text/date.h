#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Dates as the old platform counts them.
namespace zenvora::text {

/// A date number: days since 12/30/1899 as a double; the fraction is the time of day. For a negative number
/// the integer part counts backwards and the fraction still forwards (-1.25 is 12/29/1899 06:00). Legal
/// range: 1/1/100 (-657434) to 12/31/9999 (2958465).
using Date = double;

inline constexpr Date kFirstDate = -657434.0;
inline constexpr Date kLastDate = 2958465.0;

struct CalendarDay {
    int year = 0;   ///< 100 to 9999
    int month = 0;  ///< 1 to 12
    int day = 0;    ///< 1 to 31
    friend bool operator==(const CalendarDay&, const CalendarDay&) = default;
};

/// The date number of a day of the proleptic Gregorian calendar, or nothing when there is no such day or it
/// lies outside the legal range.
[[nodiscard]] std::optional<Date> DayNumber(int year, int month, int day) noexcept;
/// The calendar day of a date number; the time of day is ignored. Outside the legal range: the nearest legal
/// day.
[[nodiscard]] CalendarDay CalendarDayOf(Date date) noexcept;
/// The whole-day part: truncated toward zero.
[[nodiscard]] Date DayPart(Date date) noexcept;
/// Seconds since midnight, 0 to 86399, rounded to the nearest second; a time that rounds up to midnight gives
/// 86399.
[[nodiscard]] int SecondOfDay(Date date) noexcept;
/// Number of the weekday, 1 = Sunday to 7 = Saturday.
[[nodiscard]] int Weekday(Date date) noexcept;

/// Text to date, the way the old platform converts it in a US English set-up.
///
/// Order month-day-year; day-month-year when the first number is above 12; year first when it has four
/// digits; English month names and abbreviations in any place; separators "/", "-", ".", "," and blank; an
/// optional time part
/// ("9:19:00 AM", "15:26"), alone or behind the date; a missing year is `currentYear`; two-digit years 00-29
/// are 2000s, 30-99 are 1900s; range 1/1/100 to 12/31/9999; a year with a leading zero ("0315") is no year. A
/// bare number is no date, nor is the empty text. A time alone is a fraction of day 0. Faults: none; no date
/// gives nothing.
[[nodiscard]] std::optional<Date> TextToDate(std::string_view text, int currentYear);

/// Short date "M/D/YYYY", followed by a blank and "h:mm:ss AM" when there is a time of day. Day 0
/// (12/30/1899) without a time reads "12/30/1899".
[[nodiscard]] std::string DateText(Date date);

/// Short date by a pattern of "mm" / "m", "dd" / "d", "yyyy" / "yy", "hh", "nn", "ss" (case does not matter)
/// and other characters as they stand: "mm/dd/yyyy", "yyyy-mm-dd".
[[nodiscard]] std::string FormatDate(Date date, std::string_view pattern);

}  // namespace zenvora::text
