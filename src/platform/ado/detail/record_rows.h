#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/jet/database.h"
#include "platform/jet/table_definition.h"

/// The records of a Recordset, packed.
///
/// One record is one row of fixed length: 8 bytes for a number, a date or an amount, 4 for a text (its place
/// in the text store), then the row's identity and a bit per field for Null. Types of any length (Memo, OLE,
/// ...) have only their Null bit; they are read from the table when asked for. About 150 bytes and its texts
/// for a record of all columns of COMPS.
namespace zenvora::ado::detail {

/// How a field lies in a row.
enum class CellKind : std::uint8_t {
    Number,   ///< a double: all numbers but Currency, dates
    Boolean,  ///< a double, -1 or 0
    Amount,   ///< Currency: 64 bits of ten-thousandths
    Text,     ///< a place in the text store
    InTable,  ///< not kept
};

struct Cell {
    CellKind kind = CellKind::InTable;
    std::uint32_t offset = 0;
    std::size_t column = 0;  ///< position in the table's definition
};

/// Texts, each behind its length. They stay where they are, so that views of them stay good.
class TextStore {
  public:
    TextStore();
    /// Keeps a text; 0 is the empty one. Faults: 7 (over 4 GiB of texts), 3049 (a text longer than any
    /// column).
    [[nodiscard]] std::uint32_t Add(std::string_view text);
    [[nodiscard]] std::string_view At(std::uint32_t place) const noexcept {
        const char* const entry = blocks_[place >> kBlockBits].data() + (place & (kBlockSize - 1));
        std::uint16_t length = 0;
        std::memcpy(&length, entry, sizeof length);
        return {entry + sizeof length, length};
    }

  private:
    static constexpr unsigned kBlockBits = 16;
    static constexpr std::uint32_t kBlockSize = 1U << kBlockBits;
    std::vector<std::vector<char>> blocks_;
};

class RecordRows {
  public:
    /// `columns`: the fields' positions in the definition.
    RecordRows(const jet::TableDefinition& definition, std::span<const std::size_t> columns);

    [[nodiscard]] const std::vector<Cell>& Cells() const noexcept { return cells_; }
    [[nodiscard]] std::size_t Count() const noexcept { return count_; }

    [[nodiscard]] const std::byte* Row(std::size_t record) const noexcept {
        return blocks_[record >> kBlockBits].data() + (record & (kBlockRows - 1)) * rowBytes_;
    }
    [[nodiscard]] jet::RowId Id(std::size_t record) const noexcept;

    [[nodiscard]] static double Number(const std::byte* row, const Cell& cell) noexcept {
        double number = 0;
        std::memcpy(&number, row + cell.offset, sizeof number);
        return number;
    }
    [[nodiscard]] static std::int64_t Amount(const std::byte* row, const Cell& cell) noexcept {
        std::int64_t amount = 0;
        std::memcpy(&amount, row + cell.offset, sizeof amount);
        return amount;
    }
    [[nodiscard]] std::string_view Text(const std::byte* row, const Cell& cell) const noexcept {
        std::uint32_t place = 0;
        std::memcpy(&place, row + cell.offset, sizeof place);
        return texts_.At(place);
    }
    [[nodiscard]] bool IsNull(const std::byte* row, std::size_t field) const noexcept {
        return (std::to_integer<unsigned>(row[nullsAt_ + field / 8]) >> (field % 8) & 1U) != 0;
    }

    /// Appends a record from a scan.
    void Append(const jet::RowView& view);
    /// Appends a record of one value per column of the table.
    void Append(jet::RowId id, std::span<const jet::Value> values);
    /// Stores a value of the column's type.
    void Set(std::size_t record, std::size_t field, const jet::Value& value);

    /// Puts the records into another order: `order[i]` is the record that comes to place i.
    void Reorder(std::span<const std::uint32_t> order);

  private:
    static constexpr unsigned kBlockBits = 10;
    static constexpr std::size_t kBlockRows = 1U << kBlockBits;

    std::byte* NewRow(jet::RowId id);
    std::byte* MutableRow(std::size_t record) noexcept { return const_cast<std::byte*>(Row(record)); }
    void SetNull(std::byte* row, std::size_t field, bool null) noexcept;
    void SetText(std::byte* row, std::size_t field, std::string_view text);

    std::vector<Cell> cells_;
    std::size_t identityAt_ = 0;
    std::size_t nullsAt_ = 0;
    std::size_t rowBytes_ = 0;
    std::size_t count_ = 0;
    std::vector<std::vector<std::byte>> blocks_;
    TextStore texts_;
    std::vector<std::uint32_t>
        lastText_;  ///< per field: repeated texts (cities, states, flags) are kept once
    std::string scratch_;
};

}  // namespace zenvora::ado::detail
