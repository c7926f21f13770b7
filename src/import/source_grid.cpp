#include "import/source_grid.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "platform/fault.h"

namespace zenvora::importing {

void SourceGrid::SetRows(int rows) {
    if (rows < 0) throw Fault{fault::kInvalidProperty, "A grid cannot have fewer than no rows."};
    rows_.resize(static_cast<std::size_t>(rows));
}

void SourceGrid::SetCols(int cols) {
    if (cols < 0) throw Fault{fault::kInvalidProperty, "A grid cannot have fewer than no columns."};
    if (cols < cols_) {
        for (Row& row : rows_)
            row.width = std::min(row.width, cols);
    }
    cols_ = cols;
}

void SourceGrid::CheckPlace(int row, int col) const {
    if (row < 0 || row >= Rows() || col < 0 || col >= cols_) {
        throw Fault{fault::kSubscript, "The grid has no cell in row " + std::to_string(row) + ", column " +
                                           std::to_string(col) + "."};
    }
}

std::string_view SourceGrid::TextMatrix(int row, int col) const {
    CheckPlace(row, col);
    const Row& place = rows_[static_cast<std::size_t>(row)];
    if (col >= place.width) return {};
    const Cell& cell = cells_[place.first + static_cast<std::size_t>(col)];
    return std::string_view(texts_).substr(cell.offset, cell.length);
}

void SourceGrid::SetTextMatrix(int row, int col, std::string_view text) {
    CheckPlace(row, col);
    Row& place = rows_[static_cast<std::size_t>(row)];
    if (col >= place.width) {
        if (text.empty()) return;
        const auto width = static_cast<std::size_t>(place.width);
        if (place.first + width != cells_.size()) {
            // Another row lies behind this one: the row moves to the end, where it can grow.
            const std::size_t first = cells_.size();
            cells_.resize(first + width);
            std::copy_n(cells_.begin() + static_cast<std::ptrdiff_t>(place.first), width,
                        cells_.begin() + static_cast<std::ptrdiff_t>(first));
            place.first = first;
        }
        cells_.resize(place.first + static_cast<std::size_t>(col) + 1);
        place.width = col + 1;
    }
    cells_[place.first + static_cast<std::size_t>(col)] = NewCell(text);
}

SourceGrid::Cell SourceGrid::NewCell(std::string_view text) {
    if (text.size() > std::numeric_limits<std::uint32_t>::max() - texts_.size()) {
        throw Fault{fault::kOutOfMemory,
                    "The source holds more than 4 GB of text. Split it and import the parts."};
    }
    const Cell cell{static_cast<std::uint32_t>(texts_.size()), static_cast<std::uint32_t>(text.size())};
    texts_.append(text);
    return cell;
}

void SourceGrid::InsertColumn(int col, const std::vector<std::string>& texts) {
    if (col != cols_) CheckPlace(0, col);
    std::vector<Cell> cells;
    cells.reserve(cells_.size() + rows_.size());
    for (std::size_t r = 0; r < rows_.size(); ++r) {
        Row& row = rows_[r];
        const auto old = cells_.begin() + static_cast<std::ptrdiff_t>(row.first);
        const std::string_view text = r < texts.size() ? std::string_view(texts[r]) : std::string_view();
        const std::size_t first = cells.size();
        cells.insert(cells.end(), old, old + std::min(row.width, col));
        if (row.width > col || !text.empty()) {
            cells.resize(first + static_cast<std::size_t>(col));
            cells.push_back(NewCell(text));
            if (row.width > col) cells.insert(cells.end(), old + col, old + row.width);
        }
        row.first = first;
        row.width = static_cast<int>(cells.size() - first);
    }
    cells_ = std::move(cells);
    ++cols_;
}

int SourceGrid::FindColumn(std::string_view name) const {
    for (int col = 0; col < cols_; ++col) {
        if (TextMatrix(0, col) == name) return col;
    }
    return -1;
}

void SourceGrid::Clear() {
    texts_.clear();
    cells_.clear();
    std::fill(rows_.begin(), rows_.end(), Row{});
}

}  // namespace zenvora::importing
