#include "platform/text/utf8.h"

#include <cstdint>
#include <cstring>

#include "platform/text/detail/case_folding.h"

namespace zenvora::text {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

unsigned char ByteAt(std::string_view text, std::size_t at) noexcept {
    return static_cast<unsigned char>(text[at]);
}

bool IsContinuation(unsigned char byte) noexcept {
    return (byte & 0xC0U) == 0x80U;
}

/// Reads the sequence at `at`. Returns its length in bytes, or 0 when no valid one stands there.
std::size_t ReadSequence(std::string_view text, std::size_t at, char32_t& character) noexcept {
    const unsigned char first = ByteAt(text, at);
    const std::size_t left = text.size() - at;
    if (first < 0x80U) {
        character = first;
        return 1;
    }
    if (first >= 0xC2U && first <= 0xDFU) {
        if (left < 2 || !IsContinuation(ByteAt(text, at + 1))) return 0;
        character = (char32_t{first} & 0x1FU) << 6 | (char32_t{ByteAt(text, at + 1)} & 0x3FU);
        return 2;
    }
    if (first >= 0xE0U && first <= 0xEFU) {
        if (left < 3 || !IsContinuation(ByteAt(text, at + 1)) || !IsContinuation(ByteAt(text, at + 2)))
            return 0;
        character = (char32_t{first} & 0x0FU) << 12 | (char32_t{ByteAt(text, at + 1)} & 0x3FU) << 6 |
                    (char32_t{ByteAt(text, at + 2)} & 0x3FU);
        const bool overlong = character < 0x800;
        const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
        return overlong || surrogate ? 0 : 3;
    }
    if (first >= 0xF0U && first <= 0xF4U) {
        if (left < 4 || !IsContinuation(ByteAt(text, at + 1)) || !IsContinuation(ByteAt(text, at + 2)) ||
            !IsContinuation(ByteAt(text, at + 3))) {
            return 0;
        }
        character = (char32_t{first} & 0x07U) << 18 | (char32_t{ByteAt(text, at + 1)} & 0x3FU) << 12 |
                    (char32_t{ByteAt(text, at + 2)} & 0x3FU) << 6 | (char32_t{ByteAt(text, at + 3)} & 0x3FU);
        return character < 0x10000 || character > 0x10FFFF ? 0 : 4;
    }
    return 0;
}

/// Length in bytes of the character at `at`; an invalid byte is a character of its own.
std::size_t CharacterSize(std::string_view text, std::size_t at) noexcept {
    if (ByteAt(text, at) < 0x80U) return 1;
    char32_t ignored = 0;
    const std::size_t size = ReadSequence(text, at, ignored);
    return size == 0 ? 1 : size;
}

/// Length of the run of plain ASCII that starts at `at`, looked at eight bytes at a time.
std::size_t AsciiRun(std::string_view text, std::size_t at) noexcept {
    const std::size_t start = at;
    while (at + sizeof(std::uint64_t) <= text.size()) {
        std::uint64_t eight = 0;
        std::memcpy(&eight, text.data() + at, sizeof eight);
        if ((eight & 0x8080808080808080U) != 0) break;
        at += sizeof eight;
    }
    while (at < text.size() && ByteAt(text, at) < 0x80U) {
        ++at;
    }
    return at - start;
}

/// The byte behind the first `count` characters from `at` on, or the end.
std::size_t Skip(std::string_view text, std::size_t at, std::size_t count) noexcept {
    while (count > 0 && at < text.size()) {
        at += CharacterSize(text, at);
        --count;
    }
    return at;
}

template <class Fold>
std::string FoldAll(std::string_view text, Fold fold) {
    std::string out(text);
    for (std::size_t at = 0; at < out.size();) {
        const unsigned char byte = ByteAt(out, at);
        if (byte < 0x80U) {
            out[at] = static_cast<char>(fold(char32_t{byte}));
            ++at;
            continue;
        }
        char32_t character = 0;
        const std::size_t size = ReadSequence(out, at, character);
        // Every letter that folds has a partner of two bytes too, so that the text never changes its length.
        if (size == 2) {
            const char32_t folded = fold(character);
            out[at] = static_cast<char>(0xC0U | (folded >> 6));
            out[at + 1] = static_cast<char>(0x80U | (folded & 0x3FU));
        }
        at += size == 0 ? 1 : size;
    }
    return out;
}

}  // namespace

std::size_t Length(std::string_view text) noexcept {
    std::size_t count = 0;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t plain = AsciiRun(text, at);
        count += plain;
        at += plain;
        if (at < text.size()) {
            at += CharacterSize(text, at);
            ++count;
        }
    }
    return count;
}

std::string Left(std::string_view text, std::size_t count) {
    return std::string(text.substr(0, Skip(text, 0, count)));
}

