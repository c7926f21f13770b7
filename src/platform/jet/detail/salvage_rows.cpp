#include "platform/jet/detail/salvage_rows.h"

#include <algorithm>
#include <unordered_set>

#include "platform/jet/detail/data_page.h"
#include "platform/jet/detail/text_codec.h"

namespace zenvora::jet::detail {

namespace {
constexpr int kMaxOverflowSteps = 8;
constexpr std::size_t kLongHeader = 12;
constexpr std::uint32_t kLengthMask = 0x3FFFFFFF;
constexpr std::uint32_t kKindMask = 0xC0000000;
constexpr std::uint32_t kInline = 0x80000000;
constexpr std::uint32_t kSinglePage = 0x40000000;

std::string RowName(std::uint32_t pointer) {
    return "page " + std::to_string(pointer >> 8) + " row " + std::to_string(pointer & 0xFF);
}
}  // namespace

RowSalvage::RowSalvage(Pager& pager, const StoredDefinition& table, PageNumber definitionPage,
                       const SalvageListener& listener)
    : FieldReader(pager, table), listener_(listener), definitionPage_(definitionPage) {}

unsigned RowSalvage::CountSlots(const std::byte* page) const {
    const Layout& layout = Pages().Format();
    const unsigned stated = U16(page + layout.slotCountAt);
    if (stated <= kMaxSlots + 1 && layout.slotsAt + 2 * std::size_t{stated} <= layout.pageSize) return stated;
    // The count itself is damaged: the slots are those that lie in front of all rows.
    unsigned count = 0;
    std::size_t end = layout.pageSize;
    while (count <= kMaxSlots) {
        const std::size_t begin = U16(page + layout.slotsAt + 2 * count) & kSlotOffsetMask;
        if (begin > end || begin < layout.slotsAt + 2 * (std::size_t{count} + 1)) break;
        end = begin;
        ++count;
    }
    return count;
}

bool RowSalvage::IsWhole(std::span<const std::byte> bytes) const {
    // The trailer names its own place, which hardly happens by chance. Asked for each byte of a page, so
    // nothing here is a fault.
    if (Pages().Format().rowFieldSize != 2 || Table().variableCount == 0 || bytes.size() < 8) return false;
    const std::size_t columnCount = U16(bytes.data());
    const std::size_t maskSize = (columnCount + 7) / 8;
    if (columnCount == 0 || columnCount > Table().maxColumns || bytes.size() < 8 + maskSize) return false;
    const std::size_t maskAt = bytes.size() - maskSize;
    const std::size_t variableCount = U16(bytes.data() + maskAt - 2);
    if (variableCount > Table().variableCount || maskAt < 6 + 2 * variableCount) return false;
    const std::size_t trailer = maskAt - 4 - 2 * variableCount;
    if (U16(bytes.data() + trailer) != trailer) return false;
    std::size_t before = 2;
    for (std::size_t i = 0; i < variableCount; ++i) {
        const std::size_t at = U16(bytes.data() + maskAt - 4 - 2 * i);
        if (at < before || at > trailer) return false;
        before = at;
    }
    return true;
}

bool RowSalvage::IsBlank(const RowShape& row) const {
    const auto mask = row.bytes.subspan(row.maskAt);
    const bool empty =
        std::all_of(mask.begin(), mask.end(), [](std::byte byte) { return byte == std::byte{0}; });
    if (!empty) return false;
    // A record without any value still says where its values would end; zeros do not.
    if (Pages().Format().rowFieldSize != 2 || Table().variableCount == 0) return true;
    return U16(row.bytes.data() + row.maskAt - 4 - 2 * std::size_t{row.variableCount}) < 2;
}

std::optional<RowSalvage::Span> RowSalvage::Extent(const std::byte* page, unsigned row) const {
    const Layout& layout = Pages().Format();
    const unsigned count = CountSlots(page);
    const std::size_t lowest = layout.slotsAt + 2 * std::size_t{count};
    const auto begin = [&](unsigned index) {
        return std::size_t{U16(page + layout.slotsAt + 2 * index)} & kSlotOffsetMask;
    };
    if (row >= count) return std::nullopt;
    const std::size_t at = begin(row);
    if (at < lowest || at > layout.pageSize) return std::nullopt;
    std::size_t limit = layout.pageSize;
    bool direct = true;
    for (unsigned i = row; i-- > 0;) {
        const std::size_t before = begin(i);
        if (before >= lowest && before <= layout.pageSize && before >= at) {
            limit = before;
            break;
        }
        direct = false;
    }
    if (direct) return Span{at, limit};
    // The slot in front is damaged, and with it the end of this row: look for the one end that fits.
    std::optional<Span> found;
    for (std::size_t end = at + 4; end <= limit; ++end) {
        if (!IsWhole({page + at, end - at})) continue;
        if (found) return std::nullopt;
        found = Span{at, end};
    }
    return found;
}

std::vector<std::byte> RowSalvage::LongValue(std::size_t position, PageNumber,
                                             std::span<const std::byte> stored) {
    if (stored.size() < kLongHeader) return {};
    const std::uint32_t kind = U32(stored.data()) & kKindMask;
    const std::size_t length = U32(stored.data()) & kLengthMask;
    const std::size_t most = std::size_t{Pages().PageCount()} * Pages().PageSize();
    std::vector<std::byte> data;
    if (kind == kInline) {
        const auto bytes = stored.subspan(kLongHeader, std::min(length, stored.size() - kLongHeader));
        data.assign(bytes.begin(), bytes.end());
    } else {
        std::unordered_set<std::uint32_t> seen;
        std::uint32_t pointer = U32(stored.data() + 4);
        const Layout& layout = Pages().Format();
        while (pointer != 0 && data.size() < std::min(length, most) && seen.insert(pointer).second) {
            const PageNumber number = pointer >> 8;
            if (number == 0 || number >= Pages().PageCount()) break;
            const std::byte* const page = Pages().Read(number);
            if (U8(page) != kDataPage || U32(page + 4) != kLongValueOwner) break;
            const unsigned row = pointer & 0xFF;
            if (row >= CountSlots(page)) break;
            if ((U16(page + layout.slotsAt + 2 * std::size_t{row}) & kSlotDeleted) != 0) break;
            const auto extent = Extent(page, row);
            if (!extent) break;
            std::span<const std::byte> piece{page + extent->begin, extent->end - extent->begin};
            pointer = 0;
            if (kind != kSinglePage) {
                if (piece.size() <= 4) break;
                pointer = U32(piece.data());
                piece = piece.subspan(4);
            }
            const std::size_t take = std::min(piece.size(), length - data.size());
            data.insert(data.end(), piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(take));
        }
    }
    if (data.size() < length) {
        const ColumnDefinition& column = Table().table.columns[position];
        cuts_.push_back("of the " + std::to_string(length) + " bytes in column " + column.name + " " +
                        (data.empty() ? std::string("none") : std::to_string(data.size())) +
                        " could be read");
        // Half a character is none.
        if (column.type == ColumnType::Memo && Pages().Format().codePage == 0 && data.size() % 2 != 0 &&
            (data[0] != std::byte{0xFF} || data[1] != std::byte{0xFE})) {
            data.pop_back();
        }
        if (data.empty()) lostValues_.push_back(position);
    }
    return data;
}

void RowSalvage::MendValues(StoredFields& fields) {
    mended_.resize(fields.size());
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (!fields[i]) continue;
        const ColumnDefinition& column = Table().table.columns[i];
        const std::size_t size = FixedSize(column.type);
        if (column.type != ColumnType::Boolean && size != 0 && fields[i]->size() != size) {
            cuts_.push_back("the value in column " + column.name + " could not be read");
            fields[i].reset();
        } else if (column.type == ColumnType::Text || column.type == ColumnType::Memo) {
            MendText(i, fields[i]);
        } else if (column.type == ColumnType::Binary && fields[i]->size() > column.byteLength) {
            cuts_.push_back("the end of the value in column " + column.name + " could not be read");
            fields[i] = fields[i]->first(column.byteLength);
        }
    }
}

