// Damage of many kinds, planted with a fixed seed: what a repair makes of it is sound for this program and
// for others, and every record that the damage did not touch is in it or named as lost.

#include <cstdlib>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <set>

#include "access97_file.h"
#include "platform/fault.h"
#include "platform/jet/detail/bytes.h"
#include "platform/jet/repair.h"
#include "platform/jet/verify.h"
#include "sample_files.h"
#include "sample_table.h"
#include "support/temp_folder.h"
#include "table_contents.h"

namespace zenvora::jet {
namespace {

using testing_support::ColumnOf;
using testing_support::ExactText;
using testing_support::kNow;
using testing_support::MemoryDisk;
using testing_support::TextColumn;
using zenvora::testing_support::TempFolder;

using FileBytes = std::vector<std::byte>;
constexpr std::uint32_t kLongValues = 0x4C41564C;

bool IsLong(ColumnType type) {
    return type == ColumnType::Memo || type == ColumnType::Ole;
}

/// A record of the sound file: where its bytes are, and what it says.
struct KnownRow {
    std::string table;
    RowId home;
    std::set<std::uint32_t> pages;  ///< that it cannot be read without, those of long values apart
    std::string values;             ///< without long ones
    std::string all;
};

/// A sound file and all that is known of it.
struct Known {
    std::string name;
    FileBytes bytes;
    std::size_t pageSize = 4096;
    std::vector<KnownRow> rows;

    [[nodiscard]] std::size_t Pages() const { return bytes.size() / pageSize; }
    [[nodiscard]] unsigned TypeOf(std::size_t page) const { return detail::U8(&bytes[page * pageSize]); }
    [[nodiscard]] std::uint32_t OwnerOf(std::size_t page) const {
        return detail::U32(&bytes[page * pageSize + 4]);
    }
};

std::pair<std::string, std::string> TextsOf(const RowView& view, const TableDefinition& table) {
    std::string values;
    std::string all;
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        const std::string text = table.columns[i].name + "=" + ExactText(view.Get(i)) + "\n";
        if (!IsLong(table.columns[i].type)) values += text;
        all += text;
    }
    return {values, all};
}

/// `definitions`: the pages of the definition of a table, found by its place in the catalog.
std::set<std::uint32_t> DefinitionPages(const Known& known, Database& database, const std::string& name) {
    const Table& catalog = database.OpenTable("MSysObjects");
    std::set<std::uint32_t> pages;
    catalog.Scan([&](const RowView& view) {
        std::string object;
        view.AppendText(catalog.Definition().FindColumn("Name").value(), object);
        if (object != name || view.Number(catalog.Definition().FindColumn("Type").value()) != 1) return true;
        auto page = static_cast<std::uint32_t>(static_cast<std::int32_t>(
                        view.Number(catalog.Definition().FindColumn("Id").value()))) &
                    0x00FFFFFFU;
        for (; page != 0; page = known.OwnerOf(page))
            pages.insert(page);
        return true;
    });
    return pages;
}

Known LearnFile(const std::string& name, FileBytes bytes) {
    Known known;
    known.name = name;
    known.pageSize = bytes[0x14] == std::byte{0} ? 2048 : 4096;
    MemoryDisk disk;
    disk.Put("b.mdb", bytes);
    known.bytes = std::move(bytes);
    const auto database = Database::Open("b.mdb", Database::Access::ReadOnly, disk);
    for (const std::string& table : database->TableNames()) {
        const Table& from = database->OpenTable(table);
        const std::set<std::uint32_t> definition = DefinitionPages(known, *database, table);
        from.Scan([&](const RowView& view) {
            KnownRow row;
            row.table = table;
            row.home = view.Id();
            row.pages = definition;
            std::uint32_t page = row.home.page;
            unsigned slot = row.home.slot;
            while (row.pages.insert(page).second) {
                const std::byte* const at = &known.bytes[page * known.pageSize];
                const unsigned begin = detail::U16(at + (known.pageSize == 4096 ? 14 : 10) + 2 * slot);
                if ((begin & 0x4000U) == 0) break;
                const std::uint32_t pointer = detail::U32(at + (begin & 0x1FFFU));
                page = pointer >> 8;
                slot = pointer & 0xFFU;
            }
            std::tie(row.values, row.all) = TextsOf(view, from.Definition());
            known.rows.push_back(std::move(row));
            return true;
        });
    }
    return known;
}

FileBytes OwnFile() {
    MemoryDisk disk;
    const auto database = Database::Create("b.mdb", kNow, disk);
    Table& table = database->CreateTable(testing_support::SampleTable(), kNow);
    NewTable other;
    other.name = "COMPS";
    other.columns = {TextColumn("CENTRALKEY", 50), TextColumn("SELECTED", 1),
                     ColumnOf("SALEDATE", ColumnType::DateTime), ColumnOf("Number", ColumnType::Long)};
    other.columns[1].fixedLength = true;
    other.columns[1].properties.defaultValue = "\"3\"";
    other.columns[3].autoNumber = true;
    other.indexes.push_back({"PrimaryKey", {"CENTRALKEY"}, {}, true, false, true, true});
    Table& comps = database->CreateTable(other, kNow);
    std::vector<RowId> ids;
    database->Begin();
    for (int i = 0; i < 160; ++i) {
        std::vector<Value> row(table.Definition().columns.size());
        row[0] = std::to_string(i * 37 % 160) + " Birch St";
        row[1] = i % 3 == 0;
        row[2] = std::int32_t{i % 200};
        row[4] = std::int32_t{i};
        row[5] = Currency{i * 12345};
        row[7] = 250000.0 + i;
        row[8] = DateTime{40000.0 + i};
        if (i % 4 == 0) row[9] = std::string(i % 40 == 0 ? 9000 : 300, static_cast<char>('a' + i % 26));
        if (i % 9 == 0) row[10] = Bytes(static_cast<std::size_t>(i) * 20, std::byte{7});
        row[12] = 12.5 + i;
        row[13] = i % 5 == 0 ? std::string(60, 'x') + "\xC3\xA9" : "Troy";
        row[14] = "1";
        row[15] = std::to_string(i);
        ids.push_back(table.Insert(row));
    }
    for (int i = 0; i < 220; ++i) {
        comps.Insert(std::vector<Value>{std::to_string(i * 71 % 220) + " Oak St", "3",
                                        DateTime{40000.0 + i % 365}, Null{}});
    }
    database->Commit();
    database->Begin();
    for (std::size_t i = 0; i < ids.size(); ++i) {
        if (i % 10 == 3) table.Delete(ids[i]);
        if (i % 10 == 7) {  // too long for its place: it moves
            const std::vector<std::size_t> columns{13};
            const std::vector<Value> values{std::string(220, 'y')};
            table.Update(ids[i], columns, values);
        }
    }
    database->Commit();
    return disk.Content("b.mdb");
}

class Planter {
  public:
    Planter(const Known& known, unsigned seed) : known_(known), random_(seed), bytes_(known.bytes) {}

