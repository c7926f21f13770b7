#include "import/delimited_source.h"

#include "import/delimited_line.h"
#include "import/source_text.h"
#include "platform/fault.h"

namespace zenvora::importing {

void ParseDelimitedText(std::string_view text, const std::string& file, bool headerRow, SourceGrid& grid,
                        DelimitedFormat& format, std::vector<std::uint32_t>& lines) {
    LineReader reader(text);
    std::string scratch;
    const auto nextLine = [&] { return NormalizeLine(reader.ReadRawLine(), format.Delimiter, scratch); };
    const auto addRow = [&](std::string_view line, std::uint32_t number) {
        ParseDelimitedLine(line, format.Delimiter, false, grid);
        lines.push_back(number);
    };
    try {
        const std::string_view first = reader.ReadRawLine();
        format.Delimiter = DetectDelimiter(first);
        std::string_view line = NormalizeLine(first, format.Delimiter, scratch);
        if (headerRow) {
            ParseDelimitedLine(line, format.Delimiter, true, grid);
            lines.assign(1, 1);
            line = nextLine();
        } else {
            const int last = CountDelimitedFields(line, format.Delimiter, format.BookEnd);
            for (int column = 0; column <= last; ++column) {
                grid.SetTextMatrix(0, column, "Field  " + std::to_string(column + 1));
                grid.SetCols(grid.Cols() + 1);
            }
            lines.assign(1, 0);
        }
        std::uint32_t number = headerRow ? 2 : 1;
        while (!reader.AtEnd()) {
            addRow(line, number++);
            line = nextLine();
        }
        addRow(line, number);
    } catch (Fault& fault) {
        fault.place.file = file;
        fault.place.line = reader.LineNumber();
        throw;
    }
}

}  // namespace zenvora::importing
