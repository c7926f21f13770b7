#include <algorithm>
#include <span>

#include "platform/jet/detail/header.h"
#include "platform/jet/detail/store.h"

/// A new database: the header, the map of free pages, and the four system tables with their rows, laid out as
/// the smallest file that Access's own engine makes.
namespace zenvora::jet::detail {

namespace {
constexpr PageNumber kCatalog = 2;
constexpr PageNumber kRights = 3;
constexpr PageNumber kQueries = 4;
constexpr PageNumber kRelationships = 5;
constexpr PageNumber kMaps = 6;
constexpr PageNumber kFirstRoot = 7;
constexpr PageNumber kReserved = 14;
constexpr unsigned kMapRows = 31;

struct SystemColumn {
    const char* name;
    ColumnType type;
    std::uint8_t flags;
    std::uint16_t variableIndex, fixedOffset, length;
};
using T = ColumnType;
// In column-number order; flags: 12 variable, 13 fixed, 32 variable and scrambled.
constexpr SystemColumn kCatalogColumns[] = {{"Id", T::Long, 0x13, 0, 0, 4},
                                            {"ParentId", T::Long, 0x13, 0, 4, 4},
                                            {"Name", T::Text, 0x12, 0, 0, 510},
                                            {"Type", T::Integer, 0x13, 1, 8, 2},
                                            {"DateCreate", T::DateTime, 0x13, 1, 10, 8},
                                            {"DateUpdate", T::DateTime, 0x13, 1, 18, 8},
                                            {"Owner", T::Binary, 0x32, 1, 0, 510},
                                            {"Flags", T::Long, 0x13, 2, 26, 4},
                                            {"Database", T::Memo, 0x12, 2, 0, 0},
                                            {"Connect", T::Memo, 0x12, 3, 0, 0},
                                            {"ForeignName", T::Text, 0x12, 4, 0, 510},
                                            {"RmtInfoShort", T::Binary, 0x12, 5, 0, 510},
                                            {"RmtInfoLong", T::Ole, 0x12, 6, 0, 0},
                                            {"Lv", T::Ole, 0x12, 7, 0, 0},
                                            {"LvProp", T::Ole, 0x12, 8, 0, 0},
                                            {"LvModule", T::Ole, 0x12, 9, 0, 0},
                                            {"LvExtra", T::Ole, 0x12, 10, 0, 0}};
constexpr SystemColumn kRightsColumns[] = {{"ObjectId", T::Long, 0x13, 0, 0, 4},
                                           {"SID", T::Binary, 0x32, 0, 0, 510},
                                           {"ACM", T::Long, 0x13, 1, 4, 4},
                                           {"FInheritable", T::Boolean, 0x13, 1, 0, 1}};
constexpr SystemColumn kQueriesColumns[] = {
    {"ObjectId", T::Long, 0x13, 0, 0, 4},  {"Attribute", T::Byte, 0x13, 0, 4, 1},
    {"Order", T::Binary, 0x12, 0, 0, 510}, {"Name1", T::Text, 0x12, 1, 0, 510},
    {"Name2", T::Text, 0x12, 2, 0, 510},   {"Expression", T::Memo, 0x12, 3, 0, 0},
    {"Flag", T::Integer, 0x13, 4, 5, 2},   {"LvExtra", T::Long, 0x13, 4, 7, 4}};
constexpr SystemColumn kRelationshipsColumns[] = {{"szRelationship", T::Text, 0x12, 0, 0, 510},
                                                  {"grbit", T::Long, 0x13, 1, 0, 4},
                                                  {"ccolumn", T::Long, 0x13, 1, 4, 4},
                                                  {"icolumn", T::Long, 0x13, 1, 8, 4},
                                                  {"szObject", T::Text, 0x12, 1, 0, 510},
                                                  {"szColumn", T::Text, 0x12, 2, 0, 510},
                                                  {"szReferencedObject", T::Text, 0x12, 3, 0, 510},
                                                  {"szReferencedColumn", T::Text, 0x12, 4, 0, 510}};

struct SystemIndex {
    std::vector<std::uint16_t> columns;
    std::uint8_t flags;
    unsigned mapRow;
    PageNumber root;
};
struct SystemTable {
    PageNumber page;
    std::span<const SystemColumn> columns;
    std::uint16_t variableCount;
    unsigned firstMapRow;  ///< owned; the free map follows
    std::vector<SystemIndex> indexes;
    std::vector<LogicalIndex> logicalIndexes;
    std::vector<LongColumn> longColumns;
};

LongColumn LongMapsAt(std::uint16_t column, unsigned mapRow) {
    return {column, RowPointer::Of(kMaps, mapRow), RowPointer::Of(kMaps, mapRow + 1)};
}

std::vector<SystemTable> SystemTables() {
    std::vector<SystemTable> tables;
    tables.push_back({kCatalog,
                      kCatalogColumns,
                      11,
                      0,
                      {{{1, 2}, 0x81, 16, kFirstRoot}, {{0}, 0x81, 17, kFirstRoot + 1}},
                      {{"Id", 1, 1, 1}, {"ParentIdName", 0, 0, 0}},
                      {LongMapsAt(9, 4), LongMapsAt(8, 2), LongMapsAt(13, 8), LongMapsAt(16, 14),
                       LongMapsAt(15, 12), LongMapsAt(14, 10), LongMapsAt(12, 6)}});
    tables.push_back(
        {kRights, kRightsColumns, 1, 18, {{{0}, 0x88, 20, kFirstRoot + 2}}, {{"ObjectId", 0, 0, 0}}, {}});
    tables.push_back({kQueries,
                      kQueriesColumns,
                      4,
                      21,
                      {{{0, 1, 2}, 0x81, 25, kFirstRoot + 3}},
                      {{"ObjectIdAttribute", 0, 0, 1}},
                      {LongMapsAt(5, 23)}});
    tables.push_back(
        {kRelationships,
         kRelationshipsColumns,
         5,
         26,
         {{{0}, 0x82, 28, kFirstRoot + 4}, {{4}, 0x82, 29, kFirstRoot + 5}, {{6}, 0x82, 30, kFirstRoot + 6}},
         {{"szObject", 1, 1, 0}, {"szReferencedObject", 2, 2, 0}, {"szRelationship", 0, 0, 0}},
         {}});
    return tables;
}

void BuildSystemTable(Pager& pager, PageAllocator& allocator, const SystemTable& table) {
    PlannedTable plan;
    plan.system = true;
    plan.maxColumns = static_cast<std::uint16_t>(table.columns.size());
    plan.variableCount = table.variableCount;
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        const SystemColumn& each = table.columns[i];
        ColumnDefinition column;
        column.name = each.name;
        column.type = each.type;
        column.number = static_cast<std::uint16_t>(i);
        column.variableIndex = each.variableIndex;
        column.fixedOffset = each.fixedOffset;
        column.byteLength = each.length;
        column.fixedLength = (each.flags & kColumnFixed) != 0;
        column.flags = each.flags;
        plan.columns.push_back({std::move(column), true});
    }
    // The descriptors of system tables stand by name.
    std::sort(plan.columns.begin(), plan.columns.end(),
              [](const PlannedColumn& a, const PlannedColumn& b) { return a.column.name < b.column.name; });
    plan.ownedMap = RowPointer::Of(kMaps, table.firstMapRow);
    plan.freeMap = RowPointer::Of(kMaps, table.firstMapRow + 1);
    for (const SystemIndex& index : table.indexes) {
        PlannedIndex planned;
        planned.flags = index.flags;
        planned.root = index.root;
        planned.ownedMap = RowPointer::Of(kMaps, index.mapRow);
        for (std::uint16_t column : index.columns)
            planned.columns.push_back({column, true});
        IndexTree::FormatLeaf(pager, index.root, table.page);
        UsageMap(pager, planned.ownedMap).Add(index.root, allocator);
        plan.indexes.push_back(std::move(planned));
    }
    plan.logicalIndexes = table.logicalIndexes;
    plan.longColumns = table.longColumns;
    std::vector<std::byte> bytes = BuildDefinition(plan);
    std::vector<PageNumber> chain{table.page};
    WriteDefinition(pager, allocator, chain, bytes);
}

// Accounts as they are stored under the creation date of MakeHeader.
Bytes Account(unsigned first, unsigned second) {
    return {static_cast<std::byte>(first), static_cast<std::byte>(second)};
}
const Bytes& Admin() {
    static const Bytes sid = Account(0x64, 0x8B);
    return sid;
}
const Bytes& Users() {
    static const Bytes sid = Account(0x65, 0x8B);
    return sid;
}
const Bytes& Engine() {
    static const Bytes sid = Account(0x65, 0x89);
    return sid;
}
const Bytes& Creator() {
    static const Bytes sid = Account(0x65, 0x8E);
    return sid;
}

constexpr std::int32_t kSystemFlag = INT32_MIN;

void SetColumn(const TableStore& table, std::vector<Value>& values, std::string_view name, Value value) {
    values[table.Definition().FindColumn(name).value()] = std::move(value);
}
}  // namespace

