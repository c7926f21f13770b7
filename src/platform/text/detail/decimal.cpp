#include "platform/text/detail/decimal.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string_view>

namespace zenvora::text::detail {
namespace {

void DropTrailingZeros(Decimal& decimal) noexcept {
    while (decimal.count > 0 && decimal.digits[static_cast<std::size_t>(decimal.count - 1)] == '0') {
        --decimal.count;
    }
}

/// Takes "d.ddde[+-]xx" apart.
Decimal FromScientific(std::string_view text) noexcept {
    Decimal out;
    const std::size_t mark = text.find('e');
    for (const char c : text.substr(0, mark)) {
        if (c != '.') out.digits[static_cast<std::size_t>(out.count++)] = c;
    }
    int exponent = 0;
    for (const char c : text.substr(mark + 2)) {
        exponent = exponent * 10 + (c - '0');
    }
    out.pointAt = (text[mark + 1] == '-' ? -exponent : exponent) + 1;
    DropTrailingZeros(out);
    return out;
}

/// True when the exact value of the double is `digits` significant digits long: then a last digit 5 is a true
/// half.
bool IsExactAt(double value, int digits) {
    std::array<char, 800> buffer{};  // the longest double has 767 significant digits
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                   std::chars_format::scientific, 767);
    const std::string_view text(buffer.data(), static_cast<std::size_t>(end.ptr - buffer.data()));
    const std::string_view behind =
        text.substr(static_cast<std::size_t>(digits) + 1);  // one more for the point
    return behind.substr(0, behind.find('e')).find_first_not_of('0') == std::string_view::npos;
}

Decimal OfInteger(std::uint64_t value) noexcept {
    Decimal out;
    const auto end = std::to_chars(out.digits.data(), out.digits.data() + out.digits.size(), value);
    out.count = static_cast<int>(end.ptr - out.digits.data());
    out.pointAt = out.count;
    DropTrailingZeros(out);
    return out;
}

/// `value` is above zero.
Decimal OfPositive(double value, int significant) {
    std::array<char, 32> buffer{};
    auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::scientific);
    const auto text = [&] {
        return std::string_view(buffer.data(), static_cast<std::size_t>(end.ptr - buffer.data()));
    };
    Decimal shortest = FromScientific(text());
    // Subnormal numbers have so few bits that their shortest form says less than the digits asked for.
    if (shortest.count <= significant && value >= std::numeric_limits<double>::min()) return shortest;
    // A true half ends in 5 one digit further on, and is then its own shortest form.
    const bool maybeHalf =
        shortest.count == significant + 1 && shortest.digits[static_cast<std::size_t>(significant)] == '5';
    if (maybeHalf && IsExactAt(value, significant + 1)) {
        RoundTo(shortest, significant);
        return shortest;
    }
    end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::scientific,
                        significant - 1);
    return FromScientific(text());
}

}  // namespace

Decimal ToDecimal(double value, int significant) {
    Decimal out;
    if (value == 0) return out;
    const bool negative = value < 0;
    const double magnitude = negative ? -value : value;
    // Prices and counts: whole numbers that no rounding can touch.
    const bool plain = significant == 15 && magnitude < 1e15 && std::trunc(magnitude) == magnitude;
    out = plain ? OfInteger(static_cast<std::uint64_t>(magnitude)) : OfPositive(magnitude, significant);
    out.negative = negative;
    return out;
}

void RoundTo(Decimal& decimal, int keep) noexcept {
    if (keep >= decimal.count) return;
    if (keep < 0) {
        decimal.count = 0;
        return;
    }
    const bool up = decimal.digits[static_cast<std::size_t>(keep)] >= '5';
    decimal.count = keep;
    if (up) {
        int at = keep - 1;
        while (at >= 0 && decimal.digits[static_cast<std::size_t>(at)] == '9') {
            --at;
        }
        if (at < 0) {
            decimal.digits[0] = '1';
            decimal.count = 1;
            ++decimal.pointAt;
        } else {
            ++decimal.digits[static_cast<std::size_t>(at)];
            decimal.count = at + 1;
        }
    }
    DropTrailingZeros(decimal);
}

}  // namespace zenvora::text::detail
