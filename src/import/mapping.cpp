#include "import/mapping.h"

#include <algorithm>
#include <utility>

#include "import/source_text.h"
#include "platform/files/whole_file.h"
#include "platform/text/encoding.h"

namespace zenvora::importing {

namespace {

constexpr std::string_view kArrow = "<->";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// The bytes of `text` that take the place of the file `old`.
std::string EncodeLike(std::string_view old, const std::string& text) {
    if (text::Decode(old).encoding == text::Encoding::Windows1252) {
        std::string bytes = text::Encode(text, text::Encoding::Windows1252);
        if (text::Decode(bytes).text == text) return bytes;
    }
    return std::string(old.substr(0, old.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0)) + text;
}

}  // namespace

std::string MappingText(std::string_view source, std::string_view destination) {
    std::string text(source);
    text.append(" <-> ").append(destination);
    return text;
}

std::optional<Mapping> SplitMapping(std::string_view text) {
    const std::size_t at = text.find(kArrow);
    if (at == std::string_view::npos || at == 0) return std::nullopt;
    const std::string_view before = text.substr(0, at);
    // The character in front of the arrow may be longer than a byte.
    std::size_t last = at - 1;
    while (last > 0 && (static_cast<unsigned char>(before[last]) & 0xC0U) == 0x80U)
        --last;
    return Mapping{before.substr(0, last), WithoutFirst(text.substr(at + kArrow.size()), 1)};
}

Mapping RequiredMapping(std::string_view text, Place place) {
    if (const std::optional<Mapping> mapping = SplitMapping(text)) return *mapping;
    throw Fault{fault::kInvalidCall,
                "\"" + std::string(text) +
                    "\" is no mapping: it must read SOURCE FIELD <-> DESTINATION FIELD. Correct the line or "
                    "take it out.",
                std::move(place)};
}

std::vector<std::string> ReadMapFile(files::HostDisk& disk, const std::filesystem::path& path) {
    const std::string text = text::Decode(files::ReadWholeFile(path, disk)).text;
    std::vector<std::string> lines;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find_first_of("\r\n", start), text.size());
        std::string_view line = std::string_view(text).substr(start, end - start);
        start = end + (text.compare(end, 2, "\r\n") == 0 ? 2 : 1);
        if (line.starts_with('"')) line.remove_prefix(1);
        if (line.ends_with('"')) line.remove_suffix(1);
        lines.emplace_back(line);
    }
    return lines;
}

std::string MapText(const std::vector<std::string>& mappings) {
    std::string text;
    for (const std::string& mapping : mappings)
        text.append(mapping).append("\r\n");
    return text;
}

void WriteMapFile(files::HostDisk& disk, const std::filesystem::path& path,
                  const std::vector<std::string>& mappings) {
    std::string text = MapText(mappings);
    if (disk.Exists(path)) text = EncodeLike(files::ReadWholeFile(path, disk), text);
    files::WriteWholeFile(path, text, files::Replaced::KeptAsBak, disk);
}

}  // namespace zenvora::importing
