#include "cli/values.h"

#include <charconv>
#include <cmath>
#include <type_traits>

#include "common/dates.h"
#include "platform/text/number.h"

namespace zenvora::cli {

namespace {

/// Digits only, between `least` and `most` of them; -1 for any other text.
int Digits(std::string_view text, std::size_t least, std::size_t most) {
    if (text.size() < least || text.size() > most) return -1;
    int value = -1;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool whole = error == std::errc() && end == text.data() + text.size();
    return whole && text.front() != '-' ? value : -1;
}

/// A number that JSON writes without ".0" when it is whole.
Json NumberJson(double value) {
    constexpr double kExact = 9007199254740992.0;  // 2^53: whole numbers beyond it are not all there
    if (std::abs(value) < kExact && value == std::trunc(value)) return static_cast<std::int64_t>(value);
    return value;
}

/// The number of a value that has one.
std::optional<double> NumberOf(const jet::Value& value) {
    return std::visit(
        [&value](const auto& held) -> std::optional<double> {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<Held, std::int32_t> || std::is_same_v<Held, double>) {
                return static_cast<double>(held);
            } else if constexpr (std::is_same_v<Held, float> || std::is_same_v<Held, jet::Currency> ||
                                 std::is_same_v<Held, jet::Numeric>) {
                // Through the text, which has the digits that the type really holds and no more.
                return text::NumericValue(jet::ValueText(value));
            } else {
                return std::nullopt;
            }
        },
        value);
}

}  // namespace

std::optional<text::Date> ParseDate(std::string_view text) {
    const bool yearFirst = text.size() == 10 && text[4] == '-';
    const char separator = yearFirst ? '-' : '/';
    const auto first = text.find(separator);
    if (first == std::string_view::npos) return std::nullopt;
    const auto second = text.find(separator, first + 1);
    if (second == std::string_view::npos) return std::nullopt;
    const std::string_view parts[] = {text.substr(0, first), text.substr(first + 1, second - first - 1),
                                      text.substr(second + 1)};
    const int year = Digits(yearFirst ? parts[0] : parts[2], 4, 4);
    const int month = Digits(yearFirst ? parts[1] : parts[0], yearFirst ? 2 : 1, 2);
    const int day = Digits(yearFirst ? parts[2] : parts[1], yearFirst ? 2 : 1, 2);
    if (year < 0 || month < 0 || day < 0) return std::nullopt;
    return text::DayNumber(year, month, day);
}

std::string IsoDate(text::Date date) {
    return text::FormatDate(date, text::SecondOfDay(date) == 0 ? "yyyy-mm-dd" : "yyyy-mm-ddThh:nn:ss");
}

Json ToJson(const jet::Value& value) {
    if (jet::IsNull(value)) return nullptr;
    if (const auto* truth = std::get_if<bool>(&value)) return *truth;
    if (const auto* date = std::get_if<jet::DateTime>(&value)) return IsoDate(date->serial);
    if (const auto number = NumberOf(value)) return NumberJson(*number);
    return jet::ValueText(value);
}

std::string ToCsv(const jet::Value& value) {
    if (const auto* date = std::get_if<jet::DateTime>(&value)) return IsoDate(date->serial);
    return jet::ValueText(value);
}

std::string ToGridText(const jet::Value& value) {
    if (const auto* date = std::get_if<jet::DateTime>(&value)) {
        if (text::DayPart(date->serial) == common::kDayZero) return "";
    } else if (const auto number = NumberOf(value); number && *number == 0) {
        return "";
    }
    return jet::ValueText(value);
}

std::string CountLine(text::Date effectiveDate, long records, std::optional<long> valid) {
    const std::string count = text::IntegerText(records) + (records == 1 ? " record" : " records");
    return "Effective Appraisal Date " + text::DateText(effectiveDate) + ": " +
           (valid ? text::IntegerText(*valid) + " of " + count + (*valid == 1 ? " is valid" : " are valid")
                  : count + ", not checked");
}

std::string Compact(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace zenvora::cli
