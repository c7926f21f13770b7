#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/jet/detail/definition_codec.h"

/// The bytes of a row: column count, fixed area, variable data with their offsets, null mask.
namespace zenvora::jet::detail {

struct RowShape {
    std::span<const std::byte> bytes;
    std::uint32_t columnCount = 0, maskAt = 0, variableCount = 0;
    std::uint8_t fieldSize = 2;  ///< bytes of the column count and of each offset
    std::uint8_t jumpBytes = 0;  ///< of the jump table, which gives offsets of one byte their 256s
    std::uint8_t jumps = 0;      ///< of these, those in use
};

/// Checks a row's trailer. Fault 3049 naming `page`.
[[nodiscard]] RowShape ParseRow(const Pager& pager, PageNumber page, std::span<const std::byte> bytes,
                                const StoredDefinition& table);

/// Where value `index` of the variable ones begins in the row, as the row states it; index variableCount:
/// where the last one ends.
[[nodiscard]] std::size_t VariableOffset(const RowShape& row, std::size_t index);

/// The stored bytes of a column, nothing when it is Null. A Boolean gives an empty span for true. A value
/// that would lie outside of the row is taken for Null: rows of before a column was added have no place for
/// it.
[[nodiscard]] std::optional<std::span<const std::byte>> RawField(const RowShape& row,
                                                                 const ColumnDefinition& column);

/// The number in the stored bytes of a numeric, date or currency column.
[[nodiscard]] double DecodeNumber(const ColumnDefinition& column, std::span<const std::byte> raw);
/// Appends a Text value as UTF-8; a fixed-length one without its padding.
void DecodeTextField(const ColumnDefinition& column, std::span<const std::byte> raw, std::string& out);
/// Any type but Memo and OLE.
[[nodiscard]] Value DecodeField(const ColumnDefinition& column, std::span<const std::byte> raw);

/// Brings a value into the column's type: numbers between the numeric types when nothing is lost, texts that
/// fit. Null passes. Faults 13, 3163, 6; the place names the column.
[[nodiscard]] Value ConformValue(const ColumnDefinition& column, Value value);

/// Builds the bytes of a row. Reused from row to row.
class RowBuilder {
  public:
    void Begin(const StoredDefinition& table);
    /// A conforming value of any type but Memo and OLE.
    void Put(const ColumnDefinition& column, const Value& value);
    /// The stored form of a value: of Memo and OLE the definition, of a Boolean that is true nothing.
    void PutRaw(const ColumnDefinition& column, std::span<const std::byte> raw);
    /// The finished row. Fault 3047: longer than a row may be.
    [[nodiscard]] std::span<const std::byte> Finish();
    /// Column count and fixed area as put so far, before Finish.
    [[nodiscard]] std::span<const std::byte> FixedArea() const noexcept { return fixed_; }

  private:
    struct Piece {
        std::size_t begin = 0, size = 0;
    };
    const StoredDefinition* table_ = nullptr;
    std::vector<std::byte> fixed_;     // column count and fixed area
    std::vector<std::byte> variable_;  // variable values in the order of the Puts
    std::vector<Piece> pieces_;        // by variable index
    std::vector<std::byte> mask_;
    std::vector<std::size_t> starts_;
    std::vector<std::byte> row_;
};

}  // namespace zenvora::jet::detail
