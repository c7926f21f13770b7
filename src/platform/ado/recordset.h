#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/jet/value.h"
#include "platform/text/date.h"

namespace zenvora::ado {

namespace detail {
class RecordsetStore;
}

/// What is pending on the current record.
enum class EditMode { None, InProgress, Add };

/// A field of a Recordset, without its value.
struct FieldInfo {
    std::string name;  ///< as in the table
    jet::ColumnType type = jet::ColumnType::Text;
    int definedSize = 0;  ///< characters of a Text column, bytes of a fixed type, 0 for Memo
};

/// A position in a Recordset; stays valid until the Recordset is refreshed. A deleted record's bookmark is a
/// fault.
struct Bookmark {
    std::int64_t record = -1;
    friend bool operator==(Bookmark, Bookmark) = default;
};

/// A client-side, static set of records: read once by its statement, it does not see later changes of others;
/// its own changes it writes through to the Databook and sees at once. A record keeps its place when its sort
/// field changes; new records stand behind the others.
///
/// A record is current, or the position is before the first (BOF) or behind the last (EOF); an empty set is
/// both. Going to another record writes what is pending on this one, with the faults of Update; the position
/// stays then. Field access by position is the quick way; by name it costs a look-up without regard to case.
/// Costs less than 300 bytes a record. Memo, OLE, binary, GUID and decimal values are read from the Databook
/// when asked for.
/// Faults: 3021 (no current record), 3265 (no such field), 3027 (a change of a Databook that is open for
/// reading only), 13 / 3163 / 3022 / ... of the store at Update.
class Recordset {
  public:
    explicit Recordset(std::unique_ptr<detail::RecordsetStore> store);
    ~Recordset();

    [[nodiscard]] long RecordCount() const;
    [[nodiscard]] bool Bof() const;
    [[nodiscard]] bool Eof() const;
    void MoveFirst();
    void MoveLast();
    void MoveNext();      ///< fault 3021 at EOF
    void MovePrevious();  ///< fault 3021 at BOF
    /// Without a current record: a bookmark that leads to EOF.
    [[nodiscard]] Bookmark GetBookmark() const;
    void SetBookmark(Bookmark bookmark);
    /// Position of the current record from 0, -1 without one; and the record at a position (for grids).
    [[nodiscard]] long Position() const;
    void MoveTo(long position);

    /// Finds the first record from the first one on whose field equals the value: criterion `NAME='text'`,
    /// two single quotes inside stand for one, and so do two asterisks. Text compares as the key index does:
    /// without regard to case and to blanks at the end. Not found: EOF. Fault 3134: a criterion of another
    /// form.
    void Find(std::string_view criterion);

    [[nodiscard]] const std::vector<FieldInfo>& Fields() const;
    /// Position of a field by name without regard to case, -1 when there is none.
    [[nodiscard]] int FieldIndex(std::string_view name) const;

    /// The current value, pending change included.
    [[nodiscard]] jet::Value Value(int field) const;
    [[nodiscard]] jet::Value Value(std::string_view name) const;
    /// The value in the record at a position from 0, whichever record is current: for grids, which show many
    /// records and move none. A change pending on the current record shows in its row. Fault 3021: there is
    /// no such position.
    [[nodiscard]] jet::Value ValueAt(long position, int field) const;
    [[nodiscard]] bool IsNull(int field) const;
    /// The number of a numeric, date or Boolean field without building a Value; 0 for Null and for text.
    [[nodiscard]] double Number(int field) const;
    /// A text field without copying; empty for Null and for other types. Valid until the next change.
    [[nodiscard]] std::string_view TextView(int field) const;
    /// The value as text (jet::ValueText).
    [[nodiscard]] std::string Text(int field) const;

    /// Sets a field of the current record; starts an edit when none is pending. A text is converted to the
    /// column's type as the store converts it: a date text into a date column, a numeric text into a number
    /// column, any value into a text column. Faults at once: 13 (does not convert), 3163 (longer than the
    /// column).
    void SetValue(int field, const jet::Value& value);
    void SetValue(std::string_view name, const jet::Value& value);

    /// A new record with the column defaults, pending until Update.
    void AddNew();
    [[nodiscard]] EditMode Edit() const;
    /// Writes pending changes; none pending: nothing happens. After a fault they are pending still.
    void Update();
    void CancelUpdate();
    /// Deletes the current record at once. The position stays on its place: move before reading on.
    void Delete();

    /// Updates between these are made durable together (at EndBatch, and at the latest every second).
    void BeginBatch();
    void EndBatch();

  private:
    std::unique_ptr<detail::RecordsetStore> store_;
};

}  // namespace zenvora::ado
