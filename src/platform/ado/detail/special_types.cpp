#include "platform/ado/detail/special_types.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "platform/text/number.h"
#include "platform/text/utf8.h"

namespace zenvora::ado::detail {
namespace {

/// magnitude = magnitude * 10 + digit
void AppendDigit(std::array<std::uint8_t, 16>& magnitude, int digit) {
    unsigned carry = static_cast<unsigned>(digit);
    for (auto byte = magnitude.rbegin(); byte != magnitude.rend(); ++byte) {
        const unsigned sum = *byte * 10U + carry;
        *byte = static_cast<std::uint8_t>(sum & 0xFFU);
        carry = sum >> 8U;
    }
}

std::optional<std::uint8_t> HexDigit(char c) {
    if (c >= '0' && c <= '9') return static_cast<std::uint8_t>(c - '0');
    if (c >= 'A' && c <= 'F') return static_cast<std::uint8_t>(c - 'A' + 10);
    if (c >= 'a' && c <= 'f') return static_cast<std::uint8_t>(c - 'a' + 10);
    return std::nullopt;
}

}  // namespace

std::optional<jet::Numeric> DecimalOf(double value, int precision, int scale) {
    if (!std::isfinite(value)) return std::nullopt;
    const std::string digits =
        text::FormatNumber(value, scale > 0 ? "0." + std::string(static_cast<std::size_t>(scale), '0') : "0");
    jet::Numeric decimal;
    decimal.scale = static_cast<std::uint8_t>(scale);
    int count = 0;
    for (const char c : digits) {
        if (c == '-') decimal.negative = true;
        if (c < '0' || c > '9') continue;
        if (count > 0 || c != '0') ++count;
        AppendDigit(decimal.magnitude, c - '0');
    }
    return count <= precision ? std::optional{decimal} : std::nullopt;
}

double DoubleOf(const jet::Numeric& decimal) {
    double value = 0;
    for (const std::uint8_t byte : decimal.magnitude)
        value = value * 256.0 + byte;
    value /= std::pow(10.0, decimal.scale);
    return decimal.negative ? -value : value;
}

std::optional<jet::Guid> GuidOf(std::string_view text) {
    text = text::TrimView(text);
    if (text.size() == 38 && text.front() == '{' && text.back() == '}') text = text.substr(1, 36);
    if (text.size() != 36) return std::nullopt;
    jet::Guid guid;
    std::size_t at = 0;
    for (std::uint8_t& byte : guid.bytes) {
        if (at == 8 || at == 13 || at == 18 || at == 23) {
            if (text[at++] != '-') return std::nullopt;
        }
        const auto high = HexDigit(text[at]);
        const auto low = HexDigit(text[at + 1]);
        if (!high || !low) return std::nullopt;
        byte = static_cast<std::uint8_t>(*high << 4U | *low);
        at += 2;
    }
    // The file keeps the first three groups with their lowest byte first.
    std::reverse(guid.bytes.begin(), guid.bytes.begin() + 4);
    std::reverse(guid.bytes.begin() + 4, guid.bytes.begin() + 6);
    std::reverse(guid.bytes.begin() + 6, guid.bytes.begin() + 8);
    return guid;
}

bool TakesBytes(jet::ColumnType type) noexcept {
    return type == jet::ColumnType::Binary || type == jet::ColumnType::Ole ||
           type == jet::ColumnType::BigBinary;
}

}  // namespace zenvora::ado::detail
