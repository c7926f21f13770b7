#include "platform/jet/detail/stored_rows.h"

#include "platform/jet/detail/data_page.h"
#include "platform/jet/detail/index_tree.h"
#include "platform/jet/detail/key_codec.h"
#include "platform/jet/detail/long_values.h"
#include "platform/jet/detail/text_codec.h"

namespace zenvora::jet::detail {

namespace {
constexpr int kMaxOverflowSteps = 8;

/// A row's bytes and the page that they lie on.
struct Located {
    PageNumber page = 0;
    std::span<const std::byte> bytes;
};

Located Follow(Pager& pager, PageNumber definitionPage, RowId row) {
    PageNumber page = row.page;
    unsigned index = row.slot;
    for (int step = 0; step < kMaxOverflowSteps; ++step) {
        const std::byte* const bytes = pager.Read(page);
        if (U8(bytes) != kDataPage || U32(bytes + 4) != definitionPage)
            throw pager.Damaged(page, "a row of another table is expected here");
        const Slot slot = ReadSlot(pager, page, index);
        if (slot.Deleted() || (step == 0 && slot.Hidden()))
            throw pager.Damaged(page, "an index or a moved row names a row that is not there");
        if ((slot.flags & kSlotOverflow) == 0) return {page, {bytes + slot.begin, slot.Size()}};
        if (slot.Size() < 4) throw pager.Damaged(page, "a moved row has lost its way");
        const RowPointer target{U32(bytes + slot.begin)};
        page = target.Page();
        index = target.Row();
    }
    throw pager.Damaged(page, "a moved row runs in a circle");
}

bool IsLong(const ColumnDefinition& column) {
    return column.type == ColumnType::Memo || column.type == ColumnType::Ole;
}
}  // namespace

FieldReader::FieldReader(Pager& pager, const StoredDefinition& table)
    : pager_(pager), table_(table), oldText_(pager.Format().version != kJet4.version) {
    fields_.resize(table.table.columns.size());
    buffers_.resize(fields_.size());
}

std::vector<std::byte> FieldReader::LongValue(std::size_t, PageNumber page,
                                              std::span<const std::byte> stored) {
    return ReadLongValue(pager_, page, stored);
}

const StoredFields& FieldReader::Read(PageNumber page, const RowShape& row) {
    for (std::size_t i = 0; i < fields_.size(); ++i) {
        const ColumnDefinition& column = table_.table.columns[i];
        fields_[i] = RawField(row, column);
        if (!fields_[i]) continue;
        if (IsLong(column)) {
            buffers_[i] = LongValue(i, page, *fields_[i]);
            fields_[i] = buffers_[i];
        }
        if (oldText_ && (column.type == ColumnType::Text || column.type == ColumnType::Memo))
            fields_[i] = NewerText(i, *fields_[i]);
    }
    return fields_;
}

std::span<const std::byte> FieldReader::NewerText(std::size_t position, std::span<const std::byte> stored) {
    const ColumnDefinition& column = table_.table.columns[position];
    text_.clear();
    DecodeText(stored, column.codePage, text_);
    // Fixed-length ones are filled up with blanks in either version.
    std::vector<std::byte>& out = buffers_[position];
    out.clear();
    EncodeText(text_, !column.fixedLength, out);
    return out;
}

const StoredFields& FieldReader::ReadAt(RowId row) {
    const Located located = Follow(pager_, table_.chain.front(), row);
    return Read(located.page, ParseRow(pager_, located.page, located.bytes, table_));
}

void EachHome(Pager& pager, const StoredDefinition& table, const std::function<void(RowId)>& visit) {
    const PageNumber definitionPage = table.chain.front();
    for (PageNumber page : UsageMap(pager, table.ownedMap).PagesInUse()) {
        CheckDataPage(pager, page);
        if (U32(pager.Read(page) + 4) != definitionPage)
            throw pager.Damaged(page, "rows of another table are here");
        const unsigned count = SlotCount(pager, page);
        for (unsigned i = 0; i < count; ++i) {
            if (!ReadSlot(pager, page, i).Hidden()) visit({page, static_cast<std::uint8_t>(i)});
        }
        pager.Trim();
    }
}

void EachRow(Pager& pager, PageAllocator& allocator, PageNumber definitionPage, const StoredDefinition& table,
             const std::function<void(RowId, const StoredFields&)>& visit) {
    FieldReader reader(pager, table);
    const auto give = [&](RowId id) {
        visit(id, reader.ReadAt(id));
        pager.Trim();
    };
    const auto primary = table.table.PrimaryKey();
    bool known = primary.has_value();
    if (known) {
        for (const IndexColumn& each : table.indexes[*primary].columns) {
            for (const ColumnDefinition& column : table.table.columns) {
                if (column.number == each.column) known = known && CanEncodeKey(column);
            }
        }
    }
    if (!known) {
        EachHome(pager, table, give);
        return;
    }
    // Four bytes a row: the rows themselves are let go of as they pass.
    const StoredIndex& index = table.indexes[*primary];
    std::vector<RowPointer> order;
    std::string last;
    IndexTree(pager, allocator, definitionPage, index.root, UsageMap(pager, index.ownedMap))
        .Scan([&](std::string_view entry) {
            if (entry <= last) throw pager.Damaged(index.root, "the primary key is out of order");
            last = entry;
            order.push_back(RowPointer::Of(RowIdOf(entry)));
            return true;
        });
    if (order.size() != CountRows(pager, table)) {
        throw pager.Damaged(index.root, "the primary key of table " + table.table.name +
                                            " does not name each of its rows once");
    }
    for (const RowPointer row : order)
        give({row.Page(), row.Row()});
}

std::uint64_t CountRows(Pager& pager, const StoredDefinition& table) {
    std::uint64_t count = 0;
    EachHome(pager, table, [&](RowId) { ++count; });
    return count;
}

}  // namespace zenvora::jet::detail
