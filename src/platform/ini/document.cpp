#include "platform/ini/document.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <utility>

#include "platform/text/encoding.h"
#include "platform/text/utf8.h"

namespace zenvora::ini {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kUtf16Mark = "\xFF\xFE";
constexpr std::string_view kCrLf = "\r\n";
constexpr std::string_view kLf = "\n";
constexpr std::string_view kBlanks = " \t";

std::string_view Stripped(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(kBlanks);
    if (begin == std::string_view::npos) return {};
    return text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin);
}

/// A name or value as it can stand in one line.
std::string OneLine(std::string_view text) {
    std::string line(text);
    std::replace_if(
        line.begin(), line.end(), [](char c) { return c == '\r' || c == '\n' || c == '\0'; }, ' ');
    return line;
}

std::string Folded(std::string_view name) {
    return text::Upper(Stripped(OneLine(name)));
}

std::string FromUtf16Bytes(std::string_view bytes) {
    std::u16string units;
    units.reserve(bytes.size() / 2);
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
        const auto low = static_cast<unsigned char>(bytes[at]);
        const auto high = static_cast<unsigned char>(bytes[at + 1]);
        units.push_back(static_cast<char16_t>(low | (high << 8U)));
    }
    return text::FromUtf16(units);
}

std::string ToUtf16Bytes(std::string_view utf8) {
    std::string bytes;
    for (const char16_t unit : text::ToUtf16(utf8)) {
        bytes.push_back(static_cast<char>(unit & 0xFFU));
        bytes.push_back(static_cast<char>(static_cast<unsigned>(unit) >> 8U));
    }
    return bytes;
}

}  // namespace

Document::Document(std::string_view bytes) {
    sections_.emplace_back();
    std::string content;
    if (bytes.starts_with(kUtf16Mark)) {
        form_ = Form::Utf16;
        content = FromUtf16Bytes(bytes.substr(kUtf16Mark.size()));
    } else {
        text::Decoded decoded = text::Decode(bytes);
        content = std::move(decoded.text);
        if (decoded.encoding == text::Encoding::Windows1252) form_ = Form::Windows1252;
        marked_ = bytes.starts_with(kUtf8Mark);
    }
    std::string_view rest = content;
    const std::size_t firstBreak = rest.find('\n');
    if (firstBreak != std::string_view::npos && (firstBreak == 0 || rest[firstBreak - 1] != '\r'))
        lineEnd_ = kLf;
    while (!rest.empty()) {
        const std::size_t found = rest.find('\n');
        if (found == std::string_view::npos) {
            AddLine(rest, {});
            break;
        }
        const bool carriage = found > 0 && rest[found - 1] == '\r';
        AddLine(rest.substr(0, carriage ? found - 1 : found), carriage ? kCrLf : kLf);
        rest.remove_prefix(found + 1);
    }
}

void Document::AddLine(std::string_view text, std::string_view end) {
    Line line;
    line.text = text;
    line.end = end;
    const std::string_view content = Stripped(text);
    if (content.starts_with('[') && content.find(']') != std::string_view::npos) {
        Section& section = sections_.emplace_back();
        section.name = Folded(content.substr(1, content.find(']') - 1));
        line.kind = Kind::Unknown;
        section.header = std::move(line);
        return;
    }
    Section& section = sections_.back();
    const std::size_t equals = text.find('=');
    if (content.starts_with(';')) {
        line.kind = Kind::Comment;
    } else if (equals != std::string_view::npos && !Stripped(text.substr(0, equals)).empty()) {
        line.kind = Kind::Key;
        line.key = Folded(text.substr(0, equals));
        line.valueAt = std::min(text.find_first_not_of(kBlanks, equals + 1), text.size());
        line.first = section.keys.try_emplace(line.key, section.lines.size()).second;
    } else if (!content.empty()) {
        line.kind = Kind::Unknown;
    }
    section.lines.push_back(std::move(line));
}

std::string_view Document::ValueOf(const Line& line) {
    std::string_view value = Stripped(std::string_view(line.text).substr(line.valueAt));
    if (value.size() > 1 && value.front() == value.back() && (value.front() == '"' || value.front() == '\''))
        value = value.substr(1, value.size() - 2);
    return value;
}

const Document::Section* Document::FindSection(std::string_view folded) const {
    if (folded.empty()) return nullptr;
    const auto found = std::find_if(sections_.begin() + 1, sections_.end(),
                                    [&](const Section& section) { return section.name == folded; });
    return found == sections_.end() ? nullptr : &*found;
}

std::optional<std::string> Document::Find(std::string_view section, std::string_view key) const {
    const Section* const found = FindSection(Folded(section));
    if (found == nullptr) return std::nullopt;
    const auto line = found->keys.find(Folded(key));
    if (line == found->keys.end()) return std::nullopt;
    return std::string(ValueOf(found->lines[line->second]));
}

Document::Line Document::KeyLine(std::string_view key, std::string_view value, std::string_view end) {
    Line line;
    line.text.append(key).push_back('=');
    line.valueAt = line.text.size();
    line.text += value;
    line.end = end;
    line.kind = Kind::Key;
    line.key = Folded(key);
    line.first = true;
    return line;
}

void Document::EndLastLine() {
    Section& last = sections_.back();
    Line* const line = !last.lines.empty()    ? &last.lines.back()
                       : sections_.size() > 1 ? &last.header
                                              : nullptr;
    if (line != nullptr && line->end.empty()) line->end = lineEnd_;
}

