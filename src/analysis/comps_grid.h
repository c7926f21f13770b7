#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/ado/adodc.h"
#include "platform/controls/grid.h"

/// The Comps grid: what stands in its columns, and its rows.
namespace zenvora::analysis {

/// Pictures of the flag column, by their names among the program's own; excluded records show none.
inline constexpr std::string_view kPictureInvalid = "cross";
inline constexpr std::string_view kPictureValid = "check";

/// Places of the columns that rules ask for.
inline constexpr int kGridFlag = 0;
inline constexpr int kGridKey = 1;

/// The grid set-up: the ten columns with captions, widths in twips and value items. A missing date (day zero)
/// and a missing price (0) show as nothing.
[[nodiscard]] std::vector<controls::GridColumn> CompsGridColumns();

/// The rows of the Comps grid over a data control. Each cell is read from the Recordset when it is asked for,
/// so that a hundred thousand records cost what ten do; the current record is not moved. Without a Recordset
/// there are no rows. Faults in Value: those of reading a Memo column from the Databook.
class CompsGridRows final : public controls::GridRows {
  public:
    /// The data control must live as long as the rows.
    explicit CompsGridRows(ado::Adodc& control) : control_(control) {}

    [[nodiscard]] int RowCount() const override;
    /// The value as text, nothing for Null, for a column that the Databook lacks and beyond the rows.
    [[nodiscard]] std::optional<std::string> Value(int row, int column) const override;

  private:
    ado::Adodc& control_;
    // Where the grid's columns stand in the Recordset, looked up once for each Recordset.
    mutable unsigned generation_ = 0;
    mutable std::vector<int> fields_;
};

}  // namespace zenvora::analysis
