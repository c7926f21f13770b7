#pragma once

#include <map>
#include <string>
#include <string_view>

#include "platform/jet/detail/definition_codec.h"

namespace zenvora::jet::detail {

/// How a table of one file is laid out in a new Jet 4 file: the same columns in the same order, numbered anew
/// without the gaps of deleted ones, the same indexes. `pages` are the new definition pages by the old ones:
/// relationships name tables by them. Fault 20001: its rows would not fit a page.
[[nodiscard]] PlannedTable PlanCopy(const Pager& source, const StoredDefinition& table,
                                    const std::map<PageNumber, PageNumber>& pages);

/// Whether Access takes it as the name of a table, a column or an index: 1 to 64 characters, no blank in
/// front, no control character and none of . ! ` [ ]
[[nodiscard]] bool CanBeName(std::string_view name);
/// Fault 20001: it cannot be the name of `what`, a "table", "column" or "index".
void CheckName(const std::string& name, const char* what);

/// Takes a real index out of a plan, with its names.
void DropIndex(PlannedTable& plan, std::size_t index);

}  // namespace zenvora::jet::detail
