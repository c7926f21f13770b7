#include "platform/ado/detail/conversion.h"

#include <cmath>
#include <limits>
#include <optional>

#include "platform/ado/detail/special_types.h"
#include "platform/fault.h"
#include "platform/text/date.h"
#include "platform/text/number.h"
#include "platform/text/utf8.h"

namespace zenvora::ado::detail {
namespace {

using jet::ColumnType;

constexpr std::size_t kLongestQuote = 40;

std::string Quote(std::string_view value) {
    std::string quoted = "\"" + text::Left(value, kLongestQuote);
    return quoted + (text::Length(value) > kLongestQuote ? "...\"" : "\"");
}

Place At(const jet::ColumnDefinition& column) {
    Place place;
    place.column = column.name;
    return place;
}

[[noreturn]] void Mismatch(std::string_view value, std::string_view isNo,
                           const jet::ColumnDefinition& column) {
    throw Fault{fault::kTypeMismatch,
                Quote(value) + " is no " + std::string(isNo) + " and does not go into the column " +
                    column.name + ".",
                At(column)};
}

[[noreturn]] void Overflow(double value, const jet::ColumnDefinition& column) {
    throw Fault{
        fault::kOverflow,
        "The number " + text::DoubleText(value) + " is beyond the range of the column " + column.name + ".",
        At(column)};
}

void SetText(jet::Value& out, std::string_view value, const jet::ColumnDefinition& column) {
    if (column.fixedLength) {
        while (value.ends_with(' '))
            value.remove_suffix(1);
    }
    const auto limit = static_cast<std::size_t>(column.CharacterLimit());
    if (column.type == ColumnType::Text && value.size() > limit && text::Length(value) > limit) {
        throw Fault{fault::kTooLong,
                    "The text " + Quote(value) + " has " + std::to_string(text::Length(value)) +
                        " characters; the column " + column.name + " holds " + std::to_string(limit) + ".",
                    At(column)};
    }
    if (auto* const kept = std::get_if<std::string>(&out)) {
        kept->assign(value);
    } else {
        out = std::string(value);
    }
}

jet::Value Whole(double value, double least, double most, const jet::ColumnDefinition& column) {
    const double rounded = text::RoundHalfEven(value);
    if (!(rounded >= least && rounded <= most)) Overflow(value, column);
    return static_cast<std::int32_t>(rounded);
}

jet::Value Amount(double value, const jet::ColumnDefinition& column) {
    constexpr double kLimit = 9.2e18;  // just inside of what 64 bits hold
    const double scaled = text::RoundHalfEven(value * 10000.0);
    if (!(std::fabs(scaled) < kLimit)) Overflow(value, column);
    return jet::Currency{static_cast<std::int64_t>(scaled)};
}

void SetNumber(jet::Value& out, double value, const jet::ColumnDefinition& column) {
    switch (column.type) {
        case ColumnType::Boolean:
            out = value != 0;
            break;
        case ColumnType::Byte:
            out = Whole(value, 0, 255, column);
            break;
        case ColumnType::Integer:
            out = Whole(value, -32768, 32767, column);
            break;
        case ColumnType::Long:
            out = Whole(value, std::numeric_limits<std::int32_t>::min(),
                        std::numeric_limits<std::int32_t>::max(), column);
            break;
        case ColumnType::Currency:
            out = Amount(value, column);
            break;
        case ColumnType::Single:
            if (!(std::fabs(value) <= static_cast<double>(std::numeric_limits<float>::max())))
                Overflow(value, column);
            out = static_cast<float>(value);
            break;
        case ColumnType::Double:
            if (!std::isfinite(value)) Overflow(value, column);
            out = value;
            break;
        case ColumnType::DateTime:
            // One day more than the last: its hours are still within the range.
            if (!(value > text::kFirstDate - 1 && value < text::kLastDate + 1)) Overflow(value, column);
            out = jet::DateTime{value};
            break;
        case ColumnType::Numeric: {
            const std::optional<jet::Numeric> decimal = DecimalOf(value, column.precision, column.scale);
            if (!decimal) Overflow(value, column);
            out = *decimal;
            break;
        }
        case ColumnType::Text:
        case ColumnType::Memo:
            SetText(out, text::DoubleText(value), column);
            break;
        default:
            Mismatch(text::DoubleText(value), "value of its type", column);
    }
}

/// M/D/YYYY with nothing around it, which is how nearly every date comes in; the rest is for
/// text::TextToDate.
std::optional<text::Date> PlainDate(std::string_view value) {
    int parts[3] = {0, 0, 0};
    std::size_t digits[3] = {0, 0, 0};
    std::size_t part = 0;
    for (const char c : value) {
        if (c >= '0' && c <= '9') {
            if (++digits[part] > 4) return std::nullopt;
            parts[part] = parts[part] * 10 + (c - '0');
        } else if (c != '/' || ++part > 2) {
            return std::nullopt;
        }
    }
    const bool plain = part == 2 && digits[0] >= 1 && digits[0] <= 2 && digits[1] >= 1 && digits[1] <= 2 &&
                       digits[2] == 4 && parts[2] >= 1000 && parts[0] <= 12;
    return plain ? text::DayNumber(parts[2], parts[0], parts[1]) : std::nullopt;
}

void SetDate(jet::Value& out, text::Date date, const jet::ColumnDefinition& column) {
    if (column.type == ColumnType::Text || column.type == ColumnType::Memo) {
        SetText(out, text::DateText(date), column);
    } else {
        SetNumber(out, date, column);
    }
}

void FromText(jet::Value& out, std::string_view value, const jet::ColumnDefinition& column,
              const shell::Clock& clock) {
    switch (column.type) {
        case ColumnType::Text:
        case ColumnType::Memo:
            SetText(out, value, column);
            break;
        case ColumnType::DateTime: {
            std::optional<text::Date> date = PlainDate(value);
            if (!date) date = text::TextToDate(value, clock.Year());
            if (!date) Mismatch(value, "date", column);
            out = jet::DateTime{*date};
            break;
        }
        case ColumnType::Guid: {
            const std::optional<jet::Guid> guid = GuidOf(value);
            if (!guid) Mismatch(value, "identifier", column);
            out = *guid;
            break;
        }
        case ColumnType::Boolean:
            if (text::EqualsNoCase(value, "True") || text::EqualsNoCase(value, "Yes")) {
                out = true;
                break;
            }
            if (text::EqualsNoCase(value, "False") || text::EqualsNoCase(value, "No")) {
                out = false;
                break;
            }
            [[fallthrough]];
        default: {
            const std::optional<double> number = text::NumericValue(value);
            if (!number) Mismatch(value, "number", column);
            SetNumber(out, *number, column);
        }
    }
}

void SetNull(jet::Value& out, const jet::ColumnDefinition& column) {
    if (column.type == ColumnType::Boolean) {
        out = false;
    } else {
        out = jet::Null{};
    }
}

}  // namespace

void ConvertLiteral(const Literal& literal, const jet::ColumnDefinition& column, const shell::Clock& clock,
                    jet::Value& out) {
    switch (literal.kind) {
        case Literal::Kind::Null:
            SetNull(out, column);
            break;
        case Literal::Kind::Text:
            if (literal.quoteDoubled) {
                FromText(out, text::ReplaceAll(literal.text, "''", "'"), column, clock);
            } else {
                FromText(out, literal.text, column, clock);
            }
            break;
        case Literal::Kind::Number:
            SetNumber(out, literal.number, column);
            break;
        case Literal::Kind::Date: {
            const std::optional<text::Date> date = text::TextToDate(literal.text, clock.Year());
            if (!date) RefuseStatement("The statement has a date that is none: " + Quote(literal.text) + ".");
            SetDate(out, *date, column);
        }
    }
}

jet::Value ConvertLiteral(const Literal& literal, const jet::ColumnDefinition& column,
                          const shell::Clock& clock) {
    jet::Value value;
    ConvertLiteral(literal, column, clock, value);
    return value;
}

jet::Value ConvertValue(const jet::Value& value, const jet::ColumnDefinition& column,
                        const shell::Clock& clock) {
    jet::Value out;
    const bool textual = column.type == ColumnType::Text || column.type == ColumnType::Memo;
    if (jet::IsNull(value)) {
        SetNull(out, column);
    } else if (const auto* const words = std::get_if<std::string>(&value)) {
        FromText(out, *words, column, clock);
    } else if (textual) {
        SetText(out, jet::ValueText(value), column);
    } else if (const auto* const bytes = std::get_if<jet::Bytes>(&value)) {
        if (!TakesBytes(column.type)) Mismatch(jet::ValueText(value), "value of its type", column);
        out = *bytes;
    } else if (const auto* const guid = std::get_if<jet::Guid>(&value)) {
        if (column.type != ColumnType::Guid) Mismatch(jet::ValueText(value), "value of its type", column);
        out = *guid;
    } else if (const auto* const amount = std::get_if<jet::Currency>(&value);
               amount != nullptr && column.type == ColumnType::Currency) {
        out = *amount;  // not by way of a double, which holds fewer digits
    } else if (const auto* const decimal = std::get_if<jet::Numeric>(&value);
               decimal != nullptr && column.type == ColumnType::Numeric && decimal->scale == column.scale) {
        out = *decimal;
    } else {
        SetNumber(out, NumberOf(value), column);
    }
    return out;
}

std::string DefaultExpression(const jet::Value& value) {
    if (jet::IsNull(value)) return "Null";
    if (const auto* const words = std::get_if<std::string>(&value)) {
        return "\"" + text::ReplaceAll(*words, "\"", "\"\"") + "\"";
    }
    if (const auto* const date = std::get_if<jet::DateTime>(&value))
        return "#" + text::DateText(date->serial) + "#";
    return jet::ValueText(value);
}

double NumberOf(const jet::Value& value) {
    if (const auto* const truth = std::get_if<bool>(&value)) return *truth ? -1.0 : 0.0;
    if (const auto* const whole = std::get_if<std::int32_t>(&value)) return *whole;
    if (const auto* const amount = std::get_if<jet::Currency>(&value)) {
        return static_cast<double>(amount->tenThousandths) / 10000.0;
    }
    if (const auto* const single = std::get_if<float>(&value)) return static_cast<double>(*single);
    if (const auto* const number = std::get_if<double>(&value)) return *number;
    if (const auto* const date = std::get_if<jet::DateTime>(&value)) return date->serial;
    if (const auto* const decimal = std::get_if<jet::Numeric>(&value)) return DoubleOf(*decimal);
    return 0;
}

}  // namespace zenvora::ado::detail