std::unique_ptr<Store> NewFile(std::shared_ptr<files::HostFile> file, std::filesystem::path path,
                               text::Date now) {
    auto store = std::make_unique<Store>(std::move(file), std::move(path), kJet4, false);
    Pager& pager = store->Pages();
    PageAllocator& allocator = store->Allocator();
    store->Begin();
    while (pager.PageCount() < kReserved)
        static_cast<void>(pager.Append());
    MakeHeader({pager.Write(0), kHeaderSize});

    FormatDataPage(pager, 1, 1);
    std::vector<std::byte> free = UsageMap::EmptyRow();
    std::fill(free.begin() + 5, free.end(), std::byte{0xFF});
    for (PageNumber page = 0; page < kReserved; ++page) {
        free[5 + page / 8] &= static_cast<std::byte>(~(1U << (page % 8)));
    }
    AppendRow(pager, 1, free);
    AppendRow(pager, 1, UsageMap::EmptyRow());
    FormatDataPage(pager, kMaps, 0);
    for (unsigned row = 0; row < kMapRows; ++row)
        AppendRow(pager, kMaps, UsageMap::EmptyRow());
    for (const SystemTable& table : SystemTables())
        BuildSystemTable(pager, allocator, table);

    store->LoadCatalog();
    TableStore& catalog = *store->catalog_;
    constexpr std::int32_t kRoot = 0x0F000000;
    const auto addObject = [&](std::int32_t id, std::int32_t parent, const char* name, int type,
                               const Bytes& owner) {
        std::vector<Value> values(catalog.Definition().columns.size());
        SetColumn(catalog, values, "Id", id);
        SetColumn(catalog, values, "ParentId", parent);
        SetColumn(catalog, values, "Name", std::string(name));
        SetColumn(catalog, values, "Type", type);
        SetColumn(catalog, values, "DateCreate", DateTime{now});
        SetColumn(catalog, values, "DateUpdate", DateTime{now});
        SetColumn(catalog, values, "Owner", owner);
        SetColumn(catalog, values, "Flags", kSystemFlag);
        catalog.Insert(values);
    };
    addObject(kRoot + 1, kRoot, "Tables", 3, Engine());
    addObject(kRoot + 2, kRoot, "Databases", 3, Engine());
    addObject(kRoot + 3, kRoot, "Relationships", 3, Engine());
    addObject(0x10000000, kRoot + 2, "MSysDb", 2, Admin());
    addObject(kCatalog, kRoot + 1, "MSysObjects", 1, Engine());
    addObject(kRights, kRoot + 1, "MSysACEs", 1, Engine());
    addObject(kQueries, kRoot + 1, "MSysQueries", 1, Engine());
    addObject(kRelationships, kRoot + 1, "MSysRelationships", 1, Engine());

    TableStore rights(*store, "MSysACEs", kRights);
    const auto allow = [&](std::int32_t object, const Bytes& account, std::int32_t mask, bool inheritable) {
        std::vector<Value> values(rights.Definition().columns.size());
        SetColumn(rights, values, "ObjectId", object);
        SetColumn(rights, values, "SID", account);
        SetColumn(rights, values, "ACM", mask);
        SetColumn(rights, values, "FInheritable", inheritable);
        rights.Insert(values);
    };
    for (std::int32_t table : {2, 3, 4})
        allow(table, Admin(), 393216, false);
    allow(5, Admin(), 917504, false);
    for (std::int32_t container : {kRoot + 1, kRoot + 3}) {
        allow(container, Creator(), 983294, true);
        allow(container, Admin(), 393217, false);
    }
    allow(kRoot + 2, Admin(), 393216, false);
    allow(0x10000000, Admin(), 393230, false);
    allow(0x10000000, Users(), 14, false);
    for (std::int32_t table : {4, 5, 2})
        allow(table, Users(), 20, false);
    allow(kRoot + 1, Users(), 1048319, true);
    allow(kRoot + 3, Users(), 1048575, true);
    rights.Flush();
    store->Commit();
    return store;
}

}  // namespace zenvora::jet::detail
