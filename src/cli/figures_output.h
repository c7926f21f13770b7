#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "analysis/frm_data_viewer.h"
#include "analysis/results_1004mc.h"
#include "cli/values.h"

/// The figures of Form 1004MC, and the lists behind them, in the program's output forms. The texts are those
/// of the cells; nothing is worked out here.
namespace zenvora::cli {

/// The two blocks of the form: a caption and three period columns each.
void WriteFiguresText(std::ostream& out, const analysis::Results1004MC& results);
/// Each list with its entries and its five figures.
void WriteListsText(std::ostream& out, const analysis::frmDataViewer& viewer);

/// {"txtTotalC":["4","9","12"], ...}
[[nodiscard]] Json FiguresJson(const analysis::Results1004MC& results);
/// [{"index":0,"caption":...,"period":...,"entries":[...],"average":...,"median":...,"total":...,"lowest":...,
/// "highest":...}, ...]
[[nodiscard]] Json ListsJson(const analysis::frmDataViewer& viewer);

/// One line per row of the form: block, name of the cells, caption, the three periods; and with `viewer` the
/// lists in the same columns, an entry a line.
void WriteFiguresCsv(std::ostream& out, const analysis::Results1004MC& results,
                     const analysis::frmDataViewer* viewer);

}  // namespace zenvora::cli
