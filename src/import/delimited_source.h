#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "import/source_grid.h"

namespace zenvora::importing {

/// What reading a delimited file leaves behind, beside its rows.
struct DelimitedFormat {
    char Delimiter = 0;
    bool BookEnd = false;  ///< a first line without field names held a double quote
};

/// Reads a delimited text into the grid, which has one row and one column before.
///
/// With a header row its first line names columns 1 and up. Without one the columns from 0 on are named
/// "Field  1" and so on, while the values start in column 1, so that names and values do not line up. Every
/// line is a row, the empty line behind a last line break included. `lines[r]` is the line of grid row r,
/// from 1 (0 for a row 0 that is no line). Faults: those of delimited_line.h, with `file` and the line as
/// their place; the grid stays as far as it got.
void ParseDelimitedText(std::string_view text, const std::string& file, bool headerRow, SourceGrid& grid,
                        DelimitedFormat& format, std::vector<std::uint32_t>& lines);

}  // namespace zenvora::importing
