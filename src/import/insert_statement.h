#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "import/destination_fields.h"
#include "import/load_log.h"
#include "import/source_grid.h"
#include "platform/fault.h"
#include "platform/text/date.h"

namespace zenvora::importing {

/// A grid column that goes into COMPS.
struct MappedColumn {
    int gridColumn = 0;
    DestinationField field;
};

/// What a load is made of, the same for all of its rows.
struct LoadPlan {
    std::vector<MappedColumn> columns;  ///< in the order of the grid
    text::Date fileDate = 0;            ///< date of the source file; its time of day does not matter
    int currentYear = 0;                ///< completes a sale date without a year
};

/// Turns grid rows, one after the other, into the texts of INSERT statements.
///
/// The text is joined from the values as they stand: a double quote in a value, a number without a digit, an
/// empty last value make a statement that the store refuses, and so refuse their row.
class InsertStatement {
  public:
    /// Fault 9: more than 255 columns.
    explicit InsertStatement(LoadPlan plan);

    /// Builds the statement of a row; `log`, which may be null, gets a line for each piece.
    ///
    /// With days on market mapped the original list date is worked out: the sale date, or else the file's
    /// date, less the days. Where the sale date is no date, or the result lies out of range, that is a fault
    /// (13, 6) until CatchFaults has been called; after that the date of the row before stays.
    void Build(const SourceGrid& grid, int row, LoadLog* log);
    /// From the first execution of a statement on, a date that cannot be worked out does not end the load.
    void CatchFaults() noexcept { catching_ = true; }

    [[nodiscard]] const std::string& Text() const noexcept { return text_; }
    [[nodiscard]] const LoadPlan& Plan() const noexcept { return plan_; }
    /// The values of the last row, parallel to the plan's columns, as they went into the statement.
    [[nodiscard]] const std::vector<std::string>& Values() const noexcept { return values_; }

  private:
    void Collect(const SourceGrid& grid, int row, LoadLog* log);
    void AppendColumns(LoadLog* log);
    void AppendValues(LoadLog* log);
    void AppendValue(std::size_t k, bool isLast, LoadLog* log);
    [[nodiscard]] std::string ListingDate(std::string_view value);
    void Append(std::string_view first, std::string_view second, std::string_view third, LoadLog* log);

    LoadPlan plan_;
    std::vector<std::string> values_;
    std::string text_;
    std::string saleDate_;
    std::string contractDate_;
    std::string daysOnMarket_;
    text::Date listingDay_ = 0;
    bool catching_ = false;
};

}  // namespace zenvora::importing
