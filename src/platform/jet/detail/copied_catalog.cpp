#include "platform/jet/detail/copied_catalog.h"

#include "platform/text/utf8.h"

namespace zenvora::jet::detail {

namespace {
constexpr std::int32_t kTablesContainer = 0x0F000001;
constexpr std::int32_t kFullRights = 0x000FFEFF;

std::size_t Position(const TableStore& table, std::string_view column) {
    if (const auto position = table.Definition().FindColumn(column)) return *position;
    throw Fault{fault::kDamaged, "the table " + table.Definition().name + " lacks its column " +
                                     std::string(column) + ": restore the file from a backup copy"};
}
}  // namespace

bool CatalogObject::IsEngineTable() const noexcept {
    if (type != kLocalTable || IsUserTable()) return false;
    for (const char* each : {"MSysObjects", "MSysACEs", "MSysQueries", "MSysRelationships"}) {
        if (text::EqualsNoCase(name, each)) return true;
    }
    return false;
}

std::vector<CatalogObject> CatalogObjects(const TableStore& catalog) {
    const std::size_t id = Position(catalog, "Id");
    const std::size_t parent = Position(catalog, "ParentId");
    const std::size_t name = Position(catalog, "Name");
    const std::size_t type = Position(catalog, "Type");
    const std::size_t flags = Position(catalog, "Flags");
    std::vector<CatalogObject> objects;
    catalog.Scan([&](const RowView& view) {
        CatalogObject object;
        object.row = view.Id();
        object.id = static_cast<std::int32_t>(view.Number(id));
        object.parent = static_cast<std::int32_t>(view.Number(parent));
        object.type = static_cast<std::int32_t>(view.Number(type));
        object.flags = static_cast<std::uint32_t>(static_cast<std::int32_t>(view.Number(flags)));
        view.AppendText(name, object.name);
        objects.push_back(std::move(object));
        return true;
    });
    return objects;
}

std::vector<RowId> AllRows(const TableStore& table) {
    std::vector<RowId> rows;
    table.Scan([&](const RowView& view) {
        rows.push_back(view.Id());
        return true;
    });
    return rows;
}

Value UsualOwner(const TableStore& catalog) {
    const std::size_t owner = Position(catalog, "Owner");
    for (const CatalogObject& object : CatalogObjects(catalog)) {
        if (object.type == kDatabaseObject) return catalog.Read(object.row)[owner];
    }
    return Null{};
}

void AddUsualRights(Store& store, const std::set<std::int32_t>& objects) {
    TableStore rights(store, "MSysACEs", kRightsPage);
    std::set<std::int32_t> present;
    std::vector<Value> accounts;
    const std::size_t object = Position(rights, "ObjectId");
    const std::size_t account = Position(rights, "SID");
    rights.Scan([&](const RowView& view) {
        const auto id = static_cast<std::int32_t>(view.Number(object));
        present.insert(id);
        if (id == kTablesContainer) accounts.push_back(view.Get(account));
        return true;
    });
    for (std::int32_t id : objects) {
        if (present.contains(id)) continue;
        for (const Value& sid : accounts) {
            NamedRow row(rights);
            row.Set("ObjectId", id);
            row.Set("SID", sid);
            row.Set("ACM", kFullRights);
            row.Set("FInheritable", false);
            rights.Insert(row.values);
        }
    }
    rights.Flush();
}

const char* KindNotCarried(const CatalogObject& object) {
    switch (object.type) {
        case kForm:
            return "form";
        case kMacro:
            return "macro";
        case kReport:
            return "report";
        case kModule:
            return "module";
        case kDataAccessPage:
            return "data access page";
        case kOdbcTable:
        case kLinkedTable:
            return "linked table";
        case kLocalTable:
        case kDatabaseObject:
        case kContainer:
        case kQuery:
        case kRelationship:
        case kUser:
        case kDocument:
            return "";
        default:
            return "object";
    }
}

void NamedRow::Take(const TableStore& from, const std::vector<Value>& row) {
    for (std::size_t i = 0; i < row.size(); ++i) {
        const std::string& name = from.Definition().columns[i].name;
        if (const auto position = table_.Definition().FindColumn(name)) {
            values[*position] = row[i];
        } else if (!IsNull(row[i])) {
            throw Fault{fault::kUnsupported, "the system table " + table_.Definition().name +
                                                 " has a column " + name + " that is not known here"};
        }
    }
}

void NamedRow::Set(std::string_view column, Value value) {
    values[Position(table_, column)] = std::move(value);
}

const Value& NamedRow::Get(std::string_view column) const {
    return values[Position(table_, column)];
}

}  // namespace zenvora::jet::detail
