#pragma once

#include <string>
#include <string_view>

#include "import/source_grid.h"

/// One line of delimited text at a time. The faults name no place: who reads the file knows it.
namespace zenvora::importing {

/// Most fields of a line.
inline constexpr int kMostTokens = 255;

/// The separator of a first line: the one of comma, "~", "|", tab and ";" that it holds most often, quoted
/// text included; of equals the one named last, and ";" when it holds none.
[[nodiscard]] char DetectDelimiter(std::string_view line) noexcept;

/// The line without the stray double quotes of unquoted fields and without one trailing separator.
///
/// The line is cut at every separator, quoted or not; a field that a separator follows loses its double
/// quotes when it neither starts nor ends in one. The result is a part of `line` or lies in `scratch`.
/// Faults: 9 more than 255 fields, 6 a separator beyond position 32,767.
[[nodiscard]] std::string_view NormalizeLine(std::string_view line, char delimiter, std::string& scratch);

/// The separators outside of quoted fields. Behind a quoted field three characters are passed over, though
/// the quote and the separator are only two. `bookEnd` becomes true when the line holds a double quote, and
/// is left alone otherwise. Fault 6: a quoted field without its closing quote.
[[nodiscard]] int CountDelimitedFields(std::string_view line, char delimiter, bool& bookEnd);

/// Puts the fields of a line into the grid, from column 1 on: a header into row 0 of the emptied grid, which
/// gets its columns from it, any other line into a new last row. Column 0 stays empty.
///
/// A field in double quotes may hold separators; doubled quotes are no escape. The grid grows by a column
/// when empty fields at the end of a line pass the last one. Faults: 6 more than 32,767 rows; 9 more fields
/// than columns; 20002 a quoted field without its closing quote.
void ParseDelimitedLine(std::string_view line, char delimiter, bool isHeader, SourceGrid& grid);

}  // namespace zenvora::importing
