#include <algorithm>

#include "platform/jet/detail/verify_table.h"

namespace zenvora::jet::detail {

namespace {
constexpr std::size_t kHeader = 12;
constexpr std::uint32_t kLengthMask = 0x3FFFFFFF;
enum Kind : std::uint32_t { kChain = 0, kSinglePage = 1, kInline = 2 };
constexpr std::size_t kMostInline = 64;
}  // namespace

void TableCheck::ReadLongMaps() {
    for (const LongColumn& each : stored_.longColumns) {
        std::string name = "deleted column " + std::to_string(each.column);
        for (const ColumnDefinition& column : stored_.table.columns) {
            if (column.number == each.column) name = "column " + column.name;
        }
        if (each.ownedMap.value == 0 || each.freeMap.value == 0) {
            findings_.Note(At(page_), name + " has no maps for its long values: none can be stored");
            continue;
        }
        LongPages& pages = longPages_[each.column];
        pages.user = book_.NewUser("the long values of " + name + " in table " + spot_.table);
        const auto owned = book_.ReadMap(each.ownedMap, "the long values of " + name, spot_);
        const auto free = book_.ReadMap(each.freeMap, "the room for long values of " + name, spot_);
        if (!owned) continue;
        if (free && !std::includes(owned->begin(), owned->end(), free->begin(), free->end())) {
            findings_.Error(At(each.freeMap.Page(), each.freeMap.Row()),
                            "the map of the room for long values of " + name +
                                " lists pages that are not the column's own");
        }
        for (PageNumber number : *owned) {
            if (!book_.Claim(number, pages.user, spot_)) continue;
            const std::byte* const page = book_.Pages().Read(number);
            if (U8(page) != kDataPage || U32(page + 4) != kLongValueOwner) {
                findings_.Error(At(number), "long values of " + name +
                                                " are expected on the page, and it is of another kind");
                continue;
            }
            static_cast<void>(book_.CheckSlots(number, spot_));
            pages.pages.push_back(number);
        }
        book_.Pages().Trim();
    }
}

bool TableCheck::CheckLongValue(const Row& row, const ColumnDefinition& column,
                                std::span<const std::byte> stored) {
    const auto fail = [&](const std::string& sentence) {
        findings_.Error(At(row), "column " + column.name + ": " + sentence);
        return false;
    };
    if (stored.empty()) return true;  // an empty text may be stored so
    if (stored.size() < kHeader) return fail("the head of a long value is cut off");
    const std::uint32_t kind = U32(stored.data()) >> 30;
    const std::size_t length = U32(stored.data()) & kLengthMask;
    RowPointer piece{U32(stored.data() + 4)};
    if (kind == kInline) {
        if (length > stored.size() - kHeader) return fail("a long value in the row is cut off");
        if (length > kMostInline)
            return fail("a long value in the row is longer than Access takes (64 bytes)");
        return true;
    }
    if (kind != kChain && kind != kSinglePage) return fail("a long value has an unknown form");
    const auto maps = longPages_.find(column.number);
    // Some bytes more would still fit on a page of Access 97.
    const std::size_t longest =
        layout_.version == kJet3.version ? layout_.maxSinglePiece + 4 : layout_.maxSinglePiece;
    std::size_t found = 0;
    while (piece.value != 0) {
        const PageNumber page = piece.Page();
        const std::string place = "page " + std::to_string(page) + ", row " + std::to_string(piece.Row());
        const auto slot = book_.SlotAt(page, piece.Row());
        if (!slot || slot->flags != 0 || U32(book_.Pages().Read(page) + 4) != kLongValueOwner)
            return fail("a piece of a long value is not where it should be (" + place + ")");
        if (!pieces_.insert(piece.value).second)
            return fail("a piece of a long value is used twice, or the value runs in a circle (" + place +
                        ")");
        if (maps == longPages_.end() || !book_.BelongsTo(page, maps->second.user)) {
            if (book_.CountsAsFree(page))
                return fail("a long value lies on a page that counts as free (" + place + ")");
            findings_.Note(At(row), "column " + column.name +
                                        ": a long value lies on a page that is not the column's own (" +
                                        place + ")");
        }
        const std::span<const std::byte> bytes = book_.BytesOf(page, *slot);
        if (bytes.size() > longest) return fail("a piece of a long value is too long (" + place + ")");
        if (kind == kSinglePage) {
            found = bytes.size();
            break;
        }
        if (bytes.size() < 4) return fail("a piece of a long value is cut off (" + place + ")");
        found += bytes.size() - 4;
        piece.value = U32(bytes.data());
    }
    const std::string counts =
        "a long value of " + std::to_string(length) + " bytes has " + std::to_string(found);
    if (found < length) return fail(counts);
    if (found > length) findings_.Note(At(row), "column " + column.name + ": " + counts);
    return true;
}

void TableCheck::CheckUnusedPieces() {
    std::size_t unused = 0;
    for (const auto& [column, pages] : longPages_) {
        for (PageNumber number : pages.pages) {
            for (unsigned i = 0; i < SlotCount(book_.Pages(), number); ++i) {
                const auto slot = book_.SlotAt(number, i);
                if (slot && slot->flags == 0 && !pieces_.contains(RowPointer::Of(number, i).value)) ++unused;
            }
        }
        book_.Pages().Trim();
    }
    if (unused > 0)
        findings_.Note(spot_, std::to_string(unused) + " pieces of long values are used by no row");
    pieces_.clear();
}

}  // namespace zenvora::jet::detail
