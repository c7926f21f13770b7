#include "common/primitives.h"

#include <cmath>
#include <limits>

#include "platform/text/number.h"
#include "platform/text/utf8.h"

namespace zenvora::common {

std::string UpTrim(std::string_view text) {
    return text::Upper(text::TrimView(text));
}

std::string CkRSlash(std::string& text) {
    text = text::Trim(text);
    if (!text.empty() && text.back() != '\\') text.push_back('\\');
    return text;
}

std::string CkRSlash(std::string_view text) {
    std::string copy(text);
    return CkRSlash(copy);
}

std::string ReplaceChar(std::string_view text, std::string_view from, std::string_view to) {
    if (from.empty() || text.find(from) == std::string_view::npos) return std::string(text);
    const std::size_t behind = text.rfind(from) + from.size();
    if (text.find_first_not_of(' ', behind) == std::string_view::npos) text = text.substr(0, behind);
    return text::ReplaceAll(text, from, to);
}

double CDouble(std::string_view text) {
    std::string kept;
    kept.reserve(text.size());
    for (const char c : text) {
        if ((c >= '0' && c <= '9') || c == '-' || c == '.') kept.push_back(c);
    }
    const double value = text::NumericValue(kept).value_or(0);
    // A float that would not hold it is a failure like any other.
    if (std::fabs(value) > static_cast<double>(std::numeric_limits<float>::max())) return 0;
    return static_cast<double>(static_cast<float>(value)) + 0.0;  // no negative zero
}

}  // namespace zenvora::common
