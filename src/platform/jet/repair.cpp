#include "platform/jet/repair.h"

#include <algorithm>
#include <map>
#include <set>

#include "platform/jet/detail/copied_catalog.h"
#include "platform/jet/detail/key_codec.h"
#include "platform/jet/detail/salvage_file.h"
#include "platform/jet/detail/salvage_rows.h"
#include "platform/jet/detail/table_plan.h"
#include "platform/text/utf8.h"

namespace zenvora::jet {

namespace detail {
namespace {
constexpr std::size_t kMostListed = 500;  // losses of one table
constexpr std::size_t kBatchBytes = std::size_t{16} << 20;
constexpr std::int32_t kTablesContainer = 0x0F000001;
constexpr PageNumber kLastEnginePage = 5;
constexpr int kMaxCharacters = 255;

/// An index whose keys cannot be built: the repair starts anew without it.
struct IndexFailure {
    PageNumber definition = 0;
    std::size_t index = 0;
    std::string reason;
};

/// What the catalog of the damaged file still says.
struct OldObject {
    std::int32_t id = 0, type = 0;
    std::uint32_t flags = 0;
    std::string name;
    Bytes properties;
    Value created;
};

/// A table that is to be saved.
struct FoundTable {
    PageNumber page = 0;
    StoredDefinition definition;
    std::size_t namesLost = 0;
    bool whole = true;  ///< the definition could be read with its indexes
    const OldObject* object = nullptr;
    std::uint32_t hiddenAs = 0;  ///< the flags of a hidden table
    std::string name;
};

class Repairer {
  public:
    Repairer(const SalvageSource& source, Store& target, text::Date now,
             const std::vector<IndexFailure>& without)
        : source_(*source.pager),
          statedCodePage_(source.statedCodePage),
          target_(target),
          now_(now),
          without_(without) {}

    RepairReport Run() {
        if (IsUnknownCodePage(statedCodePage_)) LoseLetters({}, 0, "the file", statedCodePage_);
        LookAtPages();
        ReadCatalog();
        FindTables();
        target_.Begin();
        for (FoundTable& table : tables_)
            Save(table);
        AddUsualRights(target_, newTables_);
        target_.Commit();
        return std::move(report_);
    }

  private:
    // ------------------------------------------------------------ what is there

    void LookAtPages() {
        for (PageNumber page = 1; page < source_.PageCount(); ++page) {
            const std::byte* const bytes = source_.Read(page);
            const unsigned type = U8(bytes);
            if (type == kDefinitionPage) {
                definitions_.push_back(page);
            } else if (type == kFreedDefinition) {
                dropped_.insert(page);
            } else if (type == kDataPage) {
                const std::uint32_t owner = U32(bytes + 4);
                if (owner > 1 && owner < source_.PageCount()) pagesOf_[owner].push_back(page);
            }
            source_.Trim();
        }
        try {
            free_.resize(source_.PageCount());
            for (PageNumber page : UsageMap(source_, RowPointer::Of(1, 0)).Pages())
                free_[page] = true;
            // A map that gives the catalog away is none.
            if (free_[kCatalogPage] || free_[1]) free_.assign(free_.size(), false);
        } catch (const Fault&) {
            free_.assign(free_.size(), false);
        }
    }

    [[nodiscard]] static bool IsUnknownCodePage(std::uint16_t codePage) {
        return codePage != 0 && codePage != kWindows1252;
    }
    void LoseLetters(const std::string& table, long page, const std::string& where, std::uint16_t codePage) {
        Lose(table, page, -1,
             "letters with accents may be wrong: the texts of " + where +
                 " are said to be in the code page " + std::to_string(codePage) +
                 ", which is not known here, and were read as Western European");
    }
    /// Texts in a code page that is not known, which mostly is a damaged number, are read as the usual ones.
    void TakeKnownCodePages(StoredDefinition& table, PageNumber page) {
        for (ColumnDefinition& column : table.table.columns) {
            if (!IsUnknownCodePage(column.codePage)) continue;
            if (column.codePage != statedCodePage_)
                LoseLetters(table.table.name, page, "column " + column.name, column.codePage);
            column.codePage = kWindows1252;
        }
    }