    /// Plants damage of one kind. The touched pages are in Touched().
    void Plant(unsigned kind) {
        const std::size_t count = 1 + Pick(kind == 1 || kind == 3 || kind == 9 ? 4 : 30);
        for (std::size_t i = 0; i < count; ++i)
            PlantOne(kind);
    }
    static constexpr unsigned kKinds = 12;

    [[nodiscard]] FileBytes& Bytes() { return bytes_; }
    [[nodiscard]] bool Touched(std::uint32_t page) const {
        return touched_.contains(page) || (page + std::size_t{1}) * known_.pageSize > bytes_.size();
    }
    [[nodiscard]] bool TouchedLongValues() const {
        for (std::uint32_t page = 0; page < known_.Pages(); ++page) {
            if (known_.TypeOf(page) == 1 && known_.OwnerOf(page) == kLongValues && Touched(page)) return true;
        }
        return false;
    }

  private:
    std::size_t Pick(std::size_t below) { return below == 0 ? 0 : random_() % below; }
    std::byte Byte() { return static_cast<std::byte>(random_()); }
    std::span<std::byte> Page(std::size_t page) {
        touched_.insert(static_cast<std::uint32_t>(page));
        return std::span(bytes_).subspan(page * known_.pageSize, known_.pageSize);
    }
    /// A page that `wanted` says yes to, or any.
    template <class Wanted>
    std::size_t PageWhere(Wanted wanted) {
        const std::size_t pages = bytes_.size() / known_.pageSize;
        const std::size_t start = Pick(pages);
        for (std::size_t i = 0; i < pages; ++i) {
            const std::size_t page = (start + i) % pages;
            if (wanted(page)) return page;
        }
        return start;
    }
    void Flip(std::span<std::byte> page, std::size_t from, std::size_t to) {
        page[from + Pick(to - from)] ^= static_cast<std::byte>(1U << Pick(8));
    }

