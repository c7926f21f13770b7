#include "platform/jet/detail/verify_pages.h"

#include <bit>

namespace zenvora::jet::detail {

namespace {
constexpr PageNumber kGlobalMapPage = 1;
constexpr std::size_t kInlineHeader = 5;  // form and start page
constexpr std::size_t kBitsAt = 4;        // of a bit page
constexpr std::uint8_t kInline = 0;
constexpr std::uint8_t kReference = 1;

std::string Count(std::size_t count) {
    return std::to_string(count);
}
std::string PagesText(std::size_t count) {
    return count == 1 ? "1 page" : Count(count) + " pages";
}

/// "7, 8, 9 and 12 more"
std::string Some(const std::vector<PageNumber>& pages) {
    constexpr std::size_t kShown = 8;
    std::string text;
    for (std::size_t i = 0; i < std::min(pages.size(), kShown); ++i) {
        if (i > 0) text += ", ";
        text += std::to_string(pages[i]);
    }
    if (pages.size() > kShown) text += " and " + Count(pages.size() - kShown) + " more";
    return text;
}
}  // namespace

PageBook::PageBook(Pager& pager, Findings& findings)
    : pager_(pager),
      layout_(pager.Format()),
      findings_(findings),
      names_{"nobody"},
      users_(pager.PageCount()),
      free_(pager.PageCount()),
      maps_(NewUser("usage maps")),
      bits_(NewUser("the bits of a usage map")) {
    if (!users_.empty()) users_[0] = NewUser("the header");
}

PageBook::User PageBook::NewUser(std::string what) {
    names_.push_back(std::move(what));
    return static_cast<User>(names_.size() - 1);
}

bool PageBook::Claim(PageNumber page, User user, const Spot& spot) {
    if (page >= users_.size()) {
        findings_.Error(spot.On(page), "the file ends before this page, which belongs to " + names_[user]);
        return false;
    }
    if (users_[page] == 0 || (user == maps_ && users_[page] == maps_)) {
        users_[page] = user;
        return true;
    }
    if (users_[page] == user) {
        findings_.Error(spot.On(page), "the page is used twice by " + names_[user]);
    } else {
        findings_.Error(spot.On(page),
                        "the page belongs to " + names_[user] + ", and also to " + names_[users_[page]]);
    }
    return false;
}

void PageBook::ClaimAll(const std::vector<PageNumber>& pages, User user, const Spot& spot) {
    for (PageNumber page : pages)
        Claim(page, user, spot);
}

std::vector<CheckedSlot> PageBook::CheckSlots(PageNumber number, const Spot& spot) {
    const std::byte* const page = pager_.Read(number);
    const std::size_t claimed = U16(page + layout_.slotCountAt);
    const std::size_t fitting = (layout_.pageSize - layout_.slotsAt) / 2;
    if (claimed > kMaxSlots) {
        findings_.Error(spot.On(number), "the page claims " + Count(claimed) + " rows: it can hold 255");
    }
    const std::size_t count = std::min(claimed, fitting);
    const std::size_t low = layout_.slotsAt + 2 * count;
    std::size_t end = layout_.pageSize;
    std::vector<CheckedSlot> slots;
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint16_t word = U16(page + layout_.slotsAt + 2 * i);
        const std::size_t begin = word & kSlotOffsetMask;
        if ((word & ~(kSlotOffsetMask | kSlotDeleted)) != 0)
            findings_.Error(spot.On(number, static_cast<int>(i)), "the row has a mark that is not known");
        if (begin > end || begin < low) {
            findings_.Error(spot.On(number, static_cast<int>(i)),
                            "the row lies outside of its place on the page; rows behind it cannot be found");
            return slots;
        }
        slots.push_back(
            {static_cast<unsigned>(i), static_cast<std::uint16_t>(word & kSlotDeleted), begin, end});
        end = begin;
    }
    const std::size_t gap = end - low;
    const std::size_t stated = U16(page + 2);
    if (stated > gap) {
        findings_.Error(spot.On(number), "the page claims " + Count(stated) + " free bytes and has " +
                                             Count(gap) + ": the next row would destroy others");
    } else if (stated < gap) {
        findings_.Note(spot.On(number),
                       "the page claims " + Count(stated) + " free bytes and has " + Count(gap));
    }
    return slots;
}

std::optional<CheckedSlot> PageBook::SlotAt(PageNumber number, unsigned index) {
    if (!InFile(number)) return std::nullopt;
    const std::byte* const page = pager_.Read(number);
    const std::size_t count = U16(page + layout_.slotCountAt);
    if (U8(page) != kDataPage || index >= count || layout_.slotsAt + 2 * count > layout_.pageSize)
        return std::nullopt;
    const std::byte* const slot = page + layout_.slotsAt + 2 * std::size_t{index};
    const std::uint16_t word = U16(slot);
    const std::size_t begin = word & kSlotOffsetMask;
    const std::size_t end = index == 0 ? layout_.pageSize : U16(slot - 2) & kSlotOffsetMask;
    if (end > layout_.pageSize || begin > end || begin < layout_.slotsAt + 2 * count) return std::nullopt;
    return CheckedSlot{index, static_cast<std::uint16_t>(word & kSlotDeleted), begin, end};
}

std::span<const std::byte> PageBook::BytesOf(PageNumber page, const CheckedSlot& slot) {
    return {pager_.Read(page) + slot.begin, slot.Size()};
}

