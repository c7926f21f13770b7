#include "import/joined_fields.h"

#include <algorithm>

#include "platform/text/utf8.h"

namespace zenvora::importing {

namespace {

constexpr std::string_view kPlus = " + ";

/// Splits a name into columns. A field's own name may hold the separator: the longest name that is a column
/// counts, unless the rest does not work out.
bool Split(const SourceGrid& grid, std::string_view name, std::vector<int>& columns) {
    for (std::size_t end = name.size();; end = name.rfind(kPlus, end - 1)) {
        if (end == std::string_view::npos) return false;
        const int column = grid.FindColumn(name.substr(0, end));
        if (column >= 0 && end > 0) {
            columns.push_back(column);
            if (end == name.size() || Split(grid, name.substr(end + kPlus.size()), columns)) return true;
            columns.pop_back();
        }
        if (end == 0) return false;
    }
}

}  // namespace

std::string JoinedName(const std::vector<std::string>& names) {
    std::string joined;
    for (const std::string& name : names)
        joined.append(joined.empty() ? "" : kPlus).append(name);
    return joined;
}

std::optional<std::vector<int>> JoinedColumns(const SourceGrid& grid, std::string_view name) {
    if (name.find(kPlus) == std::string_view::npos || grid.FindColumn(name) >= 0) return std::nullopt;
    std::vector<int> columns;
    if (!Split(grid, name, columns) || columns.size() < 2) return std::nullopt;
    return columns;
}

int AddJoinedColumn(SourceGrid& grid, std::string_view name) {
    const std::optional<std::vector<int>> columns = JoinedColumns(grid, name);
    if (!columns) return -1;
    std::vector<std::string> texts{std::string(name)};
    texts.reserve(static_cast<std::size_t>(grid.Rows()));
    for (int row = 1; row < grid.Rows(); ++row) {
        std::string& text = texts.emplace_back();
        for (const int col : *columns) {
            const std::string_view part = text::TrimView(grid.TextMatrix(row, col));
            if (part.empty()) continue;
            if (!text.empty()) text.push_back(' ');
            text.append(part);
        }
    }
    // Not behind the last column: an address that stands last in the source is loaded without its ADDRESS.
    const int place = columns->front();
    grid.InsertColumn(place, texts);
    return place;
}

}  // namespace zenvora::importing
