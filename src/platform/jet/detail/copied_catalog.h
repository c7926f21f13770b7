#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "platform/jet/detail/store.h"

/// The catalog of a database as a copy sees it.
namespace zenvora::jet::detail {

inline constexpr PageNumber kCatalogPage = 2;
inline constexpr PageNumber kRightsPage = 3;
inline constexpr PageNumber kQueriesPage = 4;
inline constexpr PageNumber kRelationshipsPage = 5;

/// Kinds of objects by their number in the catalog.
enum ObjectType : std::int32_t {
    kLocalTable = 1,
    kDatabaseObject = 2,
    kContainer = 3,
    kOdbcTable = 4,
    kQuery = 5,
    kLinkedTable = 6,
    kRelationship = 8,
    kForm = -32768,
    kMacro = -32766,
    kReport = -32764,
    kModule = -32761,
    kUser = -32758,
    kDocument = -32757,
    kDataAccessPage = -32756,
};

struct CatalogObject {
    RowId row;
    std::int32_t id = 0, parent = 0, type = 0;
    std::uint32_t flags = 0;
    std::string name;

    [[nodiscard]] PageNumber DefinitionPage() const noexcept {
        return static_cast<PageNumber>(id) & 0x00FFFFFF;
    }
    /// A table of the user, not one of the engine's or of Access itself.
    [[nodiscard]] bool IsUserTable() const noexcept {
        return type == kLocalTable && (flags & 0x80000002U) == 0;
    }
    /// One of the four tables that every file has.
    [[nodiscard]] bool IsEngineTable() const noexcept;
};

/// All objects, in the order of the catalog.
[[nodiscard]] std::vector<CatalogObject> CatalogObjects(const TableStore& catalog);

/// The rows of a table as a scan meets them, for tables that are changed meanwhile.
[[nodiscard]] std::vector<RowId> AllRows(const TableStore& table);

/// Who owns what the user makes in a file, as its catalog has it.
[[nodiscard]] Value UsualOwner(const TableStore& catalog);
/// Gives objects the rights that tables have in a new file; those that have some already keep them.
void AddUsualRights(Store& store, const std::set<std::int32_t>& objects);

/// "form", "linked table"; empty for what a copy carries.
[[nodiscard]] const char* KindNotCarried(const CatalogObject& object);

/// A row by column names, for tables whose columns differ a little from version to version.
class NamedRow {
  public:
    explicit NamedRow(const TableStore& table) : table_(table), values(table.Definition().columns.size()) {}
    /// Takes over the values of another table's row by the names of the columns.
    void Take(const TableStore& from, const std::vector<Value>& row);
    void Set(std::string_view column, Value value);
    [[nodiscard]] const Value& Get(std::string_view column) const;

  private:
    const TableStore& table_;

  public:
    std::vector<Value> values;
};

}  // namespace zenvora::jet::detail