void PageBook::CollectBits(std::span<const std::byte> bits, std::uint64_t start, Content& content) const {
    for (std::size_t i = 0; i < bits.size(); ++i) {
        for (unsigned byte = U8(&bits[i]); byte != 0; byte &= byte - 1) {
            const std::uint64_t page = start + 8 * i + static_cast<unsigned>(std::countr_zero(byte));
            if (page < users_.size()) {
                content.pages.push_back(static_cast<PageNumber>(page));
            } else {
                ++content.behind;
            }
        }
    }
}

std::optional<PageBook::Content> PageBook::ReadMapRow(RowPointer pointer, const std::string& what,
                                                      const Spot& spot) {
    const PageNumber page = pointer.Page();
    const auto fail = [&](const std::string& sentence) {
        findings_.Error(spot.On(page, pointer.Row()), sentence);
        return std::nullopt;
    };
    if (!InFile(page)) return fail("the map of " + what + " is not in the file");
    if (U8(pager_.Read(page)) != kDataPage)
        return fail("the map of " + what + " is expected on this page, which is no page of maps");
    if (users_[page] != maps_) {
        if (!Claim(page, maps_, spot)) return std::nullopt;
        CheckSlots(page, spot);
    }
    const auto slot = SlotAt(page, pointer.Row());
    if (!slot || slot->Size() < kInlineHeader) return fail("the map of " + what + " is not on its page");
    if (slot->flags != 0) return fail("the map of " + what + " is marked as deleted or moved");
    const auto [other, added] = mapRows_.try_emplace(pointer.value, what);
    if (!added) return fail("the map of " + what + " is also that of " + other->second);

    // Copied: bit pages are read meanwhile.
    const auto view = BytesOf(page, *slot);
    const std::vector<std::byte> row(view.begin(), view.end());
    Content content;
    content.form = U8(row.data());
    if (content.form == kInline) {
        content.start = U32(row.data() + 1);
        const auto bits = std::span(row).subspan(kInlineHeader);
        content.end = content.start + 8 * bits.size();
        CollectBits(bits, content.start, content);
        return content;
    }
    if (content.form != kReference) return fail("the map of " + what + " has an unknown form");
    const std::size_t perBitPage = (layout_.pageSize - kBitsAt) * 8;
    const std::size_t entries = (row.size() - 1) / 4;
    content.end = std::uint64_t{perBitPage} * entries;
    for (std::size_t i = 0; i < entries; ++i) {
        const PageNumber bitPage = U32(row.data() + 1 + 4 * i);
        if (bitPage == 0) {
            content.absent.push_back(i);
            continue;
        }
        if (!Claim(bitPage, bits_, spot)) continue;
        const std::byte* const bits = pager_.Read(bitPage);
        if (U8(bits) != kMapPage) {
            findings_.Error(spot.On(bitPage),
                            "the map of " + what + " has its bits on a page of another kind");
            continue;
        }
        CollectBits({bits + kBitsAt, layout_.pageSize - kBitsAt}, std::uint64_t{i} * perBitPage, content);
    }
    return content;
}

std::optional<std::vector<PageNumber>> PageBook::ReadMap(RowPointer row, const std::string& what,
                                                         const Spot& spot) {
    std::optional<Content> content = ReadMapRow(row, what, spot);
    if (!content) return std::nullopt;
    if (content->behind > 0) {
        findings_.Error(spot.On(row.Page(), row.Row()), "the map of " + what + " lists " +
                                                            PagesText(content->behind) +
                                                            " behind the end of the file, which is cut off");
    }
    return std::move(content->pages);
}

void PageBook::ReadGlobalMap() {
    const Spot spot;
    const auto second = RowPointer::Of(kGlobalMapPage, 1);
    const auto content = ReadMapRow(RowPointer::Of(kGlobalMapPage, 0), "free pages", spot);
    static_cast<void>(ReadMapRow(second, "row 1 of page 1", spot));
    if (!content) return;
    for (PageNumber page : content->pages)
        free_[page] = true;
    // What the map does not speak of counts as free; only below the start of an inline map all is in use.
    for (std::uint64_t page = content->end; page < free_.size(); ++page)
        free_[page] = true;
    const std::uint64_t perBitPage = (layout_.pageSize - kBitsAt) * 8;
    for (std::size_t range : content->absent) {
        for (std::uint64_t page = range * perBitPage;
             page < std::min<std::uint64_t>((range + 1) * perBitPage, free_.size()); ++page)
            free_[page] = true;
    }
    if (content->form == kInline && content->start > 0) {
        findings_.Note(spot.On(kGlobalMapPage, 0),
                       "the map of free pages begins at page " + std::to_string(content->start) +
                           ": free pages below are lost until the file is compacted");
        // Nothing can be said about those below: they are in use, or lost as just noted.
        for (std::uint64_t page = 1; page < std::min<std::uint64_t>(content->start, users_.size()); ++page)
            free_[page] = false;
        lostBelow_ = content->start;
    }
}

void PageBook::CheckAccounting(bool everythingSeen) {
    std::vector<PageNumber> lost;
    for (PageNumber page = 1; page < users_.size(); ++page) {
        if (users_[page] != 0 && free_[page]) {
            findings_.Error(Spot{}.On(page), "the page belongs to " + names_[users_[page]] +
                                                 ", but counts as free: it will be overwritten");
        } else if (users_[page] == 0 && !free_[page] && page >= lostBelow_) {
            lost.push_back(page);
        }
    }
    if (everythingSeen && !lost.empty()) {
        findings_.Note({}, PagesText(lost.size()) +
                               " wasted until the file is compacted: in use by nobody and not free (" +
                               Some(lost) + ")");
    }
}

}  // namespace zenvora::jet::detail
