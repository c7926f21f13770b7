#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "import/source_grid.h"

/// XML as listing services write it line by line: one element a line, every record with the same elements in
/// the same order. No general parser: attributes, entities and nesting mean nothing to it.
namespace zenvora::importing {

/// The names of the elements that open and close on one line, in the order of their first appearance. An
/// attribute stays in the name, and the closing tag then counts as another name. Faults, with `file` and the
/// line as their place: 20002 a "<" without a ">" behind it on its line, no such element in the whole text
/// (at line 1); 6 a line of more than 32,767 characters.
[[nodiscard]] std::vector<std::string> ScanXmlTags(std::string_view text, const std::string& file);

/// Reads the records into the grid: `tags` in row 0 from column 0 on, a row for each record, and a blank last
/// row.
///
/// A record starts at a line that holds the first tag; its other fields are taken from the lines that follow,
/// each of which must hold the next tag. A record that starts on a last line without line break is not read.
/// `lines[r]` is the line on which the record of grid row r starts, 0 for rows that are no record. Faults,
/// with `file` and the line as their place: 5 a line of a record without its opening and closing tag, a text
/// that ends inside a record, a closing first tag without its opening one; 6 more than 32,766 records.
void ParseXmlText(std::string_view text, const std::string& file, const std::vector<std::string>& tags,
                  SourceGrid& grid, std::vector<std::uint32_t>& lines);

}  // namespace zenvora::importing
