#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "platform/jet/detail/data_page.h"

namespace zenvora::jet::detail {

class PageAllocator;

/// A set of pages, kept as a bit map in a row of a map page: inline with a start page, or by reference to bit
/// pages. Reads the file at every call; the row's place is fixed for life.
class UsageMap {
  public:
    UsageMap() = default;
    UsageMap(Pager& pager, RowPointer row) : pager_(&pager), row_(row) {}
    [[nodiscard]] bool Valid() const noexcept { return pager_ != nullptr && row_.value != 0; }
    [[nodiscard]] RowPointer Row() const noexcept { return row_; }

    /// The pages of the set that lie in the file, ascending.
    [[nodiscard]] std::vector<PageNumber> Pages() const { return Collect(false); }
    /// All pages of the set, for pages that hold something. Fault 3049: one lies behind the end of the file,
    /// which is cut off: passing over it would lose rows without a word.
    [[nodiscard]] std::vector<PageNumber> PagesInUse() const { return Collect(true); }
    [[nodiscard]] bool Contains(PageNumber page) const;
    /// Takes a page in; the map changes its form when the page is out of its range.
    void Add(PageNumber page, PageAllocator& allocator);
    void Remove(PageNumber page);

    /// The bytes of a fresh, empty inline map.
    [[nodiscard]] static std::vector<std::byte> EmptyRow();

  private:
    [[nodiscard]] std::vector<PageNumber> Collect(bool inUse) const;
    [[nodiscard]] std::span<const std::byte> Bytes() const;
    void ConvertToReference(PageNumber extra, PageAllocator& allocator);
    void AddByReference(PageNumber page, PageAllocator& allocator);

    Pager* pager_ = nullptr;
    RowPointer row_;
};

/// Hands out pages by the global map of free pages (row 0 of page 1).
class PageAllocator {
  public:
    explicit PageAllocator(Pager& pager) : pager_(pager) {}
    /// A page for use: the lowest free one of the file, else a new one at its end. Its old bytes are still on
    /// it.
    [[nodiscard]] PageNumber Allocate();
    /// Gives a page back: marks its first byte with `freedType` and sets its bit.
    void Free(PageNumber page, std::uint8_t freedType);
    /// After an undo: what is remembered about the map may be wrong.
    void Forget() noexcept { searchFrom_ = 0; }

  private:
    [[nodiscard]] std::span<const std::byte> Map() const;
    [[nodiscard]] PageNumber FindFree();
    void MarkUsed(PageNumber page);
    void LengthenTo(PageNumber page);
    void ConvertToReference();

    Pager& pager_;
    PageNumber searchFrom_ = 0;  // no page below it is free
};

}  // namespace zenvora::jet::detail
