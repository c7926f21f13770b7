#include "cli/table.h"

#include <algorithm>
#include <memory>

#include "platform/text/utf8.h"

namespace zenvora::cli {

namespace {

bool IsControl(char character) {
    const auto code = static_cast<unsigned char>(character);
    return code < 0x20 || code == 0x7F;
}

std::string Printable(std::string_view text) {
    std::string result(text);
    std::replace_if(result.begin(), result.end(), IsControl, ' ');
    return result;
}

std::string TextLine(const std::vector<Column>& columns, const std::vector<std::size_t>& widths,
                     const std::vector<std::string>& cells) {
    std::string line;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (i > 0) line += "  ";
        line += Pad(Printable(cells[i]), widths[i], columns[i].alignRight);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

std::string CsvLine(const std::vector<std::string>& cells) {
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (i > 0) line += ',';
        line += CsvField(cells[i]);
    }
    return line + "\r\n";
}

std::vector<std::string> Headings(const std::vector<Column>& columns) {
    std::vector<std::string> headings;
    headings.reserve(columns.size());
    for (const auto& column : columns)
        headings.push_back(column.heading);
    return headings;
}

}  // namespace

RowSource Rows(std::vector<std::vector<std::string>> rows) {
    auto kept = std::make_shared<const std::vector<std::vector<std::string>>>(std::move(rows));
    return [kept](const auto& visit) {
        for (const auto& row : *kept)
            visit(row);
    };
}

void WriteText(std::ostream& out, const std::vector<Column>& columns, const RowSource& rows) {
    std::vector<std::size_t> widths;
    widths.reserve(columns.size());
    for (const auto& column : columns)
        widths.push_back(text::Length(column.heading));
    rows([&](const std::vector<std::string>& cells) {
        for (std::size_t i = 0; i < widths.size(); ++i)
            widths[i] = std::max(widths[i], text::Length(cells[i]));
    });
    out << TextLine(columns, widths, Headings(columns)) << '\n';
    rows([&](const std::vector<std::string>& cells) { out << TextLine(columns, widths, cells) << '\n'; });
}

void WriteCsv(std::ostream& out, const std::vector<Column>& columns, const RowSource& rows) {
    out << CsvLine(Headings(columns));
    rows([&](const std::vector<std::string>& cells) { out << CsvLine(cells); });
}

std::string CsvField(std::string_view text) {
    if (text.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(text);
    std::string field = "\"";
    for (const char character : text) {
        if (character == '"') field += '"';
        field += character;
    }
    return field + '"';
}

std::string Pad(std::string_view text, std::size_t width, bool alignRight) {
    const std::size_t length = text::Length(text);
    const std::string blanks(width > length ? width - length : 0, ' ');
    return alignRight ? blanks + std::string(text) : std::string(text) + blanks;
}

}  // namespace zenvora::cli
