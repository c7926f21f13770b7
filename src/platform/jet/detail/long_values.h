#pragma once

#include <span>
#include <vector>

#include "platform/jet/detail/usage_map.h"

/// Memo and OLE values: a 12-byte definition in the row, and the data in the row, on one page or in a chain.
namespace zenvora::jet::detail {

/// The data of a stored value. Fault 3049: a piece is missing or runs in a circle.
[[nodiscard]] std::vector<std::byte> ReadLongValue(Pager& pager, PageNumber rowPage,
                                                   std::span<const std::byte> stored);

/// Stores data and returns what goes into the row. `owned` and `free` are the maps of the column. Short data
/// stay in the row unless `mayInline` says that it has no room for them.
[[nodiscard]] std::vector<std::byte> WriteLongValue(Pager& pager, PageAllocator& allocator, UsageMap owned,
                                                    UsageMap free, std::span<const std::byte> data,
                                                    bool mayInline = true);

/// Gives back the pieces of a stored value; pages that become empty are freed.
void FreeLongValue(Pager& pager, PageAllocator& allocator, UsageMap owned, UsageMap free,
                   std::span<const std::byte> stored);

}  // namespace zenvora::jet::detail
