#include "platform/jet/database.h"

#include "platform/jet/detail/general_order.h"
#include "platform/jet/detail/header.h"
#include "platform/jet/detail/store.h"
#include "platform/text/utf8.h"

namespace zenvora::jet {

bool RowView::IsNull(std::size_t column) const {
    return table_->ViewIsNull(*this, column);
}
double RowView::Number(std::size_t column) const {
    return table_->ViewNumber(*this, column);
}
void RowView::AppendText(std::size_t column, std::string& out) const {
    table_->ViewAppendText(*this, column, out);
}
Value RowView::Get(std::size_t column) const {
    return table_->ViewGet(*this, column);
}

Table::Table(std::unique_ptr<detail::TableStore> store) : store_(std::move(store)) {}
Table::~Table() = default;

const TableDefinition& Table::Definition() const {
    return store_->Definition();
}
std::uint32_t Table::RowCount() const {
    return store_->RowCount();
}
void Table::Scan(const std::function<bool(const RowView&)>& visit) const {
    store_->Scan(visit);
}
void Table::ScanIndex(std::size_t index, const std::function<bool(RowId)>& visit) const {
    store_->ScanIndex(index, visit);
}
std::vector<Value> Table::Read(RowId row) const {
    return store_->Read(row);
}
std::optional<RowId> Table::Find(std::size_t index, std::span<const Value> key) const {
    return store_->Find(index, key);
}
RowId Table::Insert(std::span<const Value> values) {
    return store_->Insert(values);
}
void Table::Update(RowId row, std::span<const Value> values) {
    std::vector<std::size_t> columns(Definition().columns.size());
    for (std::size_t i = 0; i < columns.size(); ++i)
        columns[i] = i;
    store_->Update(row, columns, values);
}
void Table::Update(RowId row, std::span<const std::size_t> columns, std::span<const Value> values) {
    store_->Update(row, columns, values);
}
void Table::Delete(RowId row) {
    store_->Delete(row);
}
Value Table::DefaultOf(std::size_t column) const {
    return store_->DefaultOf(column);
}
void Table::AddColumn(const NewColumn& column) {
    store_->Owner().AddColumn(*store_, column);
}
void Table::SetDefault(std::string_view column, std::string_view expression) {
    store_->Owner().SetDefault(*store_, column, expression);
}

detail::Store& detail::StoreOf(Database& database) {
    return *database.store_;
}

Database::Database(std::unique_ptr<detail::Store> store) : store_(std::move(store)) {}
Database::~Database() = default;

std::unique_ptr<Database> Database::Open(const std::filesystem::path& path, Access access,
                                         files::HostDisk& disk) {
    const bool readOnly = access == Access::ReadOnly;
    std::unique_ptr<files::HostFile> file =
        disk.Open(path, readOnly ? files::OpenMode::ReadOnly : files::OpenMode::ReadWrite);
    detail::CheckHeader(*file, path, !readOnly);
    auto store = std::make_unique<detail::Store>(std::move(file), path, readOnly);
    store->LoadCatalog();
    return std::unique_ptr<Database>(new Database(std::move(store)));
}

std::unique_ptr<Database> Database::Create(const std::filesystem::path& path, text::Date now,
                                           files::HostDisk& disk) {
    std::unique_ptr<files::HostFile> file = disk.Open(path, files::OpenMode::CreateNew);
    try {
        return std::unique_ptr<Database>(new Database(detail::NewFile(std::move(file), path, now)));
    } catch (...) {
        disk.Remove(path);  // half a database is worse than none
        throw;
    }
}

const std::filesystem::path& Database::Path() const {
    return store_->Pages().Path();
}
bool Database::IsReadOnly() const {
    return store_->Pages().IsReadOnly();
}
std::vector<std::string> Database::TableNames() const {
    return store_->TableNames();
}

Table& Database::OpenTable(std::string_view name) {
    if (Table* table = store_->FindTable(name)) return *table;
    throw Fault{fault::kNoSuchTable, "the Databook has no table " + std::string(name),
                Place{Path().string()}};
}

Table& Database::CreateTable(const NewTable& table, text::Date now) {
    return store_->CreateTable(table, now);
}
void Database::Begin() {
    store_->Begin();
}
void Database::Commit() {
    store_->Commit();
}
void Database::Rollback() {
    store_->Rollback();
}
bool Database::InTransaction() const {
    return store_->Pages().InTransaction();
}
std::uint64_t Database::ChangeCount() const {
    return store_->ChangeCount();
}

int CompareGeneral(std::string_view a, std::string_view b) {
    std::string keyOfA;
    std::string keyOfB;
    const char32_t unknownInA = detail::AppendGeneralKey(a, true, keyOfA);
    const char32_t unknownInB = detail::AppendGeneralKey(b, true, keyOfB);
    if (unknownInA == 0 && unknownInB == 0) return keyOfA.compare(keyOfB);
    // Without weights only the characters themselves are left.
    if ((unknownInA == 0) != (unknownInB == 0)) return unknownInA == 0 ? -1 : 1;
    return text::Upper(text::TrimView(a)).compare(text::Upper(text::TrimView(b)));
}

}  // namespace zenvora::jet