    void PlantOne(unsigned kind) {
        const std::size_t size = known_.pageSize;
        const auto ofType = [&](unsigned type) {
            return PageWhere([&](std::size_t page) { return page > 1 && known_.TypeOf(page) == type; });
        };
        const auto rows = [&] {
            return PageWhere([&](std::size_t page) {
                return known_.TypeOf(page) == 1 && known_.OwnerOf(page) > 2 &&
                       known_.OwnerOf(page) != kLongValues;
            });
        };
        switch (kind) {
            case 0:
                Page(Pick(bytes_.size() / size))[Pick(size)] = Byte();
                break;
            case 1:
                std::ranges::fill(Page(Pick(bytes_.size() / size)), Byte());
                break;
            case 2:
                Page(Pick(bytes_.size() / size))[Pick(64)] = Byte();
                break;
            case 3:
                std::copy_n(known_.bytes.begin() + static_cast<std::ptrdiff_t>(Pick(known_.Pages()) * size),
                            size, Page(Pick(bytes_.size() / size)).begin());
                break;
            case 4: {  // the catalog
                const auto page = Page(PageWhere(
                    [&](std::size_t each) { return known_.TypeOf(each) == 1 && known_.OwnerOf(each) == 2; }));
                Flip(page, Pick(3) == 0 ? 0 : size / 2, size);
                break;
            }
            case 5:
                Flip(Page(ofType(2)), 0, Pick(2) == 0 ? 64 : 1200);
                break;
            case 6:  // counts and slots of pages of rows
                Flip(Page(rows()), 0, 60);
                break;
            case 7:  // the header's masked part
                Flip(Page(0), 0x14, 0x98);
                break;
            case 8:  // values and ends of rows
                Flip(Page(rows()), size / 2, size);
                break;
            case 9: {  // a sector of the disk
                const auto page = Page(Pick(bytes_.size() / size));
                std::ranges::fill(page.subspan(Pick(size / 512) * 512, 512), std::byte{0});
                break;
            }
            case 10: {  // maps and indexes
                const auto page = Page(PageWhere([&](std::size_t each) {
                    const unsigned type = known_.TypeOf(each);
                    return type == 3 || type == 4 || type == 5 || (type == 1 && known_.OwnerOf(each) == 0);
                }));
                if (Pick(4) == 0) {
                    std::ranges::fill(page, Byte());
                } else {
                    page[Pick(size)] = Byte();
                }
                break;
            }
            default:
                if (bytes_.size() > 8 * size) bytes_.resize(bytes_.size() - 1 - Pick(bytes_.size() / 4));
                break;
        }
    }

    const Known& known_;
    std::mt19937 random_;
    FileBytes bytes_;
    std::set<std::uint32_t> touched_;
};

struct Counts {
    int repaired = 0, refused = 0;
    std::uint64_t rows = 0;
};

/// What independent readers make of the salvaged files in a folder.
class OtherReaders {
  public:
    explicit OtherReaders(const TempFolder& folder) : folder_(folder) {}

    void Look(const std::string& what, MemoryDisk& disk, const RepairReport& report) {
        const std::string file = "s" + std::to_string(files_.size()) + ".mdb";
        disk.Export("new.mdb", folder_ / file);
        files_[file] = what;
        for (const RepairedTable& table : report.tables) {
            if (table.name.find_first_of("'\\") != std::string::npos) continue;
            const auto shown = testing_support::RunCommand("mdb-export -H -R '<=end=>' -b strip '" +
                                                           (folder_ / file).string() + "' '" + table.name +
                                                           "' 2>/dev/null | grep -aoF '<=end=>' | wc -l");
            EXPECT_EQ(std::atoll(shown.output.c_str()), static_cast<long long>(table.rows))
                << what << ", table " << table.name << ": " << shown.output;
        }
        if (files_.size() == 40) Check();
    }
    void Check() {
        const char* const checker = std::getenv("ZENVORA_MDBCHECK");
        if (checker == nullptr || files_.empty()) return;
        std::string command = "python3 '" + std::string(checker) + "'";
        for (const auto& [file, what] : files_)
            command += " '" + (folder_ / file).string() + "'";
        const auto result = testing_support::RunCommand(command + " | grep -v -e ^note -e ^OK");
        EXPECT_EQ(result.output, "");
        if (!result.output.empty()) {
            for (const auto& [file, what] : files_) {
                if (result.output.find(file) != std::string::npos) ADD_FAILURE() << file << " is " << what;
            }
        }
        files_.clear();
    }

