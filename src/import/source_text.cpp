#include "import/source_text.h"

#include <algorithm>
#include <cstdint>

#include "platform/files/whole_file.h"
#include "platform/text/encoding.h"
#include "platform/text/utf8.h"

namespace zenvora::importing {

Place PlaceIn(const std::string& file, long line) {
    Place place;
    place.file = file;
    place.line = line;
    return place;
}

std::string ReadSourceText(files::HostDisk& disk, const std::filesystem::path& path) {
    constexpr std::uint64_t kLargest = 0x7FFFFFFF;
    if (disk.Open(path, files::OpenMode::ReadOnly)->Size() > kLargest) {
        throw Fault{fault::kSourceFormat, "The file is larger than 2 GB. Split it and import the parts.",
                    PlaceIn(path.string())};
    }
    return SourceTextOf(files::ReadWholeFile(path, disk));
}

std::string SourceTextOf(std::string_view bytes) {
    std::string text = text::Decode(bytes).text;
    const auto isDropped = [](char c) { return c == '\r' || c == '\0'; };
    text.erase(std::remove_if(text.begin(), text.end(), isDropped), text.end());
    return text;
}

std::string_view LineReader::ReadRawLine() {
    if (atEnd_) return {};
    ++lineNumber_;
    const std::size_t end = text_.find('\n');
    const std::string_view line = text_.substr(0, end);
    if (end == std::string_view::npos) {
        atEnd_ = true;
        text_ = {};
    } else {
        text_.remove_prefix(end + 1);
    }
    return line;
}

void CheckPosition(std::string_view line, std::size_t at) {
    if (at < kLastPosition) return;  // a character takes one byte at least
    if (text::Length(line.substr(0, at)) >= kLastPosition) {
        throw Fault{
            fault::kOverflow,
            "The line reaches beyond 32,767 characters, which is more than an import can take. Leave long "
            "columns out of the export and import again."};
    }
}

std::string_view WithoutFirst(std::string_view line, std::size_t count) {
    std::size_t at = 0;
    while (count-- > 0 && at < line.size()) {
        if (static_cast<unsigned char>(line[at]) < 0x80) {
            ++at;
        } else {
            static_cast<void>(text::NextCharacter(line, at));
        }
    }
    return line.substr(at);
}

}  // namespace zenvora::importing
