#include "import/xml_source.h"

#include <unordered_set>

#include "import/source_text.h"
#include "platform/fault.h"
#include "platform/text/utf8.h"

namespace zenvora::importing {

namespace {

constexpr auto kNowhere = std::string_view::npos;

void ScanLine(std::string_view line, std::vector<std::string>& tags, std::unordered_set<std::string>& known) {
    if (!line.empty()) CheckPosition(line, line.size() - 1);
    std::size_t at = line.find('<');
    if (at == kNowhere) return;
    const bool qualifies = line.find("</", at + 1) != kNowhere;
    for (; at != kNowhere; at = line.find('<', at)) {
        const std::size_t end = line.find('>', at);
        if (end == kNowhere) {
            throw Fault{fault::kSourceFormat,
                        "A \"<\" has no \">\" behind it on the same line. Only XML with every tag whole on "
                        "one line can be "
                        "imported: export flat XML or delimited text instead."};
        }
        std::string_view tag = line.substr(at + 1, end - at - 1);
        if (!tag.empty() && tag.front() == '/') tag.remove_prefix(1);
        at = end + 1;
        if (!qualifies || tag.empty() || !known.emplace(tag).second) continue;
        tags.emplace_back(tag);
    }
}

/// The text between the two tags of a field.
std::string_view FieldValue(std::string_view line, std::string_view opening, std::string_view closing,
                            bool atEnd) {
    const std::size_t a = line.find(opening);
    const std::size_t b = line.find(closing);
    if (a != kNowhere && b != kNowhere && a + opening.size() <= b)
        return line.substr(a + opening.size(), b - a - opening.size());
    const std::string field = std::string(opening) + "..." + std::string(closing);
    if (atEnd && line.empty()) {
        throw Fault{fault::kInvalidCall,
                    "The file ends inside a record: " + field + " is missing. Export the file again."};
    }
    throw Fault{
        fault::kInvalidCall,
        "The line must hold " + field +
            ", for every record needs the fields of the first one, each on a line of its own and in the same "
            "order. Export flat XML or delimited text instead."};
}

/// Runs a pass over the lines; a fault gets its place.
template <class Pass>
void WithPlace(const std::string& file, const LineReader& reader, Pass pass) {
    try {
        pass();
    } catch (Fault& fault) {
        fault.place.file = file;
        fault.place.line = reader.LineNumber();
        throw;
    }
}

}  // namespace

std::vector<std::string> ScanXmlTags(std::string_view text, const std::string& file) {
    std::vector<std::string> tags;
    std::unordered_set<std::string> known;
    LineReader reader(text);
    WithPlace(file, reader, [&] {
        while (!reader.AtEnd())
            ScanLine(text::TrimView(reader.ReadRawLine()), tags, known);
    });
    if (tags.empty()) {
        throw Fault{fault::kSourceFormat,
                    "No element opens and closes on one line, so there is nothing to import. Export flat "
                    "XML, one element "
                    "a line, or delimited text instead.",
                    PlaceIn(file, 1)};
    }
    return tags;
}

void ParseXmlText(std::string_view text, const std::string& file, const std::vector<std::string>& tags,
                  SourceGrid& grid, std::vector<std::uint32_t>& lines) {
    std::vector<std::string> openings;
    std::vector<std::string> closings;
    grid.SetCols(0);
    for (std::size_t i = 0; i < tags.size(); ++i) {
        const int column = static_cast<int>(i);
        grid.SetCols(column + 1);
        grid.SetTextMatrix(0, column, tags[i]);
        openings.push_back("<" + tags[i] + ">");
        closings.push_back("</" + tags[i] + ">");
    }
    int row = 1;
    grid.SetRows(row + 1);
    lines.assign(2, 0);

    LineReader reader(text);
    WithPlace(file, reader, [&] {
        std::string_view line = reader.ReadRawLine();
        while (!reader.AtEnd()) {
            if (line.find(openings.front()) == kNowhere) {
                if (line.find(closings.front()) != kNowhere) {
                    throw Fault{fault::kInvalidCall, "The line holds " + closings.front() + " without " +
                                                         openings.front() +
                                                         " before it. Mend the file and import again."};
                }
                line = reader.ReadRawLine();
                continue;
            }
            lines.back() = static_cast<std::uint32_t>(reader.LineNumber());
            for (std::size_t i = 0; i < tags.size(); ++i) {
                const std::string_view value =
                    FieldValue(text::TrimView(line), openings[i], closings[i], reader.AtEnd());
                grid.SetTextMatrix(row, static_cast<int>(i), value);
                line = reader.ReadRawLine();
            }
            if (++row > kLastRow) {
                throw Fault{fault::kOverflow,
                            "The file has more than 32,766 records. Split it and import the parts."};
            }
            grid.SetRows(row + 1);
            lines.push_back(0);
        }
    });
}

}  // namespace zenvora::importing
