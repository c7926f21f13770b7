#include "platform/jet/detail/table_writer.h"

#include <algorithm>

#include "platform/jet/detail/key_codec.h"
#include "platform/jet/detail/long_values.h"

namespace zenvora::jet::detail {

namespace {
constexpr const Layout& kLayout = kJet4;  // the only version that is written
/// A page with less room than this is not offered to later inserts.
constexpr std::size_t kWorthTrying = 128;

bool IsLong(const ColumnDefinition& column) {
    return column.type == ColumnType::Memo || column.type == ColumnType::Ole;
}
}  // namespace

TableWriter::TableWriter(Pager& pager, PageAllocator& allocator, PageNumber definition)
    : pager_(pager), allocator_(allocator), page_(definition), stored_(ReadDefinition(pager, definition)) {
    const auto& columns = stored_.table.columns;
    for (const StoredIndex& index : stored_.indexes) {
        auto& positions = keyPositions_.emplace_back();
        for (const IndexColumn& each : index.columns) {
            const auto found = std::find_if(columns.begin(), columns.end(),
                                            [&](const auto& column) { return column.number == each.column; });
            positions.push_back(static_cast<std::size_t>(found - columns.begin()));
        }
    }
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (IsLong(columns[i])) longPositions_.push_back(i);
        if (columns[i].autoNumber && columns[i].type == ColumnType::Long) autoNumberPosition_ = i;
    }
    keys_.resize(stored_.indexes.size());
    entries_.resize(stored_.indexes.size());
    distinct_.resize(stored_.indexes.size());
}

IndexTree TableWriter::Tree(std::size_t index) {
    const StoredIndex& stored = stored_.indexes[index];
    return {pager_, allocator_, page_, stored.root, UsageMap{pager_, stored.ownedMap}, &indexEnds_};
}

TableWriter::Outcome TableWriter::MakeKeys(const StoredFields& fields) {
    for (std::size_t i = 0; i < stored_.indexes.size(); ++i) {
        const IndexDefinition& definition = stored_.table.indexes[i];
        std::string& key = keys_[i];
        key.clear();
        bool allNull = true;
        for (std::size_t k = 0; k < definition.columns.size(); ++k) {
            const std::size_t position = keyPositions_[i][k];
            const ColumnDefinition& column = stored_.table.columns[position];
            const auto& field = fields[position];
            Value value;
            if (column.type == ColumnType::Boolean) {
                value = field.has_value();
            } else if (field && column.type == ColumnType::Memo) {
                // A Memo in a key counts as a text.
                ColumnDefinition text = column;
                text.type = ColumnType::Text;
                value = DecodeField(text, *field);
            } else if (field) {
                value = DecodeField(column, *field);
            }
            const bool null = IsNull(value);
            if (null && (definition.required || definition.primaryKey)) return {Refusal::NullKey, i};
            allNull = allNull && null;
            failedIndex_ = i;
            AppendKey(column, value, definition.columns[k].ascending, key);
            failedIndex_.reset();
        }
        if (allNull && definition.ignoreNulls) key.clear();
        if (key.empty() || allNull || !(definition.unique || definition.primaryKey)) continue;
        const auto found = Tree(i).LowerBound(key);
        if (found && found->size() == key.size() + 4 && found->compare(0, key.size(), key) == 0) {
            return {Refusal::DuplicateKey, i};
        }
    }
    return {};
}

void TableWriter::BuildRow(const StoredFields& fields, bool longValuesInline) {
    builder_.Begin(stored_);
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (!fields[i]) continue;
        const ColumnDefinition& column = stored_.table.columns[i];
        if (!IsLong(column)) {
            builder_.PutRaw(column, *fields[i]);
            continue;
        }
        UsageMap owned;
        UsageMap free;
        for (const LongColumn& maps : stored_.longColumns) {
            if (maps.column != column.number) continue;
            owned = {pager_, maps.ownedMap};
            free = {pager_, maps.freeMap};
        }
        builder_.PutRaw(column,
                        WriteLongValue(pager_, allocator_, owned, free, *fields[i], longValuesInline));
    }
    row_ = builder_.Finish();
}

TableWriter::Outcome TableWriter::Add(const StoredFields& fields) {
    if (const Outcome outcome = MakeKeys(fields); outcome.refusal != Refusal::None) return outcome;
    std::size_t size = 64;
    std::size_t longSize = 0;
    for (const auto& field : fields)
        size += field ? field->size() : 0;
    for (std::size_t position : longPositions_) {
        if (!fields[position]) continue;
        size -= fields[position]->size();
        longSize += std::min(fields[position]->size(), kLayout.maxInlineLongValue);
    }
    // A row that was near the limit may have kept its short long values elsewhere.
    const std::size_t trailers =
        2 * std::size_t{stored_.variableCount} + stored_.fixedAreaEnd + 12 * longPositions_.size();
    BuildRow(fields, size + longSize + trailers <= kLayout.maxRow);
    const RowId row = Place(row_);
    for (std::size_t i = 0; i < stored_.indexes.size(); ++i) {
        if (keys_[i].empty()) continue;
        AppendRowId(row, keys_[i]);
        if (Tree(i).Insert(keys_[i])) ++distinct_[i];
        ++entries_[i];
    }
    if (autoNumberPosition_ && fields[*autoNumberPosition_]) {
        const double number =
            DecodeNumber(stored_.table.columns[*autoNumberPosition_], *fields[*autoNumberPosition_]);
        if (number > 0) largest_ = std::max(largest_, static_cast<std::uint32_t>(number));
    }
    ++rows_;
    for (const auto& field : fields)
        written_ += field ? field->size() : 0;
    written_ += 16;
    return {};
}

RowId TableWriter::Place(std::span<const std::byte> row) {
    if (current_ == 0 || !HasRoom(pager_, current_, row.size())) {
        LeavePage();
        current_ = allocator_.Allocate();
        FormatDataPage(pager_, current_, page_);
        UsageMap(pager_, stored_.ownedMap).Add(current_, allocator_);
    }
    return {current_, static_cast<std::uint8_t>(AppendRow(pager_, current_, row))};
}

void TableWriter::LeavePage() {
    if (current_ != 0 && HasRoom(pager_, current_, kWorthTrying)) {
        UsageMap(pager_, stored_.freeMap).Add(current_, allocator_);
    }
}

void TableWriter::Finish(std::uint32_t autoNumber, std::uint32_t increment) {
    LeavePage();
    std::byte* const bytes = stored_.bytes.data();
    PutU32(bytes + kLayout.rowCountAt, rows_);
    PutU32(bytes + kLayout.autoNumberAt, std::max(autoNumber, largest_));
    PutU32(bytes + kLayout.incrementAt, increment);
    for (std::size_t i = 0; i < stored_.indexes.size(); ++i) {
        PutU32(bytes + stored_.indexes[i].countBlockAt, entries_[i]);
        PutU32(bytes + stored_.indexes[i].countBlockAt + 4, distinct_[i]);
    }
    WriteDefinition(pager_, allocator_, stored_.chain, stored_.bytes);
}

}  // namespace zenvora::jet::detail
