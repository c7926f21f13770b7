#include "platform/text/encoding.h"

#include <array>

#include "platform/text/utf8.h"

namespace zenvora::text {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// Characters of the bytes 0x80 to 0x9F; all other bytes are the characters of the same number.
constexpr std::array<char32_t, 32> kUpperControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

/// The byte of a character, or -1 when Windows-1252 has none for it.
int ByteOf(char32_t character) noexcept {
    if (character < 0x80 || (character >= 0xA0 && character <= 0xFF)) return static_cast<int>(character);
    for (std::size_t i = 0; i < kUpperControls.size(); ++i) {
        if (kUpperControls[i] == character) return static_cast<int>(0x80 + i);
    }
    return -1;
}

}  // namespace

Decoded Decode(std::string_view bytes) {
    if (bytes.starts_with(kByteOrderMark)) bytes.remove_prefix(kByteOrderMark.size());
    if (IsUtf8(bytes)) return {std::string(bytes), Encoding::Utf8};
    return {FromWindows1252(bytes), Encoding::Windows1252};
}

std::string FromWindows1252(std::string_view bytes) {
    std::string out;
    out.reserve(bytes.size() + bytes.size() / 8);
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            out.push_back(c);
        } else {
            AppendCharacter(out, byte < 0xA0 ? kUpperControls[byte - 0x80U] : char32_t{byte});
        }
    }
    return out;
}

std::string Encode(std::string_view text, Encoding encoding) {
    if (encoding == Encoding::Utf8) return std::string(text);
    std::string out;
    out.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const int byte = ByteOf(NextCharacter(text, at));
        out.push_back(byte < 0 ? '?' : static_cast<char>(byte));
    }
    return out;
}

bool FitsWindows1252(std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        if (ByteOf(NextCharacter(text, at)) < 0) return false;
    }
    return true;
}

}  // namespace zenvora::text