    /// The pages of a table in the order in which they are believed: first those that its map names.
    std::vector<PageNumber> PagesOf(const StoredDefinition& table, PageNumber definition,
                                    std::vector<PageNumber>& missing) const {
        std::vector<PageNumber> pages;
        const auto found = pagesOf_.find(definition);
        static const std::vector<PageNumber> kNone;
        const std::vector<PageNumber>& byOwner = found == pagesOf_.end() ? kNone : found->second;
        std::set<PageNumber> named;
        try {
            const UsageMap map(source_, table.ownedMap);
            for (PageNumber page : map.Pages()) {
                named.insert(page);
                if (std::binary_search(byOwner.begin(), byOwner.end(), page)) {
                    pages.push_back(page);
                } else {
                    missing.push_back(page);
                }
            }
            static_cast<void>(map.PagesInUse());
        } catch (const Fault& fault) {
            // Pages behind the end of the file; or no map at all, and then the pages speak for themselves.
            if (fault.place.page >= static_cast<long>(source_.PageCount()))
                missing.push_back(static_cast<PageNumber>(fault.place.page));
        }
        for (PageNumber page : byOwner) {
            if (!named.contains(page) && !free_[page]) pages.push_back(page);
        }
        return pages;
    }

    void ReadCatalog() {
        StoredDefinition catalog;
        try {
            catalog = ReadDefinition(source_, kCatalogPage);
        } catch (const Fault& fault) {
            Lose({}, kCatalogPage, -1, "the definition of the catalog is damaged: names may be lost");
            // It is the same in every file.
            catalog = ReadDefinition(target_.Pages(), kCatalogPage);
            for (ColumnDefinition& column : catalog.table.columns)
                column.codePage = source_.Format().codePage;
            catalog.ownedMap = {};
        }
        TakeKnownCodePages(catalog, kCatalogPage);
        std::map<std::string, std::size_t> at;
        for (std::size_t i = 0; i < catalog.table.columns.size(); ++i)
            at[catalog.table.columns[i].name] = i;
        for (const char* name : {"Id", "Name", "Type", "Flags"}) {
            if (!at.contains(name)) return;
        }
        const SalvageListener listener{
            [&](PageNumber page, int row, const std::string& reason) {
                Lose({}, page, row, "an object of the catalog is lost: " + reason);
            },
            [&](PageNumber page, int row, const std::string& reason) {
                Lose({}, page, row,
                     "an object of the catalog has lost a part of what was said of it: " + reason);
            }};
        RowSalvage rows(source_, catalog, kCatalogPage, listener);
        std::vector<PageNumber> missing;
        const std::vector<PageNumber> pages = PagesOf(catalog, kCatalogPage, missing);
        const auto visit = [&](PageNumber, int, const StoredFields& fields) {
            const auto value = [&](const char* name) {
                if (!at.contains(name)) return Value{};
                const std::size_t position = at[name];
                ColumnDefinition column = catalog.table.columns[position];
                column.codePage = 0;  // the fields are in the newer form
                return fields[position] ? DecodeField(column, *fields[position]) : Value{};
            };
            const auto number = [&](const char* name) {
                const Value found = value(name);
                const auto* integer = std::get_if<std::int32_t>(&found);
                return integer != nullptr ? *integer : 0;
            };
            OldObject object;
            object.id = number("Id");
            object.type = number("Type");
            object.flags = static_cast<std::uint32_t>(number("Flags"));
            if (const Value name = value("Name"); std::holds_alternative<std::string>(name))
                object.name = std::get<std::string>(name);
            // Of a damaged date nothing is left that the new catalog takes.
            if (const Value created = value("DateCreate"); const auto* date = std::get_if<DateTime>(&created))
                if (date->serial >= text::kFirstDate && date->serial < text::kLastDate + 1)
                    object.created = created;
            if (const auto place = at.find("LvProp"); place != at.end() && fields[place->second])
                object.properties.assign(fields[place->second]->begin(), fields[place->second]->end());
            if (!object.name.empty()) objects_.push_back(std::move(object));
        };
        for (PageNumber page : pages)
            rows.ReadPage(page, visit);
        for (PageNumber page : missing)
            Lose({}, page, -1, "a page of the catalog is lost: names of tables may be lost");
        if (!missing.empty()) rows.ReadStrays(visit);
        for (const OldObject& object : objects_) {
            if (object.name.starts_with("MSys")) continue;
            CatalogObject kind;
            kind.type = object.type;
            if (const std::string what = KindNotCarried(kind); !what.empty())
                report_.leftBehind.push_back(what + " " + object.name);
            if (object.type == kQuery) report_.leftBehind.push_back("query " + object.name);
            if (object.type == kRelationship) report_.leftBehind.push_back("relationship " + object.name);
        }
    }

