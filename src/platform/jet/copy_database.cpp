#include "platform/jet/copy_database.h"

#include <algorithm>
#include <set>

#include "platform/jet/detail/copied_catalog.h"
#include "platform/jet/detail/stored_rows.h"
#include "platform/jet/detail/table_plan.h"
#include "platform/text/utf8.h"

namespace zenvora::jet {

namespace detail {
namespace {
/// Of page 0: code page to creation date and what follows, in the masked area.
constexpr std::size_t kSettingsAt = 0x38;
constexpr std::size_t kSettingsEnd = 0x98;
/// Written bytes after which the copy commits: what a commit must hold in memory.
constexpr std::size_t kBatchBytes = std::size_t{16} << 20;

bool IsOld(const Pager& pager) {
    return pager.Format().version != kJet4.version;
}

/// Tables in which Access 97 keeps forms, modules and its own notes, in a form that no other version reads.
bool IsOfOldAccess(const std::string& name) {
    return text::EqualsNoCase(name, "MSysModules") || text::EqualsNoCase(name, "MSysModules2") ||
           text::EqualsNoCase(name, "MSysAccessObjects");
}

class Copier {
  public:
    Copier(Store& source, Store& target)
        : source_(source),
          target_(target),
          old_(IsOld(source.Pages())),
          sourceCatalog_(source, "MSysObjects", kCatalogPage),
          objects_(CatalogObjects(sourceCatalog_)) {}

    CopyReport Run() {
        for (const CatalogObject& object : objects_) {
            if (const std::string kind = KindNotCarried(object); !kind.empty())
                report_.leftBehind.push_back(kind + " " + object.name);
        }
        target_.Begin();
        // The account names in the rows of the catalog are scrambled in a way that hangs on the header.
        if (!old_) {
            std::copy_n(source_.Pages().Read(0) + kSettingsAt, kSettingsEnd - kSettingsAt,
                        target_.Pages().Write(0) + kSettingsAt);
        }
        CopyTables();
        CopyCatalog();
        CopySystemRows("MSysQueries", kQueriesPage);
        CopySystemRows("MSysRelationships", kRelationshipsPage);
        target_.Commit();
        const auto byName = [](const auto& a, const auto& b) { return a.name < b.name; };
        std::sort(report_.tables.begin(), report_.tables.end(), byName);
        std::sort(report_.queries.begin(), report_.queries.end());
        std::sort(report_.relationships.begin(), report_.relationships.end());
        return std::move(report_);
    }

  private:
    [[nodiscard]] bool Carries(const CatalogObject& object) const {
        if (*KindNotCarried(object) != '\0') return false;
        if (!old_) return true;
        switch (object.type) {
            case kLocalTable:
                return !IsOfOldAccess(object.name);
            case kQuery:
            case kRelationship:
                return true;
            case kDocument:
                return text::EqualsNoCase(object.name, "SummaryInfo") ||
                       text::EqualsNoCase(object.name, "UserDefined");
            default:
                return false;  // containers of objects of the old Access; the engine's own are there
        }
    }

    void CopyTables() {
        std::vector<const CatalogObject*> tables;
        for (const CatalogObject& object : objects_) {
            if (object.type != kLocalTable || object.IsEngineTable() || !Carries(object)) continue;
            tables.push_back(&object);
            pages_[object.DefinitionPage()] = target_.Allocator().Allocate();
        }
        for (const CatalogObject* object : tables)
            CopyTable(*object);
    }

