#pragma once

#include <optional>
#include <string>
#include <vector>

#include "import/destination_fields.h"
#include "platform/controls/grid.h"

namespace zenvora::importing {

/// What a row of the source will become.
struct PreviewRow {
    long row = 0;                       ///< grid row, as in the load log
    long line = 0;                      ///< line of the source file, 0 for a row that stands on none
    std::vector<std::string> values{};  ///< by destination field: as the Databook will hold it, dates as
                                        ///< M/D/YYYY; empty for a missing date or price
    std::string refusal{};              ///< why the row will not be written; empty: it will
};

/// The first rows of a source as records, shown in a grid before anything is written.
class LoadPreview final : public controls::GridRows {
  public:
    /// The rows and what they mean: a column for the row, one for each destination field, one for the
    /// refusal.
    [[nodiscard]] static std::vector<controls::GridColumn> Columns(
        const std::vector<DestinationField>& fields);

    void SetRows(std::vector<PreviewRow> rows) { rows_ = std::move(rows); }
    [[nodiscard]] const std::vector<PreviewRow>& Rows() const noexcept { return rows_; }

    [[nodiscard]] int RowCount() const override { return static_cast<int>(rows_.size()); }
    [[nodiscard]] std::optional<std::string> Value(int row, int column) const override;

  private:
    std::vector<PreviewRow> rows_;
};

}  // namespace zenvora::importing
