#pragma once

#include <cstdint>
#include <span>

#include "platform/jet/detail/bytes.h"
#include "platform/jet/detail/pager.h"

/// Rows on a page of data form: slots from the front, row bytes from the end downward in slot order without
/// holes. Used for table rows, long-value pieces and the rows of usage maps.
namespace zenvora::jet::detail {

struct Slot {
    std::uint16_t flags = 0;  ///< kSlotOverflow, kSlotHidden, both, or none
    std::size_t begin = 0, end = 0;
    [[nodiscard]] bool Deleted() const noexcept { return (flags & kSlotDeleted) == kSlotDeleted; }
    [[nodiscard]] bool Overflow() const noexcept { return flags == kSlotOverflow; }
    /// Not to be met by a scan: deleted, or the target of an overflow pointer.
    [[nodiscard]] bool Hidden() const noexcept { return (flags & kSlotHidden) != 0; }
    [[nodiscard]] std::size_t Size() const noexcept { return end - begin; }
};

/// Checks that a page is of data form with a legal slot array. Fault 3049.
void CheckDataPage(Pager& pager, PageNumber page);
[[nodiscard]] unsigned SlotCount(Pager& pager, PageNumber page);
/// Slot `index` of a checked page. Fault 3049: its bytes lie outside the page.
[[nodiscard]] Slot ReadSlot(Pager& pager, PageNumber page, unsigned index);
[[nodiscard]] std::span<const std::byte> SlotBytes(Pager& pager, PageNumber page, unsigned index);

/// Free bytes between the slots and the lowest row.
[[nodiscard]] std::size_t FreeBytes(Pager& pager, PageNumber page);
/// True when a new row of that size fits, its slot included.
[[nodiscard]] bool HasRoom(Pager& pager, PageNumber page, std::size_t rowSize);

/// Makes a page an empty data page. `owner`: definition page, 0 for maps, "LVAL" for long values.
void FormatDataPage(Pager& pager, PageNumber page, std::uint32_t owner);
inline constexpr std::uint32_t kLongValueOwner = 0x4C41564C;  // "LVAL"

/// Adds a row in a new slot; there must be room. Returns the slot.
unsigned AppendRow(Pager& pager, PageNumber page, std::span<const std::byte> bytes, std::uint16_t flags = 0);
/// Gives a slot other bytes and flags; the rows below move. There must be room for the growth.
void ReplaceRow(Pager& pager, PageNumber page, unsigned slot, std::span<const std::byte> bytes,
                std::uint16_t flags);
/// Marks a slot deleted and closes its gap.
void KillRow(Pager& pager, PageNumber page, unsigned slot);
/// True when every slot is deleted.
[[nodiscard]] bool AllDeleted(Pager& pager, PageNumber page);

}  // namespace zenvora::jet::detail