Document::Section& Document::SectionFor(std::string_view name) {
    const std::string folded = Folded(name);
    if (const Section* const found = FindSection(folded))
        return sections_[static_cast<std::size_t>(found - sections_.data())];
    EndLastLine();
    Section& last = sections_.back();
    const bool anything = sections_.size() > 1 || !last.lines.empty();
    if (anything && (last.lines.empty() || last.lines.back().kind != Kind::Blank)) {
        last.lines.emplace_back();
        last.lines.back().end = lineEnd_;
    }
    Section& section = sections_.emplace_back();
    section.name = folded;
    section.header.text.append("[").append(Stripped(name)).append("]");
    section.header.end = lineEnd_;
    section.header.kind = Kind::Unknown;
    return section;
}

bool Document::Set(std::string_view section, std::string_view key, std::string_view value) {
    const std::string sectionText = OneLine(section);
    const std::string keyText = OneLine(key);
    const std::string_view keyName = Stripped(keyText);
    if (Stripped(sectionText).empty() || sectionText.find(']') != std::string::npos) return false;
    if (keyName.empty() || keyName.find('=') != std::string_view::npos || keyName.front() == ';' ||
        keyName.front() == '[')
        return false;
    const std::string valueText = OneLine(value);
    if (form_ == Form::Windows1252 && !text::FitsWindows1252(sectionText + keyText + valueText))
        form_ = Form::Utf8;

    Section& place = SectionFor(sectionText);
    const auto known = place.keys.find(Folded(keyName));
    if (known != place.keys.end()) {
        Line& line = place.lines[known->second];
        if (ValueOf(line) == valueText) return false;
        line.text.replace(line.valueAt, std::string::npos, valueText);
        return true;
    }
    // Behind the last key: what stands below it, blank lines and comments, belongs to the next section.
    std::size_t at = place.lines.size();
    while (at > 0 && (place.lines[at - 1].kind == Kind::Blank || place.lines[at - 1].kind == Kind::Comment))
        --at;
    Line& above = at > 0 ? place.lines[at - 1] : place.header;
    if (above.end.empty()) above.end = lineEnd_;
    Line line = KeyLine(keyName, valueText, lineEnd_);
    place.keys.emplace(line.key, at);
    place.lines.insert(place.lines.begin() + static_cast<std::ptrdiff_t>(at), std::move(line));
    return true;
}

bool Document::DeleteSection(std::string_view section) {
    const std::string folded = Folded(section);
    bool deleted = false;
    for (const Section* found = FindSection(folded); found != nullptr; found = FindSection(folded)) {
        const auto place = sections_.begin() + (found - sections_.data());
        auto keep = place->lines.end();
        while (keep != place->lines.begin() && std::prev(keep)->kind == Kind::Comment)
            --keep;
        const bool apart = keep != place->lines.begin() && std::prev(keep)->kind == Kind::Blank;
        if (apart) {
            std::vector<Line>& above = std::prev(place)->lines;
            above.insert(above.end(), std::make_move_iterator(keep),
                         std::make_move_iterator(place->lines.end()));
        }
        sections_.erase(place);
        deleted = true;
    }
    return deleted;
}

void Document::EachNumbered(std::string_view section, std::string_view prefix, std::size_t width,
                            const std::function<bool(std::string_view value)>& visit) const {
    const Section* const found = FindSection(Folded(section));
    std::string key = text::Upper(prefix);
    key.erase(0, std::min(key.find_first_not_of(kBlanks), key.size()));
    const std::size_t prefixSize = key.size();
    std::size_t next = 0;  // where the key stands when they are in order
    for (long number = 1; number < std::numeric_limits<long>::max(); ++number) {
        std::array<char, 24> digits{};
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
        const auto count = static_cast<std::size_t>(end - digits.data());
        key.resize(prefixSize);
        if (count < width) key.append(width - count, '0');
        key.append(digits.data(), count);

        std::string_view value;
        if (found != nullptr) {
            const std::vector<Line>& lines = found->lines;
            std::size_t at = next;
            if (at >= lines.size() || !lines[at].first || lines[at].key != key) {
                const auto known = found->keys.find(key);
                at = known == found->keys.end() ? lines.size() : known->second;
            }
            if (at < lines.size()) {
                value = ValueOf(lines[at]);
                next = at + 1;
            }
        }
        if (!visit(value)) return;
    }
}

std::string Document::Bytes() const {
    std::size_t size = 0;
    for (const Section& section : sections_) {
        size += section.header.text.size() + 2;
        for (const Line& line : section.lines)
            size += line.text.size() + 2;
    }
    std::string content;
    content.reserve(size);
    for (const Section& section : sections_) {
        content.append(section.header.text).append(section.header.end);
        for (const Line& line : section.lines)
            content.append(line.text).append(line.end);
    }
    if (form_ == Form::Utf16) return std::string(kUtf16Mark) + ToUtf16Bytes(content);
    if (form_ == Form::Windows1252) {
        std::string old = text::Encode(content, text::Encoding::Windows1252);
        // Bytes that are UTF-8 by chance would be taken for it the next time.
        if (!text::IsUtf8(old)) content = std::move(old);
    }
    if (marked_) content.insert(0, kUtf8Mark);
    return content;
}

}  // namespace zenvora::ini
