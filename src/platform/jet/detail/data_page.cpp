#include "platform/jet/detail/data_page.h"

namespace zenvora::jet::detail {

namespace {
/// The slots of a page in one version of the format.
struct Slots {
    const Layout& layout;

    explicit Slots(const Pager& pager) : layout(pager.Format()) {}
    [[nodiscard]] unsigned Count(const std::byte* page) const noexcept {
        return U16(page + layout.slotCountAt);
    }
    [[nodiscard]] std::size_t At(unsigned index) const noexcept {
        return layout.slotsAt + 2 * std::size_t{index};
    }
    [[nodiscard]] std::uint16_t Word(const std::byte* page, unsigned index) const noexcept {
        return U16(page + At(index));
    }
    [[nodiscard]] std::size_t Begin(const std::byte* page, unsigned index) const noexcept {
        return Word(page, index) & kSlotOffsetMask;
    }
    /// Where the bytes of the last row begin; the page's end when there is none.
    [[nodiscard]] std::size_t LowestRow(const std::byte* page, unsigned count) const noexcept {
        return count == 0 ? layout.pageSize : Begin(page, count - 1);
    }
    void PutFree(std::byte* page, unsigned count) const noexcept {
        PutU16(page + 2, LowestRow(page, count) - At(count));
    }
};
}  // namespace

unsigned SlotCount(Pager& pager, PageNumber number) {
    return Slots(pager).Count(pager.Read(number));
}

void CheckDataPage(Pager& pager, PageNumber number) {
    const Slots slots(pager);
    const std::byte* page = pager.Read(number);
    if (U8(page) != kDataPage) throw pager.Damaged(number, "a page with rows is expected here");
    const unsigned count = slots.Count(page);
    if (count > kMaxSlots + 1 || slots.At(count) > slots.layout.pageSize) {
        throw pager.Damaged(number, "it claims more rows than a page can hold");
    }
    std::size_t end = slots.layout.pageSize;
    for (unsigned i = 0; i < count; ++i) {
        const std::size_t begin = slots.Begin(page, i);
        if (begin > end || begin < slots.At(count))
            throw pager.Damaged(number, "a row lies outside of its place");
        end = begin;
    }
}

Slot ReadSlot(Pager& pager, PageNumber number, unsigned index) {
    const Slots slots(pager);
    const std::byte* page = pager.Read(number);
    if (U8(page) != kDataPage || index >= slots.Count(page) || slots.At(index + 1) > slots.layout.pageSize) {
        throw pager.Damaged(number, "row " + std::to_string(index) + " is not there");
    }
    const std::uint16_t word = slots.Word(page, index);
    Slot slot;
    slot.flags = word & kSlotDeleted;
    slot.begin = word & kSlotOffsetMask;
    slot.end = index == 0 ? slots.layout.pageSize : slots.Begin(page, index - 1);
    if (slot.end > slots.layout.pageSize || slot.begin > slot.end ||
        slot.begin < slots.At(slots.Count(page))) {
        throw pager.Damaged(number, "row " + std::to_string(index) + " lies outside of its place");
    }
    return slot;
}

std::span<const std::byte> SlotBytes(Pager& pager, PageNumber number, unsigned index) {
    const Slot slot = ReadSlot(pager, number, index);
    return {pager.Read(number) + slot.begin, slot.Size()};
}

std::size_t FreeBytes(Pager& pager, PageNumber number) {
    const Slots slots(pager);
    const std::byte* page = pager.Read(number);
    const unsigned count = slots.Count(page);
    const std::size_t lowest = slots.LowestRow(page, count);
    return lowest < slots.At(count) ? 0 : lowest - slots.At(count);
}

bool HasRoom(Pager& pager, PageNumber number, std::size_t rowSize) {
    return SlotCount(pager, number) < kMaxSlots && FreeBytes(pager, number) >= rowSize + 2;
}

void FormatDataPage(Pager& pager, PageNumber number, std::uint32_t owner) {
    const Slots slots(pager);
    std::byte* page = pager.Write(number);
    std::memset(page, 0, slots.layout.pageSize);
    PutU8(page, kDataPage);
    PutU8(page + 1, 1);
    PutU32(page + 4, owner);
    slots.PutFree(page, 0);
}

unsigned AppendRow(Pager& pager, PageNumber number, std::span<const std::byte> bytes, std::uint16_t flags) {
    const Slots slots(pager);
    std::byte* page = pager.Write(number);
    const unsigned count = slots.Count(page);
    const std::size_t at = slots.LowestRow(page, count) - bytes.size();
    std::memcpy(page + at, bytes.data(), bytes.size());
    PutU16(page + slots.At(count), at | flags);
    PutU16(page + slots.layout.slotCountAt, count + 1);
    slots.PutFree(page, count + 1);
    return count;
}

void ReplaceRow(Pager& pager, PageNumber number, unsigned index, std::span<const std::byte> bytes,
                std::uint16_t flags) {
    const Slots slots(pager);
    const Slot slot = ReadSlot(pager, number, index);
    std::byte* page = pager.Write(number);
    const unsigned count = slots.Count(page);
    const std::size_t lowest = slots.LowestRow(page, count);
    const std::size_t oldSize = slot.Size();
    const std::size_t newBegin = slot.end - bytes.size();
    if (bytes.size() != oldSize) {
        // The rows below move together, and with them their slots.
        const std::size_t newLowest = lowest + oldSize - bytes.size();
        std::memmove(page + newLowest, page + lowest, slot.begin - lowest);
        for (unsigned i = index + 1; i < count; ++i) {
            const std::uint16_t word = slots.Word(page, i);
            PutU16(page + slots.At(i),
                   (word & kSlotDeleted) | ((word & kSlotOffsetMask) + oldSize - bytes.size()));
        }
        // What is free now holds no old bytes.
        if (newLowest > lowest) std::memset(page + lowest, 0, newLowest - lowest);
    }
    if (!bytes.empty()) std::memmove(page + newBegin, bytes.data(), bytes.size());
    PutU16(page + slots.At(index), newBegin | flags);
    slots.PutFree(page, count);
}

void KillRow(Pager& pager, PageNumber number, unsigned slot) {
    ReplaceRow(pager, number, slot, {}, kSlotDeleted);
}

bool AllDeleted(Pager& pager, PageNumber number) {
    const Slots slots(pager);
    const std::byte* page = pager.Read(number);
    for (unsigned i = 0; i < slots.Count(page); ++i) {
        if ((slots.Word(page, i) & kSlotDeleted) != kSlotDeleted) return false;
    }
    return true;
}

}  // namespace zenvora::jet::detail
