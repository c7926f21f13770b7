#include "platform/jet/detail/data_page.h"

namespace zenvora::jet::detail {

namespace {
constexpr const Layout& kLayout = kJet4;

std::byte* SlotAt(std::byte* page, unsigned index) {
    return page + kLayout.slotsAt + 2 * index;
}
const std::byte* SlotAt(const std::byte* page, unsigned index) {
    return page + kLayout.slotsAt + 2 * index;
}
std::size_t SlotsEnd(unsigned count) {
    return kLayout.slotsAt + 2 * std::size_t{count};
}

std::size_t LowestRow(const std::byte* page, unsigned count) {
    return count == 0 ? kLayout.pageSize : U16(SlotAt(page, count - 1)) & kSlotOffsetMask;
}
void PutFree(std::byte* page, unsigned count) {
    PutU16(page + 2, LowestRow(page, count) - SlotsEnd(count));
}
}  // namespace

unsigned SlotCount(const std::byte* page) noexcept {
    return U16(page + kLayout.slotCountAt);
}

void CheckDataPage(Pager& pager, PageNumber number) {
    const std::byte* page = pager.Read(number);
    if (U8(page) != kDataPage) throw pager.Damaged(number, "a page with rows is expected here");
    const unsigned count = SlotCount(page);
    if (count > kMaxSlots + 1 || SlotsEnd(count) > kLayout.pageSize) {
        throw pager.Damaged(number, "it claims more rows than a page can hold");
    }
    std::size_t end = kLayout.pageSize;
    for (unsigned i = 0; i < count; ++i) {
        const std::size_t begin = U16(SlotAt(page, i)) & kSlotOffsetMask;
        if (begin > end || begin < SlotsEnd(count))
            throw pager.Damaged(number, "a row lies outside of its place");
        end = begin;
    }
}

Slot ReadSlot(Pager& pager, PageNumber number, unsigned index) {
    const std::byte* page = pager.Read(number);
    if (U8(page) != kDataPage || index >= SlotCount(page) || SlotsEnd(index + 1) > kLayout.pageSize) {
        throw pager.Damaged(number, "row " + std::to_string(index) + " is not there");
    }
    const std::uint16_t word = U16(SlotAt(page, index));
    Slot slot;
    slot.flags = word & kSlotDeleted;
    slot.begin = word & kSlotOffsetMask;
    slot.end = index == 0 ? kLayout.pageSize : U16(SlotAt(page, index - 1)) & kSlotOffsetMask;
    if (slot.end > kLayout.pageSize || slot.begin > slot.end || slot.begin < SlotsEnd(SlotCount(page))) {
        throw pager.Damaged(number, "row " + std::to_string(index) + " lies outside of its place");
    }
    return slot;
}

std::span<const std::byte> SlotBytes(Pager& pager, PageNumber number, unsigned index) {
    const Slot slot = ReadSlot(pager, number, index);
    return {pager.Read(number) + slot.begin, slot.Size()};
}

std::size_t FreeBytes(Pager& pager, PageNumber number) {
    const std::byte* page = pager.Read(number);
    const unsigned count = SlotCount(page);
    const std::size_t lowest = LowestRow(page, count);
    return lowest < SlotsEnd(count) ? 0 : lowest - SlotsEnd(count);
}

bool HasRoom(Pager& pager, PageNumber number, std::size_t rowSize) {
    return SlotCount(pager.Read(number)) < kMaxSlots && FreeBytes(pager, number) >= rowSize + 2;
}

void FormatDataPage(Pager& pager, PageNumber number, std::uint32_t owner) {
    std::byte* page = pager.Write(number);
    std::memset(page, 0, kLayout.pageSize);
    PutU8(page, kDataPage);
    PutU8(page + 1, 1);
    PutU32(page + 4, owner);
    PutFree(page, 0);
}

unsigned AppendRow(Pager& pager, PageNumber number, std::span<const std::byte> bytes, std::uint16_t flags) {
    std::byte* page = pager.Write(number);
    const unsigned count = SlotCount(page);
    const std::size_t at = LowestRow(page, count) - bytes.size();
    std::memcpy(page + at, bytes.data(), bytes.size());
    PutU16(SlotAt(page, count), at | flags);
    PutU16(page + kLayout.slotCountAt, count + 1);
    PutFree(page, count + 1);
    return count;
}

void ReplaceRow(Pager& pager, PageNumber number, unsigned index, std::span<const std::byte> bytes,
                std::uint16_t flags) {
    const Slot slot = ReadSlot(pager, number, index);
    std::byte* page = pager.Write(number);
    const unsigned count = SlotCount(page);
    const std::size_t lowest = LowestRow(page, count);
    const std::size_t oldSize = slot.Size();
    const std::size_t newBegin = slot.end - bytes.size();
    if (bytes.size() != oldSize) {
        // The rows below move together, and with them their slots.
        const std::size_t newLowest = lowest + oldSize - bytes.size();
        std::memmove(page + newLowest, page + lowest, slot.begin - lowest);
        for (unsigned i = index + 1; i < count; ++i) {
            const std::uint16_t word = U16(SlotAt(page, i));
            PutU16(SlotAt(page, i),
                   (word & kSlotDeleted) | ((word & kSlotOffsetMask) + oldSize - bytes.size()));
        }
        // What is free now holds no old bytes.
        if (newLowest > lowest) std::memset(page + lowest, 0, newLowest - lowest);
    }
    if (!bytes.empty()) std::memmove(page + newBegin, bytes.data(), bytes.size());
    PutU16(SlotAt(page, index), newBegin | flags);
    PutFree(page, count);
}

void KillRow(Pager& pager, PageNumber number, unsigned slot) {
    ReplaceRow(pager, number, slot, {}, kSlotDeleted);
}

bool AllDeleted(Pager& pager, PageNumber number) {
    const std::byte* page = pager.Read(number);
    for (unsigned i = 0; i < SlotCount(page); ++i) {
        if ((U16(SlotAt(page, i)) & kSlotDeleted) != kSlotDeleted) return false;
    }
    return true;
}

}  // namespace zenvora::jet::detail
