#include "common/number_helpers.h"

#include <limits>
#include <string_view>

#include "common/primitives.h"
#include "platform/text/number.h"
#include "platform/text/utf8.h"

namespace zenvora::common {
namespace {

template <class Whole>
Whole ToWhole(std::string& text) {
    text = UpTrim(text);
    const double value = text::RoundHalfEven(text::NumericValue(text).value_or(0));
    if (value < std::numeric_limits<Whole>::min() || value > std::numeric_limits<Whole>::max()) return 0;
    return static_cast<Whole>(value);
}

}  // namespace

std::int16_t CInteger(std::string& text) {
    return ToWhole<std::int16_t>(text);
}

std::int32_t CLong(std::string& text) {
    return ToWhole<std::int32_t>(text);
}

std::string PriceDigits(std::string& text) {
    text = text::Trim(text);
    if (!text::IsNumeric(text)) return "0";
    if (CDouble(text) <= 0) return {};
    std::string digits;
    for (const char c : std::string_view(text).substr(0, text.find('.'))) {
        if (c >= '0' && c <= '9') digits.push_back(c);
    }
    return digits;
}

}  // namespace zenvora::common
