#include "platform/jet/detail/table_store.h"

#include <algorithm>
#include <array>

#include "platform/jet/detail/key_codec.h"
#include "platform/jet/detail/long_values.h"
#include "platform/jet/detail/store.h"
#include "platform/jet/detail/text_codec.h"
#include "platform/text/number.h"
#include "platform/text/utf8.h"

namespace zenvora::jet::detail {

namespace {
constexpr std::size_t kNoPosition = static_cast<std::size_t>(-1);
/// A page leaves the map of those with room when a row did not fit and less than this is free.
constexpr std::size_t kWorthTrying = 128;
/// Pages of that map that an insert looks at before it takes a new one.
constexpr int kPagesToTry = 16;
constexpr int kMaxOverflowSteps = 8;

bool IsLong(const ColumnDefinition& column) {
    return column.type == ColumnType::Memo || column.type == ColumnType::Ole;
}

Place At(const Pager& pager, const std::string& column) {
    Place place;
    place.file = pager.Path().string();
    place.column = column;
    return place;
}
}  // namespace

TableStore::TableStore(Store& store, std::string name, PageNumber definitionPage)
    : store_(store), page_(definitionPage) {
    stored_.table.name = std::move(name);
    Reload();
}

void TableStore::Reload() {
    std::string name = std::move(stored_.table.name);
    std::vector<ColumnDefinition> before = std::move(stored_.table.columns);
    stored_ = ReadDefinition(store_.Pages(), page_);
    stored_.table.name = std::move(name);
    for (std::size_t i = 0; i < std::min(before.size(), stored_.table.columns.size()); ++i) {
        if (before[i].name == stored_.table.columns[i].name) {
            stored_.table.columns[i].properties = std::move(before[i].properties);
        }
    }
    counts_ = {stored_.rowCount, stored_.autoNumber, {}, false};
    for (const StoredIndex& index : stored_.indexes)
        counts_.distinct.push_back(index.distinct);
    insertPage_ = 0;
    keys_.resize(stored_.indexes.size());
    FindPositions();

    writeRefusal_.clear();
    if (stored_.hasRelationship) writeRefusal_ = "it takes part in a relationship that another program keeps";
    for (const ColumnDefinition& column : stored_.table.columns) {
        const auto type = static_cast<unsigned>(column.type);
        if (type == 0 || type > 0x10 || type == 0x0D || type == 0x0E) {
            writeRefusal_ = "its column " + column.name + " has a type that cannot be written";
        }
        if (IsLong(column) && column.fixedLength)
            writeRefusal_ = "its column " + column.name + " keeps long values in a way that is not known";
        if (const std::size_t size = FixedSize(column.type); size != 0 && column.byteLength != size)
            writeRefusal_ = "its column " + column.name + " has a length that its type does not have";
        if (text::EqualsNoCase(column.name, "s_Generation") || text::EqualsNoCase(column.name, "s_Lineage")) {
            writeRefusal_ = "it is replicated";
        }
    }
    for (std::size_t i = 0; i < stored_.indexes.size(); ++i) {
        for (std::size_t position : indexPositions_[i]) {
            if (!CanEncodeKey(stored_.table.columns[position])) {
                writeRefusal_ = "its index on column " + stored_.table.columns[position].name +
                                " is sorted in an order that is not known here";
            }
        }
    }
}

void TableStore::FindPositions() {
    positions_.assign(stored_.maxColumns, kNoPosition);
    for (std::size_t i = 0; i < stored_.table.columns.size(); ++i)
        positions_[stored_.table.columns[i].number] = i;
    indexPositions_.clear();
    indexed_.assign(stored_.table.columns.size(), false);
    for (const StoredIndex& index : stored_.indexes) {
        auto& positions = indexPositions_.emplace_back();
        for (const IndexColumn& each : index.columns) {
            positions.push_back(positions_[each.column]);
            indexed_[positions.back()] = true;
        }
    }
}

void TableStore::ApplyProperties(const PropertyBlob& properties) {
    for (ColumnDefinition& column : stored_.table.columns)
        column.properties = properties.Of(column.name);
}

UsageMap TableStore::OwnedPages() const {
    return {store_.Pages(), stored_.ownedMap};
}
UsageMap TableStore::FreePages() const {
    return {store_.Pages(), stored_.freeMap};
}

IndexTree TableStore::Tree(std::size_t index) const {
    const StoredIndex& stored = stored_.indexes[index];
    return {store_.Pages(), store_.Allocator(), page_, stored.root, UsageMap{store_.Pages(), stored.ownedMap},
            &indexEnds_};
}

const LongColumn* TableStore::LongMaps(std::uint16_t number) const {
    for (const LongColumn& each : stored_.longColumns) {
        if (each.column == number) return &each;
    }
    return nullptr;
}

// ---------------------------------------------------------------- reading

RowView TableStore::MakeView(RowId id, PageNumber page, std::span<const std::byte> bytes) const {
    const RowShape shape = ParseRow(store_.Pages(), page, bytes, stored_);
    RowView view;
    view.table_ = this;
    view.bytes_ = shape.bytes;
    view.columnCount_ = shape.columnCount;
    view.maskAt_ = shape.maskAt;
    view.variableCount_ = shape.variableCount;
    view.fieldSize_ = shape.fieldSize;
    view.jumpBytes_ = shape.jumpBytes;
    view.jumps_ = shape.jumps;
    view.id_ = id;
    return view;
}

RowShape TableStore::ShapeOf(const RowView& view) const {
    return {view.bytes_,     view.columnCount_, view.maskAt_, view.variableCount_,
            view.fieldSize_, view.jumpBytes_,   view.jumps_};
}

TableStore::Home TableStore::Locate(RowId row) const {
    Pager& pager = store_.Pages();
    Home home{row.page, row.slot, false, {}};
    for (int step = 0; step < kMaxOverflowSteps; ++step) {
        const std::byte* const page = pager.Read(home.page);
        if (U8(page) != kDataPage || U32(page + 4) != page_) {
            if (step == 0)
                throw Fault{fault::kNoCurrentRecord, "the record is not there any more", At(pager, {})};
            throw pager.Damaged(home.page, "a row of table " + stored_.table.name + " is expected here");
        }
        if (step == 0 && home.slot >= SlotCount(pager, home.page)) {
            throw Fault{fault::kNoCurrentRecord, "the record is not there any more", At(pager, {})};
        }
        const Slot slot = ReadSlot(pager, home.page, home.slot);
        if (slot.Deleted() || (step == 0 && slot.Hidden())) {
            throw Fault{fault::kNoCurrentRecord, "the record is not there any more", At(pager, {})};
        }
        if ((slot.flags & kSlotOverflow) == 0) {
            home.bytes = {page + slot.begin, slot.Size()};
            return home;
        }
        if (slot.Size() < 4) throw pager.Damaged(home.page, "a moved row has lost its way");
        const RowPointer target{U32(page + slot.begin)};
        home = {target.Page(), target.Row(), true, {}};
    }
    throw pager.Damaged(home.page, "a moved row runs in a circle");
}

void TableStore::Scan(const std::function<bool(const RowView&)>& visit) const {
    Pager& pager = store_.Pages();
    for (PageNumber number : OwnedPages().PagesInUse()) {
        const std::byte* page = pager.Read(number);
        if (U8(page) != kDataPage || U32(page + 4) != page_) {
            throw pager.Damaged(number, "rows of table " + stored_.table.name + " are expected here");
        }
        // The count and the page are asked for at each step: the visitor may change the table.
        for (unsigned i = 0; i < SlotCount(pager, number); ++i) {
            const Slot slot = ReadSlot(pager, number, i);
            if (slot.Hidden()) continue;
            const RowId id{number, static_cast<std::uint8_t>(i)};
            if (slot.Overflow()) {
                const Home home = Locate(id);
                if (!visit(MakeView(id, home.page, home.bytes))) return;
            } else if (!visit(MakeView(id, number, {pager.Read(number) + slot.begin, slot.Size()}))) {
                return;
            }
        }
        pager.Trim();
    }
}

void TableStore::ScanIndex(std::size_t index, const std::function<bool(RowId)>& visit) const {
    Tree(index).Scan([&](std::string_view entry) { return visit(RowIdOf(entry)); });
}

Value TableStore::FieldValue(const RowShape& row, PageNumber page, std::size_t position) const {
    const ColumnDefinition& column = stored_.table.columns[position];
    const auto raw = RawField(row, column);
    if (!raw) return column.type == ColumnType::Boolean ? Value{false} : Value{Null{}};
    if (!IsLong(column)) return DecodeField(column, *raw);
    Bytes data = ReadLongValue(store_.Pages(), page, *raw);
    if (column.type == ColumnType::Ole) return data;
    std::string text;
    DecodeText(data, column.codePage, text);
    return text;
}

std::vector<Value> TableStore::Read(RowId row) const {
    const Home home = Locate(row);
    const RowShape shape = ParseRow(store_.Pages(), home.page, home.bytes, stored_);
    std::vector<Value> values;
    for (std::size_t i = 0; i < stored_.table.columns.size(); ++i)
        values.push_back(FieldValue(shape, home.page, i));
    return values;
}

bool TableStore::ViewIsNull(const RowView& view, std::size_t position) const {
    const ColumnDefinition& column = stored_.table.columns[position];
    return column.type != ColumnType::Boolean && !RawField(ShapeOf(view), column).has_value();
}

double TableStore::ViewNumber(const RowView& view, std::size_t position) const {
    const ColumnDefinition& column = stored_.table.columns[position];
    const auto raw = RawField(ShapeOf(view), column);
    return raw ? DecodeNumber(column, *raw) : 0;
}

void TableStore::ViewAppendText(const RowView& view, std::size_t position, std::string& out) const {
    const ColumnDefinition& column = stored_.table.columns[position];
    const auto raw = RawField(ShapeOf(view), column);
    if (!raw) return;
    if (column.type == ColumnType::Text) {
        DecodeTextField(column, *raw, out);
    } else if (column.type == ColumnType::Memo) {
        DecodeText(ReadLongValue(store_.Pages(), view.id_.page, *raw), column.codePage, out);
    }
}

Value TableStore::ViewGet(const RowView& view, std::size_t position) const {
    return FieldValue(ShapeOf(view), view.id_.page, position);
}

// ---------------------------------------------------------------- keys and rules

void TableStore::CheckWritable() const {
    if (writeRefusal_.empty()) return;
    throw Fault{fault::kUnsupported,
                "table " + stored_.table.name + " cannot be changed here: " + writeRefusal_,
                At(store_.Pages(), {})};
}

void TableStore::CheckRules(std::size_t position, const Value& value) const {
    const ColumnDefinition& column = stored_.table.columns[position];
    if (column.properties.required && IsNull(value)) {
        throw Fault{fault::kRequired, "column " + column.name + " must have a value",
                    At(store_.Pages(), column.name)};
    }
    if (!column.properties.allowZeroLength && std::holds_alternative<std::string>(value) &&
        std::get<std::string>(value).empty()) {
        throw Fault{fault::kEmptyText, "column " + column.name + " does not take an empty text",
                    At(store_.Pages(), column.name)};
    }
}

void TableStore::MakeKey(std::size_t index, std::span<const Value> values, std::string& key,
                         bool& allNull) const {
    key.clear();
    allNull = true;
    const IndexDefinition& definition = stored_.table.indexes[index];
    for (std::size_t i = 0; i < definition.columns.size(); ++i) {
        const std::size_t position = indexPositions_[index][i];
        const ColumnDefinition& column = stored_.table.columns[position];
        const bool null = IsNull(values[position]) && column.type != ColumnType::Boolean;
        if (null && (definition.required || definition.primaryKey)) {
            throw Fault{fault::kNullKey, "the key column " + column.name + " must have a value",
                        At(store_.Pages(), column.name)};
        }
        allNull = allNull && null;
        AppendKey(column, values[position], definition.columns[i].ascending, key);
    }
    if (allNull && definition.ignoreNulls) key.clear();
}

std::string TableStore::StoredKey(std::size_t index, std::span<const Value> values, RowId row) const {
    std::string key;
    try {
        bool allNull = false;
        MakeKey(index, values, key, allNull);
    } catch (const Fault&) {
        // The row breaks a rule of the index, or another program gave it a text that cannot be weighed here:
        // its entry, if there is one, shows by the row that it names.
        key.clear();
        Tree(index).Scan([&](std::string_view entry) {
            if (RowIdOf(entry) != row) return true;
            key = entry.substr(0, entry.size() - 4);
            return false;
        });
    }
    return key;
}

std::string TableStore::KeyText(std::size_t index, std::span<const Value> values) const {
    std::string text;
    for (std::size_t position : indexPositions_[index]) {
        if (!text.empty()) text += ", ";
        text += ValueText(values[position]);
    }
    return text;
}

void TableStore::CheckUnique(std::size_t index, const std::string& key, bool allNull, const RowId* own,
                             std::span<const Value> values) const {
    const IndexDefinition& definition = stored_.table.indexes[index];
    if (key.empty() || !(definition.unique || definition.primaryKey) || allNull) return;
    const std::optional<std::string> found = Tree(index).LowerBound(key);
    if (!found || found->size() != key.size() + 4 || found->compare(0, key.size(), key) != 0) return;
    if (own != nullptr && RowIdOf(*found) == *own) return;
    const std::string& column = stored_.table.columns[indexPositions_[index].front()].name;
    throw Fault{
        fault::kDuplicateKey,
        "duplicate key: a record with \"" + KeyText(index, values) + "\" in " + column + " is there already",
        At(store_.Pages(), column)};
}

std::optional<RowId> TableStore::Find(std::size_t index, std::span<const Value> key) const {
    std::string bytes;
    const IndexDefinition& definition = stored_.table.indexes[index];
    for (std::size_t i = 0; i < definition.columns.size() && i < key.size(); ++i) {
        const ColumnDefinition& column = stored_.table.columns[indexPositions_[index][i]];
        AppendKey(column, ConformValue(column, key[i]), definition.columns[i].ascending, bytes);
    }
    const std::optional<std::string> found = Tree(index).LowerBound(bytes);
    if (!found || found->size() != bytes.size() + 4 || found->compare(0, bytes.size(), bytes) != 0)
        return std::nullopt;
    return RowIdOf(*found);
}

// ---------------------------------------------------------------- writing

std::optional<PageNumber> TableStore::PageWithRoom(std::size_t size) {
    Pager& pager = store_.Pages();
    if (insertPage_ != 0 && HasRoom(pager, insertPage_, size)) return insertPage_;
    UsageMap free = FreePages();
    if (insertPage_ != 0 &&
        (FreeBytes(pager, insertPage_) < kWorthTrying || SlotCount(pager, insertPage_) >= kMaxSlots)) {
        free.Remove(insertPage_);
    }
    insertPage_ = 0;
    const std::vector<PageNumber> pages = free.Pages();
    int tried = 0;
    for (auto page = pages.rbegin(); page != pages.rend() && tried < kPagesToTry; ++page, ++tried) {
        CheckDataPage(pager, *page);
        if (U32(pager.Read(*page) + 4) != page_)
            throw pager.Damaged(*page, "a page belongs to another table");
        if (HasRoom(pager, *page, size)) {
            insertPage_ = *page;
            return insertPage_;
        }
        if (FreeBytes(pager, *page) < kWorthTrying || SlotCount(pager, *page) >= kMaxSlots)
            free.Remove(*page);
    }
    return std::nullopt;
}

RowId TableStore::PlaceRow(std::span<const std::byte> bytes, std::uint16_t flags) {
    Pager& pager = store_.Pages();
    if (const auto page = PageWithRoom(bytes.size())) {
        return {*page, static_cast<std::uint8_t>(AppendRow(pager, *page, bytes, flags))};
    }
    const PageNumber page = store_.Allocator().Allocate();
    FormatDataPage(pager, page, page_);
    const unsigned slot = AppendRow(pager, page, bytes, flags);
    OwnedPages().Add(page, store_.Allocator());
    FreePages().Add(page, store_.Allocator());
    insertPage_ = page;
    return {page, static_cast<std::uint8_t>(slot)};
}

std::vector<std::byte> TableStore::StoreLong(std::size_t position, const Value& value) {
    const ColumnDefinition& column = stored_.table.columns[position];
    std::vector<std::byte> data;
    if (const auto* text = std::get_if<std::string>(&value)) {
        EncodeText(*text, true, data);
    } else {
        data = std::get<Bytes>(value);
    }
    const LongColumn* const maps = LongMaps(column.number);
    return WriteLongValue(store_.Pages(), store_.Allocator(),
                          maps != nullptr ? UsageMap{store_.Pages(), maps->ownedMap} : UsageMap{},
                          maps != nullptr ? UsageMap{store_.Pages(), maps->freeMap} : UsageMap{}, data);
}

void TableStore::FreeLong(std::size_t position, std::span<const std::byte> stored) {
    const LongColumn* const maps = LongMaps(stored_.table.columns[position].number);
    if (maps == nullptr) return;
    FreeLongValue(store_.Pages(), store_.Allocator(), UsageMap{store_.Pages(), maps->ownedMap},
                  UsageMap{store_.Pages(), maps->freeMap}, stored);
}

RowId TableStore::Insert(std::span<const Value> given) {
    CheckWritable();
    const auto& columns = stored_.table.columns;
    if (given.size() != columns.size())
        throw Fault{fault::kInvalidCall, "a record needs one value for each column"};
    std::vector<Value> values;
    values.reserve(given.size());
    std::uint32_t autoNumber = counts_.autoNumber;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (columns[i].autoNumber && columns[i].type == ColumnType::Long) {
            if (IsNull(given[i])) {
                values.emplace_back(static_cast<std::int32_t>(++autoNumber));
                continue;
            }
            Value& value = values.emplace_back(ConformValue(columns[i], given[i]));
            if (const auto number = std::get<std::int32_t>(value); number > 0) {
                autoNumber = std::max(autoNumber, static_cast<std::uint32_t>(number));
            }
            continue;
        }
        CheckRules(i, values.emplace_back(ConformValue(columns[i], given[i])));
    }
    bool allNull = false;
    for (std::size_t i = 0; i < stored_.indexes.size(); ++i) {
        MakeKey(i, values, keys_[i], allNull);
        CheckUnique(i, keys_[i], allNull, nullptr, values);
    }

