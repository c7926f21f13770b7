#include "platform/ado/detail/text_match.h"

#include <algorithm>

#include "platform/jet/database.h"

namespace zenvora::ado::detail {
namespace {

constexpr bool IsPlain(char c) noexcept {
    return c >= ' ' && c <= '~';
}
constexpr char Folded(char c) noexcept {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
}

std::string_view WithoutTrailingBlanks(std::string_view text) {
    while (text.ends_with(' '))
        text.remove_suffix(1);
    return text;
}

}  // namespace

bool SameText(std::string_view a, std::string_view b) {
    a = WithoutTrailingBlanks(a);
    b = WithoutTrailingBlanks(b);
    // Printable ASCII is nearly all there is, and no two of its characters have the same weight but for case:
    // a search need not work out keys for it.
    const auto difference = std::mismatch(a.begin(), a.end(), b.begin(), b.end(), [](char left, char right) {
        return IsPlain(left) && Folded(left) == Folded(right);
    });
    if (difference.first == a.end() && difference.second == b.end()) return true;
    if (std::all_of(a.begin(), a.end(), IsPlain) && std::all_of(b.begin(), b.end(), IsPlain)) return false;
    return jet::CompareGeneral(a, b) == 0;
}

}  // namespace zenvora::ado::detail
