#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/jet/detail/row_codec.h"
#include "platform/jet/detail/table_writer.h"

/// Rows of a sound table on their way into another file.
namespace zenvora::jet::detail {

/// Takes rows apart into the form that a Jet 4 table stores. Keeps its buffers from row to row.
class FieldReader {
  public:
    /// Both must outlive the reader.
    FieldReader(Pager& pager, const StoredDefinition& table);
    virtual ~FieldReader() = default;
    FieldReader(const FieldReader&) = delete;
    FieldReader& operator=(const FieldReader&) = delete;

    /// The values of a row; valid until the next call and as long as the row's page is in memory. Fault 3049:
    /// a long value has lost a piece.
    const StoredFields& Read(PageNumber page, const RowShape& row);

    /// The values of the row of that identity. Fault 3049: there is none.
    const StoredFields& ReadAt(RowId row);

  protected:
    /// The data of a Memo or OLE value, of which the row holds `stored`.
    virtual std::vector<std::byte> LongValue(std::size_t column, PageNumber page,
                                             std::span<const std::byte> stored);
    [[nodiscard]] Pager& Pages() const noexcept { return pager_; }
    [[nodiscard]] const StoredDefinition& Table() const noexcept { return table_; }

  private:
    [[nodiscard]] std::span<const std::byte> NewerText(std::size_t position,
                                                       std::span<const std::byte> stored);

    Pager& pager_;
    const StoredDefinition& table_;
    bool oldText_;  ///< texts are in a code page and must be written anew
    StoredFields fields_;
    std::vector<std::vector<std::byte>> buffers_;
    std::string text_;
};

/// Calls `visit` for each row of a table with its identity, the page of its bytes and its values, in the
/// order of the primary key where there is one that can be read, else in the order of the file. Lets go of
/// pages between the rows. Fault 3049: damage, or an index that does not name each row once.
void EachRow(Pager& pager, PageAllocator& allocator, PageNumber definitionPage, const StoredDefinition& table,
             const std::function<void(RowId, const StoredFields&)>& visit);

/// Calls `visit` with each row that a scan meets, in the order of the file. Fault 3049: damage.
void EachHome(Pager& pager, const StoredDefinition& table, const std::function<void(RowId)>& visit);

/// Number of rows that a scan of the table meets.
[[nodiscard]] std::uint64_t CountRows(Pager& pager, const StoredDefinition& table);

}  // namespace zenvora::jet::detail
