#include "platform/jet/detail/definition_codec.h"

#include <algorithm>
#include <set>

#include "platform/jet/detail/text_codec.h"
#include "platform/text/utf8.h"

namespace zenvora::jet::detail {

namespace {
constexpr const Layout& kWritten = kJet4;        // the only version that is written
constexpr std::size_t kPageHeader = 8;           // of every page of a definition
constexpr std::size_t kMaxDefinitionPages = 64;  // 255 columns and 32 indexes need far fewer
constexpr std::size_t kMaxColumns = 255;
constexpr std::size_t kMaxIndexes = 1000;  // a guard; Access stops at 32
constexpr std::size_t kIndexColumns = 10;
constexpr std::uint16_t kNoColumn = 0xFFFF;

bool IsLong(ColumnType type) {
    return type == ColumnType::Memo || type == ColumnType::Ole;
}

/// Walks the joined definition; every step is checked against its end.
class Reader {
  public:
    Reader(const Pager& pager, PageNumber page, const std::vector<std::byte>& bytes, std::size_t at)
        : pager_(pager), page_(page), bytes_(bytes), at_(at) {}
    const std::byte* Take(std::size_t count) {
        if (bytes_.size() - at_ < count) throw pager_.Damaged(page_, "the table definition ends too early");
        const std::byte* const here = bytes_.data() + at_;
        at_ += count;
        return here;
    }
    [[nodiscard]] std::size_t At() const noexcept { return at_; }
    std::string Name() {
        const Layout& layout = pager_.Format();
        const std::byte* const length = Take(layout.nameSizeSize);
        const std::size_t size = layout.nameSizeSize == 1 ? U8(length) : U16(length);
        const std::byte* const text = Take(size);
        std::string name;
        DecodeText({text, size}, layout.codePage, name);
        return name;
    }

