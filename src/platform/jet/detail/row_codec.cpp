#include "platform/jet/detail/row_codec.h"

#include <cmath>
#include <limits>

#include "platform/jet/detail/text_codec.h"

namespace zenvora::jet::detail {

namespace {
constexpr const Layout& kWritten = kJet4;  // the only version that is written
/// A row must later be able to become an overflow pointer in place.
constexpr std::size_t kMinRow = 4;

template <class T>
std::optional<T> Get(std::span<const std::byte> raw) {
    if (raw.size() < sizeof(T)) return std::nullopt;
    return LoadAs<T>(raw.data());
}

Numeric DecodeNumeric(std::span<const std::byte> raw, std::uint8_t scale) {
    Numeric value;
    value.scale = scale;
    if (raw.size() < 17) return value;
    value.negative = raw[0] != std::byte{0};
    for (std::size_t word = 0; word < 4; ++word) {
        for (std::size_t i = 0; i < 4; ++i) {
            value.magnitude[4 * word + i] = static_cast<std::uint8_t>(raw[1 + 4 * word + 3 - i]);
        }
    }
    return value;
}

double NumericToDouble(const Numeric& value) {
    double result = 0;
    for (std::uint8_t byte : value.magnitude)
        result = result * 256 + byte;
    result /= std::pow(10.0, value.scale);
    return value.negative ? -result : result;
}

[[noreturn]] void Mismatch(const ColumnDefinition& column, const char* what) {
    Place place;
    place.column = column.name;
    throw Fault{fault::kTypeMismatch, "column " + column.name + " " + what, place};
}

std::uint32_t ReadField(const std::byte* at, std::size_t size) {
    return size == 1 ? U8(at) : U16(at);
}

/// Entry `index` of offsets of one byte: from the jump table, which stands between them and the count of
/// variable values, it takes the number of 256s to add.
std::size_t ShortOffset(const RowShape& row, std::size_t index) {
    const std::byte* const count = row.bytes.data() + row.maskAt - 1;
    std::size_t pages = 0;
    while (pages < row.jumps && U8(count - 1 - pages) <= index)
        ++pages;
    return U8(count - 1 - row.jumpBytes - index) + 256 * pages;
}

/// The value as a double when it is a number of some kind.
std::optional<double> AsNumber(const Value& value) {
    return std::visit(
        [](const auto& each) -> std::optional<double> {
            using T = std::decay_t<decltype(each)>;
            if constexpr (std::is_same_v<T, bool>) {
                return each ? -1.0 : 0.0;
            } else if constexpr (std::is_arithmetic_v<T>) {
                return static_cast<double>(each);
            } else if constexpr (std::is_same_v<T, Currency>) {
                return static_cast<double>(each.tenThousandths) / 10000.0;
            } else if constexpr (std::is_same_v<T, DateTime>) {
                return each.serial;
            } else if constexpr (std::is_same_v<T, Numeric>) {
                return NumericToDouble(each);
            } else {
                return std::nullopt;
            }
        },
        value);
}

Value ConformInteger(const ColumnDefinition& column, double number, double low, double high) {
    if (!(number >= low && number <= high)) {
        Place place;
        place.column = column.name;
        throw Fault{fault::kOverflow, "the number is too large for column " + column.name, place};
    }
    if (number != std::floor(number)) Mismatch(column, "takes whole numbers only");
    return static_cast<std::int32_t>(number);
}

Value ConformNumeric(const ColumnDefinition& column, double number) {
    const double scaled = std::abs(number) * std::pow(10.0, column.scale);
    if (!(scaled < std::pow(10.0, column.precision))) Mismatch(column, "has too few digits for the number");
    Numeric value;
    value.negative = number < 0;
    value.scale = column.scale;
    double rest = std::round(scaled);
    for (std::size_t i = value.magnitude.size(); i-- > 0;) {
        value.magnitude[i] = static_cast<std::uint8_t>(std::fmod(rest, 256.0));
        rest = std::floor(rest / 256.0);
    }
    return value;
}

Value ConformText(const ColumnDefinition& column, Value value) {
    if (const auto* text = std::get_if<std::string>(&value)) {
        if (column.type == ColumnType::Text &&
            Utf16Length(*text) > static_cast<std::size_t>(column.CharacterLimit())) {
            Place place;
            place.column = column.name;
            throw Fault{fault::kTooLong,
                        "\"" + *text + "\" is longer than the " + std::to_string(column.CharacterLimit()) +
                            " characters of column " + column.name,
                        place};
        }
        return value;
    }
    if (std::holds_alternative<Bytes>(value)) Mismatch(column, "takes text, not binary data");
    return ConformText(column, ValueText(value));
}
}  // namespace

RowShape ParseRow(const Pager& pager, PageNumber page, std::span<const std::byte> bytes,
                  const StoredDefinition& table) {
    const std::size_t field = pager.Format().rowFieldSize;
    RowShape row;
    row.bytes = bytes;
    row.fieldSize = static_cast<std::uint8_t>(field);
    if (bytes.size() < field + 1) throw pager.Damaged(page, "a row is too short");
    row.columnCount = ReadField(bytes.data(), field);
    const std::size_t maskSize = (row.columnCount + 7U) / 8;
    if (row.columnCount == 0 || row.columnCount > table.maxColumns || bytes.size() < field + maskSize) {
        throw pager.Damaged(page, "a row states an impossible number of columns");
    }
    row.maskAt = static_cast<std::uint32_t>(bytes.size() - maskSize);
    if (table.variableCount > 0) {
        if (row.maskAt < 2 * field) throw pager.Damaged(page, "a row is too short");
        row.variableCount = ReadField(bytes.data() + row.maskAt - field, field);
        const std::size_t jumpBytes = field == 1 ? (bytes.size() - 1) / 256 : 0;
        if (row.variableCount > table.variableCount ||
            row.maskAt < (3 + row.variableCount) * field + jumpBytes) {
            throw pager.Damaged(page, "a row states an impossible number of values");
        }
        if (jumpBytes > 0) {
            row.jumpBytes = row.jumps = static_cast<std::uint8_t>(jumpBytes);
            // The last byte of the table counts for nothing when no value lies behind its 256s.
            const std::size_t endEntryAt = row.maskAt - jumpBytes - 2 - row.variableCount;
            if (endEntryAt / 256 < jumpBytes) --row.jumps;
        }
    }
    return row;
}

std::size_t VariableOffset(const RowShape& row, std::size_t index) {
    if (row.fieldSize == 1) return ShortOffset(row, index);
    return U16(row.bytes.data() + row.maskAt - 4 - 2 * index);
}

std::optional<std::span<const std::byte>> RawField(const RowShape& row, const ColumnDefinition& column) {
    if (column.number >= row.columnCount) return std::nullopt;
    const std::byte* const bytes = row.bytes.data();
    if ((U8(bytes + row.maskAt + column.number / 8) >> (column.number % 8) & 1U) == 0) return std::nullopt;
    if (column.type == ColumnType::Boolean) return std::span<const std::byte>{};
    if (column.fixedLength) {
        const std::size_t begin = row.fieldSize + std::size_t{column.fixedOffset};
        if (begin + column.byteLength > row.maskAt) return std::nullopt;
        return row.bytes.subspan(begin, column.byteLength);
    }
    if (column.variableIndex >= row.variableCount) return std::nullopt;
    const std::size_t begin = VariableOffset(row, column.variableIndex);
    const std::size_t end = VariableOffset(row, column.variableIndex + std::size_t{1});
    if (begin > end || end > row.maskAt || begin < row.fieldSize) return std::nullopt;
    return row.bytes.subspan(begin, end - begin);
}

double DecodeNumber(const ColumnDefinition& column, std::span<const std::byte> raw) {
    switch (column.type) {
        case ColumnType::Boolean:
            return -1;
        case ColumnType::Byte:
            return raw.empty() ? 0 : U8(raw.data());
        case ColumnType::Integer:
            return Get<std::int16_t>(raw).value_or(0);
        case ColumnType::Long:
            return Get<std::int32_t>(raw).value_or(0);
        case ColumnType::Currency:
            return static_cast<double>(Get<std::int64_t>(raw).value_or(0)) / 10000.0;
        case ColumnType::Single:
            return Get<float>(raw).value_or(0);
        case ColumnType::Double:
        case ColumnType::DateTime:
            return Get<double>(raw).value_or(0);
        case ColumnType::Numeric:
            return NumericToDouble(DecodeNumeric(raw, column.scale));
        default:
            return 0;
    }
}

void DecodeTextField(const ColumnDefinition& column, std::span<const std::byte> raw, std::string& out) {
    const std::size_t begin = out.size();
    DecodeText(raw, column.codePage, out);
    if (column.fixedLength) {
        while (out.size() > begin && out.back() == ' ')
            out.pop_back();
    }
}

Value DecodeField(const ColumnDefinition& column, std::span<const std::byte> raw) {
    switch (column.type) {
        case ColumnType::Boolean:
            return true;
        case ColumnType::Byte:
        case ColumnType::Integer:
        case ColumnType::Long:
            return static_cast<std::int32_t>(DecodeNumber(column, raw));
        case ColumnType::Currency:
            return Currency{Get<std::int64_t>(raw).value_or(0)};
        case ColumnType::Single:
            return Get<float>(raw).value_or(0.0F);
        case ColumnType::Double:
            return Get<double>(raw).value_or(0.0);
        case ColumnType::DateTime:
            return DateTime{Get<double>(raw).value_or(0.0)};
        case ColumnType::Text: {
            std::string text;
            DecodeTextField(column, raw, text);
            return text;
        }
        case ColumnType::Guid: {
            Guid guid;
            if (raw.size() >= guid.bytes.size())
                std::memcpy(guid.bytes.data(), raw.data(), guid.bytes.size());
            return guid;
        }
        case ColumnType::Numeric:
            return DecodeNumeric(raw, column.scale);
        default:
            return Bytes(raw.begin(), raw.end());
    }
}

Value ConformValue(const ColumnDefinition& column, Value value) {
    if (IsNull(value)) return column.type == ColumnType::Boolean ? Value{false} : value;
    switch (column.type) {
        case ColumnType::Text:
        case ColumnType::Memo:
            return ConformText(column, std::move(value));
        case ColumnType::Binary:
        case ColumnType::Ole:
            if (!std::holds_alternative<Bytes>(value)) Mismatch(column, "takes binary data only");
            if (column.type == ColumnType::Binary && std::get<Bytes>(value).size() > column.byteLength) {
                Place place;
                place.column = column.name;
                throw Fault{fault::kTooLong, "the data are too long for column " + column.name, place};
            }
            return value;
        case ColumnType::Guid:
            if (!std::holds_alternative<Guid>(value)) Mismatch(column, "takes identifiers only");
            return value;
        case ColumnType::BigBinary:
        case ColumnType::Complex:
            Mismatch(column, "has a type that cannot be written");
        default:
            break;
    }
    if (column.type == ColumnType::Currency && std::holds_alternative<Currency>(value)) return value;
    if (column.type == ColumnType::Numeric && std::holds_alternative<Numeric>(value) &&
        std::get<Numeric>(value).scale == column.scale) {
        return value;
    }
    const std::optional<double> number = AsNumber(value);
    if (!number) Mismatch(column, "takes a number, not a text");
    switch (column.type) {
        case ColumnType::Boolean:
            return *number != 0;
        case ColumnType::Byte:
            return ConformInteger(column, *number, 0, 255);
        case ColumnType::Integer:
            return ConformInteger(column, *number, -32768, 32767);
        case ColumnType::Long:
            return ConformInteger(column, *number, -2147483648.0, 2147483647.0);
        case ColumnType::Currency: {
            const double scaled = *number * 10000.0;
            if (!(std::abs(scaled) < 9.2e18)) Mismatch(column, "cannot hold an amount so large");
            return Currency{static_cast<std::int64_t>(std::llround(scaled))};
        }
        case ColumnType::Single:
            if (std::abs(*number) > static_cast<double>(std::numeric_limits<float>::max())) {
                Mismatch(column, "cannot hold a number so large");
            }
            return static_cast<float>(*number);
        case ColumnType::Double:
            return *number == 0 ? 0.0 : *number;  // no minus zero in the file
        case ColumnType::DateTime: {
            if (!(*number > text::kFirstDate - 1 && *number < text::kLastDate + 1)) {
                Mismatch(column, "takes dates from 1/1/100 to 12/31/9999");
            }
            return DateTime{*number == 0 ? 0.0 : *number};
        }
        default:
            return ConformNumeric(column, *number);
    }
}

void RowBuilder::Begin(const StoredDefinition& table) {
    table_ = &table;
    fixed_.assign(2 + table.fixedAreaEnd, std::byte{0});
    PutU16(fixed_.data(), table.maxColumns);
    variable_.clear();
    pieces_.assign(table.variableCount, Piece{});
    mask_.assign((table.maxColumns + 7U) / 8, std::byte{0});
}

void RowBuilder::PutRaw(const ColumnDefinition& column, std::span<const std::byte> raw) {
    if (!column.fixedLength) {
        pieces_[column.variableIndex] = {variable_.size(), raw.size()};
        variable_.insert(variable_.end(), raw.begin(), raw.end());
    } else if (column.type != ColumnType::Boolean && !raw.empty()) {
        std::memcpy(fixed_.data() + 2 + column.fixedOffset, raw.data(),
                    std::min<std::size_t>(raw.size(), column.byteLength));
    }
    mask_[column.number / 8] |= static_cast<std::byte>(1U << (column.number % 8));
}

void RowBuilder::Put(const ColumnDefinition& column, const Value& value) {
    if (IsNull(value)) return;
    if (column.type == ColumnType::Boolean) {
        if (std::get<bool>(value))
            mask_[column.number / 8] |= static_cast<std::byte>(1U << (column.number % 8));
        return;
    }
    std::byte small[17] = {};
    std::span<const std::byte> raw;
    std::vector<std::byte> text;
    switch (column.type) {
        case ColumnType::Byte:
            PutU8(small, static_cast<unsigned>(std::get<std::int32_t>(value))), raw = {small, 1};
            break;
        case ColumnType::Integer:
            StoreAs(small, static_cast<std::int16_t>(std::get<std::int32_t>(value)));
            raw = {small, 2};
            break;
        case ColumnType::Long:
            StoreAs(small, std::get<std::int32_t>(value)), raw = {small, 4};
            break;
        case ColumnType::Currency:
            StoreAs(small, std::get<Currency>(value).tenThousandths), raw = {small, 8};
            break;
        case ColumnType::Single:
            StoreAs(small, std::get<float>(value)), raw = {small, 4};
            break;
        case ColumnType::Double:
            StoreAs(small, std::get<double>(value)), raw = {small, 8};
            break;
        case ColumnType::DateTime:
            StoreAs(small, std::get<DateTime>(value).serial), raw = {small, 8};
            break;
        case ColumnType::Guid:
            std::memcpy(small, std::get<Guid>(value).bytes.data(), 16);
            raw = {small, 16};
            break;
        case ColumnType::Numeric: {
            const Numeric& numeric = std::get<Numeric>(value);
            PutU8(small, numeric.negative ? 0x80U : 0U);
            for (std::size_t word = 0; word < 4; ++word) {
                for (std::size_t i = 0; i < 4; ++i)
                    PutU8(small + 1 + 4 * word + 3 - i, numeric.magnitude[4 * word + i]);
            }
            raw = {small, 17};
            break;
        }
        case ColumnType::Text: {
            const std::string& content = std::get<std::string>(value);
            if (!column.fixedLength) {
                // Straight into the variable data: the usual case of the usual type.
                const std::size_t begin = variable_.size();
                EncodeText(content, column.compressed, variable_);
                pieces_[column.variableIndex] = {begin, variable_.size() - begin};
                mask_[column.number / 8] |= static_cast<std::byte>(1U << (column.number % 8));
                return;
            }
            EncodeText(content, false, text);
            while (text.size() < column.byteLength) {
                text.push_back(std::byte{' '});
                text.push_back(std::byte{0});
            }
            raw = text;
            break;
        }
        default: {
            const Bytes& bytes = std::get<Bytes>(value);
            raw = bytes;
            break;
        }
    }
    PutRaw(column, raw);
}

std::span<const std::byte> RowBuilder::Finish() {
    row_.assign(fixed_.begin(), fixed_.end());
    const std::size_t count = pieces_.size();
    if (count > 0) {
        starts_.clear();
        for (const Piece& piece : pieces_) {
            starts_.push_back(row_.size());
            row_.insert(row_.end(), variable_.begin() + static_cast<std::ptrdiff_t>(piece.begin),
                        variable_.begin() + static_cast<std::ptrdiff_t>(piece.begin + piece.size));
        }
        const std::size_t trailer = row_.size();
        row_.resize(trailer + 2 + 2 * count + 2);
        PutU16(row_.data() + trailer, trailer);
        for (std::size_t i = 0; i < count; ++i)
            PutU16(row_.data() + trailer + 2 + 2 * i, starts_[count - 1 - i]);
        PutU16(row_.data() + trailer + 2 + 2 * count, count);
    }
    row_.insert(row_.end(), mask_.begin(), mask_.end());
    while (row_.size() < kMinRow)
        row_.insert(row_.begin() + 2, std::byte{0});
    if (row_.size() > kWritten.maxRow) {
        throw Fault{fault::kRecordTooLarge, "the record is too large: a row may take " +
                                                std::to_string(kWritten.maxRow) + " bytes, this one takes " +
                                                std::to_string(row_.size())};
    }
    return row_;
}

}  // namespace zenvora::jet::detail