    void CopyTable(const CatalogObject& object) {
        Pager& from = source_.Pages();
        StoredDefinition table = ReadDefinition(from, object.DefinitionPage());
        table.table.name = object.name;
        PlannedTable plan = PlanCopy(from, table, pages_);
        const PageNumber page = pages_.at(object.DefinitionPage());
        PlaceTable(target_.Pages(), target_.Allocator(), page, plan);

        TableWriter writer(target_.Pages(), target_.Allocator(), page);
        std::size_t written = 0;
        EachRow(from, source_.Allocator(), object.DefinitionPage(), table,
                [&](RowId row, const StoredFields& fields) {
                    const auto outcome = Add(writer, object.name, fields);
                    if (outcome.refusal != TableWriter::Refusal::None) {
                        const auto& names = table.table.indexes[outcome.index].names;
                        throw from.Damaged(row.page, "a row of table " + object.name +
                                                         " breaks the rule of its index " +
                                                         (names.empty() ? std::string() : names.front()));
                    }
                    written += writer.TakeWrittenBytes();
                    if (written < kBatchBytes) return;
                    written = 0;
                    target_.Commit();
                    target_.Begin();
                    target_.Pages().Trim();
                });
        std::uint32_t increment = 1;
        if (!old_) increment = U32(table.bytes.data() + kJet4.incrementAt);
        writer.Finish(table.autoNumber, increment == 0 ? 1 : increment);
        if (object.IsUserTable()) report_.tables.push_back({object.name, writer.Rows()});
    }

    TableWriter::Outcome Add(TableWriter& writer, const std::string& table, const StoredFields& fields) {
        try {
            return writer.Add(fields);
        } catch (Fault& fault) {
            if (fault.number == fault::kUnsupported) {
                fault.description =
                    "an index of table " + table + " cannot be built anew: " + fault.description;
                fault.place.file = source_.Pages().Path().string();
            }
            throw;
        }
    }

    [[nodiscard]] std::int32_t NewId(const CatalogObject& object) const {
        if (object.type != kLocalTable || object.IsEngineTable()) return object.id;
        const auto page = pages_.find(object.DefinitionPage());
        return page == pages_.end() ? object.id : static_cast<std::int32_t>(page->second);
    }

    void CopyCatalog() {
        TableStore catalog(target_, "MSysObjects", kCatalogPage);
        const std::vector<CatalogObject> present = CatalogObjects(catalog);
        const Value owner = UsualOwner(catalog);
        std::set<std::int32_t> carried;
        for (const CatalogObject& object : objects_) {
            const auto twin = std::find_if(present.begin(), present.end(), [&](const CatalogObject& each) {
                if (each.type != object.type) return false;
                return object.type == kLocalTable
                           ? object.IsEngineTable() && text::EqualsNoCase(each.name, object.name)
                           : each.id == object.id;
            });
            if (twin == present.end() && !Carries(object)) continue;
            carried.insert(NewId(object));
            CopyObject(catalog, object, twin == present.end() ? nullptr : &*twin, owner);
            if (object.type == kQuery) report_.queries.push_back(object.name);
            if (object.type == kRelationship) report_.relationships.push_back(object.name);
        }
        catalog.Flush();
        CopyRights(carried);
    }

    void CopyObject(TableStore& catalog, const CatalogObject& object, const CatalogObject* twin,
                    const Value& owner) {
        NamedRow row(catalog);
        if (old_) {
            // Only what says the same in both versions.
            if (twin != nullptr) return;
            const std::vector<Value> values = sourceCatalog_.Read(object.row);
            NamedRow all(catalog);
            all.Take(sourceCatalog_, values);
            for (const char* column : {"ParentId", "Name", "Type", "DateCreate", "DateUpdate", "Flags"})
                row.Set(column, all.Get(column));
            row.Set("Owner", owner);
            if (const auto* properties = std::get_if<Bytes>(&all.Get("LvProp")))
                row.Set("LvProp", NewerProperties(*properties));
        } else {
            row.Take(sourceCatalog_, sourceCatalog_.Read(object.row));
        }
        row.Set("Id", twin == nullptr ? NewId(object) : twin->id);
        if (twin == nullptr) {
            catalog.Insert(row.values);
            return;
        }
        std::vector<std::size_t> positions(row.values.size());
        for (std::size_t i = 0; i < positions.size(); ++i)
            positions[i] = i;
        catalog.Update(twin->row, positions, row.values);
    }

