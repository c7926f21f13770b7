#pragma once

#include <array>
#include <string>
#include <string_view>

#include "platform/ado/adodc.h"
#include "platform/page/printer.h"
#include "printing/print_defaults.h"

/// The table of the Market Conditions Audit Report: its columns, its heading and its rows.
namespace zenvora::printing {

inline constexpr std::string_view kRowFont = "Arial Narrow";
inline constexpr double kRowSize = 10;

/// Where columns 2 to 12 begin, in twips from the left: the left margin and the width texts of the columns
/// before, added up in the font of the heading.
using ColumnPositions = std::array<double, 11>;

/// What becomes of a text that is too long for its column.
enum class LongText {
    RunsOn,  ///< nothing is cut: it runs on, and the next column is printed over it
    Shrinks  ///< it is set smaller, down to its column
};

/// Heading and rule at the current height. The printer is then in the default font.
void PrintAuditHeader(page::Printer& printer, const PrintDefaults& defaults, const std::string& rule);
/// Measures the columns. The printer keeps the font of the heading.
void MeasureAuditColumns(page::Printer& printer, const PrintDefaults& defaults, ColumnPositions& columnX);
/// Prints the current record at the height `rowY`, which must be CurrentY, and moves to the line below. A
/// missing date (day zero) and a missing price (0) are empty. Faults: 482, 91; a field that cannot be read is
/// empty.
void PrintAuditRow(page::Printer& printer, const PrintDefaults& defaults, ado::Adodc& adoDatabook,
                   double rowY, const ColumnPositions& columnX, LongText longText);

}  // namespace zenvora::printing