    const OldObject* ObjectOf(PageNumber definition) const {
        for (const OldObject& object : objects_) {
            if (object.type == kLocalTable && (static_cast<PageNumber>(object.id) & 0x00FFFFFF) == definition)
                return &object;
        }
        return nullptr;
    }

    [[nodiscard]] static bool IsUsers(const OldObject& object) {
        return object.type == kLocalTable && (object.flags & 0x80000002U) == 0;
    }
    /// Whether a table is to be saved. Other programs hide tables of their own in a file, and one damaged bit
    /// hides any: they are saved as they are, hidden. A Databook is known by its key, whatever the catalog
    /// says.
    [[nodiscard]] bool IsToBeSaved(FoundTable& table) const {
        if (table.page == kCatalogPage) return false;
        const bool system = table.definition.table.systemTable;
        if (table.object == nullptr) return !system && !free_[table.page];
        if (IsUsers(*table.object) || table.definition.table.FindColumn("CENTRALKEY")) return true;
        table.hiddenAs = table.object->flags;
        return !system && !text::Upper(table.object->name).starts_with("MSYS");
    }

    void FindTables() {
        std::set<PageNumber> continued;  // pages that another definition goes on to
        std::vector<FoundTable> found;
        for (PageNumber page : definitions_) {
            FoundTable table;
            table.page = page;
            try {
                table.definition = ReadDefinition(source_, page);
            } catch (const Fault&) {
                auto salvaged = SalvageDefinition(source_, page);
                if (!salvaged) continue;
                table.definition = std::move(salvaged->definition);
                table.namesLost = salvaged->namesLost;
                table.whole = false;
            }
            continued.insert(table.definition.chain.begin() + 1, table.definition.chain.end());
            found.push_back(std::move(table));
        }
        std::set<PageNumber> readable;
        for (FoundTable& table : found) {
            if (table.whole) readable.insert(table.page);
            if (continued.contains(table.page)) continue;
            readable.insert(table.page);
            table.object = ObjectOf(table.page);
            if (!IsToBeSaved(table)) continue;
            tables_.push_back(std::move(table));
        }
        NameTables();
        LoseTables(readable);
    }

    /// The key of a name in the catalog's index, or nothing for what cannot be a table's name there.
    [[nodiscard]] static std::string NameKey(const std::string& name) {
        std::string key;
        if (!CanBeName(name) || text::Upper(name).starts_with("MSYS"))
            return key;  // those are the engine's own
        try {
            AppendKey(ColumnDefinition{}, name, true, key);
        } catch (const Fault&) {
            key.clear();  // a character that the catalog could not sort
        }
        return key;
    }

    void NameTables() {
        std::set<std::string> taken;
        const auto take = [&](FoundTable& table, const std::string& name) {
            const std::string key = NameKey(name);
            if (key.empty() || !taken.insert(key).second) return false;
            table.name = name;
            return true;
        };
        for (FoundTable& table : tables_) {
            if (table.object != nullptr) take(table, table.object->name);
        }
        int recovered = 0;
        for (FoundTable& table : tables_) {
            if (!table.name.empty()) continue;
            if (!table.definition.table.FindColumn("CENTRALKEY") || !take(table, "COMPS")) {
                while (!take(table, "Recovered " + std::to_string(++recovered))) {
                }
            }
            const std::string old = table.object == nullptr ? "" : table.object->name;
            Lose(table.name, table.page, -1,
                 (old.empty() ? "the name of this table is lost"
                              : "the name of this table, \"" + old + "\", is damaged or used twice") +
                     ": it was called " + table.name);
        }
    }

