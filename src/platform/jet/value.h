#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

/// The values that a column of an .mdb table can hold.
namespace zenvora::jet {

/// Column types by their codes in the file.
enum class ColumnType : std::uint8_t {
    Boolean = 0x01,
    Byte = 0x02,
    Integer = 0x03,  ///< 16 bits, signed
    Long = 0x04,     ///< 32 bits, signed
    Currency = 0x05,
    Single = 0x06,
    Double = 0x07,
    DateTime = 0x08,
    Binary = 0x09,
    Text = 0x0A,  ///< up to 255 characters
    Ole = 0x0B,
    Memo = 0x0C,
    Guid = 0x0F,
    Numeric = 0x10,
    BigBinary = 0x11,
    Complex = 0x12,  ///< Access 2007 and later; never written
};

struct Null {
    friend bool operator==(Null, Null) = default;
};
/// An amount in ten-thousandths.
struct Currency {
    std::int64_t tenThousandths = 0;
    friend bool operator==(Currency, Currency) = default;
};
/// Days since 12/30/1899, see platform/text/date.h.
struct DateTime {
    double serial = 0;
    friend bool operator==(DateTime, DateTime) = default;
};
struct Guid {
    std::array<std::uint8_t, 16> bytes{};  ///< as in the file: three little-endian groups, then eight bytes
    friend bool operator==(const Guid&, const Guid&) = default;
};
/// A Decimal: magnitude / 10^scale, negative or not.
struct Numeric {
    bool negative = false;
    std::array<std::uint8_t, 16> magnitude{};  ///< big-endian
    std::uint8_t scale = 0;
    friend bool operator==(const Numeric&, const Numeric&) = default;
};
using Bytes = std::vector<std::byte>;

/// Byte, Integer and Long are std::int32_t; Text and Memo are UTF-8 std::string; Binary and OLE are Bytes.
using Value = std::variant<Null, bool, std::int32_t, Currency, float, double, DateTime, std::string, Bytes,
                           Guid, Numeric>;

[[nodiscard]] inline bool IsNull(const Value& value) noexcept {
    return std::holds_alternative<Null>(value);
}

/// The value in plain text: numbers without grouping, a date as "M/D/YYYY" with its time if it has one,
/// Boolean as "True" or "False", binary as hexadecimal digits, Null as the empty text.
[[nodiscard]] std::string ValueText(const Value& value);

}  // namespace zenvora::jet
