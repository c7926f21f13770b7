#include "platform/jet/database.h"

#include "platform/jet/detail/general_order.h"
#include "platform/jet/detail/header.h"
#include "platform/jet/detail/store.h"
#include "platform/text/utf8.h"

namespace zenvora::jet {

using detail::CheckHeader;
using detail::CommitLock;
using detail::Journal;
using detail::NewFile;
using detail::Store;
using detail::WriterGuard;

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
    const Store::Reading reading(store_->Owner());
    return store_->RowCount();
}
void Table::Scan(const std::function<bool(const RowView&)>& visit) const {
    const Store::Reading reading(store_->Owner());
    store_->Scan(visit);
}
void Table::ScanIndex(std::size_t index, const std::function<bool(RowId)>& visit) const {
    const Store::Reading reading(store_->Owner());
    store_->ScanIndex(index, visit);
}
std::vector<Value> Table::Read(RowId row) const {
    const Store::Reading reading(store_->Owner());
    return store_->Read(row);
}
std::optional<RowId> Table::Find(std::size_t index, std::span<const Value> key) const {
    const Store::Reading reading(store_->Owner());
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

namespace {

std::string NoticeOf(const Journal::Recovery& recovery) {
    switch (recovery.outcome) {
        case Journal::Outcome::RolledBack:
            return "the last change of the Databook had been broken off: it was undone, everything before it "
                   "is there";
        case Journal::Outcome::KeptAside:
            return "a change of the Databook had been broken off, and another program has changed the file "
                   "since: "
                   "nothing was undone. What stood in its pages before was kept in " +
                   recovery.keptAs.string() + ". Check the Databook (zenvora-cli verify)";
        case Journal::Outcome::Nothing:
            break;
    }
    return {};
}

/// Rolls a broken-off commit back for somebody who only wants to read. Where that is not possible (no right
/// to write, somebody else at work) the reader gets the old pages in memory instead.
std::string RecoverForReading(files::HostDisk& disk, const std::filesystem::path& path) {
    if (!disk.Exists(Journal::PathOf(path))) return {};
    try {
        const std::shared_ptr<files::HostFile> file = disk.Open(path, files::OpenMode::ReadWrite);
        const WriterGuard guard(disk, path, file);
        return NoticeOf(Journal::Recover(disk, path, *file));
    } catch (const Fault&) {
        return {};
    }
}

}  // namespace

std::unique_ptr<Database> Database::Open(const std::filesystem::path& path, Access access,
                                         files::HostDisk& disk) {
    if (access == Access::ReadOnly) {
        const std::string notice = RecoverForReading(disk, path);
        const std::shared_ptr<files::HostFile> file = disk.Open(path, files::OpenMode::ReadOnly);
        std::unique_ptr<Store> store;
        {
            const CommitLock still(*file, path, files::LockKind::Shared);
            const detail::Layout layout = CheckHeader(*file, path, false);
            const auto overlay = Journal::Peek(disk, path, *file);
            store = std::make_unique<Store>(file, path, layout, true);
            if (overlay) store->Pages().SetOverlay(*overlay);
            store->LoadCatalog();
        }
        std::unique_ptr<Database> database(new Database(std::move(store)));
        database->notice_ = notice;
        return database;
    }
    const std::shared_ptr<files::HostFile> file = disk.Open(path, files::OpenMode::ReadWrite);
    auto guard = std::make_unique<WriterGuard>(disk, path, file);
    const std::string notice = NoticeOf(Journal::Recover(disk, path, *file));
    const detail::Layout layout = CheckHeader(*file, path, true);
    auto journal = std::make_unique<Journal>(disk, path);
    auto store = std::make_unique<Store>(file, path, layout, false);
    store->Pages().SetJournal(std::move(journal), std::move(guard));
    store->LoadCatalog();
    std::unique_ptr<Database> database(new Database(std::move(store)));
    database->notice_ = notice;
    return database;
}

std::unique_ptr<Database> Database::Create(const std::filesystem::path& path, text::Date now,
                                           files::HostDisk& disk) {
    const std::shared_ptr<files::HostFile> file = disk.Open(path, files::OpenMode::CreateNew);
    try {
        auto guard = std::make_unique<WriterGuard>(disk, path, file);
        auto journal = std::make_unique<Journal>(disk, path);
        std::unique_ptr<Store> store = NewFile(file, path, now);
        store->Pages().SetJournal(std::move(journal), std::move(guard));
        return std::unique_ptr<Database>(new Database(std::move(store)));
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
const std::string& Database::Notice() const {
    return notice_;
}
std::vector<std::string> Database::TableNames() const {
    const Store::Reading reading(*store_);
    return store_->TableNames();
}

Table& Database::OpenTable(std::string_view name) {
    const Store::Reading reading(*store_);
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
