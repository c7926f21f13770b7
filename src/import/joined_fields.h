#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "import/source_grid.h"

/// Source fields that are read as one: "Street Number + Street Name + Unit #".
namespace zenvora::importing {

/// The name of several fields together.
[[nodiscard]] std::string JoinedName(const std::vector<std::string>& names);

/// The columns that such a name puts together, at least two, in its order. Nothing when a column bears the
/// whole name, when a part of it is no column, or when it has more than 64 parts.
[[nodiscard]] std::optional<std::vector<int>> JoinedColumns(const SourceGrid& grid, std::string_view name);

/// Makes the joined field a column of the grid, in front of its first part: its values are those of the
/// parts, trimmed, with a blank between them and empty ones left out. Returns its place; -1, and the grid is
/// as it was, when JoinedColumns has nothing for the name. Faults: those of SourceGrid.
int AddJoinedColumn(SourceGrid& grid, std::string_view name);

}  // namespace zenvora::importing
