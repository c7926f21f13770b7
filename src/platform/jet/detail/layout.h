#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/jet/database.h"

/// Sizes and offsets of the file format, one table per version, so that the algorithms are written once.
namespace zenvora::jet::detail {

using PageNumber = std::uint32_t;

/// u8 row number and u24 page number in one: page << 8 | row.
struct RowPointer {
    std::uint32_t value = 0;
    [[nodiscard]] PageNumber Page() const noexcept { return value >> 8; }
    [[nodiscard]] std::uint8_t Row() const noexcept { return static_cast<std::uint8_t>(value & 0xFF); }
    static RowPointer Of(PageNumber page, unsigned row) noexcept { return {page << 8 | row}; }
    static RowPointer Of(RowId row) noexcept { return Of(row.page, row.slot); }
};

struct Layout {
    std::uint8_t version;
    std::size_t pageSize;
    // data pages
    std::size_t slotCountAt, slotsAt;
    std::size_t maxRow;  ///< longest row that Access takes
    // usage maps
    std::size_t mapRowSize;  ///< of a fresh inline map
    // table definitions
    std::size_t rowCountAt, autoNumberAt, incrementAt, typeAt, maxColumnsAt, variableCountAt, columnCountAt,
        logicalCountAt, realCountAt, ownedMapAt, freeMapAt, variablePartAt;
    std::size_t indexCountBlock, columnBlock, realIndexBlock, logicalIndexBlock;
    // index pages
    std::size_t previousAt, nextAt, tailAt, prefixAt, levelAt, maskAt, maskSize, entriesAt;
    // long values
    std::size_t maxInlineLongValue, maxSinglePiece, chainPiece;
};

inline constexpr Layout kJet4{
    .version = 1,
    .pageSize = 4096,
    .slotCountAt = 12,
    .slotsAt = 14,
    .maxRow = 4060,
    .mapRowSize = 69,
    .rowCountAt = 16,
    .autoNumberAt = 20,
    .incrementAt = 24,
    .typeAt = 40,
    .maxColumnsAt = 41,
    .variableCountAt = 43,
    .columnCountAt = 45,
    .logicalCountAt = 47,
    .realCountAt = 51,
    .ownedMapAt = 55,
    .freeMapAt = 59,
    .variablePartAt = 63,
    .indexCountBlock = 12,
    .columnBlock = 25,
    .realIndexBlock = 52,
    .logicalIndexBlock = 28,
    .previousAt = 12,
    .nextAt = 16,
    .tailAt = 20,
    .prefixAt = 24,
    .levelAt = 26,
    .maskAt = 27,
    .maskSize = 453,
    .entriesAt = 480,
    .maxInlineLongValue = 64,
    .maxSinglePiece = 4076,
    .chainPiece = 4072,
};

enum PageType : std::uint8_t {
    kHeaderPage = 0,
    kDataPage = 1,
    kDefinitionPage = 2,
    kIndexNode = 3,
    kIndexLeaf = 4,
    kMapPage = 5,
    kFreedDefinition = 8,
    kFreedData = 9,
};

// Flags in the high bits of a slot.
inline constexpr std::uint16_t kSlotOffsetMask = 0x1FFF;
inline constexpr std::uint16_t kSlotOverflow = 0x4000;
inline constexpr std::uint16_t kSlotHidden = 0x8000;
inline constexpr std::uint16_t kSlotDeleted = 0xC000;

inline constexpr unsigned kMaxSlots = 255;
/// Largest file: a page is refused that would end behind it.
inline constexpr std::uint64_t kMaxFileBytes = 0x7FFFF000;

// Column flags.
inline constexpr std::uint8_t kColumnFixed = 0x01;
inline constexpr std::uint8_t kColumnNormal = 0x02;
inline constexpr std::uint8_t kColumnAutoNumber = 0x04;
inline constexpr std::uint8_t kColumnSystem = 0x10;
inline constexpr std::uint8_t kColumnScrambled = 0x20;

// Index flags.
inline constexpr std::uint8_t kIndexUnique = 0x01;
inline constexpr std::uint8_t kIndexIgnoreNulls = 0x02;
inline constexpr std::uint8_t kIndexRequired = 0x08;
inline constexpr std::uint8_t kIndexJet4 = 0x80;

/// "General legacy", the sort order of the files that the engine writes keys for.
inline constexpr std::uint16_t kGeneralOrder = 0x0409;

inline constexpr std::uint32_t kDefinitionMark = 0x659;
inline constexpr std::uint32_t kIndexMark = 0x783;

}  // namespace zenvora::jet::detail