  private:
    const Pager& pager_;
    PageNumber page_;
    const std::vector<std::byte>& bytes_;
    std::size_t at_;
};

std::vector<std::byte> JoinChain(Pager& pager, PageNumber first, std::vector<PageNumber>& chain) {
    const Layout& layout = pager.Format();
    std::vector<std::byte> bytes;
    std::set<PageNumber> seen;
    if (first == 0) throw pager.Damaged(first, "the catalog names a table that has no definition");
    for (PageNumber page = first; page != 0;) {
        if (!seen.insert(page).second || chain.size() >= kMaxDefinitionPages) {
            throw pager.Damaged(page, "the pages of a table definition run in a circle");
        }
        const std::byte* const data = pager.Read(page);
        if (U8(data) != kDefinitionPage) throw pager.Damaged(page, "a table definition is expected here");
        bytes.insert(bytes.end(), data + (chain.empty() ? 0 : kPageHeader), data + layout.pageSize);
        chain.push_back(page);
        page = U32(data + 4);
    }
    const std::size_t length = U32(bytes.data() + 8);
    if (length > bytes.size() || length < layout.variablePartAt + 2) {
        throw pager.Damaged(first, "the table definition states an impossible length");
    }
    bytes.resize(length);
    return bytes;
}

void CheckColumns(const Pager& pager, PageNumber page, const StoredDefinition& stored) {
    std::set<std::uint16_t> numbers;
    std::set<std::uint16_t> variables;
    for (const ColumnDefinition& column : stored.table.columns) {
        if (column.number >= stored.maxColumns || !numbers.insert(column.number).second) {
            throw pager.Damaged(page, "column " + column.name + " has an impossible number");
        }
        if (column.fixedLength) {
            if (column.fixedOffset + std::size_t{column.byteLength} > pager.Format().maxRow) {
                throw pager.Damaged(page, "column " + column.name + " lies outside of a row");
            }
        } else if (column.variableIndex >= stored.variableCount ||
                   !variables.insert(column.variableIndex).second) {
            throw pager.Damaged(page,
                                "column " + column.name + " has an impossible place among the variable ones");
        }
    }
}

void AppendBlock(std::vector<std::byte>& out, const std::byte* block, std::size_t size) {
    out.insert(out.end(), block, block + size);
}

void AppendColumn(std::vector<std::byte>& out, const ColumnDefinition& column, bool system,
                  bool systemNumber) {
    std::byte block[kWritten.columnBlock] = {};
    PutU8(block, static_cast<unsigned>(column.type));
    PutU32(block + 1, kDefinitionMark);
    PutU16(block + 5, column.number);
    PutU16(block + 7, column.variableIndex);
    PutU16(block + 9, systemNumber ? 0U : column.number);
    if (column.type == ColumnType::Numeric) {
        PutU8(block + 11, column.precision);
        PutU8(block + 12, column.scale);
    } else {
        PutU16(block + 11, column.sortOrder);
        PutU8(block + 14, column.sortVersion);
    }
    unsigned flags = column.flags;
    if (flags == 0) {
        flags = kColumnNormal | (column.fixedLength ? kColumnFixed : 0U) |
                (column.autoNumber ? kColumnAutoNumber : 0U) | (system ? kColumnSystem : 0U);
    }
    PutU8(block + 15, flags);
    PutU8(block + 16, column.compressed && column.type == ColumnType::Text ? 1U : 0U);
    PutU16(block + 21, column.fixedLength ? column.fixedOffset : 0U);
    PutU16(block + 23, column.byteLength);
    AppendBlock(out, block, sizeof block);
}

void AppendName(std::vector<std::byte>& out, std::string_view name) {
    std::vector<std::byte> text;
    EncodeText(name, false, text);
    std::byte size[2];
    PutU16(size, text.size());
    AppendBlock(out, size, sizeof size);
    AppendBlock(out, text.data(), text.size());
}

void AppendLongColumn(std::vector<std::byte>& out, const LongColumn& maps) {
    std::byte block[10];
    PutU16(block, maps.column);
    PutU32(block + 2, maps.ownedMap.value);
    PutU32(block + 6, maps.freeMap.value);
    AppendBlock(out, block, sizeof block);
}
}  // namespace

ColumnDefinition ReadColumn(const Layout& layout, const std::byte* block) {
    ColumnDefinition column;
    column.type = static_cast<ColumnType>(U8(block));
    column.number = U16(block + layout.columnNumberAt);
    column.variableIndex = U16(block + layout.columnVariableAt);
    if (column.type == ColumnType::Numeric) {
        column.precision = U8(block + layout.columnScaleAt);
        column.scale = U8(block + layout.columnScaleAt + 1);
    } else {
        column.sortOrder = U16(block + layout.columnOrderAt);
        if (layout.columnOrderVersionAt != 0) column.sortVersion = U8(block + layout.columnOrderVersionAt);
    }
    if (layout.columnCodePageAt != 0 &&
        (column.type == ColumnType::Text || column.type == ColumnType::Memo)) {
        column.codePage = U16(block + layout.columnCodePageAt);
        if (column.codePage == 0) column.codePage = layout.codePage;
    }
    column.flags = U8(block + layout.columnFlagsAt);
    column.fixedLength = (column.flags & kColumnFixed) != 0;
    column.autoNumber = (column.flags & kColumnAutoNumber) != 0;
    if (layout.columnExtraFlagsAt != 0)
        column.compressed = (U8(block + layout.columnExtraFlagsAt) & 0x01) != 0;
    column.fixedOffset = U16(block + layout.columnFixedAt);
    column.byteLength = U16(block + layout.columnLengthAt);
    return column;
}

std::size_t FixedSize(ColumnType type) {
    switch (type) {
        case ColumnType::Boolean:
        case ColumnType::Byte:
            return 1;
        case ColumnType::Integer:
            return 2;
        case ColumnType::Long:
        case ColumnType::Single:
            return 4;
        case ColumnType::Currency:
        case ColumnType::Double:
        case ColumnType::DateTime:
            return 8;
        case ColumnType::Guid:
            return 16;
        case ColumnType::Numeric:
            return 17;
        default:
            return 0;
    }
}

StoredDefinition ReadDefinition(Pager& pager, PageNumber page) {
    const Layout& layout = pager.Format();
    StoredDefinition stored;
    stored.bytes = JoinChain(pager, page, stored.chain);
    const std::byte* const fixed = stored.bytes.data();
    stored.rowCount = U32(fixed + layout.rowCountAt);
    stored.autoNumber = U32(fixed + layout.autoNumberAt);
    stored.table.systemTable = U8(fixed + layout.typeAt) == 'S';
    stored.maxColumns = U16(fixed + layout.maxColumnsAt);
    stored.variableCount = U16(fixed + layout.variableCountAt);
    const std::size_t columnCount = U16(fixed + layout.columnCountAt);
    const std::size_t logicalCount = U32(fixed + layout.logicalCountAt);
    const std::size_t realCount = U32(fixed + layout.realCountAt);
    stored.ownedMap.value = U32(fixed + layout.ownedMapAt);
    stored.freeMap.value = U32(fixed + layout.freeMapAt);
    if (columnCount > kMaxColumns || stored.maxColumns > kMaxColumns || columnCount > stored.maxColumns ||
        stored.variableCount > stored.maxColumns || realCount > kMaxIndexes || logicalCount > kMaxIndexes) {
        throw pager.Damaged(page, "the table definition states impossible counts");
    }

    Reader reader(pager, page, stored.bytes, layout.variablePartAt);
    for (std::size_t i = 0; i < realCount; ++i) {
        StoredIndex index;
        index.countBlockAt = reader.At();
        index.distinct = U32(reader.Take(layout.indexCountBlock) + 4);
        stored.indexes.push_back(std::move(index));
    }
    for (std::size_t i = 0; i < columnCount; ++i) {
        stored.table.columns.push_back(ReadColumn(layout, reader.Take(layout.columnBlock)));
    }
    stored.namesAt = reader.At();
    for (ColumnDefinition& column : stored.table.columns)
        column.name = reader.Name();
    stored.realIndexesAt = reader.At();
    for (StoredIndex& index : stored.indexes) {
        const std::byte* const block = reader.Take(layout.realIndexBlock);
        for (std::size_t k = 0; k < kIndexColumns; ++k) {
            const std::byte* const entry = block + layout.realColumnsAt + 3 * k;
            const std::uint16_t number = U16(entry);
            if (number != kNoColumn) index.columns.push_back({number, (U8(entry + 2) & 1U) != 0});
        }
        index.ownedMap.value = U32(block + layout.realMapAt);
        index.root = U32(block + layout.realRootAt);
        index.flags = U8(block + layout.realFlagsAt);
    }
    for (std::size_t i = 0; i < logicalCount; ++i) {
        const std::byte* const block = reader.Take(layout.logicalIndexBlock);
        // All of its places lie together; the older version lacks four bytes in front of them.
        const std::byte* const numbers = block + layout.logicalRealAt - 4;
        stored.logicalIndexes.push_back({{},
                                         U32(numbers),
                                         U32(numbers + 4),
                                         U8(block + layout.logicalTypeAt),
                                         U8(numbers + 8),
                                         U32(numbers + 9),
                                         U32(numbers + 13),
                                         U8(numbers + 17),
                                         U8(numbers + 18)});
        if (stored.logicalIndexes.back().realIndex >= realCount)
            throw pager.Damaged(page, "an index of the table does not exist");
    }
    stored.table.indexes.resize(realCount);
    for (std::size_t i = 0; i < realCount; ++i) {
        IndexDefinition& index = stored.table.indexes[i];
        index.columns = stored.indexes[i].columns;
        index.unique = (stored.indexes[i].flags & kIndexUnique) != 0;
        index.ignoreNulls = (stored.indexes[i].flags & kIndexIgnoreNulls) != 0;
        index.required = (stored.indexes[i].flags & kIndexRequired) != 0;
    }
    for (LogicalIndex& logical : stored.logicalIndexes) {
        IndexDefinition& index = stored.table.indexes[logical.realIndex];
        logical.name = reader.Name();
        index.names.push_back(logical.name);
        if (logical.type == 1) index.primaryKey = true;
        if (logical.type == 2) index.foreignKey = stored.hasRelationship = true;
    }
    while (true) {
        stored.endMarkAt = reader.At();
        const std::uint16_t number = U16(reader.Take(2));
        if (number == kNoColumn) break;
        const std::byte* const maps = reader.Take(8);
        stored.longColumns.push_back({number, {U32(maps)}, {U32(maps + 4)}});
    }
    CheckColumns(pager, page, stored);
    for (const StoredIndex& index : stored.indexes) {
        for (const IndexColumn& each : index.columns) {
            if (std::none_of(stored.table.columns.begin(), stored.table.columns.end(),
                             [&](const ColumnDefinition& column) { return column.number == each.column; })) {
                throw pager.Damaged(page, "an index of the table has a column that does not exist");
            }
        }
    }
    for (const ColumnDefinition& column : stored.table.columns) {
        if (column.fixedLength && column.type != ColumnType::Boolean) {
            stored.fixedAreaEnd =
                std::max(stored.fixedAreaEnd, column.fixedOffset + std::size_t{column.byteLength});
        }
    }
    return stored;
}

void WriteDefinition(Pager& pager, PageAllocator& allocator, std::vector<PageNumber>& chain,
                     std::vector<std::byte>& bytes) {
    PutU32(bytes.data() + 8, bytes.size());
    const std::size_t payload = pager.PageSize() - kPageHeader;
    const std::size_t pages = (bytes.size() - kPageHeader + payload - 1) / payload;
    while (chain.size() < pages)
        chain.push_back(allocator.Allocate());
    std::size_t at = kPageHeader;
    for (std::size_t i = 0; i < chain.size(); ++i) {
        std::byte* const page = pager.Write(chain[i]);
        std::memset(page, 0, pager.PageSize());
        const std::size_t count = std::min(payload, bytes.size() - at);
        PutU8(page, kDefinitionPage);
        PutU8(page + 1, 1);
        PutU16(page + 2, payload - count > kPageHeader ? payload - count - kPageHeader : 0U);
        PutU32(page + 4, i + 1 < chain.size() ? chain[i + 1] : 0U);
        std::memcpy(page + kPageHeader, bytes.data() + at, count);
        at += count;
    }
    std::memcpy(bytes.data(), pager.Read(chain.front()), kPageHeader);
}

std::vector<std::byte> BuildDefinition(const PlannedTable& plan) {
    std::vector<std::byte> out(kWritten.variablePartAt);
    std::byte* const fixed = out.data();
    PutU8(fixed, kDefinitionPage);
    PutU8(fixed + 1, 1);
    PutU32(fixed + 12, kDefinitionMark);
    PutU32(fixed + kWritten.incrementAt, 1);
    PutU8(fixed + kWritten.typeAt, plan.system ? 'S' : 'N');
    PutU16(fixed + kWritten.maxColumnsAt, plan.maxColumns);
    PutU16(fixed + kWritten.variableCountAt, plan.variableCount);
    PutU16(fixed + kWritten.columnCountAt, plan.columns.size());
    PutU32(fixed + kWritten.logicalCountAt, plan.logicalIndexes.size());
    PutU32(fixed + kWritten.realCountAt, plan.indexes.size());
    PutU32(fixed + kWritten.ownedMapAt, plan.ownedMap.value);
    PutU32(fixed + kWritten.freeMapAt, plan.freeMap.value);

    out.resize(out.size() + plan.indexes.size() * kWritten.indexCountBlock);
    for (const PlannedColumn& each : plan.columns)
        AppendColumn(out, each.column, each.system, plan.system);
    for (const PlannedColumn& each : plan.columns)
        AppendName(out, each.column.name);
    for (const PlannedIndex& index : plan.indexes) {
        std::byte block[kWritten.realIndexBlock] = {};
        PutU32(block, kIndexMark);
        for (std::size_t k = 0; k < kIndexColumns; ++k) {
            const bool used = k < index.columns.size();
            PutU16(block + 4 + 3 * k, used ? index.columns[k].column : kNoColumn);
            PutU8(block + 6 + 3 * k, used && index.columns[k].ascending ? 1U : 0U);
        }
        PutU32(block + 34, index.ownedMap.value);
        PutU32(block + 38, index.root);
        PutU8(block + 46, index.flags);
        AppendBlock(out, block, sizeof block);
    }
    for (const LogicalIndex& logical : plan.logicalIndexes) {
        std::byte block[kWritten.logicalIndexBlock] = {};
        PutU32(block, kDefinitionMark);
        PutU32(block + 4, logical.number);
        PutU32(block + 8, logical.realIndex);
        PutU8(block + 12, logical.side);
        PutU32(block + 13, logical.otherIndex);
        PutU32(block + 17, logical.otherTable);
        PutU8(block + 21, logical.cascadeUpdates);
        PutU8(block + 22, logical.cascadeDeletes);
        PutU8(block + 23, logical.type);
        AppendBlock(out, block, sizeof block);
    }
    for (const LogicalIndex& logical : plan.logicalIndexes)
        AppendName(out, logical.name);
    for (const LongColumn& maps : plan.longColumns)
        AppendLongColumn(out, maps);
    out.push_back(std::byte{0xFF});
    out.push_back(std::byte{0xFF});
    PutU32(out.data() + 8, out.size());
    return out;
}

std::vector<std::byte> WithColumn(const StoredDefinition& stored, ColumnDefinition& column,
                                  const LongColumn* maps) {
    column.number = stored.maxColumns;
    column.variableIndex = stored.variableCount;
    column.fixedOffset = 0;
    if (column.fixedLength) {
        column.fixedOffset = column.type == ColumnType::Boolean
                                 ? std::uint16_t{0}
                                 : static_cast<std::uint16_t>(stored.fixedAreaEnd);
    }
    if (const std::size_t size = FixedSize(column.type); size != 0) {
        column.byteLength = static_cast<std::uint16_t>(size);
    }

    std::vector<std::byte> descriptor;
    AppendColumn(descriptor, column, false, false);
    std::vector<std::byte> name;
    AppendName(name, column.name);
    std::vector<std::byte> longColumn;
    if (maps != nullptr && IsLong(column.type)) {
        LongColumn entry = *maps;
        entry.column = column.number;
        AppendLongColumn(longColumn, entry);
    }
    // From the back, so that the places in front stay right.
    std::vector<std::byte> bytes = stored.bytes;
    const auto place = [&](std::size_t at) { return bytes.begin() + static_cast<std::ptrdiff_t>(at); };
    bytes.insert(place(stored.endMarkAt), longColumn.begin(), longColumn.end());
    bytes.insert(place(stored.realIndexesAt), name.begin(), name.end());
    bytes.insert(place(stored.namesAt), descriptor.begin(), descriptor.end());
    PutU16(bytes.data() + kWritten.maxColumnsAt, stored.maxColumns + 1U);
    PutU16(bytes.data() + kWritten.columnCountAt, stored.table.columns.size() + 1);
    if (!column.fixedLength) PutU16(bytes.data() + kWritten.variableCountAt, stored.variableCount + 1U);
    PutU32(bytes.data() + 8, bytes.size());
    return bytes;
}

}  // namespace zenvora::jet::detail
