#include "platform/ado/detail/recordset_store.h"

#include <algorithm>
#include <cstring>
#include <numeric>

#include "platform/ado/detail/column_defaults.h"
#include "platform/ado/detail/conversion.h"
#include "platform/ado/detail/criterion.h"
#include "platform/ado/detail/text_match.h"
#include "platform/fault.h"

namespace zenvora::ado::detail {
namespace {

/// Searches of one field before an index of it pays.
constexpr int kSearchesWithoutIndex = 2;

[[noreturn]] void NoCurrentRecord() {
    throw Fault{fault::kNoCurrentRecord, "There is no current record: go to one first."};
}

int SizeOf(const jet::ColumnDefinition& column) {
    if (column.type == jet::ColumnType::Text) return column.CharacterLimit();
    return column.byteLength;
}

}  // namespace

RecordsetStore::RecordsetStore(const std::shared_ptr<OpenFile>& file, const SelectStatement& statement,
                               const shell::Clock& clock)
    : batches_(file),
      clock_(clock),
      selection_(ReadSelection(file->Database(), statement, clock)),
      rows_(selection_.rows),
      definition_(selection_.table->Definition()),
      cells_(rows_.Cells().data()),
      fieldCount_(selection_.fieldCount),
      rowChangesSeen_(file->RowChanges()) {
    for (std::size_t field = 0; field < selection_.fieldCount; ++field) {
        const jet::ColumnDefinition& column = Column(field);
        fields_.push_back({column.name, column.type, SizeOf(column)});
    }
    count_ = static_cast<long>(rows_.Count());
    GoTo(0);
}

// ---- position ----

bool RecordsetStore::HasCurrent() const noexcept {
    return edit_ == EditMode::Add || (!onDeleted_ && position_ >= 0 && position_ < count_);
}

bool RecordsetStore::Bof() const noexcept {
    if (edit_ == EditMode::Add) return false;
    return count_ == 0 || (!onDeleted_ && position_ < 0);
}

bool RecordsetStore::Eof() const noexcept {
    if (edit_ == EditMode::Add) return false;
    return count_ == 0 || (!onDeleted_ && position_ >= count_);
}

std::size_t RecordsetStore::RecordAt(long position) const {
    const auto at = static_cast<std::size_t>(position);
    return deletedSome_ ? remaining_[at] : at;
}

std::optional<long> RecordsetStore::PositionOf(std::size_t record) const {
    if (!deletedSome_)
        return record < rows_.Count() ? std::optional{static_cast<long>(record)} : std::nullopt;
    const auto place = std::lower_bound(remaining_.begin(), remaining_.end(), record);
    if (place == remaining_.end() || *place != record) return std::nullopt;
    return static_cast<long>(place - remaining_.begin());
}

void RecordsetStore::ShowRow() {
    const bool plain = edit_ == EditMode::None && HasCurrent();
    row_ = plain ? rows_.Row(RecordAt(position_)) : nullptr;
}

void RecordsetStore::GoTo(long position) {
    position_ = position;
    onDeleted_ = false;
    ShowRow();
}

void RecordsetStore::WriteOut() {
    // Going to another record stores what is pending on this one.
    if (edit_ != EditMode::None) Update();
}

void RecordsetStore::MoveFirst() {
    WriteOut();
    GoTo(0);
}

void RecordsetStore::MoveLast() {
    WriteOut();
    GoTo(count_ - 1);
}

void RecordsetStore::MoveNext() {
    WriteOut();
    if (Eof()) NoCurrentRecord();
    GoTo(onDeleted_ ? position_ : position_ + 1);
}

void RecordsetStore::MovePrevious() {
    WriteOut();
    if (Bof()) NoCurrentRecord();
    GoTo(position_ - 1);
}

Bookmark RecordsetStore::GetBookmark() const {
    if (edit_ == EditMode::Add || !HasCurrent()) return {};
    return {static_cast<std::int64_t>(RecordAt(position_))};
}

void RecordsetStore::SetBookmark(Bookmark bookmark) {
    WriteOut();
    if (bookmark == Bookmark{}) {
        GoTo(count_);
        return;
    }
    const auto position =
        bookmark.record < 0 ? std::nullopt : PositionOf(static_cast<std::size_t>(bookmark.record));
    if (!position) throw Fault{fault::kNoCurrentRecord, "The record of this bookmark was deleted."};
    GoTo(*position);
}

long RecordsetStore::Position() const noexcept {
    return edit_ != EditMode::Add && HasCurrent() ? position_ : -1;
}

void RecordsetStore::MoveTo(long position) {
    if (position < 0 || position >= count_) NoCurrentRecord();
    WriteOut();
    GoTo(position);
}

// ---- search ----

bool RecordsetStore::Equals(std::size_t record, std::size_t field, const jet::Value& value) const {
    const std::byte* const row = rows_.Row(record);
    if (rows_.IsNull(row, field)) return false;
    const Cell& cell = rows_.Cells()[field];
    switch (cell.kind) {
        case CellKind::Text:
            return SameText(rows_.Text(row, cell), std::get<std::string>(value));
        case CellKind::Amount:
            return RecordRows::Amount(row, cell) == std::get<jet::Currency>(value).tenThousandths;
        case CellKind::Number:
        case CellKind::Boolean:
            return RecordRows::Number(row, cell) == NumberOf(value);
        case CellKind::InTable:
            break;
    }
    const jet::Value stored = Table().Read(rows_.Id(record))[cell.column];
    const auto* const text = std::get_if<std::string>(&stored);
    return text != nullptr ? SameText(*text, std::get<std::string>(value)) : stored == value;
}

std::optional<std::size_t> RecordsetStore::Search(std::size_t field, std::string_view text) {
    const Cell cell = rows_.Cells()[field];
    if (field != searchField_) {
        searchIndex_.reset();
        searchField_ = field;
        searches_ = 0;
    }
    if (cell.kind == CellKind::Text && ++searches_ > kSearchesWithoutIndex) {
        if (!searchIndex_) {
            std::vector<std::uint32_t> records = remaining_;
            if (!deletedSome_) {
                records.resize(rows_.Count());
                std::iota(records.begin(), records.end(), 0U);
            }
            searchIndex_.emplace(std::move(records), [this, cell](std::uint32_t record) {
                return rows_.Text(rows_.Row(record), cell);
            });
        }
        return searchIndex_->Find(text);
    }
    jet::Value wanted;
    try {
        wanted = ConvertValue(std::string(text), Column(field), clock_);
    } catch (const Fault&) {
        return std::nullopt;  // what does not go into the column is in no record
    }
    for (long position = 0; position < count_; ++position) {
        if (Equals(RecordAt(position), field, wanted)) return RecordAt(position);
    }
    return std::nullopt;
}

void RecordsetStore::Find(std::string_view criterion) {
    const Criterion wanted = ParseCriterion(criterion);
    const auto field = static_cast<std::size_t>(FieldOf(wanted.field));
    WriteOut();
    const std::optional<std::size_t> record = Search(field, wanted.text);
    GoTo(record ? *PositionOf(*record) : count_);
}

// ---- fields ----

int RecordsetStore::FieldIndex(std::string_view name) const {
    // The definition folds names as the engine does; a projection holds a column at most a few times.
    const std::optional<std::size_t> column = definition_.FindColumn(name);
    if (!column) return -1;
    for (std::size_t field = 0; field < fields_.size(); ++field) {
        if (rows_.Cells()[field].column == *column) return static_cast<int>(field);
    }
    return -1;
}

int RecordsetStore::FieldOf(std::string_view name) const {
    const int field = FieldIndex(name);
    if (field >= 0) return field;
    Place place;
    place.column = name;
    throw Fault{fault::kItemNotFound, "The records have no field " + std::string(name) + ".", place};
}

const jet::ColumnDefinition& RecordsetStore::Column(std::size_t field) const {
    return definition_.columns[rows_.Cells()[field].column];
}

jet::Table& RecordsetStore::Table() const {
    static_cast<void>(batches_.File().Database());
    return *selection_.table;
}

std::size_t RecordsetStore::FieldNumber(int field) const {
    if (static_cast<std::size_t>(field) >= fields_.size()) {
        throw Fault{fault::kItemNotFound, "The records have no field number " + std::to_string(field) + "."};
    }
    return static_cast<std::size_t>(field);
}

std::size_t RecordsetStore::Checked(int field) const {
    const std::size_t number = FieldNumber(field);
    if (!HasCurrent()) NoCurrentRecord();
    return number;
}

std::size_t RecordsetStore::CurrentRecord() const {
    if (!HasCurrent()) NoCurrentRecord();
    return RecordAt(position_);
}

const jet::Value* RecordsetStore::Pending(std::size_t field) const {
    if (edit_ == EditMode::None) return nullptr;
    const std::size_t column = rows_.Cells()[field].column;
    return edit_ == EditMode::Add || changed_[column] ? &pending_[column] : nullptr;
}

jet::Value RecordsetStore::FromTable(std::size_t record, std::size_t field) const {
    return Table().Read(rows_.Id(record))[rows_.Cells()[field].column];
}

jet::Value RecordsetStore::Value(int number) const {
    const std::size_t field = Checked(number);
    if (const jet::Value* const pending = Pending(field)) return *pending;
    return Stored(CurrentRecord(), field);
}

jet::Value RecordsetStore::ValueAt(long position, int number) const {
    const std::size_t field = FieldNumber(number);
    if (position < 0 || position >= count_) {
        throw Fault{fault::kNoCurrentRecord,
                    "There is no record at position " + std::to_string(position) + "."};
    }
    if (position == Position()) return Value(number);
    return Stored(RecordAt(position), field);
}

jet::Value RecordsetStore::Stored(std::size_t record, std::size_t field) const {
    const std::byte* const row = rows_.Row(record);
    if (rows_.IsNull(row, field)) return jet::Null{};
    const Cell& cell = rows_.Cells()[field];
    switch (cell.kind) {
        case CellKind::Text:
            return std::string(rows_.Text(row, cell));
        case CellKind::Amount:
            return jet::Currency{RecordRows::Amount(row, cell)};
        case CellKind::Boolean:
            return RecordRows::Number(row, cell) != 0;
        case CellKind::InTable:
            return FromTable(record, field);
        case CellKind::Number:
            break;
    }
    const double value = RecordRows::Number(row, cell);
    switch (fields_[field].type) {
        case jet::ColumnType::DateTime:
            return jet::DateTime{value};
        case jet::ColumnType::Double:
            return value;
        case jet::ColumnType::Single:
            return static_cast<float>(value);
        default:
            return static_cast<std::int32_t>(value);
    }
}

bool RecordsetStore::IsNull(int number) const {
    if (row_ != nullptr && static_cast<std::size_t>(number) < fields_.size()) {
        return rows_.IsNull(row_, static_cast<std::size_t>(number));
    }
    const std::size_t field = Checked(number);
    if (const jet::Value* const pending = Pending(field)) return jet::IsNull(*pending);
    return rows_.IsNull(rows_.Row(CurrentRecord()), field);
}

double RecordsetStore::NumberTheLongWay(int field) const {
    return NumberOf(Value(field));
}

std::string_view RecordsetStore::TextTheLongWay(int number) const {
    const std::size_t field = Checked(number);
    if (const jet::Value* const pending = Pending(field)) {
        const auto* const text = std::get_if<std::string>(pending);
        return text != nullptr ? std::string_view{*text} : std::string_view{};
    }
    const std::byte* const row = rows_.Row(CurrentRecord());
    const Cell& cell = rows_.Cells()[field];
    if (cell.kind == CellKind::Text) return rows_.Text(row, cell);
    if (fields_[field].type != jet::ColumnType::Memo || rows_.IsNull(row, field)) return {};
    const jet::Value value = FromTable(CurrentRecord(), field);
    const auto* const text = std::get_if<std::string>(&value);
    longText_ = text != nullptr ? *text : std::string{};
    return longText_;
}

// ---- changes ----

void RecordsetStore::RefuseReadOnly() const {
    if (!batches_.File().Database().IsReadOnly()) return;
    throw Fault{fault::kReadOnly, "The Databook is open for reading only: its records cannot be changed.",
                Place{batches_.File().Database().Path().string()}};
}

void RecordsetStore::SetValue(int number, const jet::Value& value) {
    const std::size_t field = Checked(number);
    RefuseReadOnly();
    const std::size_t column = rows_.Cells()[field].column;
    jet::Value converted = ConvertValue(value, Column(field), clock_);
    if (edit_ == EditMode::None) {
        const std::size_t columns = definition_.columns.size();
        pending_.assign(columns, jet::Null{});
        changed_.assign(columns, false);
        edit_ = EditMode::InProgress;
        row_ = nullptr;
    }
    pending_[column] = std::move(converted);
    changed_[column] = true;
}

void RecordsetStore::AddNew() {
    RefuseReadOnly();
    WriteOut();
    pending_ = DefaultsOf(Table(), clock_);
    changed_.assign(pending_.size(), false);
    edit_ = EditMode::Add;
    row_ = nullptr;
}

void RecordsetStore::Update() {
    if (edit_ == EditMode::None) return;
    if (edit_ == EditMode::Add) {
        InsertNew();
    } else {
        UpdateCurrent();
    }
}

bool RecordsetStore::ChangesTheRow(std::size_t record, std::size_t column, const jet::Value& value) const {
    // A run over all records sets most fields to what they hold. Such a write is left out, as long as nobody
    // else has changed rows since these were read.
    if (rowChangesSeen_ != batches_.File().RowChanges()) return true;
    const std::byte* const row = rows_.Row(record);
    for (std::size_t field = 0; field < rows_.Cells().size(); ++field) {
        const Cell& cell = rows_.Cells()[field];
        if (cell.column != column) continue;
        if (cell.kind == CellKind::InTable || jet::IsNull(value) != rows_.IsNull(row, field)) return true;
        if (jet::IsNull(value)) return false;
        if (cell.kind == CellKind::Text) return rows_.Text(row, cell) != std::get<std::string>(value);
        if (cell.kind == CellKind::Amount) {
            return RecordRows::Amount(row, cell) != std::get<jet::Currency>(value).tenThousandths;
        }
        return RecordRows::Number(row, cell) != NumberOf(value);
    }
    return true;
}

void RecordsetStore::UpdateCurrent() {
    const std::size_t record = CurrentRecord();
    std::vector<std::size_t> columns;
    std::vector<jet::Value> values;
    for (std::size_t column = 0; column < changed_.size(); ++column) {
        if (!changed_[column] || !ChangesTheRow(record, column, pending_[column])) continue;
        columns.push_back(column);
        values.push_back(pending_[column]);
    }
    if (!columns.empty()) {
        Table().Update(rows_.Id(record), columns, values);
        for (std::size_t field = 0; field < rows_.Cells().size(); ++field) {
            const std::size_t column = rows_.Cells()[field].column;
            if (changed_[column]) Store(record, field, pending_[column]);
        }
        edit_ = EditMode::None;
        NoteChange();
    }
    edit_ = EditMode::None;
    ShowRow();
}

void RecordsetStore::NoteChange() {
    const bool upToDate = rowChangesSeen_ == batches_.File().RowChanges();
    batches_.File().RowsChanged();
    if (upToDate) rowChangesSeen_ = batches_.File().RowChanges();
}

void RecordsetStore::Store(std::size_t record, std::size_t field, const jet::Value& value) {
    const bool indexed = searchIndex_ && field == searchField_;
    const auto number = static_cast<std::uint32_t>(record);
    if (indexed) searchIndex_->Remove(number);
    rows_.Set(record, field, value);
    if (indexed) searchIndex_->Add(number);
}

void RecordsetStore::InsertNew() {
    // Columns that were added to the table in the meantime take their default as well.
    std::vector<jet::Value> values = DefaultsOf(Table(), clock_);
    std::copy(pending_.begin(), pending_.end(), values.begin());
    const jet::RowId id = Table().Insert(values);
    // Read back: the engine numbers an auto-number column.
    rows_.Append(id, Table().Read(id));
    const std::size_t record = rows_.Count() - 1;
    if (deletedSome_) remaining_.push_back(static_cast<std::uint32_t>(record));
    if (searchIndex_) searchIndex_->Add(static_cast<std::uint32_t>(record));
    ++count_;
    edit_ = EditMode::None;
    GoTo(count_ - 1);
    NoteChange();
}

void RecordsetStore::CancelUpdate() {
    edit_ = EditMode::None;
    ShowRow();
}

void RecordsetStore::Delete() {
    if (edit_ == EditMode::Add) {
        CancelUpdate();
        return;
    }
    const std::size_t record = CurrentRecord();
    RefuseReadOnly();
    CancelUpdate();
    Table().Delete(rows_.Id(record));
    if (!deletedSome_) {
        remaining_.resize(rows_.Count());
        std::iota(remaining_.begin(), remaining_.end(), 0U);
        deletedSome_ = true;
    }
    remaining_.erase(remaining_.begin() + position_);
    if (searchIndex_) searchIndex_->Remove(static_cast<std::uint32_t>(record));
    --count_;
    onDeleted_ = true;
    ShowRow();
    NoteChange();
}

}  // namespace zenvora::ado::detail