    RowId row;
    store_.Change([&] {
        builder_.Begin(stored_);
        for (std::size_t i = 0; i < columns.size(); ++i) {
            if (IsLong(columns[i]) && !IsNull(values[i])) {
                builder_.PutRaw(columns[i], StoreLong(i, values[i]));
            } else {
                builder_.Put(columns[i], values[i]);
            }
        }
        row = PlaceRow(builder_.Finish(), 0);
        for (std::size_t i = 0; i < stored_.indexes.size(); ++i) {
            if (keys_[i].empty()) continue;
            AppendRowId(row, keys_[i]);
            if (Tree(i).Insert(keys_[i])) ++counts_.distinct[i];
        }
        ++counts_.rows;
        counts_.autoNumber = autoNumber;
        counts_.changed = true;
    });
    return row;
}

bool TableStore::PatchInPlace(RowId row, std::span<const std::size_t> positions,
                              std::span<const Value> values) {
    // Values of fixed length that no index holds are written over the old ones: nothing moves, nothing can
    // fail half way, so no undo is needed either.
    if (!store_.Pages().InTransaction()) return false;
    const Home home = Locate(row);
    const RowShape shape = ParseRow(store_.Pages(), home.page, home.bytes, stored_);
    if (shape.columnCount != stored_.maxColumns) return false;
    for (std::size_t i = 0; i < positions.size(); ++i) {
        const ColumnDefinition& column = stored_.table.columns[positions[i]];
        if (!column.fixedLength || column.type == ColumnType::Boolean || IsNull(values[i])) return false;
        if (2 + std::size_t{column.fixedOffset} + column.byteLength > shape.maskAt) return false;
        if (indexed_[positions[i]]) return false;
    }
    builder_.Begin(stored_);
    for (std::size_t i = 0; i < positions.size(); ++i)
        builder_.Put(stored_.table.columns[positions[i]], values[i]);
    const std::span<const std::byte> image = builder_.FixedArea();
    const std::size_t begin = static_cast<std::size_t>(shape.bytes.data() - store_.Pages().Read(home.page));
    std::byte* const bytes = store_.Pages().Write(home.page) + begin;
    for (std::size_t position : positions) {
        const ColumnDefinition& column = stored_.table.columns[position];
        std::memcpy(bytes + 2 + column.fixedOffset, image.data() + 2 + column.fixedOffset, column.byteLength);
        bytes[shape.maskAt + column.number / 8] |= static_cast<std::byte>(1U << (column.number % 8));
    }
    return true;
}

