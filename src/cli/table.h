#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

/// The two flat ways of writing a result: aligned text and CSV.
namespace zenvora::cli {

struct Column {
    std::string heading;
    bool alignRight = false;
};

/// Calls its argument once for each row, in order, with one text per column. May be called more than once and
/// must give the same rows each time: aligned text is measured before it is written, and a result may be too
/// large to keep.
using RowSource = std::function<void(const std::function<void(const std::vector<std::string>&)>&)>;
[[nodiscard]] RowSource Rows(std::vector<std::vector<std::string>> rows);

/// Columns as wide as their widest text, two blanks between them, headings above. Control characters in a
/// text are shown as blanks, so that a row stays one line and no text can speak to the terminal.
void WriteText(std::ostream& out, const std::vector<Column>& columns, const RowSource& rows);

/// RFC 4180: lines end in CR LF; a field with a comma, a quote or a line break is quoted, its quotes doubled.
void WriteCsv(std::ostream& out, const std::vector<Column>& columns, const RowSource& rows);

/// One CSV field.
[[nodiscard]] std::string CsvField(std::string_view text);

/// The text filled up with blanks to `width` characters, on the right side or the left.
[[nodiscard]] std::string Pad(std::string_view text, std::size_t width, bool alignRight = false);

}  // namespace zenvora::cli