void RowSalvage::MendText(std::size_t position, std::optional<std::span<const std::byte>>& field) {
    const ColumnDefinition& column = Table().table.columns[position];
    const auto bytes = *field;
    const bool compressed = bytes.size() >= 2 && bytes[0] == std::byte{0xFF} && bytes[1] == std::byte{0xFE};
    const auto characters = static_cast<std::size_t>(column.CharacterLimit());
    const bool limited = column.type == ColumnType::Text;
    if (!compressed && bytes.size() % 2 == 0 && (!limited || bytes.size() <= 2 * characters)) return;
    const bool switches =
        compressed && std::find(bytes.begin() + 2, bytes.end(), std::byte{0}) != bytes.end();
    if (compressed && !switches && !column.fixedLength && (!limited || bytes.size() <= characters + 2))
        return;
    // It may end within a character, or run on behind its end: written anew it does not. A text of fixed
    // length is never compressed; what looks like the mark of it is damage.
    std::string text;
    DecodeText(bytes, text);
    bool cut = !compressed || column.fixedLength;
    while (limited && Utf16Length(text) > characters) {
        text.pop_back();  // what is left of a longer character becomes U+FFFD
        cut = true;
    }
    std::vector<std::byte>& mended = mended_[position];
    mended.clear();
    EncodeText(text, compressed && !column.fixedLength, mended);
    while (column.fixedLength && mended.size() < 2 * characters) {
        mended.push_back(std::byte{' '});
        mended.push_back(std::byte{0});
    }
    if (cut) cuts_.push_back("the text in column " + column.name + " could not be read to its end");
    field = mended;
}

