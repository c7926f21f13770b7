#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zenvora::importing {

/// The wizard's grid: rows and columns of text, both counted from 0. A new cell is empty.
///
/// All texts lie in one piece of memory, so that the largest source (32,767 rows) costs little more than its
/// file. Filling the last row from left to right is the quick way; any other order works as well.
class SourceGrid {
  public:
    [[nodiscard]] int Rows() const noexcept { return static_cast<int>(rows_.size()); }
    [[nodiscard]] int Cols() const noexcept { return cols_; }
    /// New rows and columns are empty, those cut off are lost. Fault 380: a negative number.
    void SetRows(int rows);
    void SetCols(int cols);
    /// The text of a cell, valid until the grid changes. Fault 9: outside the grid.
    [[nodiscard]] std::string_view TextMatrix(int row, int col) const;
    /// Faults: 9 outside the grid, 7 more than 4 GB of text.
    void SetTextMatrix(int row, int col, std::string_view text);
    /// Puts a new column in front of the one at `col`, which may be the number of columns; `texts` are its
    /// cells from row 0 on, and rows behind them are empty in it. Faults: 9 no such column, 7 as above.
    void InsertColumn(int col, const std::vector<std::string>& texts);
    /// The first column whose text in row 0 is `name`, -1 when there is none.
    [[nodiscard]] int FindColumn(std::string_view name) const;
    /// Empties every cell; rows and columns stay.
    void Clear();

  private:
    struct Cell {
        std::uint32_t offset = 0;
        std::uint32_t length = 0;
    };
    /// Cells behind `width` are empty and take no room.
    struct Row {
        std::size_t first = 0;
        int width = 0;
    };
    void CheckPlace(int row, int col) const;
    [[nodiscard]] Cell NewCell(std::string_view text);

    std::string texts_;
    std::vector<Cell> cells_;
    std::vector<Row> rows_ = std::vector<Row>(1);
    int cols_ = 1;
};

}  // namespace zenvora::importing
