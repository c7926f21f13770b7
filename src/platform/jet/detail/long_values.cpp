#include "platform/jet/detail/long_values.h"

#include <algorithm>

namespace zenvora::jet::detail {

namespace {
constexpr std::size_t kHeader = 12;
constexpr std::uint32_t kLengthMask = 0x3FFFFFFF;
constexpr std::uint32_t kInline = 0x80000000;
constexpr std::uint32_t kSinglePage = 0x40000000;
constexpr std::uint32_t kKindMask = 0xC0000000;
/// A page of long values leaves the map of those with room when less than this is free.
constexpr std::size_t kWorthTrying = 64;

struct Header {
    std::uint32_t kind = 0;
    std::size_t length = 0;
    RowPointer row;
};

Header ReadHeader(std::span<const std::byte> stored) {
    const std::uint32_t word = U32(stored.data());
    return {word & kKindMask, word & kLengthMask, {U32(stored.data() + 4)}};
}

std::vector<std::byte> MakeHeader(std::uint32_t kind, std::size_t length, RowPointer row) {
    std::vector<std::byte> header(kHeader);
    PutU32(header.data(), kind | length);
    PutU32(header.data() + 4, row.value);
    return header;
}

std::span<const std::byte> Piece(Pager& pager, RowPointer row) {
    if (U32(pager.Read(row.Page()) + 4) != kLongValueOwner) {
        throw pager.Damaged(row.Page(), "a page of long values is expected here");
    }
    const Slot slot = ReadSlot(pager, row.Page(), row.Row());
    if (slot.flags != 0) throw pager.Damaged(row.Page(), "a long value has lost a piece");
    return {pager.Read(row.Page()) + slot.begin, slot.Size()};
}

/// Stores one piece on a page with room, or on a new one.
RowPointer StorePiece(Pager& pager, PageAllocator& allocator, UsageMap owned, UsageMap free,
                      std::span<const std::byte> piece) {
    std::vector<PageNumber> candidates = free.Pages();
    for (auto page = candidates.rbegin(); page != candidates.rend() && page - candidates.rbegin() < 8;
         ++page) {
        CheckDataPage(pager, *page);
        if (U32(pager.Read(*page) + 4) != kLongValueOwner)
            throw pager.Damaged(*page, "a page of long values is expected here");
        if (!HasRoom(pager, *page, piece.size())) continue;
        const unsigned slot = AppendRow(pager, *page, piece);
        if (FreeBytes(pager, *page) < kWorthTrying) free.Remove(*page);
        return RowPointer::Of(*page, slot);
    }
    const PageNumber page = allocator.Allocate();
    FormatDataPage(pager, page, kLongValueOwner);
    const unsigned slot = AppendRow(pager, page, piece);
    owned.Add(page, allocator);
    if (FreeBytes(pager, page) >= kWorthTrying) free.Add(page, allocator);
    return RowPointer::Of(page, slot);
}
}  // namespace

std::vector<std::byte> ReadLongValue(Pager& pager, PageNumber rowPage, std::span<const std::byte> stored) {
    if (stored.size() < kHeader) return {};  // an empty value may be stored without a header
    const Header header = ReadHeader(stored);
    std::vector<std::byte> data;
    if (header.kind == kInline) {
        const auto bytes = stored.subspan(kHeader, std::min(header.length, stored.size() - kHeader));
        data.assign(bytes.begin(), bytes.end());
        return data;
    }
    if (header.kind == kSinglePage) {
        const auto piece = Piece(pager, header.row);
        data.assign(piece.begin(),
                    piece.begin() + static_cast<std::ptrdiff_t>(std::min(header.length, piece.size())));
    } else if (header.kind == 0) {
        // Never trust the length for an allocation: the pieces bound it.
        std::size_t steps = 0;
        for (RowPointer row = header.row; row.value != 0 && data.size() < header.length;) {
            if (++steps > std::size_t{pager.PageCount()} * kMaxSlots) {
                throw pager.Damaged(row.Page(), "a long value runs in a circle");
            }
            auto piece = Piece(pager, row);
            if (piece.size() <= 4) throw pager.Damaged(row.Page(), "a long value has an empty piece");
            // A circle is noticed before it fills the memory: no value is larger than its file.
            if (data.size() > std::size_t{pager.PageCount()} * pager.PageSize())
                throw pager.Damaged(row.Page(), "a long value runs in a circle");
            const RowPointer next{U32(piece.data())};
            piece = piece.subspan(4);
            const std::size_t take = std::min(piece.size(), header.length - data.size());
            data.insert(data.end(), piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(take));
            row = next;
        }
    } else {
        throw pager.Damaged(rowPage, "a long value has an unknown form");
    }
    if (data.size() < header.length) throw pager.Damaged(rowPage, "a long value ends too early");
    return data;
}

std::vector<std::byte> WriteLongValue(Pager& pager, PageAllocator& allocator, UsageMap owned, UsageMap free,
                                      std::span<const std::byte> data, bool mayInline) {
    const Layout& layout = pager.Format();
    if (data.empty() || (mayInline && data.size() <= layout.maxInlineLongValue)) {
        std::vector<std::byte> stored = MakeHeader(kInline, data.size(), {});
        stored.insert(stored.end(), data.begin(), data.end());
        return stored;
    }
    if (!owned.Valid() || !free.Valid()) {
        throw Fault{fault::kUnsupported,
                    "long texts cannot be stored in a column whose page maps are missing",
                    Place{pager.Path().string()}};
    }
    if (data.size() <= layout.maxSinglePiece) {
        return MakeHeader(kSinglePage, data.size(), StorePiece(pager, allocator, owned, free, data));
    }
    if (data.size() > kLengthMask) {
        throw Fault{fault::kTooLong, "a long value may take 1 GB", Place{pager.Path().string()}};
    }
    // The last piece first, so that each piece knows the one behind it.
    RowPointer next;
    std::vector<std::byte> piece;
    std::size_t pieces = (data.size() + layout.chainPiece - 1) / layout.chainPiece;
    while (pieces-- > 0) {
        const auto part = data.subspan(pieces * layout.chainPiece)
                              .first(std::min(layout.chainPiece, data.size() - pieces * layout.chainPiece));
        piece.resize(4);
        PutU32(piece.data(), next.value);
        piece.insert(piece.end(), part.begin(), part.end());
        next = StorePiece(pager, allocator, owned, free, piece);
    }
    return MakeHeader(0, data.size(), next);
}

void FreeLongValue(Pager& pager, PageAllocator& allocator, UsageMap owned, UsageMap free,
                   std::span<const std::byte> stored) {
    if (stored.size() < kHeader || !owned.Valid() || !free.Valid()) return;
    const Header header = ReadHeader(stored);
    if (header.kind != 0 && header.kind != kSinglePage) return;
    std::size_t steps = 0;
    for (RowPointer row = header.row; row.value != 0;) {
        if (++steps > std::size_t{pager.PageCount()} * kMaxSlots) return;
        const auto piece = Piece(pager, row);
        const RowPointer next{header.kind == 0 && piece.size() >= 4 ? U32(piece.data()) : 0};
        const PageNumber page = row.Page();
        // The rows below the piece move, so that all of the page must be sound and not the piece alone.
        CheckDataPage(pager, page);
        KillRow(pager, page, row.Row());
        if (AllDeleted(pager, page) && owned.Contains(page)) {
            free.Remove(page);
            owned.Remove(page);
            allocator.Free(page, kFreedData);
        } else if (owned.Contains(page) && SlotCount(pager, page) < kMaxSlots &&
                   FreeBytes(pager, page) >= kWorthTrying) {
            free.Add(page, allocator);
        }
        row = next;
    }
}

}  // namespace zenvora::jet::detail