void TableStore::Update(RowId row, std::span<const std::size_t> positions, std::span<const Value> given) {
    CheckWritable();
    const auto& columns = stored_.table.columns;
    if (positions.size() != given.size())
        throw Fault{fault::kInvalidCall, "an update needs one value for each column"};
    std::vector<Value> changes;
    changes.reserve(given.size());
    for (std::size_t i = 0; i < positions.size(); ++i) {
        CheckRules(positions[i], changes.emplace_back(ConformValue(columns.at(positions[i]), given[i])));
    }
    if (PatchInPlace(row, positions, changes)) return;

    Pager& pager = store_.Pages();
    const Home home = Locate(row);
    // Copied: storing the new values changes pages.
    const std::vector<std::byte> oldBytes(home.bytes.begin(), home.bytes.end());
    const RowShape shape = ParseRow(pager, home.page, oldBytes, stored_);
    std::vector<Value> oldValues(columns.size());
    std::vector<Value> values(columns.size());
    std::vector<bool> changed(columns.size(), false);
    for (std::size_t i = 0; i < positions.size(); ++i)
        changed[positions[i]] = true;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (!IsLong(columns[i]) || changed[i] || indexed_[i]) oldValues[i] = FieldValue(shape, home.page, i);
        values[i] = oldValues[i];
    }
    for (std::size_t i = 0; i < positions.size(); ++i) {
        const std::size_t at = positions[i];
        values[at] = std::move(changes[i]);
        if (values[at] == oldValues[at]) changed[at] = false;  // a long value that stays is kept as it is
    }
    struct KeyChange {
        std::size_t index;
        std::string before, after;
    };
    std::vector<KeyChange> keyChanges;
    for (std::size_t i = 0; i < stored_.indexes.size(); ++i) {
        const auto& indexed = indexPositions_[i];
        if (std::none_of(indexed.begin(), indexed.end(), [&](std::size_t at) { return changed[at]; }))
            continue;
        bool newNull = false;
        KeyChange change{i, {}, {}};
        MakeKey(i, values, change.after, newNull);
        change.before = StoredKey(i, oldValues, row);
        if (change.before == change.after) continue;
        CheckUnique(i, change.after, newNull, &row, values);
        keyChanges.push_back(std::move(change));
    }

    store_.Change([&] {
        CheckDataPage(pager, home.page);
        CheckDataPage(pager, row.page);
        builder_.Begin(stored_);
        for (std::size_t i = 0; i < columns.size(); ++i) {
            if (!IsLong(columns[i])) {
                builder_.Put(columns[i], values[i]);
                continue;
            }
            const auto raw = RawField(shape, columns[i]);
            if (!changed[i]) {
                if (raw) builder_.PutRaw(columns[i], *raw);
                continue;
            }
            if (raw) FreeLong(i, *raw);
            if (!IsNull(values[i])) builder_.PutRaw(columns[i], StoreLong(i, values[i]));
        }
        const std::span<const std::byte> bytes = builder_.Finish();
        const auto fits = [&](PageNumber page, std::size_t freed) {
            return FreeBytes(pager, page) + freed >= bytes.size();
        };
        if (home.moved && fits(row.page, ReadSlot(pager, row.page, row.slot).Size())) {
            // There is room at home again.
            KillRow(pager, home.page, home.slot);
            ReplaceRow(pager, row.page, row.slot, bytes, 0);
            ReleaseIfEmpty(home.page);
        } else if (fits(home.page, oldBytes.size())) {
            ReplaceRow(pager, home.page, home.slot, bytes, home.moved ? kSlotHidden : 0);
        } else {
            if (insertPage_ == home.page) insertPage_ = 0;
            const RowId target = PlaceRow(bytes, kSlotHidden);
            if (home.moved) KillRow(pager, home.page, home.slot);
            std::byte pointer[4];
            PutU32(pointer, RowPointer::Of(target).value);
            ReplaceRow(pager, row.page, row.slot, pointer, kSlotOverflow);
            if (home.moved) ReleaseIfEmpty(home.page);
        }
        for (KeyChange& change : keyChanges) {
            IndexTree tree = Tree(change.index);
            if (!change.before.empty()) {
                AppendRowId(row, change.before);
                if (!tree.Remove(change.before)) {
                    throw pager.Damaged(stored_.indexes[change.index].root,
                                        "an index lacks the entry of a row");
                }
            }
            if (!change.after.empty()) {
                AppendRowId(row, change.after);
                if (tree.Insert(change.after)) ++counts_.distinct[change.index];
            }
            counts_.changed = true;
        }
    });
}

