#include "platform/jet/detail/verify_catalog.h"

#include <algorithm>

#include "platform/fault.h"
#include "platform/jet/detail/property_blob.h"
#include "platform/text/utf8.h"

namespace zenvora::jet::detail {

namespace {
constexpr PageNumber kCatalogPage = 2;
constexpr PageNumber kRightsPage = 3;
constexpr std::int32_t kRootContainer = 0x0F000000;
constexpr std::int32_t kTableType = 1;
constexpr PageNumber kPageMask = 0x00FFFFFF;
constexpr const char* kCatalogName = "MSysObjects";

PageNumber DefinitionOf(std::int32_t id) {
    return static_cast<PageNumber>(id) & kPageMask;
}

std::int32_t NumberOf(const Value& value) {
    const auto* const number = std::get_if<std::int32_t>(&value);
    return number != nullptr ? *number : 0;
}
}  // namespace

Spot CatalogCheck::At(const Entry& entry) const {
    return Spot{kCatalogName, {}, -1, -1}.On(entry.row.page, entry.row.slot);
}

bool CatalogCheck::Run() {
    TableCheck catalog(book_, kCatalogName, kCatalogPage);
    if (!catalog.Run() || !ReadEntries(catalog)) {
        findings_.Error({}, "the catalog cannot be read, so the tables were not looked at");
        return false;
    }
    CheckEntries();
    CheckCatalogIndexes(catalog);
    CheckProperties(catalog);
    bool allSeen = true;
    std::set<PageNumber> seen{kCatalogPage};
    for (const Entry& entry : entries_) {
        if (!entry.table || !seen.insert(DefinitionOf(entry.id)).second) continue;
        TableCheck table(book_, entry.name, DefinitionOf(entry.id));
        if (!table.Run()) {
            allSeen = false;
        } else if (DefinitionOf(entry.id) == kRightsPage) {
            CheckRights(table);
        }
        book_.Pages().Trim();
    }
    return allSeen;
}

bool CatalogCheck::ReadEntries(TableCheck& catalog) {
    const TableDefinition& definition = catalog.Definition().table;
    const auto id = definition.FindColumn("Id");
    const auto parent = definition.FindColumn("ParentId");
    const auto name = definition.FindColumn("Name");
    const auto type = definition.FindColumn("Type");
    if (!id || !parent || !name || !type) {
        findings_.Error({kCatalogName, {}, kCatalogPage, -1},
                        "the catalog lacks one of its columns Id, ParentId, Name and Type");
        return false;
    }
    for (const TableCheck::Row& row : catalog.Rows()) {
        if (!row.readable) continue;
        Entry entry;
        entry.row = row.id;
        entry.id = NumberOf(catalog.ValueOf(row, *id));
        entry.parent = NumberOf(catalog.ValueOf(row, *parent));
        entry.table = NumberOf(catalog.ValueOf(row, *type)) == kTableType;
        if (const Value text = catalog.ValueOf(row, *name); std::holds_alternative<std::string>(text))
            entry.name = std::get<std::string>(text);
        entries_.push_back(std::move(entry));
    }
    return true;
}

void CatalogCheck::CheckEntries() {
    std::set<std::int32_t> ids{kRootContainer};
    std::set<PageNumber> definitions;
    std::set<std::pair<std::int32_t, std::string>> names;
    for (const Entry& entry : entries_) {
        if (!ids.insert(entry.id).second)
            findings_.Error(At(entry), "the object " + entry.name + " has the number of another one");
        if (entry.table && !definitions.insert(DefinitionOf(entry.id)).second)
            findings_.Error(At(entry), "the table " + entry.name + " has the definition of another one");
        if (entry.name.empty()) findings_.Error(At(entry), "an object has no name");
        if (!names.emplace(entry.parent, text::Upper(entry.name)).second)
            findings_.Error(At(entry), "there are two objects with the name " + entry.name);
    }
    for (const Entry& entry : entries_) {
        if (!ids.contains(entry.parent))
            findings_.Note(At(entry), "the object " + entry.name + " lies in a container that is not there");
    }
    const Spot spot{kCatalogName, {}, kCatalogPage, -1};
    if (!definitions.contains(kCatalogPage)) findings_.Error(spot, "the catalog does not name itself");
    if (!definitions.contains(kRightsPage))
        findings_.Error(spot, "the catalog does not name the table of rights");
}

void CatalogCheck::CheckCatalogIndexes(TableCheck& catalog) {
    // Access looks its objects up by these two.
    const TableDefinition& definition = catalog.Definition().table;
    const auto has = [&](const std::vector<std::string>& columns) {
        return std::any_of(definition.indexes.begin(), definition.indexes.end(), [&](const auto& index) {
            if (index.columns.size() != columns.size()) return false;
            for (std::size_t i = 0; i < columns.size(); ++i) {
                const auto position = definition.FindColumn(columns[i]);
                if (!position || definition.columns[*position].number != index.columns[i].column)
                    return false;
            }
            return true;
        });
    };
    const Spot spot{kCatalogName, {}, kCatalogPage, -1};
    if (!has({"Id"})) findings_.Error(spot, "the catalog has no index of its numbers");
    if (!has({"ParentId", "Name"})) findings_.Error(spot, "the catalog has no index of its names");
}

bool CatalogCheck::PropertiesReadable(const Bytes& bytes) const {
    try {
        return !PropertyBlob(bytes, book_.FileLayout().codePage).Broken();
    } catch (const Fault& fault) {
        if (fault.number != fault::kUnsupported) throw;
        return false;  // a text of a code page that is not known
    }
}

void CatalogCheck::CheckProperties(TableCheck& catalog) {
    const auto column = catalog.Definition().table.FindColumn("LvProp");
    if (!column) return;
    for (const TableCheck::Row& row : catalog.Rows()) {
        if (!row.readable) continue;
        const Value value = catalog.ValueOf(row, *column);
        const auto* const bytes = std::get_if<Bytes>(&value);
        if (bytes == nullptr || bytes->empty() || PropertiesReadable(*bytes)) continue;
        findings_.Note(Spot{kCatalogName, {}, -1, -1}.On(row.id.page, row.id.slot),
                       "the properties of the object have a form that is not known here");
        book_.Pages().Trim();
    }
}

void CatalogCheck::CheckRights(TableCheck& rights) {
    const auto object = rights.Definition().table.FindColumn("ObjectId");
    if (!object) {
        findings_.Error({"MSysACEs", {}, kRightsPage, -1}, "the table of rights lacks its column ObjectId");
        return;
    }
    std::set<std::int32_t> known;
    for (const TableCheck::Row& row : rights.Rows()) {
        if (row.readable) known.insert(NumberOf(rights.ValueOf(row, *object)));
    }
    for (const Entry& entry : entries_) {
        if (entry.table && !known.contains(entry.id)) {
            findings_.Note(At(entry),
                           "nobody has rights to table " + entry.name + ": Access may refuse to open it");
        }
    }
}

}  // namespace zenvora::jet::detail
