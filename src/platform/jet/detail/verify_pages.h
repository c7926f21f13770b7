#pragma once

#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/jet/detail/data_page.h"
#include "platform/jet/detail/verify_findings.h"

/// What an integrity check knows of the pages: who uses which, and the forms that several kinds share.
namespace zenvora::jet::detail {

/// A slot whose bytes lie where they must.
struct CheckedSlot {
    unsigned index = 0;
    std::uint16_t flags = 0;
    std::size_t begin = 0, end = 0;

    [[nodiscard]] bool Deleted() const noexcept { return flags == kSlotDeleted; }
    [[nodiscard]] bool Hidden() const noexcept { return (flags & kSlotHidden) != 0; }
    [[nodiscard]] bool Overflow() const noexcept { return flags == kSlotOverflow; }
    [[nodiscard]] std::size_t Size() const noexcept { return end - begin; }
};

/// Each page of the file belongs to one user at most: the rows of a table, an index, a definition, ...
class PageBook {
  public:
    using User = std::uint32_t;

    PageBook(Pager& pager, Findings& findings);

    [[nodiscard]] Pager& Pages() noexcept { return pager_; }
    [[nodiscard]] const Layout& FileLayout() const noexcept { return layout_; }
    [[nodiscard]] Findings& Found() noexcept { return findings_; }
    [[nodiscard]] bool InFile(PageNumber page) const noexcept { return page > 0 && page < users_.size(); }

    /// Makes known who may take pages; `what` completes "page 7 belongs to ...".
    [[nodiscard]] User NewUser(std::string what);
    /// Gives a page to its user; false, and an error, when it has another one already or is not in the file.
    bool Claim(PageNumber page, User user, const Spot& spot);
    [[nodiscard]] bool BelongsTo(PageNumber page, User user) const {
        return InFile(page) && users_[page] == user;
    }

    /// The slots of a page of data form, up to the first that lies wrong; checks its free word too.
    std::vector<CheckedSlot> CheckSlots(PageNumber page, const Spot& spot);
    /// One slot of such a page, nothing when it is not there or lies wrong. Finds nothing.
    [[nodiscard]] std::optional<CheckedSlot> SlotAt(PageNumber page, unsigned index);
    [[nodiscard]] std::span<const std::byte> BytesOf(PageNumber page, const CheckedSlot& slot);

    /// The pages of an owned or free-space map, ascending; nothing when the map cannot be read. A map row may
    /// be named once only. `what` completes "the map of ...".
    [[nodiscard]] std::optional<std::vector<PageNumber>> ReadMap(RowPointer row, const std::string& what,
                                                                 const Spot& spot);
    /// Takes `pages` into the book for `user`.
    void ClaimAll(const std::vector<PageNumber>& pages, User user, const Spot& spot);

    /// Reads the two maps of page 1.
    void ReadGlobalMap();
    /// A page that is in use although nobody's map lists it: an error when it counts as free.
    [[nodiscard]] bool CountsAsFree(PageNumber page) const { return free_[page]; }
    /// At the end: nothing in use may be free; what is neither is lost.
    void CheckAccounting(bool everythingSeen);

  private:
    struct Content {
        std::uint8_t form = 0;
        std::uint64_t start = 0, end = 0;  // the range that the map speaks of
        std::vector<std::size_t> absent;   // by reference: ranges without a bit page
        std::vector<PageNumber> pages;
        std::size_t behind = 0;  // set bits behind the end of the file
    };
    std::optional<Content> ReadMapRow(RowPointer row, const std::string& what, const Spot& spot);
    void CollectBits(std::span<const std::byte> bits, std::uint64_t start, Content& content) const;

    Pager& pager_;
    const Layout& layout_;
    Findings& findings_;
    std::vector<std::string> names_;  // of the users; 0 is nobody
    std::vector<User> users_;         // by page
    std::vector<bool> free_;          // by page: the global map gives it away
    std::unordered_map<std::uint32_t, std::string> mapRows_;
    User maps_, bits_;
    std::uint64_t lostBelow_ = 0;  // start of an inline global map
};

}  // namespace zenvora::jet::detail
