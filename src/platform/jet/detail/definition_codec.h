#pragma once

#include <string>
#include <vector>

#include "platform/jet/detail/usage_map.h"
#include "platform/jet/table_definition.h"

/// Table definitions as they lie in the file: read into structures, built from a plan, lengthened by a
/// column.
namespace zenvora::jet::detail {

struct StoredIndex {
    RowPointer ownedMap;
    PageNumber root = 0;
    std::uint8_t flags = 0;
    std::vector<IndexColumn> columns;
    std::uint32_t distinct = 0;
    std::size_t countBlockAt = 0;  ///< where its row-count block lies in the definition
};

/// The maps of the long-value pages of one Memo or OLE column.
struct LongColumn {
    std::uint16_t column = 0;  ///< number
    RowPointer ownedMap, freeMap;
};

/// A name with a role for a real index.
struct LogicalIndex {
    std::string name;
    std::uint32_t number = 0, realIndex = 0;
    std::uint8_t type = 0;  ///< 1 primary key, 2 one side of a relationship
    // what a relationship says; the rest is what Access writes for an index without one
    std::uint8_t side = 0;
    std::uint32_t otherIndex = 0xFFFFFFFF;  ///< number of the logical index of the other table
    PageNumber otherTable = 0;
    std::uint8_t cascadeUpdates = 4, cascadeDeletes = 4;
};

/// A definition with the places of its parts, so that it can be changed without losing a byte it does not
/// know.
struct StoredDefinition {
    TableDefinition table;  ///< without its name
    std::vector<PageNumber> chain;
    std::vector<std::byte> bytes;  ///< the joined definition, page header of the first page included
    std::vector<StoredIndex> indexes;
    std::vector<LogicalIndex> logicalIndexes;
    std::vector<LongColumn> longColumns;
    RowPointer ownedMap, freeMap;
    std::uint32_t rowCount = 0;
    std::uint32_t autoNumber = 0;
    std::uint16_t maxColumns = 0;
    std::uint16_t variableCount = 0;
    std::size_t fixedAreaEnd = 0;  ///< bytes of the fixed area of a new row
    bool hasRelationship = false;
    // where the sections begin, counted in `bytes`
    std::size_t namesAt = 0, realIndexesAt = 0, endMarkAt = 0;
};

/// Reads the descriptor of a column; its name stands elsewhere.
[[nodiscard]] ColumnDefinition ReadColumn(const Layout& layout, const std::byte* block);
/// Bytes that a value of a type always takes; 0 for types whose values differ in length.
[[nodiscard]] std::size_t FixedSize(ColumnType type);

/// Reads a definition. Fault 3049 with the page where it stops making sense.
[[nodiscard]] StoredDefinition ReadDefinition(Pager& pager, PageNumber page);

/// Writes the joined bytes over the pages of the chain, which grows when they do not suffice. Sets length and
/// free words.
void WriteDefinition(Pager& pager, PageAllocator& allocator, std::vector<PageNumber>& chain,
                     std::vector<std::byte>& bytes);

/// A column on its way into a definition.
struct PlannedColumn {
    ColumnDefinition column;
    bool system = false;
};
struct PlannedIndex {
    std::vector<IndexColumn> columns;
    std::uint8_t flags = 0;
    RowPointer ownedMap;
    PageNumber root = 0;
};
struct PlannedTable {
    bool system = false;
    std::vector<PlannedColumn> columns;  ///< in the order of the descriptors
    std::uint16_t maxColumns = 0, variableCount = 0;
    std::vector<PlannedIndex> indexes;
    std::vector<LogicalIndex> logicalIndexes;
    std::vector<LongColumn> longColumns;
    RowPointer ownedMap, freeMap;
};
[[nodiscard]] std::vector<std::byte> BuildDefinition(const PlannedTable& plan);

/// The definition with one more column behind the others. Numbers and offsets of `column` are set here;
/// `maps` is given for a Memo or OLE column.
[[nodiscard]] std::vector<std::byte> WithColumn(const StoredDefinition& stored, ColumnDefinition& column,
                                                const LongColumn* maps);

}  // namespace zenvora::jet::detail
