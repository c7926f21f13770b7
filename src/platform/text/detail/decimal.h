#pragma once

#include <array>

/// The decimal value that all texts of a number are made from.
namespace zenvora::text::detail {

/// 0.d1d2d3... times 10^pointAt, without trailing zeros; no digits at all for zero.
struct Decimal {
    std::array<char, 17> digits{};  ///< '0' to '9'
    int count = 0;
    int pointAt = 0;  ///< digits in front of the decimal point; negative: zeros behind it first
    bool negative = false;
};

/// The value at `significant` (1 to 15) significant digits, halves away from zero. `value` must be finite.
[[nodiscard]] Decimal ToDecimal(double value, int significant);

/// Keeps `keep` digits (0 or less: none), halves away from zero on the digits as they stand.
void RoundTo(Decimal& decimal, int keep) noexcept;

}  // namespace zenvora::text::detail
