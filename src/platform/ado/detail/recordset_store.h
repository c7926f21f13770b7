#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/detail/open_file.h"
#include "platform/ado/detail/search_index.h"
#include "platform/ado/detail/select.h"
#include "platform/ado/recordset.h"
#include "platform/shell/clock.h"

namespace zenvora::ado::detail {

/// What a Recordset does; see there.
///
/// Records have numbers: 0 to n-1 in the order of the SELECT, new ones behind them. The order never changes,
/// so that a record's position is its number less the deleted ones before it.
class RecordsetStore {
  public:
    /// The clock must outlive the Recordset.
    RecordsetStore(const std::shared_ptr<OpenFile>& file, const SelectStatement& statement,
                   const shell::Clock& clock);

    [[nodiscard]] long RecordCount() const noexcept { return count_; }
    [[nodiscard]] bool Bof() const noexcept;
    [[nodiscard]] bool Eof() const noexcept;
    void MoveFirst();
    void MoveLast();
    void MoveNext();
    void MovePrevious();
    [[nodiscard]] Bookmark GetBookmark() const;
    void SetBookmark(Bookmark bookmark);
    [[nodiscard]] long Position() const noexcept;
    void MoveTo(long position);
    void Find(std::string_view criterion);

    [[nodiscard]] const std::vector<FieldInfo>& Fields() const noexcept { return fields_; }
    [[nodiscard]] int FieldIndex(std::string_view name) const;
    /// Fault 3265: no such field.
    [[nodiscard]] int FieldOf(std::string_view name) const;

    [[nodiscard]] jet::Value Value(int field) const;
    [[nodiscard]] jet::Value ValueAt(long position, int field) const;
    [[nodiscard]] bool IsNull(int field) const;
    [[nodiscard]] double Number(int field) const {
        // The road of every calculation: a record without a pending change, a plain number.
        const Cell* const cell = PlainCell(field);
        return cell != nullptr && cell->kind == CellKind::Number ? RecordRows::Number(row_, *cell)
                                                                 : NumberTheLongWay(field);
    }
    [[nodiscard]] std::string_view TextView(int field) const {
        const Cell* const cell = PlainCell(field);
        return cell != nullptr && cell->kind == CellKind::Text ? rows_.Text(row_, *cell)
                                                               : TextTheLongWay(field);
    }

    void SetValue(int field, const jet::Value& value);
    void AddNew();
    [[nodiscard]] EditMode Edit() const noexcept { return edit_; }
    void Update();
    void CancelUpdate();
    void Delete();
    void BeginBatch() { batches_.Begin(); }
    void EndBatch() { batches_.End(); }

  private:
    static constexpr long kBeforeFirst = -1;

    [[nodiscard]] const jet::ColumnDefinition& Column(std::size_t field) const;
    /// Fault 91: the file was closed.
    [[nodiscard]] jet::Table& Table() const;
    /// The field's cell in the current row, nullptr when there is no such thing or something is pending.
    [[nodiscard]] const Cell* PlainCell(int field) const noexcept {
        const auto at = static_cast<std::size_t>(field);
        return row_ != nullptr && at < fieldCount_ ? cells_ + at : nullptr;
    }
    /// Fault 3265: no such field.
    [[nodiscard]] std::size_t FieldNumber(int field) const;
    /// The same. Fault 3021: no current record.
    [[nodiscard]] std::size_t Checked(int field) const;
    [[nodiscard]] std::size_t CurrentRecord() const;
    [[nodiscard]] bool HasCurrent() const noexcept;
    /// The pending value of a field, nullptr when nothing is pending on it.
    [[nodiscard]] const jet::Value* Pending(std::size_t field) const;
    /// The value that the rows hold, without regard to what is pending.
    [[nodiscard]] jet::Value Stored(std::size_t record, std::size_t field) const;
    /// A value that is not kept in the rows.
    [[nodiscard]] jet::Value FromTable(std::size_t record, std::size_t field) const;
    [[nodiscard]] double NumberTheLongWay(int field) const;
    [[nodiscard]] std::string_view TextTheLongWay(int field) const;

    [[nodiscard]] std::size_t RecordAt(long position) const;
    [[nodiscard]] std::optional<long> PositionOf(std::size_t record) const;
    void WriteOut();
    void GoTo(long position);
    void ShowRow();
    void RefuseReadOnly() const;

    void UpdateCurrent();
    void InsertNew();
    [[nodiscard]] bool ChangesTheRow(std::size_t record, std::size_t column, const jet::Value& value) const;
    /// Tells the file of a change of ours; others' changes stay unseen.
    void NoteChange();
    /// Takes over a value that the table has been given.
    void Store(std::size_t record, std::size_t field, const jet::Value& value);
    [[nodiscard]] std::optional<std::size_t> Search(std::size_t field, std::string_view text);
    [[nodiscard]] bool Equals(std::size_t record, std::size_t field, const jet::Value& value) const;

    BatchUser batches_;
    const shell::Clock& clock_;
    Selection selection_;
    RecordRows& rows_;
    jet::TableDefinition definition_;  ///< a copy, for names and types when the file is closed
    std::vector<FieldInfo> fields_;
    const Cell* cells_;  ///< of the rows, at hand
    std::size_t fieldCount_;

    long count_ = 0;
    std::vector<std::uint32_t> remaining_;  ///< the records that are left, once one was deleted
    bool deletedSome_ = false;
    long position_ = kBeforeFirst;    ///< count_ is EOF
    bool onDeleted_ = false;          ///< the record of this place is gone; position_ names the one behind it
    const std::byte* row_ = nullptr;  ///< the current record, when nothing is pending on it

    EditMode edit_ = EditMode::None;
    std::vector<jet::Value> pending_;   ///< per column of the table
    std::vector<bool> changed_;         ///< which of them are pending
    std::uint64_t rowChangesSeen_ = 0;  ///< up to here the rows are what the table holds

    std::optional<SearchIndex> searchIndex_;
    std::size_t searchField_ = 0;
    int searches_ = 0;              ///< of searchField_
    mutable std::string longText_;  ///< what TextView of a Memo looks at
};

}  // namespace zenvora::ado::detail