void RowSalvage::Give(PageNumber home, int homeRow, PageNumber page, std::span<const std::byte> bytes,
                      const Visitor& visit) {
    cuts_.clear();
    lostValues_.clear();
    StoredFields fields;
    try {
        const RowShape row = ParseRow(Pages(), page, bytes, Table());
        if (IsBlank(row)) {
            listener_.lost(home, homeRow, "its bytes are gone");
            return;
        }
        fields = Read(page, row);
        for (std::size_t i = 0; i < fields.size(); ++i) {
            const ColumnDefinition& column = Table().table.columns[i];
            if (fields[i] || column.type == ColumnType::Boolean || column.number >= row.columnCount) continue;
            const bool stated =
                (U8(bytes.data() + row.maskAt + column.number / 8) >> (column.number % 8) & 1U) != 0;
            const bool hasPlace = column.fixedLength || column.variableIndex < row.variableCount;
            if (stated && hasPlace)
                cuts_.push_back("the value in column " + column.name + " could not be read");
        }
        for (std::size_t position : lostValues_)
            fields[position].reset();
        MendValues(fields);
    } catch (const Fault& fault) {
        const std::string& reason = fault.description;
        listener_.lost(home, homeRow,
                       "its bytes are no record (" + reason.substr(0, reason.find(". ")) + ")");
        return;
    }
    for (const std::string& cut : cuts_)
        listener_.cut(home, homeRow, cut);
    visit(home, homeRow, fields);
}

void RowSalvage::Follow(PageNumber home, int homeRow, std::uint32_t pointer, const Visitor& visit) {
    const Layout& layout = Pages().Format();
    for (int step = 0; step < kMaxOverflowSteps; ++step) {
        const PageNumber number = pointer >> 8;
        const unsigned row = pointer & 0xFF;
        const std::byte* const page =
            number != 0 && number < Pages().PageCount() ? Pages().Read(number) : nullptr;
        const std::string gone = "it had moved to " + RowName(pointer) + ", and is not there";
        if (page == nullptr || U8(page) != kDataPage || U32(page + 4) != definitionPage_ ||
            row >= CountSlots(page)) {
            listener_.lost(home, homeRow, gone);
            return;
        }
        targets_.insert(pointer);
        const std::uint16_t flags = U16(page + layout.slotsAt + 2 * std::size_t{row}) & kSlotDeleted;
        const auto extent = Extent(page, row);
        if (flags == kSlotDeleted || !extent) {
            listener_.lost(home, homeRow, gone);
            return;
        }
        if ((flags & kSlotOverflow) == 0) {
            Give(home, homeRow, number, {page + extent->begin, extent->end - extent->begin}, visit);
            return;
        }
        if (extent->end - extent->begin < 4) break;
        pointer = U32(page + extent->begin);
    }
    listener_.lost(home, homeRow, "its pointer leads from place to place and nowhere");
}

void RowSalvage::ReadPage(PageNumber number, const Visitor& visit) {
    const Layout& layout = Pages().Format();
    const unsigned count = CountSlots(Pages().Read(number));
    if (count == 0 && U16(Pages().Read(number) + layout.slotCountAt) != 0) {
        listener_.lost(number, -1, "its list of rows is damaged: no row of it could be found");
        return;
    }
    for (unsigned row = 0; row < count && row <= kMaxSlots; ++row) {
        const std::byte* const page = Pages().Read(number);
        const std::uint16_t flags = U16(page + layout.slotsAt + 2 * std::size_t{row}) & kSlotDeleted;
        if (flags == kSlotDeleted) continue;
        const auto extent = Extent(page, row);
        const int place = static_cast<int>(row);
        if (flags == kSlotHidden) {
            if (extent) hidden_.insert(number << 8 | row);
            continue;
        }
        if (!extent) {
            listener_.lost(number, place, "its place on the page is damaged");
            continue;
        }
        if (flags == 0) {
            Give(number, place, number, {page + extent->begin, extent->end - extent->begin}, visit);
        } else if (extent->end - extent->begin < 4) {
            listener_.lost(number, place, "it had moved, and its pointer is damaged");
        } else {
            Follow(number, place, U32(page + extent->begin), visit);
        }
    }
    Pages().Trim();
}

void RowSalvage::ReadStrays(const Visitor& visit) {
    for (std::uint32_t pointer : hidden_) {
        if (targets_.contains(pointer)) continue;
        const PageNumber number = pointer >> 8;
        const unsigned row = pointer & 0xFF;
        const std::byte* const page = Pages().Read(number);
        if (const auto extent = Extent(page, row)) {
            Give(number, static_cast<int>(row), number, {page + extent->begin, extent->end - extent->begin},
                 visit);
        }
        Pages().Trim();
    }
}

}  // namespace zenvora::jet::detail
