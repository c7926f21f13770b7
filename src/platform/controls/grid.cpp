#include "platform/controls/grid.h"

namespace zenvora::controls {

void Grid::SetColumns(std::vector<GridColumn> columns) {
    columns_ = std::move(columns);
    TellViews(Property::Items);
}

void Grid::SetRows(const GridRows* rows) {
    rows_ = rows;
    TellViews(Property::Items);
}

std::optional<std::string> Grid::Value(int row, int column) const {
    if (row < 0 || row >= RowCount()) return std::nullopt;
    return rows_->Value(row, column);
}

std::string Grid::Shown(int row, int column) const {
    std::string value = Value(row, column).value_or("");
    for (const GridColumn::ValueItem& item : columns_.at(static_cast<std::size_t>(column)).valueItems) {
        if (item.value == value) return item.shown;
    }
    return value;
}

void Grid::ShowCurrent(int row) {
    if (row_ == row) return;
    row_ = row;
    TellViews(Property::Selection);
}

void Grid::MoveTo(int row, int column) {
    if (row_ == row && column_ == column) return;
    row_ = row;
    column_ = column;
    TellViews(Property::Selection);
    if (moveRule_) moveRule_();
}

void Grid::Click() {
    if (Enabled() && clickRule_) clickRule_();
}

void Grid::DblClick() {
    if (Enabled() && dblClickRule_) dblClickRule_();
}

}  // namespace zenvora::controls
