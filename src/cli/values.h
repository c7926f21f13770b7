#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "platform/jet/value.h"
#include "platform/text/date.h"

/// The values of a Databook in the program's output forms, and dates as its options take them.
namespace zenvora::cli {

using Json = nlohmann::ordered_json;

/// A date as MM/DD/YYYY (one digit will do for month and day) or YYYY-MM-DD; nothing for any other text and
/// for a day that the calendar lacks.
[[nodiscard]] std::optional<text::Date> ParseDate(std::string_view text);
/// "2010-06-30", and "2010-06-30T14:05:00" when there is a time of day.
[[nodiscard]] std::string IsoDate(text::Date date);

/// Null is null, a date is IsoDate, a whole number has no decimal point, binary is hexadecimal text.
[[nodiscard]] Json ToJson(const jet::Value& value);
/// The same values as plain text; Null is empty.
[[nodiscard]] std::string ToCsv(const jet::Value& value);
/// As the program's grid shows it: M/D/YYYY, and nothing for a missing date or price (day zero, 0).
[[nodiscard]] std::string ToGridText(const jet::Value& value);

/// "Effective Appraisal Date 6/30/2010: 104 of 120 records are valid"; without `valid` nothing was checked.
[[nodiscard]] std::string CountLine(text::Date effectiveDate, long records, std::optional<long> valid);

/// JSON text without line breaks. What is no valid UTF-8 in a damaged Databook becomes U+FFFD.
[[nodiscard]] std::string Compact(const Json& json);

}  // namespace zenvora::cli