void TableStore::Delete(RowId row) {
    CheckWritable();
    Pager& pager = store_.Pages();
    const Home home = Locate(row);
    const std::vector<std::byte> bytes(home.bytes.begin(), home.bytes.end());
    const RowShape shape = ParseRow(pager, home.page, bytes, stored_);
    std::vector<Value> values(stored_.table.columns.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (!IsLong(stored_.table.columns[i]) || indexed_[i]) values[i] = FieldValue(shape, home.page, i);
    }
    store_.Change([&] {
        CheckDataPage(pager, home.page);
        CheckDataPage(pager, row.page);
        for (std::size_t i = 0; i < stored_.indexes.size(); ++i) {
            keys_[i] = StoredKey(i, values, row);
            if (keys_[i].empty()) continue;
            AppendRowId(row, keys_[i]);
            if (!Tree(i).Remove(keys_[i])) {
                throw pager.Damaged(stored_.indexes[i].root, "an index lacks the entry of a row");
            }
        }
        for (std::size_t i = 0; i < stored_.table.columns.size(); ++i) {
            const ColumnDefinition& column = stored_.table.columns[i];
            if (!IsLong(column)) continue;
            if (const auto raw = RawField(shape, column)) FreeLong(i, *raw);
        }
        KillRow(pager, row.page, row.slot);
        if (home.moved) KillRow(pager, home.page, home.slot);
        ReleaseIfEmpty(row.page);
        if (home.moved && home.page != row.page) ReleaseIfEmpty(home.page);
        if (counts_.rows > 0) --counts_.rows;
        counts_.changed = true;
    });
}

