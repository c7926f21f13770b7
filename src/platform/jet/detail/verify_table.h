#pragma once

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "platform/jet/detail/definition_codec.h"
#include "platform/jet/detail/row_codec.h"
#include "platform/jet/detail/verify_pages.h"

namespace zenvora::jet::detail {

/// Checks one table: its definition, pages, rows, long values and indexes. Afterwards its rows can be asked
/// for values.
class TableCheck {
  public:
    /// A row that a scan meets.
    struct Row {
        RowId id;             ///< its identity: where it lives or left its pointer
        PageNumber page = 0;  ///< where its bytes are
        std::uint16_t begin = 0, size = 0;
        bool readable = false;
    };

    TableCheck(PageBook& book, std::string name, PageNumber definition);
    /// False when the definition cannot be read, so that nothing else of the table was looked at.
    bool Run();

    [[nodiscard]] const StoredDefinition& Definition() const noexcept { return stored_; }
    [[nodiscard]] const std::vector<Row>& Rows() const noexcept { return rows_; }
    /// The value of a readable row; Null for a long value that cannot be read.
    [[nodiscard]] Value ValueOf(const Row& row, std::size_t column);

  private:
    // verify_definition.cpp
    bool CheckDefinition();
    void CheckChain();
    void CheckColumns();
    void CheckLongColumns();
    void CheckLogicalIndexes();
    // verify_rows.cpp
    void CheckDataPages();
    void CheckHome(PageNumber page, const CheckedSlot& slot, Row& row);
    void CheckRow(Row& row);
    [[nodiscard]] bool CheckShape(const Row& row, const RowShape& shape);
    [[nodiscard]] bool CheckValue(const Row& row, const ColumnDefinition& column, const RowShape& shape);
    [[nodiscard]] bool CheckText(const Row& row, const ColumnDefinition& column,
                                 std::span<const std::byte> raw);
    void CheckOrphans();
    void CheckCounts();
    // verify_long_values.cpp
    void ReadLongMaps();
    [[nodiscard]] bool CheckLongValue(const Row& row, const ColumnDefinition& column,
                                      std::span<const std::byte> stored);
    void CheckUnusedPieces();
    // verify_index.cpp
    void CheckIndexes();

    [[nodiscard]] RowShape ShapeOf(const Row& row);
    [[nodiscard]] Spot At(PageNumber page, int slot = -1) const { return spot_.On(page, slot); }
    [[nodiscard]] Spot At(const Row& row) const { return spot_.On(row.id.page, row.id.slot); }

    PageBook& book_;
    const Layout& layout_;
    Findings& findings_;
    Spot spot_;
    PageNumber page_;
    StoredDefinition stored_;
    PageBook::User rowsUser_ = 0;
    std::vector<PageNumber> owned_;
    std::vector<Row> rows_;                      // ascending by identity
    std::unordered_set<std::uint32_t> hidden_;   // slots that only a pointer may lead to
    std::unordered_set<std::uint32_t> targets_;  // those that one led to
    struct LongPages {
        PageBook::User user = 0;
        std::vector<PageNumber> pages;
    };
    std::unordered_map<std::uint16_t, LongPages> longPages_;  // by column number
    std::unordered_set<std::uint32_t> pieces_;                // of long values in use
};

}  // namespace zenvora::jet::detail
