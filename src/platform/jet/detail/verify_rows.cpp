#include <algorithm>
#include <cmath>

#include "platform/fault.h"
#include "platform/jet/detail/long_values.h"
#include "platform/jet/detail/text_codec.h"
#include "platform/jet/detail/verify_table.h"

namespace zenvora::jet::detail {

namespace {
bool IsLong(const ColumnDefinition& column) {
    return column.type == ColumnType::Memo || column.type == ColumnType::Ole;
}
bool IsCompressed(std::span<const std::byte> raw) {
    return raw.size() >= 2 && raw[0] == std::byte{0xFF} && raw[1] == std::byte{0xFE};
}
}  // namespace

TableCheck::TableCheck(PageBook& book, std::string name, PageNumber definition)
    : book_(book), layout_(book.FileLayout()), findings_(book.Found()), page_(definition) {
    spot_.table = std::move(name);
}

bool TableCheck::Run() {
    if (!CheckDefinition()) return false;
    rowsUser_ = book_.NewUser("the rows of table " + spot_.table);
    const auto owned = book_.ReadMap(stored_.ownedMap, "the pages of the table", spot_);
    const auto free = book_.ReadMap(stored_.freeMap, "the pages with room for rows", spot_);
    if (owned) owned_ = *owned;
    if (free && !std::includes(owned_.begin(), owned_.end(), free->begin(), free->end())) {
        findings_.Error(At(stored_.freeMap.Page(), stored_.freeMap.Row()),
                        "the map of the pages with room lists pages that are not the table's own");
    }
    ReadLongMaps();
    CheckDataPages();
    CheckOrphans();
    CheckUnusedPieces();
    CheckCounts();
    CheckIndexes();
    return true;
}

// ---------------------------------------------------------------- pages and slots

void TableCheck::CheckDataPages() {
    Pager& pager = book_.Pages();
    // Pointers lead from page to page: all pages are known to be the table's before one is followed.
    book_.ClaimAll(owned_, rowsUser_, spot_);
    for (PageNumber number : owned_) {
        if (!book_.BelongsTo(number, rowsUser_)) continue;
        const std::byte* const page = pager.Read(number);
        if (U8(page) != kDataPage) {
            findings_.Error(At(number), "rows are expected on the page, and it is of another kind (" +
                                            std::to_string(U8(page)) + ")");
            continue;
        }
        if (const std::uint32_t owner = U32(page + 4); owner != page_) {
            findings_.Error(At(number), "the page names another owner (page " + std::to_string(owner) + ")");
        }
        for (const CheckedSlot& slot : book_.CheckSlots(number, spot_)) {
            if (slot.Hidden()) {
                if (!slot.Deleted()) hidden_.insert(RowPointer::Of(number, slot.index).value);
                continue;
            }
            if (slot.index >= kMaxSlots) continue;  // noted with the page; no identity can name it
            Row row;
            row.id = {number, static_cast<std::uint8_t>(slot.index)};
            CheckHome(number, slot, row);
            rows_.push_back(row);
        }
        pager.Trim();
    }
}

void TableCheck::CheckHome(PageNumber page, const CheckedSlot& home, Row& row) {
    CheckedSlot slot = home;
    for (int steps = 0; slot.flags & kSlotOverflow; ++steps) {
        if (steps == 1) findings_.Note(At(row), "a moved row is reached over more than one pointer");
        if (steps == 5) {
            findings_.Error(At(row), "the pointers to a moved row lead in a circle");
            return;
        }
        if (slot.Size() < 4) {
            findings_.Error(At(row), "the pointer to a moved row is cut off");
            return;
        }
        const RowPointer target{U32(book_.BytesOf(page, slot).data())};
        const auto next = book_.SlotAt(target.Page(), target.Row());
        if (!next || next->Deleted() || !book_.BelongsTo(target.Page(), rowsUser_)) {
            findings_.Error(At(row), "a moved row is not where its pointer leads (page " +
                                         std::to_string(target.Page()) + ", row " +
                                         std::to_string(target.Row()) + "): it is lost");
            return;
        }
        if ((next->flags & kSlotHidden) == 0) {
            findings_.Error(At(target.Page(), target.Row()),
                            "the target of a pointer is not marked as one: the row appears twice");
        }
        if (!targets_.insert(target.value).second) {
            findings_.Error(At(target.Page(), target.Row()), "two pointers lead to the same row");
            return;
        }
        page = target.Page();
        slot = *next;
    }
    row.page = page;
    row.begin = static_cast<std::uint16_t>(slot.begin);
    row.size = static_cast<std::uint16_t>(slot.Size());
    CheckRow(row);
}

void TableCheck::CheckOrphans() {
    std::size_t orphans = 0;
    std::uint32_t first = UINT32_MAX;
    for (std::uint32_t each : hidden_) {
        if (targets_.contains(each)) continue;
        ++orphans;
        first = std::min(first, each);
    }
    if (orphans > 0) {
        findings_.Note(At(RowPointer{first}.Page(), RowPointer{first}.Row()),
                       "hidden rows that no pointer leads to, " + std::to_string(orphans) +
                           " of them: remains of deleted rows, which some programs show again");
    }
    hidden_.clear();
    targets_.clear();
}

void TableCheck::CheckCounts() {
    if (stored_.rowCount != rows_.size()) {
        findings_.Note(At(page_), "the definition counts " + std::to_string(stored_.rowCount) +
                                      " rows, and there are " + std::to_string(rows_.size()));
    }
    for (std::size_t i = 0; i < stored_.table.columns.size(); ++i) {
        const ColumnDefinition& column = stored_.table.columns[i];
        if (!column.autoNumber || column.type != ColumnType::Long) continue;
        std::int64_t highest = 0;
        for (const Row& row : rows_) {
            if (!row.readable) continue;
            if (const Value value = ValueOf(row, i); std::holds_alternative<std::int32_t>(value))
                highest = std::max<std::int64_t>(highest, std::get<std::int32_t>(value));
        }
        // A counter that was switched to random numbers is not counted on.
        if (static_cast<std::int32_t>(stored_.autoNumber) >= 0 && highest > stored_.autoNumber) {
            findings_.Note(At(page_), "the last number given in " + column.name + " is said to be " +
                                          std::to_string(stored_.autoNumber) + ", and a row has " +
                                          std::to_string(highest));
        }
    }
}

// ---------------------------------------------------------------- rows

RowShape TableCheck::ShapeOf(const Row& row) {
    const std::span<const std::byte> bytes{book_.Pages().Read(row.page) + row.begin, row.size};
    return ParseRow(book_.Pages(), row.page, bytes, stored_);
}

Value TableCheck::ValueOf(const Row& row, std::size_t position) {
    const ColumnDefinition& column = stored_.table.columns[position];
    const auto raw = RawField(ShapeOf(row), column);
    if (!raw) return column.type == ColumnType::Boolean ? Value{false} : Value{Null{}};
    if (!IsLong(column)) return DecodeField(column, *raw);
    Bytes data;
    try {
        data = ReadLongValue(book_.Pages(), row.page, *raw);
    } catch (const Fault& fault) {
        if (fault.number != fault::kDamaged) throw;
        return Null{};
    }
    if (column.type == ColumnType::Ole) return data;
    std::string text;
    DecodeText(data, column.codePage, text);
    return text;
}

void TableCheck::CheckRow(Row& row) {
    try {
        const RowShape shape = ShapeOf(row);
        row.readable = CheckShape(row, shape);
        for (std::size_t i = 0; row.readable && i < stored_.table.columns.size(); ++i)
            row.readable = CheckValue(row, stored_.table.columns[i], shape);
    } catch (const Fault& fault) {
        row.readable = false;
        if (fault.number == fault::kUnsupported) {
            findings_.Note(At(row), fault.description);  // a text of a code page that is not known
            return;
        }
        if (fault.number != fault::kDamaged) throw;
        // The fault says "page 7: what. What to do": the finding names the page itself.
        std::string_view what = fault.description;
        if (const auto colon = what.find(": "); what.starts_with("page ") && colon != what.npos)
            what.remove_prefix(colon + 2);
        findings_.Error(At(row), std::string(what.substr(0, what.find(". "))));
    }
}

bool TableCheck::CheckShape(const Row& row, const RowShape& shape) {
    const auto fail = [&](const std::string& sentence) {
        findings_.Error(At(row), sentence);
        return false;
    };
    const bool full = shape.columnCount == stored_.maxColumns;
    const std::size_t countSize = shape.fieldSize;
    if (full && shape.maskAt < countSize + stored_.fixedAreaEnd)
        return fail("the row is too short for the values of fixed length");
    if (shape.bytes.size() > layout_.maxRow) {
        findings_.Note(At(row), "the row takes " + std::to_string(shape.bytes.size()) +
                                    " bytes: Access allows " + std::to_string(layout_.maxRow));
    }
    if (stored_.variableCount == 0) return true;
    if (full && shape.variableCount != stored_.variableCount) {
        findings_.Note(At(row), "the row has " + std::to_string(shape.variableCount) +
                                    " values of variable length; its table has " +
                                    std::to_string(stored_.variableCount));
    }
    std::size_t last = countSize + (full ? stored_.fixedAreaEnd : 0);
    for (std::size_t i = 0; i <= shape.variableCount; ++i) {
        const std::size_t offset = VariableOffset(shape, i);
        if (offset < last) return fail("the values of variable length overlap");
        last = offset;
    }
    // Behind the values: an offset for each and one for the end, the jump table, the count, the null mask.
    const std::size_t offsets = shape.maskAt - (shape.variableCount + 2) * countSize - shape.jumpBytes;
    if (last > offsets) return fail("the values of variable length run over the end of the row");
    return true;
}

bool TableCheck::CheckValue(const Row& row, const ColumnDefinition& column, const RowShape& shape) {
    const auto fail = [&](const std::string& sentence) {
        findings_.Error(At(row), "column " + column.name + ": " + sentence);
        return false;
    };
    if (column.number >= shape.columnCount) return true;
    const bool present =
        (U8(shape.bytes.data() + shape.maskAt + column.number / 8) >> (column.number % 8) & 1U) != 0;
    if (!present || column.type == ColumnType::Boolean) return true;
    const auto raw = RawField(shape, column);
    if (!raw) {
        if (!column.fixedLength && column.variableIndex >= shape.variableCount) return true;
        return fail("the value lies outside of the row");
    }
    if (IsLong(column)) return column.fixedLength || CheckLongValue(row, column, *raw);
    if (const std::size_t size = FixedSize(column.type); size != 0 && raw->size() != size) {
        return fail("the value takes " + std::to_string(raw->size()) + " bytes instead of " +
                    std::to_string(size));
    }
    switch (column.type) {
        case ColumnType::Text:
            return CheckText(row, column, *raw);
        case ColumnType::Binary:
            if (raw->size() > column.byteLength) return fail("the value is longer than the column allows");
            break;
        case ColumnType::DateTime:
            if (const double serial = DecodeNumber(column, *raw);
                !(serial > text::kFirstDate - 1 && serial < text::kLastDate + 1)) {
                findings_.Note(At(row), "column " + column.name + ": the value is no date of the calendar");
            }
            break;
        case ColumnType::Double:
        case ColumnType::Single:
            if (!std::isfinite(DecodeNumber(column, *raw)))
                findings_.Note(At(row), "column " + column.name + ": the value is no number");
            break;
        default:
            break;
    }
    return true;
}

bool TableCheck::CheckText(const Row& row, const ColumnDefinition& column, std::span<const std::byte> raw) {
    const auto fail = [&](const std::string& sentence) {
        findings_.Error(At(row), "column " + column.name + ": " + sentence);
        return false;
    };
    if (layout_.characterBytes == 2 && raw.size() % 2 != 0 && !IsCompressed(raw))
        return fail("the text ends within a character");
    const Value value = DecodeField(column, raw);
    const auto* const text = std::get_if<std::string>(&value);
    if (text != nullptr && Utf16Length(*text) > static_cast<std::size_t>(column.CharacterLimit()))
        return fail("the text is longer than the column allows");
    return true;
}

}  // namespace zenvora::jet::detail
