#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "import/insert_statement.h"
#include "import/source_grid.h"
#include "platform/fault.h"

namespace zenvora::importing {

/// A row that the store did not take.
struct RefusedRow {
    long row = 0;             ///< grid row, as in the log
    long line = 0;            ///< line of the source file, 0 for a row that stands on none
    std::string reason = {};  ///< in clear words, the value included: `no date in "Sale Date": 13/32/2026`
    std::string field = {};   ///< caption of the field that is to blame, empty when it is the whole row
    bool isBlank = false;     ///< every cell is blank; no error, the line behind a last line break is one
};

/// What became of a load. Rows sent = rows written + rows refused.
struct LoadOutcome {
    long rows = 0;
    long written = 0;
    std::vector<RefusedRow> refused;

    /// True when a row was refused that is not a blank one.
    [[nodiscard]] bool HasErrors() const;
};

/// What became of a load, for the user: how many rows were written and refused, and a line for each reason
/// with its rows, the most frequent first.
[[nodiscard]] std::string SummaryText(const LoadOutcome& outcome);

/// Why the store refused the last row that `statement` built. Fills everything but the place (`row`, `line`).
[[nodiscard]] RefusedRow ExplainRefusal(const Fault& fault, const InsertStatement& statement,
                                        const SourceGrid& grid, int row);

}  // namespace zenvora::importing
