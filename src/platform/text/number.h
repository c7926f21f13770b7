#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Numbers and their texts, US English whatever the machine's locale.
namespace zenvora::text {

/// The value of a numeric text, or nothing.
///
/// Numeric: optional blanks, a sign (leading or trailing), "$", digits with optional commas, one point, an
/// optional exponent (e or d), or all of it in parentheses (negative); "&H" and "&O" literals. Not numeric:
/// the empty text, a date, two signs, letters. A value too large for a double is not numeric. Faults: none.
[[nodiscard]] std::optional<double> NumericValue(std::string_view text);
[[nodiscard]] bool IsNumeric(std::string_view text);

/// The leading number of a text: blanks are skipped, reading stops at the first character that cannot belong
/// to a number (commas and "$" stop it); 0 when there is none. Faults: none.
[[nodiscard]] double LeadingNumber(std::string_view text);

/// A number in plain digits, without grouping, at most 15 significant digits, no trailing zeros, no leading
/// "+". Exponent form ("1E+15") from 1E+15 up and for very small values, as the old platform writes it. 0 is
/// "0".
[[nodiscard]] std::string DoubleText(double value);
/// The same for single precision: at most 7 significant digits, exponent form from 1E+07 up.
[[nodiscard]] std::string SingleText(float value);
[[nodiscard]] std::string IntegerText(std::int64_t value);

/// Nearest whole number, halves to even.
[[nodiscard]] double RoundHalfEven(double value) noexcept;

/// A value formatted by a pattern of "0", "#", "," and "." ("0", "0.00", "#########.#", "##,###,###.#0",
/// "#,##0",
/// "###,###,###").
///
/// Rounds half away from zero on the decimal value at 15 significant digits (10.45 with one decimal
/// is 10.5, 1.005 with two is 1.01). "0" prints a digit always, "#" only where there is one: 0.97 by
/// "##,###,###.#0" is ".97", 0 by
/// "#########.#" is ".". A "," among the integer digits groups by thousands; a negative value has "-" in
/// front; a value that rounds to zero has no sign. Integer digits beyond the pattern are always printed.
/// Faults: none; a NaN or infinity gives its plain name.
[[nodiscard]] std::string FormatNumber(double value, std::string_view pattern);

}  // namespace zenvora::text