    [[nodiscard]] Value NewerProperties(const Bytes& properties) const {
        const PropertyBlob blob(properties, source_.Pages().Format().codePage);
        return blob.Broken() ? Value{Null{}} : Value{blob.InUtf16().Bytes()};
    }

    void CopyRights(const std::set<std::int32_t>& carried) {
        if (old_) {
            AddUsualRights(target_, carried);
            return;
        }
        TableStore rights(target_, "MSysACEs", kRightsPage);
        for (RowId row : AllRows(rights))
            rights.Delete(row);
        std::map<std::int32_t, std::int32_t> ids;
        for (const CatalogObject& object : objects_)
            ids[object.id] = NewId(object);
        const TableStore sourceRights(source_, "MSysACEs", kRightsPage);
        for (RowId id : AllRows(sourceRights)) {
            NamedRow row(rights);
            row.Take(sourceRights, sourceRights.Read(id));
            const auto* object = std::get_if<std::int32_t>(&row.Get("ObjectId"));
            if (object == nullptr) continue;
            const auto known = ids.find(*object);
            // Rights of objects that are long gone are of no use to anybody.
            if (known == ids.end() || !carried.contains(known->second)) continue;
            row.Set("ObjectId", known->second);
            rights.Insert(row.values);
        }
        rights.Flush();
    }

    void CopySystemRows(const char* name, PageNumber page) {
        const auto found = std::find_if(objects_.begin(), objects_.end(), [&](const CatalogObject& object) {
            return object.IsEngineTable() && text::EqualsNoCase(object.name, name);
        });
        if (found == objects_.end()) return;
        const TableStore from(source_, name, found->DefinitionPage());
        TableStore to(target_, name, page);
        for (RowId id : AllRows(from)) {
            NamedRow row(to);
            row.Take(from, from.Read(id));
            to.Insert(row.values);
        }
        to.Flush();
    }