void TableStore::ReleaseIfEmpty(PageNumber page) {
    Pager& pager = store_.Pages();
    UsageMap free = FreePages();
    if (AllDeleted(pager, page)) {
        free.Remove(page);
        OwnedPages().Remove(page);
        store_.Allocator().Free(page, kFreedData);
        if (insertPage_ == page) insertPage_ = 0;
    } else if (SlotCount(pager, page) < kMaxSlots && FreeBytes(pager, page) >= kWorthTrying) {
        free.Add(page, store_.Allocator());
    }
}

Value TableStore::DefaultOf(std::size_t position) const {
    const ColumnDefinition& column = stored_.table.columns.at(position);
    if (!column.properties.defaultValue) return Null{};
    std::string_view expression = text::TrimView(*column.properties.defaultValue);
    if (expression.starts_with('=')) expression = text::TrimView(expression.substr(1));
    if (expression.empty() || text::EqualsNoCase(expression, "Null")) return Null{};
    Value value = std::string(expression);
    const char first = expression.front();
    if (expression.size() >= 2 && first == expression.back() &&
        (first == '"' || first == '\'' || first == '#')) {
        const std::string inside(expression.substr(1, expression.size() - 2));
        value =
            first == '#' ? inside : text::ReplaceAll(inside, std::string(2, first), std::string(1, first));
    } else if (column.type == ColumnType::Boolean) {
        const bool on = text::EqualsNoCase(expression, "True") || text::EqualsNoCase(expression, "Yes") ||
                        text::EqualsNoCase(expression, "On") || expression == "-1" || expression == "1";
        return on;
    } else if (column.type == ColumnType::Text || column.type == ColumnType::Memo) {
        if (!text::IsNumeric(expression)) return Null{};  // a function: nothing that can be worked out here
    }
    const std::string& text = std::get<std::string>(value);
    try {
        if (column.type == ColumnType::Text || column.type == ColumnType::Memo)
            return ConformValue(column, value);
        if (column.type == ColumnType::DateTime) {
            // A date without its "#" is meant as the date, though a strict reader would divide.
            if (const auto date = text::TextToDate(text, 1900)) return DateTime{*date};
        }
        if (const auto number = text::NumericValue(text)) return ConformValue(column, *number);
    } catch (const Fault&) {
        return Null{};  // a default that does not suit its column is none
    }
    return Null{};
}

