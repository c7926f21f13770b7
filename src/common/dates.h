#pragma once

#include <string>
#include <string_view>

#include "platform/shell/clock.h"
#include "platform/text/date.h"

/// The date and price rules of the whole program.
namespace zenvora::common {

using text::Date;

/// 01/01/1900, the stored form of a missing date.
inline constexpr Date kDayZero = 2.0;

/// True when the trimmed text has at least six characters, is a date, and does not normalize to "12/30/1899".
[[nodiscard]] bool IsDate(std::string_view text, const shell::Clock& clock);
/// The date of a text, day zero when IsDate says no. The text is upper-cased and trimmed in place.
[[nodiscard]] Date ConvDate(std::string& text, const shell::Clock& clock);
[[nodiscard]] Date ConvDate(std::string_view text, const shell::Clock& clock);
/// The text's date with a four-digit year and without leading zeros, by the table of years in the source:
/// years out of 1900 to the clock's year give "01/01/1900". The empty text gives itself. Fault 13: a text
/// that is no date.
[[nodiscard]] std::string NormalizeDateText(std::string_view text, const shell::Clock& clock);
/// True when NormalizeDateText gives 01/01/1900. Fault 13: as there.
[[nodiscard]] bool IsDayZero(std::string_view text, const shell::Clock& clock);
/// The same for a date number, without a text between.
[[nodiscard]] bool IsDayZero(Date date, const shell::Clock& clock);
/// Year, month and day of a date.
void SepDate(Date date, int& year, int& month, int& day);
/// True when IsDate holds, the last four characters are digits, and the date is not 01/01/1900.
[[nodiscard]] bool IsValidDateEntry(std::string_view text, const shell::Clock& clock);
/// IsValidDateEntry of the text form of a stored date.
[[nodiscard]] bool IsValidDateEntry(Date date, const shell::Clock& clock);
/// True when the trimmed text is numeric and above 0.
[[nodiscard]] bool IsValidPriceEntry(std::string_view text);

}  // namespace zenvora::common
