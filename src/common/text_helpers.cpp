#include "common/text_helpers.h"

#include "platform/text/number.h"
#include "platform/text/utf8.h"

namespace zenvora::common {
namespace {

enum class Side { Left, Right, Neither };

Side SideOf(std::string_view side) {
    if (side.starts_with('L') || side.starts_with('l')) return Side::Left;
    if (side.starts_with('R') || side.starts_with('r')) return Side::Right;
    return Side::Neither;
}

/// Position in bytes of `find`, which is not empty, without regard to case.
std::size_t FindNoCase(std::string_view text, std::string_view find) {
    // Folding keeps every character's length in bytes, so positions in the folded text hold in the text.
    return text::Upper(text).find(text::Upper(find));
}

/// NC stands twice and ME and NV are missing: Databooks in use were checked by this list.
constexpr std::string_view kStates =
    "AL,AK,AZ,AR,CA,CO,CT,DE,DC,FL,GA,HI,ID,IL,IN,IA,KS,KY,LA,MD,MA,MI,"
    "MN,MS,MO,MT,NC,NE,NH,NJ,NM,NY,NC,ND,OH,OK,OR,PA,RI,SC,SD,TN,TX,UT,VT,VA,WA,WV,WI,WY,";

}  // namespace

std::string CkRPipe(std::string& text) {
    text = text::Trim(text);
    if (!text.empty() && text.back() != '|') text.push_back('|');
    return text;
}

std::string StripRChar(std::string& text) {
    std::string_view rest = text::TrimView(text);
    if (rest.ends_with('\\')) rest.remove_suffix(1);
    text = text::Trim(rest);
    return text;
}

std::string SplitFirst(std::string_view text, std::string_view side, std::string_view delimiter) {
    const std::size_t at = text.find(delimiter);
    if (delimiter.empty() || at == std::string_view::npos) return {};
    switch (SideOf(side)) {
        case Side::Left:
            return std::string(text.substr(0, at));
        case Side::Right:
            return std::string(text.substr(at + delimiter.size()));
        case Side::Neither:
            break;
    }
    return {};
}

std::string SplitLast(std::string_view text, std::string_view side, std::string_view delimiter) {
    // A delimiter that is there in the other case only, or is longer than a character, stands at no position.
    if (text::Length(delimiter) != 1) return {};
    const std::size_t at = text.rfind(delimiter);
    if (at == std::string_view::npos) return {};
    switch (SideOf(side)) {
        case Side::Left:
            return std::string(text.substr(0, at));
        case Side::Right:
            return std::string(text.substr(at + delimiter.size()));
        case Side::Neither:
            break;
    }
    return {};
}

std::string TextBefore(std::string_view text, std::string_view delimiter) {
    return delimiter.empty() ? std::string(text) : std::string(text.substr(0, FindNoCase(text, delimiter)));
}

std::string TextBetween(std::string_view text, std::string_view open, std::string_view close) {
    return SplitFirst(SplitFirst(text, "R", open), "L", close);
}

std::string PadLeft(std::string_view text, std::size_t width, std::string_view fill) {
    std::string padded;
    if (!fill.empty()) {
        const std::string one = text::Left(fill, 1);
        for (std::size_t i = 0; i < width; ++i) {
            padded += one;
        }
    }
    padded += text::TrimView(text);
    return text::Right(padded, width);
}

std::string IntToText(std::int64_t number) {
    return text::IntegerText(number);
}

std::string RemoveCharacter(std::string_view text, char character) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != character) {
            out.push_back(text[at]);
        } else if (!out.empty() && out.back() == ' ' && at + 1 < text.size() && text[at + 1] == ' ') {
            out.pop_back();
        }
    }
    return out;
}

std::string ReplaceText(std::string_view text, std::string_view find, std::string_view replacement) {
    return text::ReplaceAll(text, find, replacement);
}

std::string CleanText(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const char32_t character = text::NextCharacter(text, at);
        out.push_back(character < 32 || character >= 127 ? ' ' : static_cast<char>(character));
    }
    return out;
}

bool IsValidState(std::string_view text) {
    const std::string upper = text::Upper(text);
    if (text::Length(text::TrimView(upper)) != 2) return false;
    // The search knows nothing of where an entry begins, so that a comma and a first letter pass as well.
    return kStates.find(upper + ",") != std::string_view::npos ||
           (upper.front() == ',' && kStates.find(upper) != std::string_view::npos);
}

}  // namespace zenvora::common