ColumnDefinition TableStore::PlanColumn(const NewColumn& column) {
    ColumnDefinition planned;
    planned.name = column.name;
    planned.type = column.type;
    planned.autoNumber = column.autoNumber;
    planned.precision = column.precision;
    planned.scale = column.scale;
    planned.properties = column.properties;
    planned.fixedLength = column.type != ColumnType::Memo && column.type != ColumnType::Ole &&
                          column.type != ColumnType::Binary &&
                          (column.type != ColumnType::Text || column.fixedLength);
    switch (column.type) {
        case ColumnType::Text:
            planned.byteLength = static_cast<std::uint16_t>(2 * std::clamp(column.characters, 1, 255));
            planned.compressed = !column.fixedLength;
            break;
        case ColumnType::Binary:
            planned.byteLength = static_cast<std::uint16_t>(std::clamp(column.characters, 1, 510));
            break;
        case ColumnType::Boolean:
        case ColumnType::Byte:
            planned.byteLength = 1;
            break;
        case ColumnType::Integer:
            planned.byteLength = 2;
            break;
        case ColumnType::Long:
        case ColumnType::Single:
            planned.byteLength = 4;
            break;
        case ColumnType::Currency:
        case ColumnType::Double:
        case ColumnType::DateTime:
            planned.byteLength = 8;
            break;
        case ColumnType::Guid:
            planned.byteLength = 16;
            break;
        case ColumnType::Numeric:
            planned.byteLength = 17;
            break;
        default:
            break;
    }
    return planned;
}