    /// Tables that the catalog or pages of rows speak of and whose definitions are gone.
    void LoseTables(const std::set<PageNumber>& readable) {
        std::map<PageNumber, std::string> gone;
        for (const OldObject& object : objects_) {
            const PageNumber page = static_cast<PageNumber>(object.id) & 0x00FFFFFF;
            if (IsUsers(object) && !readable.contains(page)) gone[page] = object.name;
        }
        for (const auto& [owner, pages] : pagesOf_) {
            if (owner <= kLastEnginePage || readable.contains(owner) || dropped_.contains(owner) ||
                gone.contains(owner) || free_[owner])
                continue;
            const OldObject* const object = ObjectOf(owner);
            if (object != nullptr && !IsUsers(*object)) continue;
            gone[owner] = "";
        }
        for (const auto& [page, name] : gone) {
            std::size_t count = 0;
            if (const auto pages = pagesOf_.find(page); pages != pagesOf_.end()) count = pages->second.size();
            Lose(name, page, -1,
                 "the definition of " + (name.empty() ? std::string("a table") : "this table") +
                     " is gone, and with it all that its " + std::to_string(count) +
                     (count == 1 ? " page of records holds" : " pages of records hold"));
        }
    }

    // ------------------------------------------------------------ saving

    void Save(FoundTable& found) {
        StoredDefinition& table = found.definition;
        table.table.name = found.name;
        RepairedTable& report = report_.tables.emplace_back();
        report.name = found.name;
        report.rowsStated = table.rowCount;
        if (!found.whole) {
            Lose(found.name, found.page, -1,
                 "the end of the definition of this table is gone: its indexes are lost" +
                     (found.namesLost == 0
                          ? std::string()
                          : ", and the names of " + std::to_string(found.namesLost) + " columns"));
        }
        TakeKnownCodePages(table, found.page);
        MendNames(found);
        for (ColumnDefinition& column : table.table.columns) {
            if (const std::size_t size = FixedSize(column.type); size != 0)
                column.byteLength = static_cast<std::uint16_t>(size);
            MendLimit(found, column);
        }
        std::vector<std::size_t> kept;  // positions of the indexes of the plan in the old definition
        PlannedTable plan;
        try {
            plan = PlanWithoutRelationships(found, kept);
        } catch (const Fault& fault) {
            Lose(found.name, found.page, -1, "this table could not be saved: " + fault.description);
            return;
        }
        const PageNumber page = target_.Allocator().Allocate();
        PlaceTable(target_.Pages(), target_.Allocator(), page, plan);
        TableWriter writer(target_.Pages(), target_.Allocator(), page);
        SaveRows(found, writer, kept);
        writer.Finish(table.autoNumber, 1);
        report.rows = writer.Rows();
        AddToCatalog(found, page);
        CommitSoon(kBatchBytes);
    }

    /// Gives columns and indexes names that the new file can have.
    void MendNames(FoundTable& found) {
        std::set<std::string> taken;
        const auto mend = [&](std::string& name, const std::string& kind, std::size_t place) {
            const std::string old = name;
            if (!CanBeName(name)) name = kind + " " + std::to_string(place + 1);
            const std::string stem = name;
            for (int n = 2; !taken.insert(text::Upper(name)).second; ++n)
                name = stem + " " + std::to_string(n);
            if (name == old) return;
            Lose(found.name, found.page, -1,
                 "the name of a " + kind + " is damaged or used twice: it was called " + name);
        };
        auto& columns = found.definition.table.columns;
        for (std::size_t i = 0; i < columns.size(); ++i)
            mend(columns[i].name, "column", i);
        taken.clear();
        auto& indexes = found.definition.logicalIndexes;
        for (std::size_t i = 0; i < indexes.size(); ++i) {
            if (indexes[i].type != 2) mend(indexes[i].name, "index", i);
        }
    }

