#include "platform/jet/detail/table_plan.h"

#include <algorithm>

#include "platform/text/utf8.h"

namespace zenvora::jet::detail {

namespace {
constexpr std::size_t kMaxName = 64;
constexpr std::uint8_t kColumnGuidNumber = 0x40;

/// What a column of Access 97 is in the newer form.
void Modernize(ColumnDefinition& column) {
    if (column.type == ColumnType::Text) {
        column.byteLength = static_cast<std::uint16_t>(std::min(2 * column.byteLength, 510));
        column.compressed = !column.fixedLength;
    }
    column.codePage = 0;
    // The old files have this flag on columns that are no identifiers, where it means nothing.
    if (column.type != ColumnType::Guid) column.flags &= static_cast<std::uint8_t>(~kColumnGuidNumber);
}
}  // namespace

PlannedTable PlanCopy(const Pager& source, const StoredDefinition& table,
                      const std::map<PageNumber, PageNumber>& pages) {
    PlannedTable plan;
    plan.system = table.table.systemTable;
    for (const ColumnDefinition& column : table.table.columns)
        plan.columns.push_back({column, plan.system});
    if (source.Format().version != kJet4.version) {
        for (PlannedColumn& each : plan.columns)
            Modernize(each.column);
    }

    std::vector<PlannedColumn*> byNumber;
    for (PlannedColumn& each : plan.columns)
        byNumber.push_back(&each);
    std::sort(byNumber.begin(), byNumber.end(), [](const PlannedColumn* a, const PlannedColumn* b) {
        return a->column.number < b->column.number;
    });
    std::map<std::uint16_t, std::uint16_t> numbers;
    std::size_t fixed = 0;
    for (PlannedColumn* each : byNumber) {
        ColumnDefinition& column = each->column;
        numbers[column.number] = plan.maxColumns;
        column.number = plan.maxColumns++;
        column.variableIndex = plan.variableCount;
        column.fixedOffset = 0;
        if (!column.fixedLength) {
            ++plan.variableCount;
        } else if (column.type != ColumnType::Boolean) {
            column.fixedOffset = static_cast<std::uint16_t>(fixed);
            fixed += column.byteLength;
        }
    }
    if (fixed + 2 + 2 * std::size_t{plan.variableCount} + 4 + (plan.maxColumns + 7U) / 8 > kJet4.maxRow) {
        Place place;
        place.file = source.Path().string();
        throw Fault{fault::kUnsupported,
                    "the rows of table " + table.table.name + " take more room than the newer format has",
                    place};
    }
    for (const StoredIndex& index : table.indexes) {
        PlannedIndex planned;
        planned.flags = index.flags | kIndexJet4;
        for (const IndexColumn& each : index.columns)
            planned.columns.push_back({numbers.at(each.column), each.ascending});
        plan.indexes.push_back(std::move(planned));
    }
    plan.logicalIndexes = table.logicalIndexes;
    for (LogicalIndex& index : plan.logicalIndexes) {
        if (index.type != 2) continue;
        const auto other = pages.find(index.otherTable);
        if (other == pages.end())
            throw source.Damaged(table.chain.front(), "a relationship names a table that is not there");
        index.otherTable = other->second;
    }
    return plan;
}

bool CanBeName(std::string_view name) {
    return !name.empty() && text::Length(name) <= kMaxName && name.front() != ' ' &&
           std::none_of(name.begin(), name.end(), [](char c) {
               return static_cast<unsigned char>(c) < 32 ||
                      std::string_view(".!`[]").find(c) != std::string_view::npos;
           });
}

void CheckName(const std::string& name, const char* what) {
    if (!CanBeName(name)) {
        throw Fault{fault::kUnsupported, "\"" + name + "\" cannot be the name of a " + what +
                                             ": use 1 to 64 characters without . ! ` [ ]"};
    }
}

void DropIndex(PlannedTable& plan, std::size_t index) {
    plan.indexes.erase(plan.indexes.begin() + static_cast<std::ptrdiff_t>(index));
    std::erase_if(plan.logicalIndexes, [&](const LogicalIndex& each) { return each.realIndex == index; });
    for (LogicalIndex& each : plan.logicalIndexes) {
        if (each.realIndex > index) --each.realIndex;
    }
}

}  // namespace zenvora::jet::detail
