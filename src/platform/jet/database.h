#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files/host_file.h"
#include "platform/jet/table_definition.h"
#include "platform/jet/value.h"
#include "platform/text/date.h"

/// The engine for Access .mdb files.
///
/// A Database is one open file; it hands out Tables, which read and write rows by their identity (RowId) and
/// through their indexes. All text is UTF-8. Changes belong to a transaction; a change made outside of one is
/// a transaction of its own. Not thread-safe: one thread uses a Database and what comes from it.
///
/// Faults that every procedure may raise: 57, 61, 75 (the disk), 3049 (damage in the file; the place names
/// file and page), 20001 (something legal that the engine does not do). A fault in the middle of a change
/// undoes that change.
namespace zenvora::jet {

class Database;
namespace detail {
class Store;
class TableStore;
/// The inside of a database, for the rest of this folder.
[[nodiscard]] Store& StoreOf(Database& database);
}  // namespace detail

/// The identity of a row: it keeps it for life, even when its bytes move to another page.
struct RowId {
    std::uint32_t page = 0;
    std::uint8_t slot = 0;
    friend bool operator==(const RowId&, const RowId&) = default;
    friend bool operator<(const RowId& a, const RowId& b) noexcept {
        return a.page != b.page ? a.page < b.page : a.slot < b.slot;
    }
};

/// One row during a scan: values are decoded when asked for. Valid until the next step of the scan or any
/// change of the file. `column` is a position in TableDefinition::columns.
class RowView {
  public:
    [[nodiscard]] RowId Id() const noexcept { return id_; }
    [[nodiscard]] bool IsNull(std::size_t column) const;
    /// The number in a Boolean, Byte, Integer, Long, Currency, Single, Double or Date/Time column; 0 for
    /// Null.
    [[nodiscard]] double Number(std::size_t column) const;
    /// Appends the UTF-8 text of a Text or Memo column to `out`; nothing for Null. CHAR(n) texts come without
    /// their padding blanks.
    void AppendText(std::size_t column, std::string& out) const;
    [[nodiscard]] Value Get(std::size_t column) const;

  private:
    friend class detail::TableStore;
    const detail::TableStore* table_ = nullptr;
    std::span<const std::byte> bytes_;
    std::uint32_t columnCount_ = 0;    // bits of the row's null mask
    std::uint32_t maskAt_ = 0;         // where the null mask begins
    std::uint32_t variableCount_ = 0;  // entries of the variable offset table
    std::uint8_t fieldSize_ = 2;       // see detail/row_codec.h
    std::uint8_t jumpBytes_ = 0;
    std::uint8_t jumps_ = 0;
    RowId id_;
};

/// One table of an open Database. Lives as long as its Database, also across schema changes.
class Table {
  public:
    explicit Table(std::unique_ptr<detail::TableStore> store);
    ~Table();
    Table(const Table&) = delete;
    Table& operator=(const Table&) = delete;

    [[nodiscard]] const TableDefinition& Definition() const;
    /// The row count that the file states. After a crash of another program it may be wrong: scan to be sure.
    [[nodiscard]] std::uint32_t RowCount() const;

    /// Calls `visit` for each row in the order of the file until it returns false.
    void Scan(const std::function<bool(const RowView&)>& visit) const;
    /// Every row identity in the order of an index (position in TableDefinition::indexes). Fault 20001: an
    /// index whose sort order is unknown.
    void ScanIndex(std::size_t index, const std::function<bool(RowId)>& visit) const;
    /// One row by its identity. Fault 3021: there is no such row any more.
    [[nodiscard]] std::vector<Value> Read(RowId row) const;
    /// The row whose index columns equal `key` (one value per index column), the first of several.
    [[nodiscard]] std::optional<RowId> Find(std::size_t index, std::span<const Value> key) const;

    /// Adds a row; `values` has one value per column in the definition's order. Values must have the column's
    /// type (Null is always allowed in the variant; numbers are converted between the numeric types when
    /// nothing is lost). Column defaults are not applied here: give them with DefaultOf. An auto-number
    /// column that is Null gets its number. Faults: 3022 duplicate key, 3058 Null key, 3314, 3315, 3163,
    /// 3047, 3027, 13.
    RowId Insert(std::span<const Value> values);
    /// Replaces the whole row. Same faults, and 3021. Long values that stay the same are kept as they are.
    void Update(RowId row, std::span<const Value> values);
    /// Changes some columns: `columns` are positions in the definition, `values` beside them.
    void Update(RowId row, std::span<const std::size_t> columns, std::span<const Value> values);
    void Delete(RowId row);

    /// The column's stored default as a value, Null when it has none or an expression that is no literal.
    [[nodiscard]] Value DefaultOf(std::size_t column) const;

    /// Adds a column behind the existing ones. Rows written before read as Null in it. Fault 3380: it exists.
    /// Fault 20001: it cannot have that name.
    void AddColumn(const NewColumn& column);
    /// Stores the default of a column as an expression text (`0`, `"3"`, `#1/1/1900#`). Fault 3265: no such
    /// column.
    void SetDefault(std::string_view column, std::string_view expression);

  private:
    friend class detail::Store;
    std::unique_ptr<detail::TableStore> store_;
};

class Database {
  public:
    enum class Access { ReadOnly, ReadWrite };

    /// Opens a file after the checks of its header. Faults: 53, 75, 76; 3343 (no Access database, a newer
    /// one); 3031 (password); 20001 (encrypted; Access 97 for writing); 3049 (damaged or cut off).
    [[nodiscard]] static std::unique_ptr<Database> Open(const std::filesystem::path& path, Access access,
                                                        files::HostDisk& disk = files::SystemDisk());
    /// Makes an empty database file. `now` becomes the creation date of its objects. Faults: 58 (exists),
    /// 75, 76.
    [[nodiscard]] static std::unique_ptr<Database> Create(const std::filesystem::path& path, text::Date now,
                                                          files::HostDisk& disk = files::SystemDisk());
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    [[nodiscard]] const std::filesystem::path& Path() const;
    [[nodiscard]] bool IsReadOnly() const;
    /// What the user must know about the opening: that an unfinished change was undone, or that it could not
    /// be because another program has changed the file since. Empty when there is nothing to say.
    [[nodiscard]] const std::string& Notice() const;

    /// Names of the user tables, sorted.
    [[nodiscard]] std::vector<std::string> TableNames() const;
    /// The table of that name without regard to case. Fault 3078: there is none.
    [[nodiscard]] Table& OpenTable(std::string_view name);
    /// Faults: 3010 (exists), 20001 (beyond the format's limits).
    Table& CreateTable(const NewTable& table, text::Date now);

    /// A transaction; they do not nest. Commit returns when the changes are durable. Rollback, or the
    /// destruction of the Database, forgets what was not committed. Fault 5: called out of order.
    void Begin();
    void Commit();
    void Rollback();
    [[nodiscard]] bool InTransaction() const;

    /// Counts committed changes of the file by this object; a reader compares it to see whether its rows are
    /// stale.
    [[nodiscard]] std::uint64_t ChangeCount() const;

  private:
    friend detail::Store& detail::StoreOf(Database&);
    explicit Database(std::unique_ptr<detail::Store> store);
    std::unique_ptr<detail::Store> store_;
    std::string notice_;
};

/// Compares two texts in the General order of the format, the order of its text keys: negative, 0 or
/// positive. Case and trailing blanks do not count. Characters without a weight compare by their code behind
/// all others.
[[nodiscard]] int CompareGeneral(std::string_view a, std::string_view b);

}  // namespace zenvora::jet