    /// A width that no Text column can have is damaged; the widest holds whatever the records say. Of a fixed
    /// one the width is also the place in the row, so it stays.
    void MendLimit(const FoundTable& found, ColumnDefinition& column) {
        const int limit = column.CharacterLimit();
        if (column.type != ColumnType::Text || column.fixedLength || (limit >= 1 && limit <= kMaxCharacters))
            return;
        column.byteLength = column.codePage == 0 ? 2 * kMaxCharacters : kMaxCharacters;
        Lose(found.name, found.page, -1,
             "the width of column " + column.name + " is damaged: it can hold " +
                 std::to_string(kMaxCharacters) + " characters now");
    }

    PlannedTable PlanWithoutRelationships(const FoundTable& found, std::vector<std::size_t>& kept) {
        StoredDefinition table = found.definition;
        std::erase_if(table.logicalIndexes, [](const LogicalIndex& index) { return index.type == 2; });
        PlannedTable plan = PlanCopy(source_, table, {});
        for (std::size_t i = 0; i < table.indexes.size(); ++i)
            kept.push_back(i);
        for (std::size_t i = table.indexes.size(); i-- > 0;) {
            const bool named = std::any_of(plan.logicalIndexes.begin(), plan.logicalIndexes.end(),
                                           [&](const LogicalIndex& index) { return index.realIndex == i; });
            std::string reason;
            for (const IndexColumn& each : table.indexes[i].columns) {
                for (const ColumnDefinition& column : table.table.columns) {
                    if (column.number == each.column && !CanEncodeKey(column))
                        reason = "it is sorted in an order that is not known here";
                }
            }
            for (const IndexFailure& failure : without_) {
                if (failure.definition == found.page && failure.index == i) reason = failure.reason;
            }
            if (named && reason.empty()) continue;
            if (named) {
                const auto& names = table.table.indexes[i].names;
                Lose(found.name, -1, -1,
                     "the index " + (names.empty() ? std::string() : names.front()) +
                         " was left out: " + reason);
            }
            DropIndex(plan, i);
            kept.erase(kept.begin() + static_cast<std::ptrdiff_t>(i));
        }
        // No relationship names them by their numbers any more.
        for (std::size_t i = 0; i < plan.logicalIndexes.size(); ++i)
            plan.logicalIndexes[i].number = static_cast<std::uint32_t>(i);
        return plan;
    }

    void SaveRows(const FoundTable& found, TableWriter& writer, const std::vector<std::size_t>& kept) {
        RepairedTable& report = report_.tables.back();
        const SalvageListener listener{
            [&](PageNumber page, int row, const std::string& reason) {
                if (row >= 0) ++report.rowsLost;
                Lose(found.name, page, row, (row >= 0 ? "a record is lost: " : "") + reason);
            },
            [&](PageNumber page, int row, const std::string& reason) {
                ++report.valuesCut;
                Lose(found.name, page, row, "a record was saved in part: " + reason);
            }};
        RowSalvage rows(source_, found.definition, found.page, listener);
        const auto visit = [&](PageNumber page, int row, const StoredFields& fields) {
            TableWriter::Outcome outcome;
            try {
                outcome = writer.Add(fields);
            } catch (const Fault& fault) {
                if (const auto index = writer.FailedIndex(); index && fault.number == fault::kUnsupported)
                    throw IndexFailure{found.page, kept[*index], fault.description};
                if (fault.number != fault::kRecordTooLarge) throw;
                listener.lost(page, row, fault.description);
                return;
            }
            if (outcome.refusal == TableWriter::Refusal::DuplicateKey) {
                listener.lost(page, row,
                              "a record with the key \"" +
                                  KeyText(writer.Definition(), outcome.index, fields) +
                                  "\" was saved already");
            } else if (outcome.refusal == TableWriter::Refusal::NullKey) {
                listener.lost(page, row, "its key is empty");
            }
            CommitSoon(writer.TakeWrittenBytes());
        };
        std::vector<PageNumber> missing;
        for (PageNumber page : PagesOf(found.definition, found.page, missing))
            rows.ReadPage(page, visit);
        for (PageNumber page : missing) {
            if (page < source_.PageCount()) {
                Lose(found.name, page, -1, "this page held records of the table and holds none any more");
            } else {
                Lose(found.name, page, -1,
                     "the file is cut off: from this page on records of the table may be lost");
            }
        }
        if (!missing.empty()) rows.ReadStrays(visit);
    }

