#include "platform/jet/detail/usage_map.h"

#include <algorithm>

namespace zenvora::jet::detail {

namespace {
constexpr std::size_t kInlineHeader = 5;  // form and start page
constexpr std::size_t kBitsAt = 4;        // of a bit page

PageNumber PagesPerBitPage(const Pager& pager) {
    return static_cast<PageNumber>((pager.PageSize() - kBitsAt) * 8);
}

constexpr std::uint8_t kInline = 0;
constexpr std::uint8_t kReference = 1;
const RowPointer kGlobalMap = RowPointer::Of(1, 0);

bool Bit(const std::byte* bits, std::size_t index) {
    return (U8(bits + index / 8) >> (index % 8) & 1U) != 0;
}
void SetBit(std::byte* bits, std::size_t index, bool on) {
    const unsigned mask = 1U << (index % 8);
    const unsigned byte = U8(bits + index / 8);
    PutU8(bits + index / 8, on ? byte | mask : byte & ~mask);
}

std::span<const std::byte> MapBytes(Pager& pager, RowPointer row) {
    CheckDataPage(pager, row.Page());
    const Slot slot = ReadSlot(pager, row.Page(), row.Row());
    if (slot.flags != 0 || slot.Size() < kInlineHeader)
        throw pager.Damaged(row.Page(), "a usage map is not readable");
    const std::span<const std::byte> bytes{pager.Read(row.Page()) + slot.begin, slot.Size()};
    if (U8(bytes.data()) > kReference) throw pager.Damaged(row.Page(), "a usage map has an unknown form");
    return bytes;
}

/// The map's bytes for changing.
std::byte* WritableMap(Pager& pager, RowPointer row) {
    const Slot slot = ReadSlot(pager, row.Page(), row.Row());
    return pager.Write(row.Page()) + slot.begin;
}

void CheckBitPage(Pager& pager, PageNumber page) {
    if (U8(pager.Read(page)) != kMapPage) throw pager.Damaged(page, "a page of a usage map is expected here");
}

void FormatBitPage(Pager& pager, PageNumber number, std::byte fill) {
    std::byte* page = pager.Write(number);
    std::memset(page, static_cast<int>(fill), pager.PageSize());
    PutU8(page, kMapPage);
    PutU8(page + 1, 1);
    PutU16(page + 2, 0);
}
}  // namespace

std::span<const std::byte> UsageMap::Bytes() const {
    return MapBytes(*pager_, row_);
}

std::vector<std::byte> UsageMap::EmptyRow() {
    return std::vector<std::byte>(kJet4.mapRowSize);  // the only version that is written
}

std::vector<PageNumber> UsageMap::Collect(bool inUse) const {
    const PageNumber perBitPage = PagesPerBitPage(*pager_);
    std::vector<PageNumber> pages;
    const PageNumber count = pager_->PageCount();
    const auto collect = [&](const std::byte* bits, std::size_t byteCount, PageNumber start) {
        for (std::size_t i = 0; i < byteCount; ++i) {
            unsigned byte = U8(bits + i);
            while (byte != 0) {
                const auto bit = static_cast<unsigned>(std::countr_zero(byte));
                byte &= byte - 1;
                const std::uint64_t page = static_cast<std::uint64_t>(start) + 8 * i + bit;
                if (page < count) {
                    pages.push_back(static_cast<PageNumber>(page));
                } else if (inUse) {
                    throw pager_->Damaged(count,
                                          "the file is cut off here, and a table goes on behind its end");
                }
            }
        }
    };
    const auto bytes = Bytes();
    if (U8(bytes.data()) == kInline) {
        collect(bytes.data() + kInlineHeader, bytes.size() - kInlineHeader, U32(bytes.data() + 1));
        return pages;
    }
    // Copied: reading the bit pages must not outlive the row's page in the cache.
    const std::vector<std::byte> row(bytes.begin(), bytes.end());
    for (std::size_t i = 0; 1 + 4 * (i + 1) <= row.size(); ++i) {
        const PageNumber bitPage = U32(row.data() + 1 + 4 * i);
        if (bitPage == 0) continue;
        if (!inUse && i * perBitPage >= count) break;
        CheckBitPage(*pager_, bitPage);
        collect(pager_->Read(bitPage) + kBitsAt, perBitPage / 8, static_cast<PageNumber>(i * perBitPage));
    }
    return pages;
}

bool UsageMap::Contains(PageNumber page) const {
    const PageNumber perBitPage = PagesPerBitPage(*pager_);
    const auto bytes = Bytes();
    if (U8(bytes.data()) == kInline) {
        const PageNumber start = U32(bytes.data() + 1);
        return page >= start && page - start < (bytes.size() - kInlineHeader) * 8 &&
               Bit(bytes.data() + kInlineHeader, page - start);
    }
    const std::size_t entry = page / perBitPage;
    if (1 + 4 * (entry + 1) > bytes.size()) return false;
    const PageNumber bitPage = U32(bytes.data() + 1 + 4 * entry);
    if (bitPage == 0) return false;
    CheckBitPage(*pager_, bitPage);
    return Bit(pager_->Read(bitPage) + kBitsAt, page % perBitPage);
}

void UsageMap::Add(PageNumber page, PageAllocator& allocator) {
    const auto bytes = Bytes();
    if (U8(bytes.data()) == kReference) {
        AddByReference(page, allocator);
        return;
    }
    const std::size_t capacity = (bytes.size() - kInlineHeader) * 8;
    const PageNumber start = U32(bytes.data() + 1);
    if (page >= start && page - start < capacity) {
        if (!Bit(bytes.data() + kInlineHeader, page - start)) {
            SetBit(WritableMap(*pager_, row_) + kInlineHeader, page - start, true);
        }
        return;
    }
    // Out of range: move the window if everything fits into one, else change over to bit pages.
    std::vector<PageNumber> pages;
    for (std::size_t i = 0; i < capacity; ++i) {
        if (Bit(bytes.data() + kInlineHeader, i)) pages.push_back(static_cast<PageNumber>(start + i));
    }
    pages.push_back(page);
    const auto [low, high] = std::minmax_element(pages.begin(), pages.end());
    const PageNumber newStart = *low / 8 * 8;
    if (*high - newStart >= capacity) {
        ConvertToReference(page, allocator);
        return;
    }
    const std::size_t bitBytes = bytes.size() - kInlineHeader;
    std::byte* map = WritableMap(*pager_, row_);
    PutU32(map + 1, newStart);
    std::memset(map + kInlineHeader, 0, bitBytes);
    for (PageNumber each : pages)
        SetBit(map + kInlineHeader, each - newStart, true);
}

void UsageMap::ConvertToReference(PageNumber extra, PageAllocator& allocator) {
    std::vector<PageNumber> pages = Pages();
    pages.push_back(extra);
    const std::size_t size = Bytes().size();
    std::byte* map = WritableMap(*pager_, row_);
    std::memset(map, 0, size);
    PutU8(map, kReference);
    for (PageNumber page : pages)
        AddByReference(page, allocator);
}

void UsageMap::AddByReference(PageNumber page, PageAllocator& allocator) {
    const PageNumber perBitPage = PagesPerBitPage(*pager_);
    const std::size_t entry = page / perBitPage;
    const auto bytes = Bytes();
    if (1 + 4 * (entry + 1) > bytes.size())
        throw pager_->Damaged(row_.Page(), "a usage map is too short for the file");
    PageNumber bitPage = U32(bytes.data() + 1 + 4 * entry);
    if (bitPage == 0) {
        bitPage = allocator.Allocate();
        FormatBitPage(*pager_, bitPage, std::byte{0});
        PutU32(WritableMap(*pager_, row_) + 1 + 4 * entry, bitPage);
    } else {
        CheckBitPage(*pager_, bitPage);
    }
    if (!Bit(pager_->Read(bitPage) + kBitsAt, page % perBitPage)) {
        SetBit(pager_->Write(bitPage) + kBitsAt, page % perBitPage, true);
    }
}

void UsageMap::Remove(PageNumber page) {
    const PageNumber perBitPage = PagesPerBitPage(*pager_);
    if (!Contains(page)) return;
    const auto bytes = Bytes();
    if (U8(bytes.data()) == kInline) {
        SetBit(WritableMap(*pager_, row_) + kInlineHeader, page - U32(bytes.data() + 1), false);
    } else {
        const PageNumber bitPage = U32(bytes.data() + 1 + 4 * (page / perBitPage));
        SetBit(pager_->Write(bitPage) + kBitsAt, page % perBitPage, false);
    }
}

std::span<const std::byte> PageAllocator::Map() const {
    return MapBytes(pager_, kGlobalMap);
}

PageNumber PageAllocator::FindFree() {
    const PageNumber perBitPage = PagesPerBitPage(pager_);
    const PageNumber count = pager_.PageCount();
    const auto bytes = Map();
    const auto search = [&](const std::byte* bits, std::uint64_t low, std::uint64_t end) -> PageNumber {
        for (std::uint64_t page = std::max<std::uint64_t>(low, searchFrom_);
             page < std::min<std::uint64_t>(end, count);) {
            const std::size_t index = page - low;
            if (index % 8 == 0 && U8(bits + index / 8) == 0) {
                page += 8;
                continue;
            }
            if (Bit(bits, index)) return static_cast<PageNumber>(page);
            ++page;
        }
        return 0;
    };
    PageNumber found = 0;
    if (U8(bytes.data()) == kInline) {
        const PageNumber start = U32(bytes.data() + 1);
        found = search(bytes.data() + kInlineHeader, start, start + (bytes.size() - kInlineHeader) * 8);
    } else {
        const std::vector<std::byte> row(bytes.begin(), bytes.end());
        for (std::size_t i = 0; found == 0 && 1 + 4 * (i + 1) <= row.size() && i * perBitPage < count; ++i) {
            const PageNumber bitPage = U32(row.data() + 1 + 4 * i);
            if (bitPage == 0)
                continue;  // a whole range without a map: leave it alone, the file's end serves as well
            CheckBitPage(pager_, bitPage);
            found = search(pager_.Read(bitPage) + kBitsAt, i * perBitPage, (i + 1) * perBitPage);
        }
    }
    searchFrom_ = found == 0 ? count : found;
    return found;
}

PageNumber PageAllocator::Allocate() {
    if (searchFrom_ < pager_.PageCount()) {
        if (const PageNumber page = FindFree(); page > 2) {
            MarkUsed(page);
            return page;
        }
        searchFrom_ = pager_.PageCount();
    }
    const PageNumber page = pager_.Append();
    searchFrom_ = pager_.PageCount();
    MarkUsed(page);
    return page;
}

void PageAllocator::MarkUsed(PageNumber page) {
    const PageNumber perBitPage = PagesPerBitPage(pager_);
    auto bytes = Map();
    if (U8(bytes.data()) == kInline) {
        const PageNumber start = U32(bytes.data() + 1);
        if (page < start) return;  // below a window that was slid upward everything counts as used
        if (page - start >= (bytes.size() - kInlineHeader) * 8) {
            LengthenTo(page);
            bytes = Map();
            if (U8(bytes.data()) == kReference) return MarkUsed(page);
        }
        const std::size_t index = page - U32(bytes.data() + 1);
        if (Bit(bytes.data() + kInlineHeader, index)) {
            SetBit(WritableMap(pager_, kGlobalMap) + kInlineHeader, index, false);
        }
        return;
    }
    const std::size_t entry = page / perBitPage;
    if (1 + 4 * (entry + 1) > bytes.size())
        throw pager_.Damaged(1, "the map of free pages is too short for the file");
    PageNumber bitPage = U32(bytes.data() + 1 + 4 * entry);
    if (bitPage == 0) {
        bitPage = pager_.Append();
        FormatBitPage(pager_, bitPage, std::byte{0xFF});
        PutU32(WritableMap(pager_, kGlobalMap) + 1 + 4 * entry, bitPage);
        MarkUsed(bitPage);
    }
    SetBit(pager_.Write(bitPage) + kBitsAt, page % perBitPage, false);
}

void PageAllocator::LengthenTo(PageNumber page) {
    // The map row is row 0 of page 1 and grows in steps of 32 pages, as Access makes it grow.
    const auto bytes = Map();
    const PageNumber start = U32(bytes.data() + 1);
    const std::size_t bitBytes = ((page - start) / 32 + 1) * 4;
    const std::size_t growth = kInlineHeader + bitBytes - bytes.size();
    if (FreeBytes(pager_, kGlobalMap.Page()) < growth) {
        ConvertToReference();
        return;
    }
    std::vector<std::byte> longer(bytes.begin(), bytes.end());
    longer.resize(kInlineHeader + bitBytes, std::byte{0xFF});
    ReplaceRow(pager_, kGlobalMap.Page(), kGlobalMap.Row(), longer, 0);
}

void PageAllocator::ConvertToReference() {
    const PageNumber perBitPage = PagesPerBitPage(pager_);
    const auto bytes = Map();
    const std::vector<std::byte> old(bytes.begin(), bytes.end());
    const PageNumber start = U32(old.data() + 1);
    const PageNumber count = pager_.PageCount();
    if ((old.size() - 1) / 4 * std::size_t{perBitPage} < count)
        throw pager_.Damaged(1, "the map of free pages is too short for the file");
    std::byte* map = WritableMap(pager_, kGlobalMap);
    std::memset(map, 0, old.size());
    PutU8(map, kReference);
    std::vector<PageNumber> bitPages;
    for (std::size_t range = 0; range * perBitPage < count; ++range) {
        const PageNumber bitPage = pager_.Append();
        FormatBitPage(pager_, bitPage, std::byte{0xFF});
        PutU32(WritableMap(pager_, kGlobalMap) + 1 + 4 * range, bitPage);
        bitPages.push_back(bitPage);
        std::byte* bits = pager_.Write(bitPage) + kBitsAt;
        for (PageNumber i = 0; i < perBitPage; ++i) {
            const std::uint64_t page = range * perBitPage + i;
            if (page >= count) break;
            const bool covered = page >= start && page - start < (old.size() - kInlineHeader) * 8;
            SetBit(bits, i, covered && Bit(old.data() + kInlineHeader, page - start));
        }
    }
    for (PageNumber bitPage : bitPages)
        MarkUsed(bitPage);
}

void PageAllocator::Free(PageNumber page, std::uint8_t freedType) {
    const PageNumber perBitPage = PagesPerBitPage(pager_);
    PutU8(pager_.Write(page), freedType);
    const auto bytes = Map();
    if (U8(bytes.data()) == kInline) {
        const PageNumber start = U32(bytes.data() + 1);
        if (page < start || page - start >= (bytes.size() - kInlineHeader) * 8) return;
        SetBit(WritableMap(pager_, kGlobalMap) + kInlineHeader, page - start, true);
    } else {
        const std::size_t entry = page / perBitPage;
        if (1 + 4 * (entry + 1) > bytes.size()) return;
        const PageNumber bitPage = U32(bytes.data() + 1 + 4 * entry);
        if (bitPage == 0) return;
        SetBit(pager_.Write(bitPage) + kBitsAt, page % perBitPage, true);
    }
    searchFrom_ = std::min(searchFrom_, page);
}

}  // namespace zenvora::jet::detail
