#pragma once

#include <string>
#include <string_view>

#include "platform/jet/detail/layout.h"
#include "platform/jet/table_definition.h"

namespace zenvora::jet::detail {

/// True when the engine can build the index keys of a column of this type and sort order.
[[nodiscard]] bool CanEncodeKey(const ColumnDefinition& column) noexcept;

/// Appends the key of one column, flag byte included. The value has the column's type or is Null. Fault
/// 20001: a text with a character that the sort order has no weight for; the place names the column.
void AppendKey(const ColumnDefinition& column, const Value& value, bool ascending, std::string& key);

/// Appends page and row as index entries hold them (page big-endian, then the row).
void AppendRowId(RowId row, std::string& entry);
[[nodiscard]] RowId RowIdOf(std::string_view entry) noexcept;  ///< from the last four bytes

}  // namespace zenvora::jet::detail