    static std::string KeyText(const StoredDefinition& table, std::size_t index, const StoredFields& fields) {
        std::string text;
        for (const IndexColumn& each : table.indexes[index].columns) {
            for (std::size_t i = 0; i < table.table.columns.size(); ++i) {
                if (table.table.columns[i].number != each.column) continue;
                if (!text.empty()) text += ", ";
                if (fields[i]) text += ValueText(DecodeField(table.table.columns[i], *fields[i]));
            }
        }
        return text;
    }

    void AddToCatalog(const FoundTable& found, PageNumber page) {
        TableStore catalog(target_, "MSysObjects", kCatalogPage);
        NamedRow row(catalog);
        row.Set("Id", static_cast<std::int32_t>(page));
        row.Set("ParentId", kTablesContainer);
        row.Set("Name", found.name);
        row.Set("Type", std::int32_t{kLocalTable});
        const bool dated = found.object != nullptr && std::holds_alternative<DateTime>(found.object->created);
        row.Set("DateCreate", dated ? found.object->created : Value{DateTime{now_}});
        row.Set("DateUpdate", DateTime{now_});
        row.Set("Owner", UsualOwner(catalog));
        row.Set("Flags", static_cast<std::int32_t>(found.hiddenAs));
        if (found.object != nullptr && !found.object->properties.empty()) {
            const PropertyBlob properties(found.object->properties, source_.Format().codePage);
            if (properties.Broken()) {
                Lose(found.name, -1, -1, "the properties of the columns (defaults and the like) are damaged");
            } else {
                row.Set("LvProp", source_.Format().codePage == 0 ? found.object->properties
                                                                 : properties.InUtf16().Bytes());
            }
        }
        catalog.Insert(row.values);
        catalog.Flush();
        newTables_.insert(static_cast<std::int32_t>(page));
    }

    void CommitSoon(std::size_t written) {
        written_ += written;
        if (written_ < kBatchBytes) return;
        written_ = 0;
        target_.Commit();
        target_.Begin();
        target_.Pages().Trim();
    }

    void Lose(const std::string& table, long page, int row, const std::string& sentence) {
        ++report_.losses;
        if (listed_[table]++ < kMostListed) report_.lost.push_back({table, page, row, sentence});
    }

    Pager& source_;
    std::uint16_t statedCodePage_;
    Store& target_;
    text::Date now_;
    const std::vector<IndexFailure>& without_;
    std::vector<PageNumber> definitions_;
    std::set<PageNumber> dropped_;
    std::map<std::uint32_t, std::vector<PageNumber>> pagesOf_;  ///< data pages by their owner
    std::vector<bool> free_;
    std::vector<OldObject> objects_;
    std::vector<FoundTable> tables_;
    std::set<std::int32_t> newTables_;
    std::map<std::string, std::size_t> listed_;
    std::size_t written_ = 0;
    RepairReport report_;
};

void RemoveQuietly(const std::filesystem::path& path, files::HostDisk& disk) {
    try {
        disk.Remove(path);
    } catch (const Fault&) {  // NOLINT(bugprone-empty-catch): the first fault is the one to tell
    }
}
}  // namespace
}  // namespace detail

RepairReport Repair(const std::filesystem::path& path, const std::filesystem::path& target, text::Date now,
                    files::HostDisk& disk) {
    const detail::SalvageSource source = detail::OpenForSalvage(path, disk);
    std::vector<detail::IndexFailure> without;
    while (true) {
        std::shared_ptr<files::HostFile> file = disk.Open(target, files::OpenMode::CreateNew);
        try {
            const std::unique_ptr<detail::Store> store = detail::NewFile(std::move(file), target, now);
            return detail::Repairer(source, *store, now, without).Run();
        } catch (detail::IndexFailure& failure) {
            detail::RemoveQuietly(target, disk);
            without.push_back(std::move(failure));
        } catch (...) {
            detail::RemoveQuietly(target, disk);
            throw;
        }
    }
}

}  // namespace zenvora::jet