  private:
    const TempFolder& folder_;
    std::map<std::string, std::string> files_;
};

void Examine(const Known& known, unsigned seed, Counts& counts, OtherReaders* others) {
    Planter planter(known, seed);
    const unsigned kind = seed % Planter::kKinds;
    planter.Plant(kind);
    const std::string what = known.name + ", seed " + std::to_string(seed);
    SCOPED_TRACE(what);
    MemoryDisk disk;
    disk.Put("b.mdb", planter.Bytes());
    RepairReport report;
    try {
        report = Repair("b.mdb", "new.mdb", kNow, disk);
    } catch (const Fault& fault) {
        ++counts.refused;
        // Only a header may say that the file is not to be read.
        EXPECT_TRUE(planter.Touched(0)) << fault.number << " " << fault.description;
        EXPECT_TRUE(fault.number == fault::kPassword) << fault.number << " " << fault.description;
        EXPECT_FALSE(disk.Exists("new.mdb"));
        return;
    }
    ++counts.repaired;
    const VerifyReport check = Verify("new.mdb", disk);
    for (const VerifyFinding& finding : check.findings) {
        EXPECT_NE(finding.severity, VerifyFinding::Severity::Error)
            << "page " << finding.page << " table " << finding.table << " row " << finding.row << " "
            << finding.sentence;
    }
    std::multiset<std::string> saved;
    const bool longValues = planter.TouchedLongValues();
    const auto after = Database::Open("new.mdb", Database::Access::ReadOnly, disk);
    for (const RepairedTable& each : report.tables) {  // hidden ones as well
        const Table& table = after->OpenTable(each.name);
        table.Scan([&](const RowView& view) {
            const auto texts = TextsOf(view, table.Definition());
            saved.insert(longValues ? texts.first : texts.second);
            ++counts.rows;
            return true;
        });
    }
    std::set<std::pair<long, int>> named;
    for (const RepairLoss& loss : report.lost)
        named.emplace(loss.page, loss.row);
    int missing = 0;
    for (const KnownRow& row : known.rows) {
        if (std::any_of(row.pages.begin(), row.pages.end(),
                        [&](std::uint32_t page) { return planter.Touched(page); }))
            continue;
        const auto found = saved.find(longValues ? row.values : row.all);
        if (found != saved.end()) {
            saved.erase(found);
            continue;
        }
        if (named.contains({row.home.page, row.home.slot}) || report.losses > report.lost.size()) continue;
        if (++missing > 3) continue;
        std::string lost;
        for (std::size_t i = 0; i < std::min<std::size_t>(report.lost.size(), 8); ++i)
            lost += report.lost[i].table + ": page " + std::to_string(report.lost[i].page) + " " +
                    report.lost[i].sentence + "\n";
        ADD_FAILURE() << "kind " << kind << ": row " << int{row.home.slot} << " of page " << row.home.page
                      << " of table " << row.table << " is neither saved nor named\n"
                      << row.values << lost;
    }
    if (others != nullptr && !testing::Test::HasFailure()) others->Look(what, disk, report);
}

std::vector<Known> Sources() {
    std::vector<Known> sources;
    sources.push_back(LearnFile("own file", OwnFile()));
    sources.push_back(LearnFile("file of Access 97", testing_support::SampleFile97().Bytes()));
    for (const std::string& name : testing_support::SampleNames()) {
        const TempFolder folder;
        testing_support::CopySample(name, folder / "b.mdb");
        if (std::filesystem::file_size(folder / "b.mdb") > 400000) continue;
        const std::string text = folder.Read("b.mdb");
        const auto* const bytes = reinterpret_cast<const std::byte*>(text.data());
        sources.push_back(LearnFile(name, {bytes, bytes + text.size()}));
    }
    return sources;
}

TEST(PlantedDamage, IsRepairedIntoASoundFileWithEveryRecordThatItDidNotTouch) {
    const char* const wanted = std::getenv("ZENVORA_DAMAGE_ROUNDS");
    const unsigned rounds = wanted != nullptr ? static_cast<unsigned>(std::strtoul(wanted, nullptr, 10)) : 36;
    const bool mdbtools = testing_support::RunCommand("command -v mdb-export").status == 0;
    const TempFolder folder;
    OtherReaders others(folder);
    Counts counts;
    for (const Known& known : Sources()) {
        for (unsigned seed = 0; seed < rounds; ++seed) {
            Examine(known, seed, counts, mdbtools && seed % 36 < Planter::kKinds ? &others : nullptr);
            if (HasFatalFailure()) return;
        }
    }
    others.Check();
    RecordProperty("repaired", counts.repaired);
    RecordProperty("refused", counts.refused);
    EXPECT_GT(counts.repaired, 40);
}

}  // namespace
}  // namespace zenvora::jet
