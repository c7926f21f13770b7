#include "platform/jet/detail/store.h"

#include <algorithm>
#include <set>

#include "platform/jet/detail/row_codec.h"
#include "platform/jet/detail/table_plan.h"
#include "platform/text/utf8.h"

namespace zenvora::jet::detail {

namespace {
constexpr PageNumber kCatalogPage = 2;
constexpr PageNumber kRightsPage = 3;
constexpr std::int32_t kRootContainer = 0x0F000000;
constexpr std::int32_t kTableType = 1;
constexpr std::uint32_t kSystemOrHidden = 0x80000002;
constexpr std::int32_t kDatabasesContainer = kRootContainer + 2;
constexpr std::int32_t kFullRights = 0x000FFEFF;

std::size_t ColumnOf(const TableStore& table, std::string_view name) {
    const auto position = table.Definition().FindColumn(name);
    if (!position) {
        throw Fault{fault::kDamaged, "the catalog of the Databook lacks its column " + std::string(name) +
                                         ": restore the file from a backup copy"};
    }
    return *position;
}
}  // namespace

Store::Store(std::shared_ptr<files::HostFile> file, std::filesystem::path path, const Layout& layout,
             bool readOnly)
    : pager_(std::move(file), std::move(path), layout, readOnly), allocator_(pager_) {}

Store::~Store() = default;

void Store::LoadCatalog() {
    catalog_ = std::make_unique<TableStore>(*this, "MSysObjects", kCatalogPage);
}

std::vector<Store::CatalogEntry> Store::Entries() {
    const std::size_t id = ColumnOf(*catalog_, "Id");
    const std::size_t parent = ColumnOf(*catalog_, "ParentId");
    const std::size_t name = ColumnOf(*catalog_, "Name");
    const std::size_t type = ColumnOf(*catalog_, "Type");
    const std::size_t flags = ColumnOf(*catalog_, "Flags");
    std::vector<CatalogEntry> entries;
    catalog_->Scan([&](const RowView& view) {
        CatalogEntry entry;
        entry.row = view.Id();
        entry.id = static_cast<std::int32_t>(view.Number(id));
        entry.parent = static_cast<std::int32_t>(view.Number(parent));
        entry.table = static_cast<std::int32_t>(view.Number(type)) == kTableType;
        entry.system = (static_cast<std::uint32_t>(static_cast<std::int32_t>(view.Number(flags))) &
                        kSystemOrHidden) != 0;
        view.AppendText(name, entry.name);
        entries.push_back(std::move(entry));
        return true;
    });
    return entries;
}

std::int32_t Store::TablesContainer() {
    for (const CatalogEntry& entry : Entries()) {
        if (entry.parent == kRootContainer && text::EqualsNoCase(entry.name, "Tables")) return entry.id;
    }
    return kRootContainer + 1;
}

std::vector<std::string> Store::TableNames() {
    std::vector<std::string> names;
    for (const CatalogEntry& entry : Entries()) {
        if (entry.table && !entry.system) names.push_back(entry.name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

Table* Store::FindTable(std::string_view name) {
    for (const CatalogEntry& entry : Entries()) {
        if (entry.table && text::EqualsNoCase(entry.name, name)) return &Open(entry);
    }
    return nullptr;
}

Table& Store::Open(const CatalogEntry& entry) {
    const PageNumber page = static_cast<PageNumber>(entry.id) & 0x00FFFFFF;
    auto& table = tables_[page];
    if (!table) {
        auto store = std::make_unique<TableStore>(*this, entry.name, page);
        store->ApplyProperties(ReadProperties(entry.row));
        table = std::make_unique<Table>(std::move(store));
    }
    return *table;
}

RowId Store::CatalogRow(const TableStore& table) {
    for (const CatalogEntry& entry : Entries()) {
        if (entry.table && (static_cast<PageNumber>(entry.id) & 0x00FFFFFF) == table.DefinitionPage())
            return entry.row;
    }
    throw pager_.Damaged(kCatalogPage, "table " + table.Definition().name + " is not in the catalog");
}

PropertyBlob Store::ReadProperties(RowId catalogRow) {
    const std::vector<Value> values = catalog_->Read(catalogRow);
    const Value& value = values[ColumnOf(*catalog_, "LvProp")];
    if (const auto* bytes = std::get_if<Bytes>(&value)) return PropertyBlob(*bytes, pager_.Format().codePage);
    return {};
}

void Store::WriteProperties(RowId catalogRow, const PropertyBlob& properties) {
    if (properties.Broken()) {
        throw Fault{
            fault::kUnsupported,
            "the column properties of the table have a form that is not known here: nothing was changed",
            Place{pager_.Path().string()}};
    }
    const std::size_t column = ColumnOf(*catalog_, "LvProp");
    const Value value = properties.Bytes();
    catalog_->Update(catalogRow, std::span(&column, 1), std::span(&value, 1));
}

void Store::AddCatalogRows(const std::string& name, PageNumber page, text::Date now) {
    Value owner;
    const std::size_t ownerColumn = ColumnOf(*catalog_, "Owner");
    for (const CatalogEntry& entry : Entries()) {
        if (entry.parent == kDatabasesContainer && text::EqualsNoCase(entry.name, "MSysDb")) {
            owner = catalog_->Read(entry.row)[ownerColumn];
        }
    }
    const std::int32_t tables = TablesContainer();
    std::vector<Value> values(catalog_->Definition().columns.size());
    const auto set = [&](std::string_view column, Value value) {
        values[ColumnOf(*catalog_, column)] = std::move(value);
    };
    set("Id", static_cast<std::int32_t>(page));
    set("ParentId", tables);
    set("Name", name);
    set("Type", kTableType);
    set("DateCreate", DateTime{now});
    set("DateUpdate", DateTime{now});
    set("Owner", owner);
    set("Flags", std::int32_t{0});
    catalog_->Insert(values);

    // The accounts that may use tables at all may use this one: their scrambled names are copied, never made
    // up.
    TableStore rights(*this, "MSysACEs", kRightsPage);
    const std::size_t object = ColumnOf(rights, "ObjectId");
    const std::size_t account = ColumnOf(rights, "SID");
    std::set<Bytes> accounts;
    rights.Scan([&](const RowView& view) {
        if (static_cast<std::int32_t>(view.Number(object)) == tables) {
            if (Value sid = view.Get(account); std::holds_alternative<Bytes>(sid))
                accounts.insert(std::get<Bytes>(sid));
        }
        return true;
    });
    for (const Bytes& sid : accounts) {
        std::vector<Value> row(rights.Definition().columns.size());
        row[object] = static_cast<std::int32_t>(page);
        row[account] = sid;
        row[ColumnOf(rights, "ACM")] = kFullRights;
        row[ColumnOf(rights, "FInheritable")] = false;
        rights.Insert(row);
    }
    rights.Flush();
}

Table& Store::CreateTable(const NewTable& table, text::Date now) {
    for (const CatalogEntry& entry : Entries()) {
        if (entry.parent == TablesContainer() && text::EqualsNoCase(entry.name, table.name)) {
            throw Fault{fault::kTableExists, "the Databook has a table " + table.name + " already",
                        Place{pager_.Path().string()}};
        }
    }
    PageNumber page = 0;
    Change([&] {
        page = allocator_.Allocate();
        BuildTable(pager_, allocator_, page, table);
        AddCatalogRows(table.name, page, now);
        const std::vector<CatalogEntry> entries = Entries();
        if (std::none_of(entries.begin(), entries.end(), [&](const CatalogEntry& entry) {
                return entry.table && entry.id == static_cast<std::int32_t>(page);
            })) {
            throw pager_.Damaged(kCatalogPage, "the catalog does not hold what is put into it");
        }
        PropertyBlob properties;
        for (const NewColumn& column : table.columns) {
            if (column.properties.defaultValue)
                properties.SetDefault(column.name, *column.properties.defaultValue);
            if (column.properties.required) properties.SetRequired(column.name, true);
            if (column.type == ColumnType::Text || column.type == ColumnType::Memo) {
                properties.SetAllowZeroLength(column.name, column.properties.allowZeroLength);
            }
        }
        if (!properties.Empty()) {
            for (const CatalogEntry& entry : Entries()) {
                if (entry.table && entry.id == static_cast<std::int32_t>(page))
                    WriteProperties(entry.row, properties);
            }
        }
    });
    return *FindTable(table.name);
}

void Store::AddColumn(TableStore& table, const NewColumn& column) {
    if (table.Definition().FindColumn(column.name)) {
        throw Fault{fault::kColumnExists,
                    "table " + table.Definition().name + " has a column " + column.name + " already",
                    Place{pager_.Path().string(), 0, 0, -1, column.name}};
    }
    CheckName(column.name, "column");
    Change([&] {
        table.AppendColumn(column);
        const RowId row = CatalogRow(table);
        PropertyBlob properties = ReadProperties(row);
        if (column.properties.defaultValue)
            properties.SetDefault(column.name, *column.properties.defaultValue);
        if (column.properties.required) properties.SetRequired(column.name, true);
        if (column.type == ColumnType::Text || column.type == ColumnType::Memo) {
            properties.SetAllowZeroLength(column.name, column.properties.allowZeroLength);
        }
        if (!properties.Empty()) WriteProperties(row, properties);
        table.ApplyProperties(properties);
    });
}

void Store::SetDefault(TableStore& table, std::string_view column, std::string_view expression) {
    const auto position = table.Definition().FindColumn(column);
    if (!position) {
        throw Fault{fault::kItemNotFound,
                    "table " + table.Definition().name + " has no column " + std::string(column),
                    Place{pager_.Path().string(), 0, 0, -1, std::string(column)}};
    }
    Change([&] {
        const RowId row = CatalogRow(table);
        PropertyBlob properties = ReadProperties(row);
        properties.SetDefault(table.Definition().columns[*position].name, expression);
        WriteProperties(row, properties);
        table.ApplyProperties(properties);
    });
}

std::vector<TableStore*> Store::OpenStores() {
    std::vector<TableStore*> stores;
    if (catalog_) stores.push_back(catalog_.get());
    for (const auto& [page, table] : tables_) {
        if (table) stores.push_back(table->store_.get());
    }
    return stores;
}

void Store::Begin() {
    if (pager_.InTransaction()) throw Fault{fault::kInvalidCall, "a transaction is open already"};
    pager_.Begin();
}

void Store::Commit() {
    if (!pager_.InTransaction()) throw Fault{fault::kInvalidCall, "there is no transaction to commit"};
    try {
        for (TableStore* table : OpenStores())
            table->Flush();
        pager_.Commit();
    } catch (...) {
        // The file is as it was before the transaction, and so shall be what is known of it.
        Rollback();
        throw;
    }
    ++changes_;
}

void Store::Rollback() {
    if (!pager_.InTransaction()) throw Fault{fault::kInvalidCall, "there is no transaction to roll back"};
    pager_.Rollback();
    allocator_.Forget();
    ReloadTables();
}

void Store::ReloadTables() {
    // A table that was made in the transaction is no longer there; whoever holds it gets faults, not wrong
    // rows.
    std::set<PageNumber> present;
    if (catalog_) catalog_->Reload();
    for (const CatalogEntry& entry : Entries()) {
        if (entry.table) present.insert(static_cast<PageNumber>(entry.id) & 0x00FFFFFF);
    }
    for (auto table = tables_.begin(); table != tables_.end();) {
        if (!table->second) {
            table = tables_.erase(table);
        } else if (present.contains(table->first)) {
            table->second->store_->Reload();
            table->second->store_->ApplyProperties(ReadProperties(CatalogRow(*table->second->store_)));
            ++table;
        } else {
            gone_.push_back(std::move(table->second));
            table = tables_.erase(table);
        }
    }
}

Store::Reading::Reading(Store& store) : store_(store) {
    if (!store_.pager_.IsReadOnly() || store_.reading_++ > 0) return;
    try {
        store_.readLock_ =
            std::make_unique<CommitLock>(store_.pager_.File(), store_.pager_.Path(), files::LockKind::Shared);
        if (store_.pager_.Refresh()) store_.ReloadTables();
    } catch (...) {
        store_.readLock_.reset();
        store_.reading_ = 0;
        throw;
    }
}

Store::Reading::~Reading() {
    if (store_.pager_.IsReadOnly() && --store_.reading_ == 0) store_.readLock_.reset();
}

void Store::Change(const std::function<void()>& change) {
    if (inChange_) {
        change();  // part of a larger change, which is undone as a whole
        return;
    }
    const bool own = !pager_.InTransaction();
    if (own) pager_.Begin();
    const std::vector<TableStore*> stores = OpenStores();
    saved_.resize(stores.size());
    for (std::size_t i = 0; i < stores.size(); ++i)
        saved_[i] = stores[i]->CurrentCounts();
    pager_.BeginStatement();
    inChange_ = true;
    try {
        change();
        inChange_ = false;
        pager_.EndStatement();
        if (own) Commit();
    } catch (...) {
        inChange_ = false;
        allocator_.Forget();
        if (own) {
            if (pager_.InTransaction()) Rollback();  // else the commit has done so
        } else {
            pager_.UndoStatement();
            for (std::size_t i = 0; i < stores.size(); ++i) {
                stores[i]->Reload();
                stores[i]->RestoreCounts(saved_[i]);
            }
        }
        throw;
    }
    pager_.Trim();
}

}  // namespace zenvora::jet::detail