void TableStore::AppendColumn(const NewColumn& column) {
    Pager& pager = store_.Pages();
    Flush();
    if (stored_.maxColumns >= 255) {
        throw Fault{fault::kUnsupported,
                    "table " + stored_.table.name + " has had 255 columns: compact it in Access first",
                    At(pager, column.name)};
    }
    ColumnDefinition planned = PlanColumn(column);
    if (planned.fixedLength && planned.type != ColumnType::Boolean &&
        stored_.fixedAreaEnd + planned.byteLength > pager.Format().maxRow - 64) {
        throw Fault{fault::kRecordTooLarge,
                    "the records of table " + stored_.table.name + " would get too large",
                    At(pager, column.name)};
    }
    LongColumn maps;
    if (IsLong(planned)) {
        // On the page of the table's own maps when it has room for both, else on a page of their own.
        const std::vector<std::byte> empty = UsageMap::EmptyRow();
        PageNumber page = stored_.ownedMap.Page();
        CheckDataPage(pager, page);
        if (SlotCount(pager, page) + 2 > kMaxSlots || FreeBytes(pager, page) < 2 * (empty.size() + 2)) {
            page = store_.Allocator().Allocate();
            FormatDataPage(pager, page, 0);
        }
        maps.ownedMap = RowPointer::Of(page, AppendRow(pager, page, empty));
        maps.freeMap = RowPointer::Of(page, AppendRow(pager, page, empty));
    }
    std::vector<std::byte> bytes = WithColumn(stored_, planned, IsLong(planned) ? &maps : nullptr);
    WriteDefinition(pager, store_.Allocator(), stored_.chain, bytes);
    Reload();
}

void TableStore::Flush() {
    if (!counts_.changed) return;
    const Layout& layout = store_.Pages().Format();
    std::byte* const page = store_.Pages().Write(page_);
    const auto put = [&](std::size_t at, std::uint32_t value) {
        PutU32(stored_.bytes.data() + at, value);
        if (at + 4 <= layout.pageSize) PutU32(page + at, value);
    };
    put(layout.rowCountAt, counts_.rows);
    put(layout.autoNumberAt, counts_.autoNumber);
    for (std::size_t i = 0; i < stored_.indexes.size(); ++i) {
        put(stored_.indexes[i].countBlockAt + 4, counts_.distinct[i]);
    }
    counts_.changed = false;
}

void TableStore::RestoreCounts(const Counts& counts) {
    counts_ = counts;
    insertPage_ = 0;
}

}  // namespace zenvora::jet::detail
