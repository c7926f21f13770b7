#include "platform/jet/detail/verify_index.h"

#include <algorithm>

#include "platform/fault.h"
#include "platform/jet/detail/key_codec.h"

namespace zenvora::jet::detail {

namespace {
constexpr std::size_t kRowIdSize = 4;
constexpr std::size_t kChildSize = 4;
constexpr std::size_t kMaxDepth = 20;  // three levels hold millions of entries

std::string_view KeyPart(std::string_view entry) {
    return entry.substr(0, entry.size() - kRowIdSize);
}
}  // namespace

void TableCheck::CheckIndexes() {
    for (std::size_t i = 0; i < stored_.indexes.size(); ++i) {
        Spot spot = spot_;
        const auto& names = stored_.table.indexes[i].names;
        spot.index = names.empty() ? "number " + std::to_string(i) : names.front();
        IndexCheck(book_, *this, page_, i, spot).Run();
        book_.Pages().Trim();
    }
}

IndexCheck::IndexCheck(PageBook& book, TableCheck& table, PageNumber definition, std::size_t index, Spot spot)
    : book_(book),
      layout_(book.FileLayout()),
      findings_(book.Found()),
      table_(table),
      spot_(std::move(spot)),
      definition_(definition),
      stored_(table.Definition().indexes[index]),
      index_(table.Definition().table.indexes[index]),
      matched_(table.Rows().size()) {
    const auto& columns = table.Definition().table.columns;
    for (const IndexColumn& each : stored_.columns) {
        for (std::size_t i = 0; i < columns.size(); ++i) {
            if (columns[i].number == each.column) {
                positions_.push_back(i);
                keysKnown_ = keysKnown_ && CanEncodeKey(columns[i]);
            }
        }
    }
}

void IndexCheck::Run() {
    ReadOwnPages();
    if (!book_.InFile(stored_.root)) {
        findings_.Error(spot_, "the root of the index is page " + std::to_string(stored_.root) +
                                   ", which is not in the file");
        return;
    }
    Walk(stored_.root, 0);
    CheckLeafLinks();
    FindMissingRows();
    if (owned_ && !broken_) {
        for (PageNumber page : *owned_) {
            if (!walked_.contains(page) && book_.BelongsTo(page, user_))
                Fail(page, "the page is the index's own and not part of its tree");
        }
    }
    if (keysNotCompared_ > 0) {
        findings_.Note(spot_, std::to_string(keysNotCompared_) +
                                  " keys were not compared: their sort order is not known here");
    }
}

void IndexCheck::ReadOwnPages() {
    user_ = book_.NewUser("index " + spot_.index + " of table " + spot_.table);
    owned_ = book_.ReadMap(stored_.ownedMap, "the pages of the index", spot_);
    if (owned_) book_.ClaimAll(*owned_, user_, spot_);
}

// ---------------------------------------------------------------- the tree

std::optional<IndexCheck::Page> IndexCheck::Read(PageNumber number) {
    const std::byte* const bytes = book_.Pages().Read(number);
    const unsigned type = U8(bytes);
    if (type != kIndexLeaf && type != kIndexNode) {
        Fail(number,
             "a page of the index is expected, and it is of another kind (" + std::to_string(type) + ")");
        return std::nullopt;
    }
    if (const std::uint32_t owner = U32(bytes + 4); owner != definition_)
        Fail(number, "the page names another owner (page " + std::to_string(owner) + ")");
    Page page;
    page.bytes.assign(bytes, bytes + layout_.pageSize);
    page.leaf = type == kIndexLeaf;
    page.prefix = layout_.prefixSize == 1 ? U8(bytes + layout_.prefixAt) : U16(bytes + layout_.prefixAt);
    const std::size_t area = layout_.pageSize - layout_.entriesAt;
    const std::size_t trailer = kRowIdSize + (page.leaf ? 0 : kChildSize);
    std::size_t begin = 0;
    for (std::size_t bit = 0; bit < layout_.maskSize * 8; ++bit) {
        const unsigned byte = U8(bytes + layout_.maskAt + bit / 8);
        if (byte == 0) {
            bit |= 7;
            continue;
        }
        if ((byte >> (bit % 8) & 1U) == 0) continue;
        const bool first = page.ends.empty();
        const std::size_t size = bit - begin + (first ? 0 : page.prefix);
        if (bit > area || size <= trailer || (first && page.prefix > size)) {
            Fail(number, "the marks of the entries do not fit the page");
            return std::nullopt;
        }
        page.ends.push_back(bit);
        begin = bit;
    }
    const std::size_t stated = U16(bytes + 2);
    const std::string counts =
        "the page claims " + std::to_string(stated) + " free bytes and has " + std::to_string(area - begin);
    if (stated > area - begin) Fail(number, counts);
    if (stated < area - begin) findings_.Note(spot_.On(number), counts);
    return page;
}

void IndexCheck::ReadEntry(const Page& page, std::size_t index, std::string& entry) const {
    const char* const area = reinterpret_cast<const char*>(page.bytes.data() + layout_.entriesAt);
    entry.assign(area, index == 0 ? 0 : page.prefix);
    const std::size_t begin = index == 0 ? 0 : page.ends[index - 1];
    entry.append(area + begin, page.ends[index] - begin);
}

std::optional<std::string> IndexCheck::Walk(PageNumber number, std::size_t depth) {
    const auto stop = [&](const char* sentence) {
        Fail(number, sentence);
        broken_ = true;
        return std::nullopt;
    };
    if (!book_.InFile(number)) return stop("the tree of the index leads behind the end of the file");
    if (depth >= kMaxDepth) return stop("the tree of the index is too deep");
    if (!walked_.insert(number).second) return stop("the tree of the index comes to the page twice");
    if (!book_.BelongsTo(number, user_)) {
        if (owned_) Fail(number, "the page is in the tree of the index and not in the map of its pages");
        if (!book_.Claim(number, user_, spot_)) {
            broken_ = true;
            return std::nullopt;
        }
    }
    const std::optional<Page> page = Read(number);
    if (!page) {
        broken_ = true;
        return std::nullopt;
    }
    book_.Pages().Trim();
    return page->leaf ? WalkLeaf(number, *page, depth) : WalkNode(number, *page, depth);
}

std::optional<std::string> IndexCheck::WalkLeaf(PageNumber number, const Page& page, std::size_t depth) {
    if (leaves_.empty()) leafDepth_ = depth;
    if (depth != leafDepth_) Fail(number, "the leaves of the index lie at different depths");
    leaves_.push_back(
        {number, U32(page.bytes.data() + layout_.previousAt), U32(page.bytes.data() + layout_.nextAt)});
    if (page.ends.empty()) {
        if (number != stored_.root) Fail(number, "a leaf of the index is empty");
        return std::nullopt;
    }
    bool ordered = true;
    bool unique = true;
    std::string entry;
    for (std::size_t i = 0; i < page.ends.size(); ++i) {
        ReadEntry(page, i, entry);
        if (!previous_.empty()) {
            if (ordered && entry <= previous_) {
                Fail(number, "the entries of the index are out of order");
                ordered = false;
            }
            const std::string_view key = KeyPart(entry);
            const bool allNull =
                key.size() == positions_.size() &&
                std::all_of(key.begin(), key.end(), [](char c) { return c == '\0' || c == '\xFF'; });
            if (unique && (index_.unique || index_.primaryKey) && !allNull && key == KeyPart(previous_)) {
                findings_.Error(spot_.On(RowIdOf(entry).page, RowIdOf(entry).slot),
                                "the key of the row is there twice, and the index is unique");
                unique = false;
            }
        }
        MatchRow(number, entry);
        previous_ = entry;
    }
    return entry;
}

std::optional<std::string> IndexCheck::WalkNode(PageNumber number, const Page& page, std::size_t depth) {
    const PageNumber tail = U32(page.bytes.data() + layout_.tailAt);
    if (page.ends.empty() && tail == 0) {
        Fail(number, "an upper page of the index has no pages below");
        broken_ = true;
        return std::nullopt;
    }
    std::vector<PageNumber> children;
    std::string entry;
    std::string before;
    std::optional<std::string> last;
    for (std::size_t i = 0; i < page.ends.size(); ++i) {
        ReadEntry(page, i, entry);
        const PageNumber child =
            U32BigEndian(reinterpret_cast<const std::byte*>(entry.data() + entry.size() - kChildSize));
        entry.resize(entry.size() - kChildSize);
        if (!before.empty() && entry <= before) Fail(number, "the entries of the index are out of order");
        before = entry;
        children.push_back(child);
        last = Walk(child, depth + 1);
        if (last && *last != entry) {
            Fail(number,
                 "the entry for page " + std::to_string(child) + " is not the last entry of that page");
        }
    }
    if (tail != 0) {
        children.push_back(tail);
        last = Walk(tail, depth + 1);
        if (last && !before.empty() && *last <= before)
            Fail(number, "the last page below holds entries that belong before it");
    }
    CheckSiblings(children);
    return last;
}

void IndexCheck::CheckSiblings(const std::vector<PageNumber>& children) {
    // Leaves are linked over the whole index, see CheckLeafLinks; upper pages among the children of a parent.
    for (std::size_t i = 0; i < children.size(); ++i) {
        if (!walked_.contains(children[i]) || !book_.BelongsTo(children[i], user_)) return;
        const std::byte* const page = book_.Pages().Read(children[i]);
        if (U8(page) != kIndexNode) return;
        const PageNumber previous = i == 0 ? 0 : children[i - 1];
        const PageNumber next = i + 1 == children.size() ? 0 : children[i + 1];
        if (U32(page + layout_.previousAt) != previous || U32(page + layout_.nextAt) != next)
            Fail(children[i], "the page is not linked with its neighbours");
    }
}

void IndexCheck::CheckLeafLinks() {
    if (broken_) return;
    for (std::size_t i = 0; i < leaves_.size(); ++i) {
        const PageNumber previous = i == 0 ? 0 : leaves_[i - 1].page;
        const PageNumber next = i + 1 == leaves_.size() ? 0 : leaves_[i + 1].page;
        if (leaves_[i].previous != previous || leaves_[i].next != next)
            Fail(leaves_[i].page, "the leaf is not linked with its neighbours");
    }
}

// ---------------------------------------------------------------- entries and rows

void IndexCheck::MatchRow(PageNumber page, std::string_view entry) {
    const RowId id = RowIdOf(entry);
    const auto& rows = table_.Rows();
    const auto row = std::lower_bound(rows.begin(), rows.end(), id,
                                      [](const TableCheck::Row& a, const RowId& b) { return a.id < b; });
    if (row == rows.end() || row->id != id) {
        Fail(page, "an entry names a row that is not there (page " + std::to_string(id.page) + ", row " +
                       std::to_string(id.slot) + ")");
        return;
    }
    const auto place = static_cast<std::size_t>(row - rows.begin());
    if (matched_[place]) {
        findings_.Error(spot_.On(id.page, id.slot), "the index has more than one entry for the row");
        return;
    }
    matched_[place] = true;
    if (!row->readable) return;
    std::size_t nulls = 0;
    const std::optional<std::string> key = KeyOf(*row, nulls);
    if (nulls == positions_.size() && index_.ignoreNulls) {
        findings_.Error(spot_.On(id.page, id.slot),
                        "the index leaves out Nulls, and has an entry for the row");
    } else if (nulls > 0 && (index_.required || index_.primaryKey)) {
        findings_.Error(spot_.On(id.page, id.slot), "the row has no value in a column that its key needs");
    }
    if (!key) {
        ++keysNotCompared_;
    } else if (*key != KeyPart(entry)) {
        findings_.Error(spot_.On(id.page, id.slot), "the entry of the row has another key than the row");
    }
}

void IndexCheck::FindMissingRows() {
    const auto& rows = table_.Rows();
    for (std::size_t i = 0; i < rows.size() && !broken_; ++i) {
        if (matched_[i] || !rows[i].readable) continue;
        std::size_t nulls = 0;
        static_cast<void>(KeyOf(rows[i], nulls));
        if (nulls == positions_.size() && index_.ignoreNulls) continue;
        findings_.Error(spot_.On(rows[i].id.page, rows[i].id.slot), "the row has no entry in the index");
    }
    if (broken_) {
        findings_.Error(spot_, "part of the index cannot be read: whether it knows all rows was not checked");
    }
}

std::optional<std::string> IndexCheck::KeyOf(const TableCheck::Row& row, std::size_t& nulls) {
    std::string key;
    nulls = 0;
    bool known = keysKnown_;
    for (std::size_t i = 0; i < positions_.size(); ++i) {
        const ColumnDefinition& column = table_.Definition().table.columns[positions_[i]];
        try {
            const Value value = table_.ValueOf(row, positions_[i]);
            if (IsNull(value)) ++nulls;
            if (known) AppendKey(column, value, stored_.columns[i].ascending, key);
        } catch (const Fault& fault) {
            if (fault.number != fault::kUnsupported) throw;
            known = false;  // a character without a weight, or of a code page that is not known
        }
    }
    if (!known) return std::nullopt;
    return key;
}

}  // namespace zenvora::jet::detail