std::string Right(std::string_view text, std::size_t count) {
    const std::size_t length = Length(text);
    return count >= length ? std::string(text) : std::string(text.substr(Skip(text, 0, length - count)));
}

std::string Mid(std::string_view text, std::size_t start, std::size_t count) {
    const std::size_t begin = Skip(text, 0, start == 0 ? 0 : start - 1);
    return std::string(text.substr(begin, Skip(text, begin, count) - begin));
}

std::string_view TrimView(std::string_view text) noexcept {
    const std::size_t begin = text.find_first_not_of(' ');
    if (begin == std::string_view::npos) return {};
    return text.substr(begin, text.find_last_not_of(' ') - begin + 1);
}

std::string Trim(std::string_view text) {
    return std::string(TrimView(text));
}

std::string Upper(std::string_view text) {
    return FoldAll(text, detail::UpperOf);
}

std::string Lower(std::string_view text) {
    return FoldAll(text, detail::LowerOf);
}

bool EqualsNoCase(std::string_view a, std::string_view b) {
    // Folding keeps the length in bytes, see FoldAll.
    if (a.size() != b.size()) return false;
    for (std::size_t at = 0; at < a.size();) {
        const unsigned char left = ByteAt(a, at);
        const unsigned char right = ByteAt(b, at);
        if (left < 0x80U || right < 0x80U) {
            if (detail::UpperOf(left) != detail::UpperOf(right)) return false;
            ++at;
            continue;
        }
        char32_t leftCharacter = 0;
        char32_t rightCharacter = 0;
        const std::size_t leftSize = ReadSequence(a, at, leftCharacter);
        const std::size_t rightSize = ReadSequence(b, at, rightCharacter);
        if (leftSize != rightSize) return false;
        if (leftSize == 0) {
            if (left != right) return false;
            ++at;
            continue;
        }
        if (detail::UpperOf(leftCharacter) != detail::UpperOf(rightCharacter)) return false;
        at += leftSize;
    }
    return true;
}

bool IsUtf8(std::string_view bytes) noexcept {
    for (std::size_t at = 0; at < bytes.size();) {
        at += AsciiRun(bytes, at);
        if (at == bytes.size()) return true;
        char32_t ignored = 0;
        const std::size_t size = ReadSequence(bytes, at, ignored);
        if (size == 0) return false;
        at += size;
    }
    return true;
}

char32_t NextCharacter(std::string_view text, std::size_t& at) noexcept {
    char32_t character = 0;
    const std::size_t size = ReadSequence(text, at, character);
    if (size == 0) {
        ++at;
        return kReplacement;
    }
    at += size;
    return character;
}

void AppendCharacter(std::string& text, char32_t character) {
    if (character > 0x10FFFF || (character >= 0xD800 && character <= 0xDFFF)) character = kReplacement;
    if (character < 0x80) {
        text.push_back(static_cast<char>(character));
        return;
    }
    if (character < 0x800) {
        text.push_back(static_cast<char>(0xC0U | (character >> 6)));
    } else {
        if (character < 0x10000) {
            text.push_back(static_cast<char>(0xE0U | (character >> 12)));
        } else {
            text.push_back(static_cast<char>(0xF0U | (character >> 18)));
            text.push_back(static_cast<char>(0x80U | ((character >> 12) & 0x3FU)));
        }
        text.push_back(static_cast<char>(0x80U | ((character >> 6) & 0x3FU)));
    }
    text.push_back(static_cast<char>(0x80U | (character & 0x3FU)));
}

std::u16string ToUtf16(std::string_view text) {
    std::u16string out;
    out.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const char32_t character = NextCharacter(text, at);
        if (character < 0x10000) {
            out.push_back(static_cast<char16_t>(character));
        } else {
            out.push_back(static_cast<char16_t>(0xD800U + ((character - 0x10000U) >> 10)));
            out.push_back(static_cast<char16_t>(0xDC00U + ((character - 0x10000U) & 0x3FFU)));
        }
    }
    return out;
}

std::string FromUtf16(std::u16string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        char32_t character = text[at];
        const bool high = character >= 0xD800 && character <= 0xDBFF;
        if (high && at + 1 < text.size() && text[at + 1] >= 0xDC00 && text[at + 1] <= 0xDFFF) {
            ++at;
            character = 0x10000U + ((character - 0xD800U) << 10) + (text[at] - 0xDC00U);
        }
        AppendCharacter(out, character);
    }
    return out;
}

std::string ReplaceAll(std::string_view text, std::string_view find, std::string_view replacement) {
    if (find.empty()) return std::string(text);
    std::string out;
    out.reserve(text.size());
    std::size_t at = 0;
    for (std::size_t hit = text.find(find); hit != std::string_view::npos; hit = text.find(find, at)) {
        out.append(text, at, hit - at);
        out.append(replacement);
        at = hit + find.size();
    }
    out.append(text, at);
    return out;
}

}  // namespace zenvora::text
