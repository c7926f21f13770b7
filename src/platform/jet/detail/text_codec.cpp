#include "platform/jet/detail/text_codec.h"

#include <algorithm>

#include "platform/fault.h"
#include "platform/jet/detail/bytes.h"
#include "platform/jet/detail/layout.h"
#include "platform/text/encoding.h"
#include "platform/text/utf8.h"

namespace zenvora::jet::detail {

namespace {
constexpr std::size_t kMaxCompressed = 1024;

void AppendLatin1(std::span<const std::byte> bytes, std::string& out) {
    std::byte all{0};
    for (std::byte byte : bytes)
        all |= byte;
    if ((all & std::byte{0x80}) == std::byte{0}) {  // nearly every text
        out.append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        return;
    }
    for (std::byte byte : bytes) {
        const auto c = static_cast<unsigned char>(byte);
        if (c < 0x80) {
            out.push_back(static_cast<char>(c));
        } else {
            out.push_back(static_cast<char>(0xC0 | c >> 6));
            out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
        }
    }
}

void AppendUtf16(std::span<const std::byte> bytes, std::string& out) {
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        char32_t c = U16(&bytes[i]);
        if (c < 0x80) {
            out.push_back(static_cast<char>(c));
            continue;
        }
        if (c >= 0xD800 && c < 0xDC00 && i + 3 < bytes.size()) {
            const char32_t low = U16(&bytes[i + 2]);
            if (low >= 0xDC00 && low < 0xE000) {
                c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
                i += 2;
            }
        }
        text::AppendCharacter(out, c);  // an unpaired surrogate comes out as U+FFFD
    }
}
}  // namespace

void DecodeText(std::span<const std::byte> stored, std::string& out) {
    if (stored.size() < 2 || stored[0] != std::byte{0xFF} || stored[1] != std::byte{0xFE}) {
        AppendUtf16(stored, out);
        return;
    }
    // A zero byte is no character: it switches between one and two bytes a character.
    bool compressed = true;
    stored = stored.subspan(2);
    while (true) {
        const auto zero = std::find(stored.begin(), stored.end(), std::byte{0});
        const auto stretch = stored.first(static_cast<std::size_t>(zero - stored.begin()));
        compressed ? AppendLatin1(stretch, out) : AppendUtf16(stretch, out);
        if (zero == stored.end()) return;
        stored = stored.subspan(stretch.size() + 1);
        compressed = !compressed;
    }
}

void DecodeText(std::span<const std::byte> stored, std::uint16_t codePage, std::string& out) {
    if (codePage == 0) {
        DecodeText(stored, out);
        return;
    }
    const std::string_view bytes{reinterpret_cast<const char*>(stored.data()), stored.size()};
    const auto ascii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
    if (std::all_of(bytes.begin(), bytes.end(), ascii)) {
        out += bytes;
    } else if (codePage == kWindows1252) {
        out += text::FromWindows1252(bytes);
    } else {
        throw Fault{fault::kUnsupported,
                    "the database holds texts in the code page " + std::to_string(codePage) +
                        ", which are not known here: convert it in Access to the format of Access 2002-2003"};
    }
}

void EncodeText(std::string_view text, bool mayCompress, std::vector<std::byte>& out) {
    if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
    if (mayCompress && text.size() > 2) {
        const std::size_t begin = out.size();
        out.push_back(std::byte{0xFF});
        out.push_back(std::byte{0xFE});
        std::size_t at = 0;
        while (at < text.size()) {
            const auto byte = static_cast<unsigned char>(text[at]);
            const char32_t c = byte < 0x80 ? (++at, byte) : text::NextCharacter(text, at);
            if (c == 0 || c > 0xFF) break;
            out.push_back(static_cast<std::byte>(c));
        }
        const std::size_t characters = out.size() - begin - 2;
        if (at == text.size() && characters > 2 && characters <= kMaxCompressed) return;
        out.resize(begin);
    }
    for (char16_t unit : text::ToUtf16(text)) {
        out.push_back(static_cast<std::byte>(unit & 0xFF));
        out.push_back(static_cast<std::byte>(unit >> 8));
    }
}

std::size_t Utf16Length(std::string_view text) {
    std::size_t units = 0;
    for (std::size_t at = 0; at < text.size();) {
        const auto byte = static_cast<unsigned char>(text[at]);
        const char32_t c = byte < 0x80 ? (++at, byte) : text::NextCharacter(text, at);
        units += c > 0xFFFF ? 2 : 1;
    }
    return units;
}

}  // namespace zenvora::jet::detail
