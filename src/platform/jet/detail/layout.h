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

/// The code page of Western texts, the only one that is known beyond ASCII.
inline constexpr std::uint16_t kWindows1252 = 1252;

struct Layout {
    std::uint8_t version;
    std::size_t pageSize;
    std::uint16_t codePage;      ///< of texts stored one byte a character; 0: texts are UTF-16
    std::size_t characterBytes;  ///< bytes of a character in the declared length of a text
    // the header
    std::size_t maskedSize, passwordSize;
    bool passwordHidesInDate;  ///< the password is XORed with the creation date
    // data pages
    std::size_t slotCountAt, slotsAt;
    std::size_t maxRow;  ///< longest row that Access takes
    // rows
    std::size_t rowFieldSize;  ///< of the column count and of the offsets; one byte needs a jump table
    // usage maps
    std::size_t mapRowSize;  ///< of a fresh inline map
    // table definitions
    std::size_t rowCountAt, autoNumberAt, incrementAt, typeAt, maxColumnsAt, variableCountAt, columnCountAt,
        logicalCountAt, realCountAt, ownedMapAt, freeMapAt, variablePartAt;
    std::size_t nameSizeSize;  ///< bytes of the length in front of a name
    std::size_t indexCountBlock;
    std::size_t columnBlock, columnNumberAt, columnVariableAt, columnOrderAt, columnScaleAt, columnFlagsAt,
        columnFixedAt, columnLengthAt;
    std::size_t columnOrderVersionAt, columnExtraFlagsAt, columnCodePageAt;  ///< 0: there is none
    std::size_t realIndexBlock, realColumnsAt, realMapAt, realRootAt, realFlagsAt;
    std::size_t logicalIndexBlock, logicalRealAt, logicalTypeAt;
    // index pages
    std::size_t previousAt, nextAt, tailAt, prefixAt, prefixSize, levelAt, maskAt, maskSize, entriesAt;
    // long values
    std::size_t maxInlineLongValue, maxSinglePiece, chainPiece;

    /// Bytes for the entries of an index page.
    [[nodiscard]] constexpr std::size_t EntryArea() const noexcept { return pageSize - entriesAt; }
};

/// Access 2000, 2002 and 2003.
inline constexpr Layout kJet4{
    .version = 1,
    .pageSize = 4096,
    .codePage = 0,
    .characterBytes = 2,
    .maskedSize = 128,
    .passwordSize = 40,
    .passwordHidesInDate = true,
    .slotCountAt = 12,
    .slotsAt = 14,
    .maxRow = 4060,
    .rowFieldSize = 2,
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
    .nameSizeSize = 2,
    .indexCountBlock = 12,
    .columnBlock = 25,
    .columnNumberAt = 5,
    .columnVariableAt = 7,
    .columnOrderAt = 11,
    .columnScaleAt = 11,
    .columnFlagsAt = 15,
    .columnFixedAt = 21,
    .columnLengthAt = 23,
    .columnOrderVersionAt = 14,
    .columnExtraFlagsAt = 16,
    .columnCodePageAt = 0,
    .realIndexBlock = 52,
    .realColumnsAt = 4,
    .realMapAt = 34,
    .realRootAt = 38,
    .realFlagsAt = 46,
    .logicalIndexBlock = 28,
    .logicalRealAt = 8,
    .logicalTypeAt = 23,
    .previousAt = 12,
    .nextAt = 16,
    .tailAt = 20,
    .prefixAt = 24,
    .prefixSize = 2,
    .levelAt = 26,
    .maskAt = 27,
    .maskSize = 453,
    .entriesAt = 480,
    .maxInlineLongValue = 64,
    .maxSinglePiece = 4076,
    .chainPiece = 4072,
};

/// Access 97; read, never written. The code page is the file's own, see header.h.
inline constexpr Layout kJet3{
    .version = 0,
    .pageSize = 2048,
    .codePage = kWindows1252,
    .characterBytes = 1,
    .maskedSize = 126,
    .passwordSize = 20,
    .passwordHidesInDate = false,
    .slotCountAt = 8,
    .slotsAt = 10,
    .maxRow = 2012,
    .rowFieldSize = 1,
    .mapRowSize = 133,
    .rowCountAt = 12,
    .autoNumberAt = 16,
    .incrementAt = 0,
    .typeAt = 20,
    .maxColumnsAt = 21,
    .variableCountAt = 23,
    .columnCountAt = 25,
    .logicalCountAt = 27,
    .realCountAt = 31,
    .ownedMapAt = 35,
    .freeMapAt = 39,
    .variablePartAt = 43,
    .nameSizeSize = 1,
    .indexCountBlock = 8,
    .columnBlock = 18,
    .columnNumberAt = 1,
    .columnVariableAt = 3,
    .columnOrderAt = 9,
    .columnScaleAt = 11,
    .columnFlagsAt = 13,
    .columnFixedAt = 14,
    .columnLengthAt = 16,
    .columnOrderVersionAt = 0,
    .columnExtraFlagsAt = 0,
    .columnCodePageAt = 11,
    .realIndexBlock = 39,
    .realColumnsAt = 0,
    .realMapAt = 30,
    .realRootAt = 34,
    .realFlagsAt = 38,
    .logicalIndexBlock = 20,
    .logicalRealAt = 4,
    .logicalTypeAt = 19,
    .previousAt = 8,
    .nextAt = 12,
    .tailAt = 16,
    .prefixAt = 20,
    .prefixSize = 1,
    .levelAt = 21,
    .maskAt = 22,
    .maskSize = 226,
    .entriesAt = 248,
    .maxInlineLongValue = 64,
    .maxSinglePiece = 2032,
    .chainPiece = 2032,
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
