#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/controls/control.h"

namespace zenvora::controls {

/// A column of a grid.
struct GridColumn {
    /// A value that is shown as something else, "01/01/1900" as nothing.
    struct ValueItem {
        std::string value;
        std::string shown;  ///< the text, or the picture's name in a column of pictures
    };
    std::string caption;
    int width = 975;  ///< twips of the program's layout
    bool pictures = false;
    bool rightAligned = false;
    std::vector<ValueItem> valueItems{};
    bool fitsValues = false;  ///< as much wider as the first values need, within reason
};

/// The rows that a grid shows, read on demand: a view asks for the rows on the screen and no others.
class GridRows {
  public:
    virtual ~GridRows() = default;
    [[nodiscard]] virtual int RowCount() const = 0;
    /// The value of a cell, nothing for Null. Rows and columns count from 0.
    [[nodiscard]] virtual std::optional<std::string> Value(int row, int column) const = 0;
};

/// A table of cells that the user reads, with a current cell.
class Grid final : public Control {
  public:
    using Control::Control;
    [[nodiscard]] std::string_view TypeName() const noexcept override { return "TDBGRID"; }

    [[nodiscard]] const std::vector<GridColumn>& Columns() const noexcept { return columns_; }
    void SetColumns(std::vector<GridColumn> columns);
    /// Rows that outlive the grid or are taken away by a null.
    void SetRows(const GridRows* rows);
    /// The rows have changed: views show them anew.
    void Refresh() { TellViews(Property::Items); }

    [[nodiscard]] int RowCount() const { return rows_ == nullptr ? 0 : rows_->RowCount(); }
    /// The value of a cell, nothing for Null and beyond the rows.
    [[nodiscard]] std::optional<std::string> Value(int row, int column) const;
    /// The same as its column shows it.
    [[nodiscard]] std::string Shown(int row, int column) const;

    /// The current cell; row -1 when there is none.
    [[nodiscard]] int Row() const noexcept { return row_; }
    [[nodiscard]] int Col() const noexcept { return column_; }
    /// Marks a cell as current, to follow the records: no rule runs.
    void ShowCurrent(int row);
    /// The user goes to a cell. A real change runs the rule of moving before this returns.
    void MoveTo(int row, int column);
    void OnRowColChange(std::function<void()> rule) { moveRule_ = std::move(rule); }
    /// The user's click and double click on the current cell.
    void Click();
    void DblClick();
    void OnClick(std::function<void()> rule) { clickRule_ = std::move(rule); }
    void OnDblClick(std::function<void()> rule) { dblClickRule_ = std::move(rule); }
    [[nodiscard]] bool HasDblClickRule() const noexcept { return static_cast<bool>(dblClickRule_); }

  private:
    std::vector<GridColumn> columns_;
    const GridRows* rows_ = nullptr;
    int row_ = -1;
    int column_ = 0;
    std::function<void()> moveRule_;
    std::function<void()> clickRule_;
    std::function<void()> dblClickRule_;
};

}  // namespace zenvora::controls
