#include "import/delimited_line.h"

#include <algorithm>
#include <array>

#include "import/source_text.h"
#include "platform/fault.h"

namespace zenvora::importing {

namespace {

constexpr char kQuote = '"';

void StoreField(SourceGrid& grid, int row, int column, std::string_view text) {
    if (column >= grid.Cols()) {
        throw Fault{fault::kSubscript,
                    "The line has more fields than the first line of the file, which names " +
                        std::to_string(grid.Cols() - 1) +
                        ". Look for a separator or a double quote inside a value, mend the line and "
                        "import again."};
    }
    grid.SetTextMatrix(row, column, text);
}

int AddRow(SourceGrid& grid) {
    const int row = grid.Rows();
    if (row > kLastRow) {
        throw Fault{
            fault::kOverflow,
            "The file has more than 32,767 rows (an empty line is a row, one after the last line break too). "
            "Split it and import the parts."};
    }
    grid.SetRows(row + 1);
    return row;
}

}  // namespace

char DetectDelimiter(std::string_view line) noexcept {
    constexpr std::array kCandidates = {',', '~', '|', '\t', ';'};
    char best = kCandidates.front();
    std::ptrdiff_t most = 0;
    for (const char candidate : kCandidates) {
        const auto count = std::count(line.begin(), line.end(), candidate);
        if (count < most) continue;
        most = count;
        best = candidate;
    }
    return best;
}

std::string_view NormalizeLine(std::string_view line, char delimiter, std::string& scratch) {
    const std::size_t lastDelimiter = line.rfind(delimiter);
    if (lastDelimiter != std::string_view::npos) CheckPosition(line, lastDelimiter);
    const bool endsInDelimiter = !line.empty() && line.back() == delimiter;
    const auto tokens =
        std::count(line.begin(), line.end(), delimiter) + (endsInDelimiter || line.empty() ? 0 : 1);
    if (tokens > kMostTokens) {
        throw Fault{fault::kSubscript,
                    "The line has more than 255 fields, which is more than an import can take. Leave columns "
                    "out of the "
                    "export and import again."};
    }
    if (endsInDelimiter) line.remove_suffix(1);
    if (lastDelimiter == std::string_view::npos || line.find(kQuote) == std::string_view::npos) return line;

    scratch.clear();
    std::size_t start = 0;
    for (;;) {
        const std::size_t end = std::min(line.find(delimiter, start), line.size());
        const std::string_view token = line.substr(start, end - start);
        const bool followed = end < line.size() || endsInDelimiter;
        if (followed && !token.empty() && token.front() != kQuote && token.back() != kQuote) {
            std::copy_if(token.begin(), token.end(), std::back_inserter(scratch),
                         [](char c) { return c != kQuote; });
        } else {
            scratch += token;
        }
        if (end == line.size()) return scratch;
        scratch += delimiter;
        start = end + 1;
    }
}

int CountDelimitedFields(std::string_view line, char delimiter, bool& bookEnd) {
    if (line.find(kQuote) != std::string_view::npos) bookEnd = true;
    int count = 0;
    for (std::size_t at = line.find(delimiter); at != std::string_view::npos; at = line.find(delimiter)) {
        if (line.front() == kQuote) {
            const std::size_t close = line.find(kQuote, 1);
            if (close == std::string_view::npos) {
                throw Fault{fault::kOverflow,
                            "A field starts with a double quote and has no closing one on its line. Mend the "
                            "line and "
                            "import again."};
            }
            CheckPosition(line, close);
            line = WithoutFirst(line.substr(close), 3);
        } else {
            line.remove_prefix(at + 1);
        }
        ++count;
    }
    return count;
}

void ParseDelimitedLine(std::string_view line, char delimiter, bool isHeader, SourceGrid& grid) {
    if (isHeader) grid.Clear();
    const int row = isHeader ? 0 : AddRow(grid);
    int column = 1;
    for (std::size_t at = line.find(delimiter); at != std::string_view::npos; at = line.find(delimiter)) {
        std::string_view token;
        if (line.front() == kQuote) {
            const std::size_t close = line.find(kQuote, 1);
            if (close == std::string_view::npos) {
                throw Fault{fault::kSourceFormat,
                            "A field starts with a double quote and has no closing one on its line. Mend the "
                            "line and "
                            "import again."};
            }
            CheckPosition(line, close);
            token = line.substr(1, close - 1);
            line = WithoutFirst(line.substr(close), 2);
        } else {
            token = line.substr(0, at);
            line.remove_prefix(at + 1);
            if (!token.empty() && token.back() == kQuote) token.remove_suffix(1);
        }
        if (isHeader) grid.SetCols(column + 1);
        StoreField(grid, row, column, token);
        if (!line.empty() && line.front() == delimiter) {
            ++column;
            if (isHeader) grid.SetCols(grid.Cols() + 1);
            line.remove_prefix(1);
        }
        ++column;
        if (grid.Cols() < column) grid.SetCols(grid.Cols() + 1);
    }
    if (line.empty()) return;
    if (line.front() == kQuote) line.remove_prefix(1);
    if (!line.empty() && line.back() == kQuote) line.remove_suffix(1);
    if (isHeader) grid.SetCols(grid.Cols() + 1);
    StoreField(grid, row, column, line);
}

}  // namespace zenvora::importing
