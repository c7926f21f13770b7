#include <algorithm>
#include <set>

#include "platform/fault.h"
#include "platform/jet/detail/verify_table.h"

namespace zenvora::jet::detail {

namespace {
constexpr std::size_t kPageHeader = 8;  // of every page of a definition
constexpr std::size_t kMostIndexes = 32;

bool IsLong(const ColumnDefinition& column) {
    return column.type == ColumnType::Memo || column.type == ColumnType::Ole;
}
}  // namespace

bool TableCheck::CheckDefinition() {
    if (!book_.InFile(page_)) {
        findings_.Error(spot_, "the catalog places the definition of the table on page " +
                                   std::to_string(page_) + ", which is not in the file");
        return false;
    }
    try {
        stored_ = ReadDefinition(book_.Pages(), page_);
    } catch (const Fault& fault) {
        if (fault.number != fault::kDamaged && fault.number != fault::kUnsupported) throw;
        findings_.Error(At(fault.place.page >= 0 ? static_cast<PageNumber>(fault.place.page) : page_),
                        "the definition of the table cannot be read, so its rows were not looked at: " +
                            fault.description.substr(0, fault.description.find(". ")));
        return false;
    }
    stored_.table.name = spot_.table;
    CheckChain();
    CheckColumns();
    CheckLogicalIndexes();
    return true;
}

void TableCheck::CheckChain() {
    const PageBook::User user = book_.NewUser("the definition of table " + spot_.table);
    book_.ClaimAll(stored_.chain, user, spot_);
    if (const std::size_t end = stored_.endMarkAt + 2; end != stored_.bytes.size()) {
        findings_.Error(At(page_), "the definition states a length of " +
                                       std::to_string(stored_.bytes.size()) + " bytes and ends after " +
                                       std::to_string(end));
    }
    const std::size_t payload = layout_.pageSize - kPageHeader;
    std::size_t rest = stored_.bytes.size() - kPageHeader;
    for (PageNumber page : stored_.chain) {
        const std::size_t here = std::min(rest, payload);
        rest -= here;
        if (here == 0)
            findings_.Note(At(page), "the page holds nothing of the definition that it belongs to");
        if (layout_.version == kJet3.version) continue;  // no free word there
        const std::size_t free = payload - here > kPageHeader ? payload - here - kPageHeader : 0;
        if (const std::size_t stated = U16(book_.Pages().Read(page) + 2); stated != free) {
            findings_.Note(At(page), "the page of the definition claims " + std::to_string(stated) +
                                         " free bytes and has " + std::to_string(free));
        }
    }
}

void TableCheck::CheckColumns() {
    struct Place {
        std::size_t begin, end;
        const ColumnDefinition* column;
    };
    std::vector<Place> places;
    std::set<std::string> names;
    for (const ColumnDefinition& column : stored_.table.columns) {
        if (column.name.empty()) findings_.Error(At(page_), "a column has no name");
        if (!names.insert(column.name).second)
            findings_.Error(At(page_), "two columns have the name " + column.name);
        const std::size_t size = FixedSize(column.type);
        if (size != 0 && column.byteLength != size) {
            findings_.Error(At(page_), "column " + column.name + " states a length of " +
                                           std::to_string(column.byteLength) + " bytes; its type takes " +
                                           std::to_string(size));
        }
        if (column.fixedLength && column.type != ColumnType::Boolean) {
            places.push_back(
                {column.fixedOffset, std::size_t{column.fixedOffset} + column.byteLength, &column});
        }
    }
    std::sort(places.begin(), places.end(), [](const Place& a, const Place& b) { return a.begin < b.begin; });
    for (std::size_t i = 1; i < places.size(); ++i) {
        if (places[i - 1].end > places[i].begin) {
            findings_.Error(At(page_), "the values of columns " + places[i - 1].column->name + " and " +
                                           places[i].column->name + " overlap");
        }
    }
    CheckLongColumns();
}

void TableCheck::CheckLongColumns() {
    std::set<std::uint16_t> listed;
    for (const LongColumn& each : stored_.longColumns) {
        if (!listed.insert(each.column).second) {
            findings_.Error(At(page_),
                            "the maps of long column " + std::to_string(each.column) + " are listed twice");
        }
    }
    for (const ColumnDefinition& column : stored_.table.columns) {
        if (IsLong(column) && !column.fixedLength && !listed.contains(column.number))
            findings_.Error(At(page_), "column " + column.name + " has no maps for its long values");
    }
}

void TableCheck::CheckLogicalIndexes() {
    if (stored_.indexes.size() > kMostIndexes) {
        findings_.Note(At(page_), "the table has " + std::to_string(stored_.indexes.size()) +
                                      " indexes: Access allows 32");
    }
    const std::size_t count = U32(stored_.bytes.data() + layout_.logicalCountAt);
    const std::size_t first = stored_.realIndexesAt + stored_.indexes.size() * layout_.realIndexBlock;
    const std::size_t numberAt = layout_.version == kJet3.version ? 0 : 4;
    std::set<std::uint32_t> numbers;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t at = first + i * layout_.logicalIndexBlock + numberAt;
        if (at + 4 > stored_.bytes.size()) return;
        if (!numbers.insert(U32(stored_.bytes.data() + at)).second)
            findings_.Error(At(page_), "two indexes of the table have the same number");
    }
    for (std::size_t i = 0; i < stored_.indexes.size(); ++i) {
        if (stored_.indexes[i].columns.empty()) findings_.Error(At(page_), "an index has no columns");
        if (stored_.table.indexes[i].names.empty()) findings_.Note(At(page_), "an index has no name");
    }
}

}  // namespace zenvora::jet::detail
