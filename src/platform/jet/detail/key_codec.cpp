#include "platform/jet/detail/key_codec.h"

#include <bit>
#include <cstring>

#include "platform/fault.h"
#include "platform/jet/detail/general_order.h"
#include "platform/jet/detail/general_order_97.h"

namespace zenvora::jet::detail {

namespace {

template <class Unsigned>
void AppendBigEndian(Unsigned bits, bool inverted, std::string& key) {
    if (inverted) bits = static_cast<Unsigned>(~bits);
    for (int shift = static_cast<int>(sizeof(Unsigned)) * 8 - 8; shift >= 0; shift -= 8) {
        key.push_back(static_cast<char>(bits >> shift & 0xFF));
    }
}

template <class Unsigned>
void AppendSigned(Unsigned bits, bool ascending, std::string& key) {
    const auto top = static_cast<Unsigned>(Unsigned{1} << (sizeof(Unsigned) * 8 - 1));
    AppendBigEndian(static_cast<Unsigned>(bits ^ top), !ascending, key);
}

/// IEEE numbers in the order of their values: the sign bit flipped, negative ones inverted whole.
template <class Unsigned>
void AppendFloat(Unsigned bits, bool ascending, std::string& key) {
    const auto top = static_cast<Unsigned>(Unsigned{1} << (sizeof(Unsigned) * 8 - 1));
    if (bits == top) bits = 0;  // minus zero
    bits = (bits & top) != 0 ? static_cast<Unsigned>(~bits) : static_cast<Unsigned>(bits | top);
    AppendBigEndian(bits, !ascending, key);
}

void AppendBinary(const std::byte* data, std::size_t size, bool ascending, std::string& key) {
    const auto put = [&](unsigned byte, bool invert) {
        key.push_back(static_cast<char>(invert ? ~byte : byte));
    };
    while (size > 8) {
        for (int i = 0; i < 8; ++i)
            put(static_cast<unsigned>(data[i]), !ascending);
        put(9, false);  // the mark of a group that goes on is never inverted
        data += 8;
        size -= 8;
    }
    if (size == 0) return;
    for (std::size_t i = 0; i < 8; ++i)
        put(i < size ? static_cast<unsigned>(data[i]) : 0U, !ascending);
    put(static_cast<unsigned>(size), !ascending);
}

void AppendNumeric(const Numeric& value, bool ascending, std::string& key) {
    // The rule of this version, with its old mistake for descending columns.
    const bool invert = value.negative == ascending;
    key.push_back(value.negative ? '\0' : '\xFF');
    for (std::uint8_t byte : value.magnitude)
        key.push_back(static_cast<char>(invert ? ~byte : byte));
}

std::int64_t WholeNumber(const Value& value) {
    if (const auto* number = std::get_if<std::int32_t>(&value)) return *number;
    throw Fault{fault::kTypeMismatch, "an index column was given a value of another type"};
}

}  // namespace

bool CanEncodeKey(const ColumnDefinition& column) noexcept {
    switch (column.type) {
        case ColumnType::Text:
        case ColumnType::Memo:
            return column.sortOrder == kGeneralOrder && column.sortVersion == 0 &&
                   (column.codePage == 0 || column.codePage == kWindows1252);
        case ColumnType::Ole:
        case ColumnType::BigBinary:
        case ColumnType::Complex:
            return false;
        default:
            return true;
    }
}

void AppendKey(const ColumnDefinition& column, const Value& value, bool ascending, std::string& key) {
    if (column.type == ColumnType::Boolean) {
        const bool on = std::holds_alternative<bool>(value) && std::get<bool>(value);
        key.push_back(ascending ? '\x7F' : '\x80');
        key.push_back(on == ascending ? '\0' : '\xFF');
        return;
    }
    if (IsNull(value)) {
        key.push_back(ascending ? '\0' : '\xFF');
        return;
    }
    key.push_back(ascending ? '\x7F' : '\x80');
    switch (column.type) {
        case ColumnType::Byte:
            AppendBigEndian(static_cast<std::uint8_t>(WholeNumber(value)), !ascending, key);
            break;
        case ColumnType::Integer:
            AppendSigned(static_cast<std::uint16_t>(WholeNumber(value)), ascending, key);
            break;
        case ColumnType::Long:
            AppendSigned(static_cast<std::uint32_t>(WholeNumber(value)), ascending, key);
            break;
        case ColumnType::Currency:
            AppendSigned(static_cast<std::uint64_t>(std::get<Currency>(value).tenThousandths), ascending,
                         key);
            break;
        case ColumnType::Single:
            AppendFloat(std::bit_cast<std::uint32_t>(std::get<float>(value)), ascending, key);
            break;
        case ColumnType::Double:
            AppendFloat(std::bit_cast<std::uint64_t>(std::get<double>(value)), ascending, key);
            break;
        case ColumnType::DateTime:
            AppendFloat(std::bit_cast<std::uint64_t>(std::get<DateTime>(value).serial), ascending, key);
            break;
        case ColumnType::Binary: {
            const Bytes& bytes = std::get<Bytes>(value);
            AppendBinary(bytes.data(), bytes.size(), ascending, key);
            break;
        }
        case ColumnType::Guid: {
            // In the order in which a GUID is printed: its first three groups turned round.
            static constexpr int kPrinted[16] = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
            std::byte printed[16];
            for (int i = 0; i < 16; ++i) {
                printed[i] = static_cast<std::byte>(
                    std::get<Guid>(value).bytes[static_cast<std::size_t>(kPrinted[i])]);
            }
            AppendBinary(printed, sizeof printed, ascending, key);
            break;
        }
        case ColumnType::Numeric:
            AppendNumeric(std::get<Numeric>(value), ascending, key);
            break;
        case ColumnType::Text:
        case ColumnType::Memo: {
            const std::string& text = std::get<std::string>(value);
            const char32_t unknown = column.codePage == 0 ? AppendGeneralKey(text, ascending, key)
                                                          : AppendGeneral97Key(text, ascending, key);
            if (unknown != 0) {
                static constexpr char kDigits[] = "0123456789ABCDEF";
                std::string code;
                for (int shift = unknown > 0xFFFF ? 20 : 12; shift >= 0; shift -= 4)
                    code += kDigits[unknown >> shift & 0xF];
                Place place;
                place.column = column.name;
                throw Fault{fault::kUnsupported,
                            "the character U+" + code + " in \"" + text +
                                "\" cannot be sorted in the index of column " + column.name +
                                ": write it otherwise",
                            place};
            }
            break;
        }
        default:
            throw Fault{fault::kUnsupported, "an index on column " + column.name + " cannot be kept"};
    }
}

void AppendRowId(RowId row, std::string& entry) {
    entry.push_back(static_cast<char>(row.page >> 16 & 0xFF));
    entry.push_back(static_cast<char>(row.page >> 8 & 0xFF));
    entry.push_back(static_cast<char>(row.page & 0xFF));
    entry.push_back(static_cast<char>(row.slot));
}

RowId RowIdOf(std::string_view entry) noexcept {
    const auto* bytes = reinterpret_cast<const unsigned char*>(entry.data() + entry.size() - 4);
    return {static_cast<std::uint32_t>(bytes[0]) << 16 | static_cast<std::uint32_t>(bytes[1]) << 8 | bytes[2],
            bytes[3]};
}

}  // namespace zenvora::jet::detail
