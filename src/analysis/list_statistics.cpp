#include "analysis/list_statistics.h"

#include <cmath>
#include <cstdint>
#include <optional>

#include "common/primitives.h"
#include "platform/text/number.h"
#include "platform/text/utf8.h"

namespace zenvora::analysis {
namespace {

bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

std::string DigitsOf(std::string_view text) {
    std::string digits;
    for (const char character : text) {
        if (IsDigit(character)) digits += character;
    }
    return digits;
}

/// The digits of a whole part, none when its value is not above 0.
std::string PositiveDigits(std::string_view whole) {
    return text::NumericValue(whole).value_or(0) > 0 ? DigitsOf(whole) : std::string{};
}

}  // namespace

std::string GetListMedian(const SortedList& list) {
    const int count = list.ListCount();
    if (count == 0) return "0";
    if (count % 2 == 1) return list.List(count / 2);
    std::string lower = list.List(count / 2 - 1);
    const std::string upper = list.List(count / 2);
    const std::optional<double> lowerValue = text::NumericValue(lower);
    if (!lowerValue || !text::IsNumeric(upper)) return lower;
    const double sum = *lowerValue + common::CDouble(upper);
    const double rounded = text::RoundHalfEven(common::CDouble(text::DoubleText(sum)));
    return text::DoubleText(std::trunc(rounded / 2));
}

double GetListTotal(const SortedList& list, controls::Desktop& desktop) {
    double total = 0;
    if (const auto numbers = list.Numbers()) {
        for (const double number : *numbers)
            total += number;
        return total;
    }
    for (int index = 0; index < list.ListCount(); ++index) {
        if (const std::optional<double> number = list.Number(index)) {
            total += *number;
        } else {
            desktop.Show({"List contains non numeric data.", "INVALID VALUE", controls::Icon::Critical});
        }
    }
    return total;
}

double GetListAverage(const SortedList& list, controls::Desktop& desktop) {
    const int count = list.ListCount();
    if (count == 0) return 0;
    const std::string oneDecimal = text::FormatNumber(GetListTotal(list, desktop) / count, "#########.#");
    const std::size_t point = oneDecimal.find('.');
    const double whole = common::CDouble(std::string_view{oneDecimal}.substr(0, point));
    const bool roundsUp = point + 1 < oneDecimal.size() && oneDecimal[point + 1] >= '5';
    return roundsUp ? whole + 1 : whole;
}

std::string FormatWithCommas(std::string_view text) {
    std::string value = common::UpTrim(text);
    if (!text::IsNumeric(value)) return value;
    const std::size_t point = value.find('.');
    std::string fraction = point == std::string::npos ? std::string{} : value.substr(point);
    if (DigitsOf(fraction).empty()) fraction.clear();

    std::string formatted = value.starts_with('$') ? "$" : "";
    const std::string digits = PositiveDigits(std::string_view{value}.substr(0, point));
    for (std::size_t i = 0; i < digits.size(); ++i) {
        if (i > 0 && (digits.size() - i) % 3 == 0) formatted += ',';
        formatted += digits[i];
    }
    return formatted + fraction;
}

}  // namespace zenvora::analysis
