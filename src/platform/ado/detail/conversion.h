#pragma once

#include <string>
#include <string_view>

#include "platform/ado/detail/statement.h"
#include "platform/jet/table_definition.h"
#include "platform/jet/value.h"
#include "platform/shell/clock.h"

/// How a value gets the type of its column.
///
/// Into a text column: any value, as text; blanks at the end of a CHAR(n) text are its padding and fall away.
/// Into a number column: a number, a numeric text, a date (its number); whole-number columns round halves to
/// even. Into a date column: a date, a date text (a missing year is the clock's), a number (a date number).
/// Into a Boolean column: a number (0 is false), "True", "False", "Yes", "No"; Null is false. Null goes into
/// every other column as Null. Faults, each with the column's name in its place: 13 (does not convert: an
/// empty text is no number and no date), 6 (a number beyond the column's range), 3163 (a text longer than the
/// column).
namespace zenvora::ado::detail {

/// The literal as a value of the column, written into `out` so that a text's memory is used again.
void ConvertLiteral(const Literal& literal, const jet::ColumnDefinition& column, const shell::Clock& clock,
                    jet::Value& out);
[[nodiscard]] jet::Value ConvertLiteral(const Literal& literal, const jet::ColumnDefinition& column,
                                        const shell::Clock& clock);

[[nodiscard]] jet::Value ConvertValue(const jet::Value& value, const jet::ColumnDefinition& column,
                                      const shell::Clock& clock);

/// A value of the column as the expression that the file keeps for its default: `0`, `"3"`, `#1/1/1900#`.
[[nodiscard]] std::string DefaultExpression(const jet::Value& value);

/// The number of a value: numeric, Boolean (-1 and 0) and date values; 0 for all others.
[[nodiscard]] double NumberOf(const jet::Value& value);

}  // namespace zenvora::ado::detail