    Store& source_;
    Store& target_;
    bool old_;
    TableStore sourceCatalog_;
    std::vector<CatalogObject> objects_;
    std::map<PageNumber, PageNumber> pages_;  ///< definition pages: old to new
    CopyReport report_;
};

// ---------------------------------------------------------------- comparison

[[noreturn]] void Differ(Store& copy, const std::string& what) {
    Place place;
    place.file = copy.Pages().Path().string();
    throw Fault{fault::kDamaged, "the copy is not equal to its source: " + what, place};
}

/// The rows of a small table as texts, in no order; none when there is no such table.
std::multiset<std::string> RowTexts(Store& store, const std::vector<CatalogObject>& objects,
                                    std::string_view name) {
    const auto found = std::find_if(objects.begin(), objects.end(), [&](const CatalogObject& object) {
        return object.IsEngineTable() && text::EqualsNoCase(object.name, name);
    });
    if (found == objects.end()) return {};
    const TableStore table(store, found->name, found->DefinitionPage());
    std::vector<std::string> names;
    for (const ColumnDefinition& column : table.Definition().columns)
        names.push_back(column.name);
    std::multiset<std::string> rows;
    table.Scan([&](const RowView& view) {
        std::map<std::string, std::string> values;
        for (std::size_t i = 0; i < names.size(); ++i) {
            if (!view.IsNull(i)) values[names[i]] = ValueText(view.Get(i));
        }
        std::string row;
        for (const auto& [column, value] : values)
            row.append(column).append("=").append(value).append("\n");
        rows.insert(std::move(row));
        return true;
    });
    return rows;
}

void CompareTable(Store& source, PageNumber sourcePage, Store& copy, PageNumber copyPage,
                  const std::string& name) {
    Pager& from = source.Pages();
    Pager& to = copy.Pages();
    StoredDefinition before = ReadDefinition(from, sourcePage);
    before.table.name = name;
    StoredDefinition after = ReadDefinition(to, copyPage);
    after.table.name = name;
    if (before.table.columns.size() != after.table.columns.size() ||
        before.table.indexes.size() != after.table.indexes.size())
        Differ(copy, "table " + name + " has other columns or indexes");
    for (std::size_t i = 0; i < before.table.columns.size(); ++i) {
        if (before.table.columns[i].name != after.table.columns[i].name ||
            before.table.columns[i].type != after.table.columns[i].type)
            Differ(copy, "column " + before.table.columns[i].name + " of table " + name + " has changed");
    }
    // The copy holds its rows in the order in which the source gives them.
    std::vector<RowPointer> order;
    EachHome(to, after, [&](RowId row) { order.push_back(RowPointer::Of(row)); });
    std::size_t next = 0;
    FieldReader reader(to, after);
    EachRow(from, source.Allocator(), sourcePage, before, [&](RowId row, const StoredFields& expected) {
        if (next == order.size()) Differ(copy, "table " + name + " has lost rows");
        const RowPointer at = order[next++];
        const StoredFields& found = reader.ReadAt({at.Page(), at.Row()});
        for (std::size_t i = 0; i < expected.size(); ++i) {
            const bool equal = expected[i].has_value() == found[i].has_value() &&
                               (!expected[i] || std::equal(expected[i]->begin(), expected[i]->end(),
                                                           found[i]->begin(), found[i]->end()));
            if (!equal) {
                Differ(copy, "column " + before.table.columns[i].name + " of a row of table " + name +
                                 " that came from page " + std::to_string(row.page));
            }
        }
        to.Trim();
    });
    if (next != order.size()) Differ(copy, "table " + name + " has rows too many");
}
}  // namespace
}  // namespace detail

std::vector<std::string> ObjectsNotCarried(Database& source) {
    const detail::TableStore catalog(detail::StoreOf(source), "MSysObjects", detail::kCatalogPage);
    std::vector<std::string> objects;
    for (const detail::CatalogObject& object : detail::CatalogObjects(catalog)) {
        if (const std::string kind = detail::KindNotCarried(object); !kind.empty())
            objects.push_back(kind + " " + object.name);
    }
    return objects;
}

CopyReport CopyDatabase(Database& source, const std::filesystem::path& target, text::Date now,
                        files::HostDisk& disk) {
    const std::unique_ptr<detail::Store> copy =
        detail::NewFile(disk.Open(target, files::OpenMode::CreateNew), target, now);
    return detail::Copier(detail::StoreOf(source), *copy).Run();
}

void CompareCopy(Database& source, Database& copy) {
    detail::Store& from = detail::StoreOf(source);
    detail::Store& to = detail::StoreOf(copy);
    const detail::TableStore catalog(to, "MSysObjects", detail::kCatalogPage);
    const detail::TableStore sourceCatalog(from, "MSysObjects", detail::kCatalogPage);
    const auto copied = detail::CatalogObjects(catalog);
    const auto objects = detail::CatalogObjects(sourceCatalog);
    std::map<std::string, detail::PageNumber> tables;
    for (const detail::CatalogObject& object : copied) {
        if (object.type == detail::kLocalTable) tables[object.name] = object.DefinitionPage();
    }
    const bool old = detail::IsOld(from.Pages());
    for (const detail::CatalogObject& object : objects) {
        if (object.type != detail::kLocalTable || object.IsEngineTable()) continue;
        if (old && detail::IsOfOldAccess(object.name)) continue;
        const auto twin = tables.find(object.name);
        if (twin == tables.end()) detail::Differ(to, "table " + object.name + " is missing");
        detail::CompareTable(from, object.DefinitionPage(), to, twin->second, object.name);
    }
    for (const char* name : {"MSysQueries", "MSysRelationships"}) {
        if (detail::RowTexts(from, objects, name) != detail::RowTexts(to, copied, name))
            detail::Differ(to, std::string("the rows of ") + name);
    }
}

}  // namespace zenvora::jet
