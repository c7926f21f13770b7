#include <algorithm>

#include "platform/jet/detail/store.h"
#include "platform/jet/detail/table_plan.h"
#include "platform/text/utf8.h"

namespace zenvora::jet::detail {

namespace {
constexpr const Layout& kLayout = kJet4;  // the only version that is written
constexpr std::size_t kMaxColumns = 255;
constexpr std::size_t kMaxIndexes = 32;
constexpr std::size_t kMaxIndexColumns = 10;

/// Map rows, two to a column or one to an index, on as many pages as they need.
class MapRows {
  public:
    MapRows(Pager& pager, PageAllocator& allocator) : pager_(pager), allocator_(allocator) {}
    /// `count` rows on the same page; the first of them.
    RowPointer Take(unsigned count) {
        const std::vector<std::byte> empty = UsageMap::EmptyRow();
        if (page_ == 0 || FreeBytes(pager_, page_) < count * (empty.size() + 2)) {
            page_ = allocator_.Allocate();
            FormatDataPage(pager_, page_, 0);
        }
        const unsigned first = AppendRow(pager_, page_, empty);
        for (unsigned i = 1; i < count; ++i)
            AppendRow(pager_, page_, empty);
        return RowPointer::Of(page_, first);
    }

  private:
    Pager& pager_;
    PageAllocator& allocator_;
    PageNumber page_ = 0;
};

RowPointer Behind(RowPointer row) {
    return RowPointer::Of(row.Page(), row.Row() + 1U);
}

std::uint8_t IndexFlags(const NewIndex& index) {
    unsigned flags = kIndexJet4;
    if (index.unique || index.primaryKey) flags |= kIndexUnique;
    if (index.ignoreNulls) flags |= kIndexIgnoreNulls;
    if (index.required || index.primaryKey) flags |= kIndexRequired;
    return static_cast<std::uint8_t>(flags);
}
}  // namespace

void BuildTable(Pager& pager, PageAllocator& allocator, PageNumber page, const NewTable& table) {
    CheckName(table.name, "table");
    if (table.columns.empty() || table.columns.size() > kMaxColumns || table.indexes.size() > kMaxIndexes) {
        throw Fault{fault::kUnsupported, "a table has 1 to 255 columns and at most 32 indexes"};
    }
    PlannedTable plan;
    std::size_t fixed = 0;
    for (const NewColumn& each : table.columns) {
        CheckName(each.name, "column");
        for (const PlannedColumn& other : plan.columns) {
            if (text::EqualsNoCase(other.column.name, each.name)) {
                throw Fault{fault::kColumnExists, "column " + each.name + " is named twice"};
            }
        }
        ColumnDefinition column = TableStore::PlanColumn(each);
        column.number = plan.maxColumns++;
        column.variableIndex = plan.variableCount;
        if (!column.fixedLength) {
            ++plan.variableCount;
        } else if (column.type != ColumnType::Boolean) {
            column.fixedOffset = static_cast<std::uint16_t>(fixed);
            fixed += column.byteLength;
        }
        plan.columns.push_back({std::move(column), false});
    }
    if (fixed + 2 + 2 * plan.variableCount + 4 + (plan.maxColumns + 7U) / 8 > kLayout.maxRow) {
        throw Fault{fault::kRecordTooLarge, "the records of table " + table.name + " would be too large"};
    }
    for (const NewIndex& index : table.indexes) {
        CheckName(index.name, "index");
        if (index.columns.empty() || index.columns.size() > kMaxIndexColumns) {
            throw Fault{fault::kUnsupported, "index " + index.name + " must have 1 to 10 columns"};
        }
        PlannedIndex planned;
        planned.flags = IndexFlags(index);
        for (std::size_t i = 0; i < index.columns.size(); ++i) {
            const auto found =
                std::find_if(plan.columns.begin(), plan.columns.end(), [&](const PlannedColumn& column) {
                    return text::EqualsNoCase(column.column.name, index.columns[i]);
                });
            if (found == plan.columns.end()) {
                throw Fault{fault::kItemNotFound,
                            "index " + index.name + " has no column " + index.columns[i]};
            }
            const bool descending = i < index.descending.size() && index.descending[i];
            planned.columns.push_back({found->column.number, !descending});
        }
        const auto number = static_cast<std::uint32_t>(plan.indexes.size());
        plan.indexes.push_back(std::move(planned));
        plan.logicalIndexes.push_back(
            {index.name, number, number, index.primaryKey ? std::uint8_t{1} : std::uint8_t{0}});
    }
    PlaceTable(pager, allocator, page, plan);
}

void PlaceTable(Pager& pager, PageAllocator& allocator, PageNumber page, PlannedTable& plan) {
    MapRows maps(pager, allocator);
    plan.ownedMap = maps.Take(2);
    plan.freeMap = Behind(plan.ownedMap);
    for (PlannedIndex& index : plan.indexes) {
        index.ownedMap = maps.Take(1);
        index.root = allocator.Allocate();
        IndexTree::FormatLeaf(pager, index.root, page);
        UsageMap(pager, index.ownedMap).Add(index.root, allocator);
    }
    for (const PlannedColumn& each : plan.columns) {
        if (each.column.type != ColumnType::Memo && each.column.type != ColumnType::Ole) continue;
        const RowPointer owned = maps.Take(2);
        plan.longColumns.push_back({each.column.number, owned, Behind(owned)});
    }
    std::vector<std::byte> bytes = BuildDefinition(plan);
    std::vector<PageNumber> chain{page};
    WriteDefinition(pager, allocator, chain, bytes);
}

}  // namespace zenvora::jet::detail
