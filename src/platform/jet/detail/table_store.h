#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/jet/detail/index_tree.h"
#include "platform/jet/detail/property_blob.h"
#include "platform/jet/detail/row_codec.h"

namespace zenvora::jet::detail {

class Store;

/// One table: its rows, its indexes, its definition. See Table for what each procedure promises.
class TableStore {
  public:
    TableStore(Store& store, std::string name, PageNumber definitionPage);

    [[nodiscard]] const TableDefinition& Definition() const noexcept { return stored_.table; }
    [[nodiscard]] Store& Owner() noexcept { return store_; }
    [[nodiscard]] PageNumber DefinitionPage() const noexcept { return page_; }
    [[nodiscard]] std::uint32_t RowCount() const noexcept { return counts_.rows; }

    void Scan(const std::function<bool(const RowView&)>& visit) const;
    void ScanIndex(std::size_t index, const std::function<bool(RowId)>& visit) const;
    [[nodiscard]] std::vector<Value> Read(RowId row) const;
    [[nodiscard]] std::optional<RowId> Find(std::size_t index, std::span<const Value> key) const;
    RowId Insert(std::span<const Value> values);
    void Update(RowId row, std::span<const std::size_t> columns, std::span<const Value> values);
    void Delete(RowId row);
    [[nodiscard]] Value DefaultOf(std::size_t column) const;

    /// Puts a column into the definition; the caller looks after its properties.
    void AppendColumn(const NewColumn& column);
    void ApplyProperties(const PropertyBlob& properties);

    /// Writes row count, auto-number and distinct counts into the definition page, if they changed.
    void Flush();
    /// Reads the definition anew: after a rollback, or when it was changed.
    void Reload();

    // What a statement may change in memory, for its undoing.
    struct Counts {
        std::uint32_t rows = 0, autoNumber = 0;
        std::vector<std::uint32_t> distinct;
        bool changed = false;
    };
    [[nodiscard]] const Counts& CurrentCounts() const noexcept { return counts_; }
    void RestoreCounts(const Counts& counts);

    // For RowView.
    [[nodiscard]] bool ViewIsNull(const RowView& view, std::size_t column) const;
    [[nodiscard]] double ViewNumber(const RowView& view, std::size_t column) const;
    void ViewAppendText(const RowView& view, std::size_t column, std::string& out) const;
    [[nodiscard]] Value ViewGet(const RowView& view, std::size_t column) const;

    /// The columns of a table to be created, with numbers and offsets.
    [[nodiscard]] static ColumnDefinition PlanColumn(const NewColumn& column);

  private:
    struct Home {
        PageNumber page = 0;  ///< where the bytes are
        unsigned slot = 0;
        bool moved = false;  ///< the bytes are at the end of an overflow pointer
        std::span<const std::byte> bytes;
    };

    [[nodiscard]] RowShape ShapeOf(const RowView& view) const;
    [[nodiscard]] RowView MakeView(RowId id, PageNumber page, std::span<const std::byte> bytes) const;
    [[nodiscard]] Home Locate(RowId row) const;
    [[nodiscard]] Value FieldValue(const RowShape& row, PageNumber page, std::size_t column) const;
    [[nodiscard]] IndexTree Tree(std::size_t index) const;
    [[nodiscard]] const LongColumn* LongMaps(std::uint16_t number) const;
    [[nodiscard]] UsageMap OwnedPages() const;
    [[nodiscard]] UsageMap FreePages() const;

    void CheckWritable() const;
    void CheckRules(std::size_t column, const Value& value) const;
    /// The key of a row in an index; empty when the row has no entry there. `required` columns are checked.
    void MakeKey(std::size_t index, std::span<const Value> values, std::string& key, bool& allNull) const;
    /// The key under which an index holds a row that is in the table; empty when it does not.
    [[nodiscard]] std::string StoredKey(std::size_t index, std::span<const Value> values, RowId row) const;
    void CheckUnique(std::size_t index, const std::string& key, bool allNull, const RowId* own,
                     std::span<const Value> values) const;
    [[nodiscard]] std::string KeyText(std::size_t index, std::span<const Value> values) const;
    bool PatchInPlace(RowId row, std::span<const std::size_t> columns, std::span<const Value> values);
    /// Stores bytes on a page of the table; returns where.
    RowId PlaceRow(std::span<const std::byte> bytes, std::uint16_t flags);
    [[nodiscard]] std::optional<PageNumber> PageWithRoom(std::size_t size);
    void ReleaseIfEmpty(PageNumber page);
    [[nodiscard]] std::vector<std::byte> StoreLong(std::size_t column, const Value& value);
    void FreeLong(std::size_t column, std::span<const std::byte> stored);
    void FindPositions();

    Store& store_;
    PageNumber page_;
    StoredDefinition stored_;
    Counts counts_;
    std::string writeRefusal_;            ///< why the table cannot be written; empty: it can
    std::vector<std::size_t> positions_;  ///< by column number: position in the definition
    std::vector<std::vector<std::size_t>> indexPositions_;  ///< by index: positions of its columns
    std::vector<bool> indexed_;                             ///< by position: some index has the column
    PageNumber insertPage_ = 0;                             ///< where the last row went; 0: unknown
    RowBuilder builder_;
    mutable IndexEndsCache indexEnds_;
    mutable std::string key_;
    std::vector<std::string> keys_;
};

}  // namespace zenvora::jet::detail
