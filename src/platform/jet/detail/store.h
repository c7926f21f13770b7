#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/jet/detail/pager.h"
#include "platform/jet/detail/table_store.h"
#include "platform/jet/detail/usage_map.h"

namespace zenvora::jet::detail {

/// One open file: its pages, its catalog, its tables, its transactions.
class Store {
  public:
    Store(std::shared_ptr<files::HostFile> file, std::filesystem::path path, const Layout& layout,
          bool readOnly);
    ~Store();
    /// Reads the catalog's own definition; to be called before anything else of a file that has one.
    void LoadCatalog();

    [[nodiscard]] Pager& Pages() noexcept { return pager_; }
    [[nodiscard]] PageAllocator& Allocator() noexcept { return allocator_; }

    [[nodiscard]] std::vector<std::string> TableNames();
    /// The table of that name, nullptr when there is none.
    [[nodiscard]] Table* FindTable(std::string_view name);
    Table& CreateTable(const NewTable& table, text::Date now);
    void AddColumn(TableStore& table, const NewColumn& column);
    void SetDefault(TableStore& table, std::string_view column, std::string_view expression);

    void Begin();
    void Commit();
    void Rollback();
    [[nodiscard]] std::uint64_t ChangeCount() const noexcept { return changes_; }

    /// Reading procedures of a file that is open for reading only run between these: the file does not change
    /// meanwhile, and what another program committed before is seen. They nest.
    class Reading {
      public:
        explicit Reading(Store& store);
        ~Reading();
        Reading(const Reading&) = delete;
        Reading& operator=(const Reading&) = delete;

      private:
        Store& store_;
    };

    /// Runs a change whole or not at all: undone when it faults, and committed when no transaction is open.
    void Change(const std::function<void()>& change);

  private:
    friend std::unique_ptr<Store> NewFile(std::shared_ptr<files::HostFile>, std::filesystem::path,
                                          text::Date);

    struct CatalogEntry {
        RowId row;
        std::int32_t id = 0, parent = 0;
        std::string name;
        bool table = false, system = false;
    };
    [[nodiscard]] std::vector<CatalogEntry> Entries();
    [[nodiscard]] std::int32_t TablesContainer();
    [[nodiscard]] RowId CatalogRow(const TableStore& table);
    [[nodiscard]] PropertyBlob ReadProperties(RowId catalogRow);
    void WriteProperties(RowId catalogRow, const PropertyBlob& properties);
    Table& Open(const CatalogEntry& entry);
    void AddCatalogRows(const std::string& name, PageNumber page, text::Date now);
    void ReloadTables();
    [[nodiscard]] std::vector<TableStore*> OpenStores();

    Pager pager_;
    PageAllocator allocator_;
    std::unique_ptr<TableStore> catalog_;
    std::map<PageNumber, std::unique_ptr<Table>> tables_;  ///< by definition page
    std::vector<std::unique_ptr<Table>> gone_;             ///< undone tables: somebody may still hold them
    std::vector<TableStore::Counts> saved_;
    bool inChange_ = false;
    int reading_ = 0;
    std::unique_ptr<CommitLock> readLock_;
    std::uint64_t changes_ = 0;
};

/// Makes the pages of an empty database in `file`, which is empty.
[[nodiscard]] std::unique_ptr<Store> NewFile(std::shared_ptr<files::HostFile> file,
                                             std::filesystem::path path, text::Date now);

/// Builds the definition, maps and index roots of a user table on `page`. Faults: names and numbers beyond
/// the limits of the format.
void BuildTable(Pager& pager, PageAllocator& allocator, PageNumber page, const NewTable& table);
/// Gives a planned table its maps and index roots and writes its definition on `page` and what pages it takes
/// more.
void PlaceTable(Pager& pager, PageAllocator& allocator, PageNumber page, PlannedTable& plan);

}  // namespace zenvora::jet::detail
