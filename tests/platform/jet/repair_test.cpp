#include "platform/jet/repair.h"

#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <set>

#include "access97_file.h"
#include "platform/fault.h"
#include "platform/jet/detail/bytes.h"
#include "platform/jet/verify.h"
#include "sample_files.h"
#include "sample_table.h"
#include "support/crash_disk.h"
#include "support/temp_folder.h"
#include "table_contents.h"

namespace zenvora::jet {
namespace {

using testing_support::ColumnOf;
using testing_support::kNow;
using testing_support::MemoryDisk;
using testing_support::TextColumn;
using zenvora::testing_support::CrashDisk;
using zenvora::testing_support::TempFolder;

constexpr std::size_t kPage = 4096;
constexpr int kRows = 300;

std::string KeyOf(int i) {
    std::string digits = std::to_string(i);
    return "K" + std::string(4 - digits.size(), '0') + digits;
}

/// Rows by their keys: price and note.
using Rows = std::map<std::string, std::pair<std::int32_t, std::string>>;

std::string NoteOf(int i) {
    // Every tenth over several pages, every other fifth on one page, the rest in the row.
    if (i % 10 == 0) return std::string(10000, static_cast<char>('a' + i % 26)) + std::to_string(i);
    if (i % 10 == 5) return std::string(2000, static_cast<char>('A' + i % 26)) + std::to_string(i);
    return "note " + std::to_string(i);
}

class RepairTest : public testing::Test {
  protected:
    void SetUp() override {
        const auto database = Database::Create("b.mdb", kNow, disk_);
        NewTable comps;
        comps.name = "COMPS";
        comps.columns = {TextColumn("CENTRALKEY", 50), ColumnOf("PRICE", ColumnType::Long),
                         ColumnOf("NOTE", ColumnType::Memo)};
        comps.columns[1].properties.defaultValue = "0";
        NewIndex key;
        key.name = "PrimaryKey";
        key.columns = {"CENTRALKEY"};
        key.primaryKey = true;
        NewIndex price;
        price.name = "Price";
        price.columns = {"PRICE"};
        comps.indexes = {key, price};
        Table& table = database->CreateTable(comps, kNow);
        NewTable other;
        other.name = "Other";
        other.columns = {TextColumn("What", 30)};
        Table& second = database->CreateTable(other, kNow);
        database->Begin();
        for (int i = 0; i < kRows; ++i) {
            const RowId id = table.Insert(std::vector<Value>{KeyOf(i), std::int32_t{i}, NoteOf(i)});
            homes_[KeyOf(i)] = id;
            rows_[KeyOf(i)] = {i, NoteOf(i)};
        }
        for (int i = 0; i < 5; ++i)
            second.Insert(std::vector<Value>{"thing " + std::to_string(i)});
        database->Commit();
        definition_ = DefinitionOf(*database, "COMPS");
        otherDefinition_ = DefinitionOf(*database, "Other");
    }

    static std::uint32_t DefinitionOf(Database& database, const std::string& name) {
        const Table& catalog = database.OpenTable("MSysObjects");
        std::uint32_t page = 0;
        catalog.Scan([&](const RowView& view) {
            std::string object;
            view.AppendText(catalog.Definition().FindColumn("Name").value(), object);
            if (object == name)
                page = static_cast<std::uint32_t>(view.Number(catalog.Definition().FindColumn("Id").value()));
            return true;
        });
        return page;
    }

    std::byte* Page(std::uint32_t page) { return disk_.Content("b.mdb").data() + page * kPage; }
    void Zero(std::uint32_t page) { std::fill_n(Page(page), kPage, std::byte{0}); }
    std::uint32_t PageCount() { return static_cast<std::uint32_t>(disk_.Content("b.mdb").size() / kPage); }
    /// Pages of a type with that owner.
    std::vector<std::uint32_t> PagesOf(unsigned type, std::uint32_t owner) {
        std::vector<std::uint32_t> pages;
        for (std::uint32_t page = 1; page < PageCount(); ++page) {
            if (detail::U8(Page(page)) == type && detail::U32(Page(page) + 4) == owner) pages.push_back(page);
        }
        return pages;
    }
    [[nodiscard]] Rows RowsNotOn(std::uint32_t page) const {
        Rows rows;
        for (const auto& [key, row] : rows_) {
            if (homes_.at(key).page != page) rows[key] = row;
        }
        return rows;
    }

    RepairReport Save() {
        const auto before = disk_.Content("b.mdb");
        RepairReport report = Repair("b.mdb", "new.mdb", kNow, disk_);
        EXPECT_EQ(disk_.Content("b.mdb"), before);
        const VerifyReport check = Verify("new.mdb", disk_);
        EXPECT_TRUE(check.Sound()) << check.findings.front().sentence;
        return report;
    }
    Rows Saved(const std::string& name = "COMPS") {
        const auto database = Database::Open("new.mdb", Database::Access::ReadOnly, disk_);
        Rows rows;
        database->OpenTable(name).Scan([&](const RowView& view) {
            std::string key;
            std::string note;
            view.AppendText(0, key);
            view.AppendText(2, note);
            EXPECT_FALSE(rows.contains(key)) << key;
            rows[key] = {static_cast<std::int32_t>(view.Number(1)), note};
            return true;
        });
        return rows;
    }
    static std::string Sentences(const RepairReport& report) {
        std::string text;
        for (const RepairLoss& loss : report.lost) {
            text += loss.table + "," + std::to_string(loss.page) + "," + std::to_string(loss.row) + "," +
                    loss.sentence + "\n";
        }
        return text;
    }

    MemoryDisk disk_;
    Rows rows_;
    std::map<std::string, RowId> homes_;
    std::uint32_t definition_ = 0, otherDefinition_ = 0;
};

TEST_F(RepairTest, SavesAllOfASoundFile) {
    const RepairReport report = Save();
    EXPECT_TRUE(report.Complete()) << Sentences(report);
    EXPECT_TRUE(report.leftBehind.empty());
    ASSERT_EQ(report.tables.size(), 2U);
    EXPECT_EQ(report.tables[0].name, "COMPS");
    EXPECT_EQ(report.tables[0].rows, 300U);
    EXPECT_EQ(report.tables[0].rowsStated, 300U);
    EXPECT_EQ(Saved(), rows_);
    const auto before = Database::Open("b.mdb", Database::Access::ReadOnly, disk_);
    const auto after = Database::Open("new.mdb", Database::Access::ReadOnly, disk_);
    EXPECT_EQ(testing_support::ContentsOf(*after), testing_support::ContentsOf(*before));
}

TEST_F(RepairTest, LosesTheRowsOfAPageThatIsGoneAndNamesIt) {
    const std::uint32_t page = homes_.at("K0150").page;
    Zero(page);
    const RepairReport report = Save();
    EXPECT_EQ(Saved(), RowsNotOn(page));
    EXPECT_LT(Saved().size(), rows_.size());
    EXPECT_EQ(Sentences(report), "COMPS," + std::to_string(page) +
                                     ",-1,this page held records of the table and holds none any more\n");
}

TEST_F(RepairTest, LosesOneRowToABrokenSlot) {
    const RowId row = homes_.at("K0123");
    detail::PutU16(Page(row.page) + 14 + 2 * std::size_t{row.slot}, 0x1FFF);
    const RepairReport report = Save();
    Rows expected = rows_;
    expected.erase("K0123");
    EXPECT_EQ(Saved(), expected);
    EXPECT_EQ(report.losses, 1U) << Sentences(report);
    EXPECT_EQ(report.lost[0].page, static_cast<long>(row.page));
    EXPECT_EQ(report.lost[0].row, row.slot);
    EXPECT_EQ(report.tables[0].rowsLost, 1U);
}

TEST_F(RepairTest, FindsTheRowsOfAPageWhoseCountIsBroken) {
    detail::PutU16(Page(homes_.at("K0123").page) + 12, 0xFFFF);
    const RepairReport report = Save();
    EXPECT_TRUE(report.Complete()) << Sentences(report);
    EXPECT_EQ(Saved(), rows_);
}

TEST_F(RepairTest, LosesARowWhoseBytesAreOverwritten) {
    const RowId row = homes_.at("K0007");
    const std::size_t begin = detail::U16(Page(row.page) + 14 + 2 * std::size_t{row.slot}) & 0x1FFFU;
    detail::PutU16(Page(row.page) + begin, 0x7777);  // its number of columns
    const RepairReport report = Save();
    Rows expected = rows_;
    expected.erase("K0007");
    EXPECT_EQ(Saved(), expected);
    EXPECT_EQ(report.losses, 1U) << Sentences(report);
    EXPECT_EQ(report.tables[0].rowsLost, 1U);
}

TEST_F(RepairTest, NamesTablesByTheirKeyColumnWhenTheCatalogIsGone) {
    for (std::uint32_t page : PagesOf(1, 2))
        Zero(page);
    const RepairReport report = Save();
    EXPECT_EQ(Saved(), rows_);
    ASSERT_EQ(report.tables.size(), 2U);
    EXPECT_EQ(report.tables[0].name, "COMPS");
    EXPECT_EQ(report.tables[1].name, "Recovered 1");
    EXPECT_EQ(report.tables[1].rows, 5U);
    EXPECT_EQ(report.losses, 3U) << Sentences(report);  // the page, and two names
}

TEST_F(RepairTest, ReadsTheCatalogWithoutItsDefinition) {
    Zero(2);
    const RepairReport report = Save();
    EXPECT_EQ(Saved(), rows_);
    ASSERT_EQ(report.tables.size(), 2U);
    EXPECT_EQ(report.tables[1].name, "Other");
    EXPECT_EQ(report.losses, 1U) << Sentences(report);
    const auto after = Database::Open("new.mdb", Database::Access::ReadOnly, disk_);
    EXPECT_EQ(after->OpenTable("COMPS").Definition().columns[1].properties.defaultValue, "0");
}

TEST_F(RepairTest, NamesATableWhoseDefinitionIsGone) {
    Zero(definition_);
    const std::size_t pages = PagesOf(1, definition_).size();
    const RepairReport report = Save();
    ASSERT_EQ(report.tables.size(), 1U);
    EXPECT_EQ(report.tables[0].name, "Other");
    EXPECT_EQ(report.tables[0].rows, 5U);
    EXPECT_EQ(Sentences(report), "COMPS," + std::to_string(definition_) +
                                     ",-1,the definition of this table is gone, and with it all that its " +
                                     std::to_string(pages) + " pages of records hold\n");
}

TEST_F(RepairTest, SavesTheFrontOfACutOffFile) {
    // The file ends in the middle of a page of rows.
    const std::uint32_t page = homes_.at("K0200").page;
    const std::size_t kept = 2500;
    Rows expected;
    std::size_t lost = 0;
    for (const auto& [key, row] : rows_) {
        const RowId id = homes_.at(key);
        const auto slot = [&](unsigned index) {
            return std::size_t{detail::U16(Page(id.page) + 14 + 2 * std::size_t{index})} & 0x1FFFU;
        };
        const std::size_t end = id.slot == 0 ? kPage : slot(id.slot - 1U);
        if (id.page < page || (id.page == page && end <= kept)) {
            expected[key] = row;
        } else if (id.page == page) {
            ++lost;
        }
    }
    disk_.Content("b.mdb").resize(page * kPage + kept);
    const RepairReport report = Save();
    EXPECT_EQ(report.tables[0].rowsLost, lost);
    const Rows saved = Saved();
    ASSERT_EQ(saved.size(), expected.size());
    for (const auto& [key, row] : expected) {
        ASSERT_TRUE(saved.contains(key)) << key;
        EXPECT_EQ(saved.at(key).first, row.first);
        // Notes may have lain behind the cut: a part of them, from their beginning, or all.
        EXPECT_TRUE(row.second.starts_with(saved.at(key).second)) << key;
    }
    EXPECT_FALSE(report.Complete());
    EXPECT_NE(Sentences(report).find("the file is cut off"), std::string::npos) << Sentences(report);
}

TEST_F(RepairTest, NeedsNoIndexes) {
    for (std::uint32_t page : PagesOf(3, definition_))
        std::fill_n(Page(page), kPage, std::byte{0xEE});
    const auto leaves = PagesOf(4, definition_);
    EXPECT_GE(leaves.size(), 2U);
    for (std::uint32_t page : leaves)
        std::fill_n(Page(page), kPage, std::byte{0xEE});
    const RepairReport report = Save();
    EXPECT_TRUE(report.Complete()) << Sentences(report);
    EXPECT_EQ(Saved(), rows_);
}

TEST_F(RepairTest, NeedsNoMaps) {
    for (std::uint32_t page : PagesOf(1, 0))
        std::fill_n(Page(page), kPage, std::byte{0xEE});
    std::fill_n(Page(1), kPage, std::byte{0xEE});
    const RepairReport report = Save();
    EXPECT_TRUE(report.Complete()) << Sentences(report);
    EXPECT_EQ(Saved(), rows_);
}

TEST_F(RepairTest, NeedsNoHeader) {
    Zero(0);
    const RepairReport report = Save();
    EXPECT_TRUE(report.Complete()) << Sentences(report);
    EXPECT_EQ(Saved(), rows_);
}

TEST_F(RepairTest, CutsLongValuesWhoseLastPagesAreGone) {
    const auto pages = PagesOf(1, 0x4C41564C);
    ASSERT_GE(pages.size(), 100U);  // thirty notes of three pages each, and more
    Zero(pages[pages.size() / 2]);
    const RepairReport report = Save();
    const Rows saved = Saved();
    ASSERT_EQ(saved.size(), rows_.size());
    std::size_t cut = 0;
    for (const auto& [key, row] : rows_) {
        EXPECT_EQ(saved.at(key).first, row.first);
        if (saved.at(key).second == row.second) continue;
        ++cut;
        EXPECT_TRUE(row.second.starts_with(saved.at(key).second)) << key;
    }
    EXPECT_GE(cut, 1U);
    EXPECT_LE(cut, 2U);  // as many values as touch one page
    EXPECT_EQ(report.tables[0].valuesCut, cut);
    EXPECT_EQ(report.tables[0].rowsLost, 0U);
    EXPECT_EQ(report.losses, cut);
    EXPECT_NE(report.lost[0].sentence.find("in column NOTE"), std::string::npos) << Sentences(report);
}

TEST_F(RepairTest, SavesTheFirstOfTwoRowsWithTheSameKey) {
    const RowId row = homes_.at("K0202");
    const std::size_t at = row.page * kPage;
    auto& bytes = disk_.Content("b.mdb");
    const std::string_view key = "K0202";
    const auto begin = bytes.begin() + static_cast<std::ptrdiff_t>(at);
    const auto found = std::search(begin, begin + kPage, key.begin(), key.end(),
                                   [](std::byte byte, char c) { return static_cast<char>(byte) == c; });
    ASSERT_NE(found, begin + kPage);
    found[4] = std::byte{'1'};  // K0201, which is there already
    const RepairReport report = Save();
    Rows expected = rows_;
    expected.erase("K0202");
    EXPECT_EQ(Saved(), expected);
    EXPECT_EQ(Sentences(report),
              "COMPS," + std::to_string(row.page) + "," + std::to_string(row.slot) +
                  ",a record is lost: a record with the key \"K0201\" was saved already\n");
    EXPECT_EQ(report.tables[0].rowsLost, 1U);
}

TEST_F(RepairTest, SavesMovedRowsWhoseHomeIsGone) {
    const RowId home = homes_.at("K0011");
    {
        const auto database = Database::Open("b.mdb", Database::Access::ReadWrite, disk_);
        // Too long for what is free at home: the row moves.
        database->OpenTable("COMPS").Update(
            home,
            std::vector<Value>{KeyOf(11) + std::string(45, 'x'), std::int32_t{11}, std::string(60, '\xC4')});
    }
    ASSERT_EQ(detail::U16(Page(home.page) + 14 + 2 * std::size_t{home.slot}) & 0xC000, 0x4000);
    Zero(home.page);
    static_cast<void>(Save());
    Rows expected = RowsNotOn(home.page);
    const Rows saved = Saved();
    EXPECT_TRUE(saved.contains("K0011" + std::string(45, 'x')));
    EXPECT_EQ(saved.size(), expected.size() + 1);
}

TEST_F(RepairTest, LosesMovedRowsWhoseTargetIsGone) {
    const RowId home = homes_.at("K0011");
    {
        const auto database = Database::Open("b.mdb", Database::Access::ReadWrite, disk_);
        database->OpenTable("COMPS").Update(
            home,
            std::vector<Value>{KeyOf(11) + std::string(45, 'x'), std::int32_t{11}, std::string(60, '\xC4')});
    }
    const std::size_t begin = detail::U16(Page(home.page) + 14 + 2 * std::size_t{home.slot}) & 0x1FFFU;
    detail::PutU32(Page(home.page) + begin, home.page << 8 | home.slot);  // to itself
    const RepairReport report = Save();
    Rows expected = rows_;
    expected.erase("K0011");
    EXPECT_EQ(Saved(), expected);
    EXPECT_EQ(report.losses, 1U) << Sentences(report);
}

TEST_F(RepairTest, DoesNotBringDeletedRowsBack) {
    {
        const auto database = Database::Open("b.mdb", Database::Access::ReadWrite, disk_);
        database->Begin();
        for (int i = 50; i < 250; ++i) {
            database->OpenTable("COMPS").Delete(homes_.at(KeyOf(i)));
            rows_.erase(KeyOf(i));
        }
        database->Commit();
    }
    const RepairReport report = Save();
    EXPECT_TRUE(report.Complete()) << Sentences(report);
    EXPECT_EQ(Saved(), rows_);
}

TEST_F(RepairTest, LeavesOutAnIndexThatCannotBeBuiltAndKeepsTheRows) {
    // A character without a place in the sort order, put where the engine would not put it.
    const RowId row = homes_.at("K0042");
    std::byte* const page = Page(row.page);
    const std::size_t begin = detail::U16(page + 14 + 2 * std::size_t{row.slot}) & 0x1FFFU;
    std::byte* const key = std::search(page + begin, page + begin + 40, "K0042", "K0042" + 5,
                                       [](std::byte byte, char c) { return static_cast<char>(byte) == c; });
    ASSERT_LT(key, page + begin + 40);
    // FF FE 'K' '0' '0' '4' '2': switch to two bytes a character, one Cyrillic letter, and one byte more.
    const unsigned bytes[] = {0x00, 0x1C, 0x04, 0x00, '2'};
    for (std::size_t i = 0; i < std::size(bytes); ++i)
        key[i] = static_cast<std::byte>(bytes[i]);
    const RepairReport report = Save();
    EXPECT_EQ(Saved().size(), rows_.size());
    EXPECT_EQ(report.losses, 1U) << Sentences(report);
    EXPECT_NE(Sentences(report).find("the index PrimaryKey was left out"), std::string::npos)
        << Sentences(report);
    const auto after = Database::Open("new.mdb", Database::Access::ReadOnly, disk_);
    EXPECT_EQ(after->OpenTable("COMPS").Definition().indexes.size(), 1U);
}

TEST_F(RepairTest, ReadsADefinitionThatHasLostItsEnd) {
    const auto database = Database::Create("wide.mdb", kNow, disk_);
    NewTable wide;
    wide.name = "Wide";
    for (int i = 0; i < 120; ++i)
        wide.columns.push_back(TextColumn(("Column of many letters " + std::to_string(i)).c_str(), 20));
    Table& table = database->CreateTable(wide, kNow);
    std::vector<Value> row(120);
    row[0] = "first";
    row[119] = "last";
    table.Insert(row);
    const std::uint32_t page = DefinitionOf(*database, "Wide");
    auto& bytes = disk_.Content("wide.mdb");
    const std::uint32_t next = detail::U32(bytes.data() + page * kPage + 4);
    ASSERT_NE(next, 0U);
    std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(next * kPage), kPage, std::byte{0});
    const RepairReport report = Repair("wide.mdb", "new.mdb", kNow, disk_);
    ASSERT_EQ(report.tables.size(), 1U);
    EXPECT_EQ(report.tables[0].name, "Wide");
    EXPECT_EQ(report.tables[0].rows, 1U);
    const auto after = Database::Open("new.mdb", Database::Access::ReadOnly, disk_);
    const Table& saved = after->OpenTable("Wide");
    ASSERT_EQ(saved.Definition().columns.size(), 120U);
    EXPECT_EQ(saved.Definition().columns[0].name, "Column of many letters 0");
    EXPECT_EQ(saved.Definition().columns[119].name, "Column 120");
    saved.Scan([&](const RowView& view) {
        EXPECT_EQ(view.Get(0), Value{"first"});
        EXPECT_EQ(view.Get(119), Value{"last"});
        return true;
    });
}

/// Where a name in two bytes a character stands on a page; nullptr: nowhere.
std::byte* NameOn(std::byte* page, std::u16string_view name) {
    for (std::byte* at = page; at + 2 * name.size() <= page + kPage; ++at) {
        if (std::memcmp(at, name.data(), 2 * name.size()) == 0) return at;
    }
    return nullptr;
}

// The name stood in the new catalog's index, which has no place for a character without a weight: fault
// 20001, and nothing was saved.
TEST_F(RepairTest, SavesATableWhoseDamagedNameCannotBeSorted) {
    std::byte* name = nullptr;
    for (std::uint32_t page : PagesOf(1, 2)) {
        if (std::byte* const found = NameOn(Page(page), u"COMPS")) name = found;
    }
    ASSERT_NE(name, nullptr);
    detail::PutU16(name + 2, 0x041C);  // a letter that no sort order of ours has
    const RepairReport report = Save();
    EXPECT_EQ(Saved("COMPS"), rows_);  // called so by its key column
    EXPECT_NE(Sentences(report).find("is damaged or used twice: it was called COMPS"), std::string::npos)
        << Sentences(report);
}

// Two names that differ to the eye and not in the catalog's index were one too many for it.
TEST_F(RepairTest, SavesTwoTablesWhoseNamesHaveTheSameKey) {
    for (std::uint32_t page : PagesOf(1, 2)) {
        if (std::byte* const found = NameOn(Page(page), u"Other")) std::memcpy(found, u"comps", 10);
    }
    const RepairReport report = Save();
    ASSERT_EQ(report.tables.size(), 2U);
    EXPECT_EQ(Saved(), rows_);
    EXPECT_EQ(report.tables[1].name, "Recovered 1");
    EXPECT_EQ(report.tables[1].rows, 5U);
}

// The date of the old catalog was put into the new one as it was: fault 13, and nothing was saved.
TEST_F(RepairTest, SavesATableWhoseDateInTheCatalogIsDamaged) {
    const auto database = Database::Open("b.mdb", Database::Access::ReadOnly, disk_);
    const Table& catalog = database->OpenTable("MSysObjects");
    const std::size_t column = catalog.Definition().FindColumn("DateCreate").value();
    const std::size_t at = 2 + std::size_t{catalog.Definition().columns[column].fixedOffset};
    for (std::uint32_t page : PagesOf(1, 2)) {
        for (unsigned slot = 0; slot < detail::U16(Page(page) + 12); ++slot) {
            const std::size_t begin = detail::U16(Page(page) + 14 + 2 * std::size_t{slot}) & 0x1FFFU;
            std::fill_n(Page(page) + begin + at, 8, std::byte{0xFF});  // no number at all
        }
    }
    EXPECT_TRUE(Save().Complete());
    EXPECT_EQ(Saved(), rows_);
}

TEST_F(RepairTest, SavesADatabookThatADamagedCatalogHides) {
    const auto database = Database::Open("b.mdb", Database::Access::ReadOnly, disk_);
    const Table& catalog = database->OpenTable("MSysObjects");
    const std::size_t at =
        2 + std::size_t{
                catalog.Definition().columns[catalog.Definition().FindColumn("Flags").value()].fixedOffset};
    for (std::uint32_t page : PagesOf(1, 2)) {
        for (unsigned slot = 0; slot < detail::U16(Page(page) + 12); ++slot) {
            const std::size_t begin = detail::U16(Page(page) + 14 + 2 * std::size_t{slot}) & 0x1FFFU;
            Page(page)[begin + at] |= std::byte{2};
        }
    }
    const RepairReport report = Save();
    EXPECT_EQ(Saved(), rows_);
    ASSERT_EQ(report.tables.size(), 2U);
    // It may be one that another program hides, so it stays hidden, with all its records.
    const auto after = Database::Open("new.mdb", Database::Access::ReadOnly, disk_);
    EXPECT_EQ(after->TableNames(), std::vector<std::string>{"COMPS"});
    EXPECT_EQ(testing_support::RowsOf(after->OpenTable("Other")).size(), 5U);
}

// A column of fixed length took the mark of a compressed text for what it says, and came out longer than it
// is.
TEST_F(RepairTest, CutsATextToTheWidthOfItsColumn) {
    {
        const auto database = Database::Create("c.mdb", kNow, disk_);
        NewTable flags;
        flags.name = "Flags";
        flags.columns = {TextColumn("Flag", 6), TextColumn("Town", 4), TextColumn("Free", 4)};
        flags.columns[0].fixedLength = true;
        Table& table = database->CreateTable(flags, kNow);
        table.Insert(std::vector<Value>{"abcdef", "Troy", "1234"});
        table.Insert(std::vector<Value>{"ghijkl", "Troy", "5678"});
    }
    disk_.Put("b.mdb", disk_.Content("c.mdb"));
    std::byte* page = nullptr;
    for (std::uint32_t each = 6; each < PageCount(); ++each) {
        if (detail::U8(Page(each)) == 1 && detail::U16(Page(each) + 12) == 2 &&
            detail::U32(Page(each) + 4) > 5)
            page = Page(each);
    }
    ASSERT_NE(page, nullptr);
    std::byte* const first = page + (detail::U16(page + 14) & 0x1FFFU);
    first[2] = std::byte{0xFF};  // of the first letter of "abcdef"
    first[3] = std::byte{0xFE};
    for (std::uint32_t each = 6; each < PageCount(); ++each) {
        // The width of Town, in the second descriptor behind the fixed part.
        if (detail::U8(Page(each)) == 2) detail::PutU16(Page(each) + 63 + 25 + 23, 4);
    }
    const RepairReport report = Save();
    ASSERT_EQ(report.tables.size(), 1U);
    EXPECT_EQ(report.tables[0].rows, 2U);
    EXPECT_EQ(report.tables[0].valuesCut, 3U) << Sentences(report);
    EXPECT_NE(Sentences(report).find("column Flag could not be read to its end"), std::string::npos)
        << Sentences(report);
    const auto after = Database::Open("new.mdb", Database::Access::ReadOnly, disk_);
    const auto rows = testing_support::RowsOf(after->OpenTable("Flags"));
    const auto text = [](const char* value) { return testing_support::ExactText(Value{value}); };
    EXPECT_EQ(rows[1], (std::vector<std::string>{text("ghijkl"), text("Tr"), text("5678")}));
}

TEST_F(RepairTest, GivesAColumnOfNoWidthTheWidest) {
    auto& bytes = disk_.Content("b.mdb");
    // Behind the fixed part and two count blocks: the first descriptor, that of CENTRALKEY.
    detail::PutU16(&bytes[definition_ * kPage + 63 + 2 * 12 + 23], 0);
    const RepairReport report = Save();
    EXPECT_EQ(Saved(), rows_);
    EXPECT_EQ(report.losses, 1U) << Sentences(report);
    const auto after = Database::Open("new.mdb", Database::Access::ReadOnly, disk_);
    EXPECT_EQ(after->OpenTable("COMPS").Definition().columns[0].CharacterLimit(), 255);
}

TEST_F(RepairTest, GivesColumnsNamesThatAccessTakes) {
    std::byte* const definition = Page(definition_);
    std::byte* const found = NameOn(definition, u"PRICE");
    ASSERT_NE(found, nullptr);
    found[2] = std::byte{7};  // a bell
    const RepairReport report = Save();
    EXPECT_EQ(Saved(), rows_);
    const auto after = Database::Open("new.mdb", Database::Access::ReadOnly, disk_);
    EXPECT_EQ(after->OpenTable("COMPS").Definition().columns[1].name, "column 2");
    EXPECT_NE(Sentences(report).find("it was called column 2"), std::string::npos) << Sentences(report);
}

// A damaged number of the code page was a fault, and nothing was saved.
TEST(Repair, ReadsAFileOfAccess97WhoseCodePageIsDamaged) {
    MemoryDisk disk;
    auto file = testing_support::SampleFile97();
    disk.Put("sound.mdb", file.Bytes());
    file.PutMasked(0x3C, "E3 07");
    disk.Put("old.mdb", file.Bytes());
    const RepairReport report = Repair("old.mdb", "new.mdb", kNow, disk);
    ASSERT_EQ(report.losses, 1U);
    EXPECT_EQ(report.lost[0].page, 0);
    EXPECT_NE(report.lost[0].sentence.find("code page 2019"), std::string::npos) << report.lost[0].sentence;
    const auto before = Database::Open("sound.mdb", Database::Access::ReadOnly, disk);
    const auto after = Database::Open("new.mdb", Database::Access::ReadOnly, disk);
    EXPECT_EQ(testing_support::ContentsOf(*after, false), testing_support::ContentsOf(*before, false));
}

TEST_F(RepairTest, RefusesWhatIsNoDatabaseAndLeavesNothing) {
    disk_.Put("text.mdb", std::vector<std::byte>(50000, std::byte{'x'}));
    try {
        static_cast<void>(Repair("text.mdb", "new.mdb", kNow, disk_));
        ADD_FAILURE() << "repaired";
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.number, fault::kNotADatabook);
    }
    EXPECT_FALSE(disk_.Exists("new.mdb"));
}

TEST_F(RepairTest, ReplacesNoFile) {
    disk_.Put("new.mdb", std::vector<std::byte>(3, std::byte{'x'}));
    try {
        static_cast<void>(Repair("b.mdb", "new.mdb", kNow, disk_));
        ADD_FAILURE() << "replaced";
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.number, fault::kFileExists);
    }
    EXPECT_EQ(disk_.Content("new.mdb").size(), 3U);
}

TEST_F(RepairTest, LeavesNothingWhenTheDiskFails) {
    CrashDisk disk;
    disk.Open("b.mdb", files::OpenMode::CreateNew)->WriteAt(0, disk_.Content("b.mdb"));
    long n = 1;
    for (; n < 1000; ++n) {
        SCOPED_TRACE(n);
        CrashDisk again = disk;
        again.FailAt(n, CrashDisk::Failure::Error);
        try {
            static_cast<void>(Repair("b.mdb", "new.mdb", kNow, again));
        } catch (const Fault&) {
            ASSERT_FALSE(again.Exists("new.mdb"));
            continue;
        }
        ASSERT_FALSE(again.Failed());
        break;
    }
    EXPECT_GT(n, 3);
    EXPECT_LT(n, 1000);
}

TEST_F(RepairTest, MakesASoundFileOfWhateverDamage) {
    const std::vector<std::byte> sound = disk_.Content("b.mdb");
    std::mt19937 random(20261121);
    std::uint64_t saved = 0;
    for (int round = 0; round < 300; ++round) {
        SCOPED_TRACE(round);
        auto& bytes = disk_.Content("b.mdb");
        bytes = sound;
        const unsigned long kind = random() % 4;
        for (unsigned long i = 0, n = 1 + random() % 40; i < n; ++i) {
            const std::size_t at = random() % bytes.size();
            if (kind == 0) {
                bytes[at] = static_cast<std::byte>(random());
            } else if (kind == 1) {
                std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(at / kPage * kPage), kPage,
                            static_cast<std::byte>(random()));
            } else if (kind == 2) {  // heads of pages
                bytes[at / kPage * kPage + random() % 64] = static_cast<std::byte>(random());
            } else {  // a page in the place of another
                const std::size_t from = random() % bytes.size() / kPage * kPage;
                std::copy_n(sound.begin() + static_cast<std::ptrdiff_t>(from), kPage,
                            bytes.begin() + static_cast<std::ptrdiff_t>(at / kPage * kPage));
            }
        }
        if (random() % 5 == 0) bytes.resize(random() % bytes.size());
        disk_.Remove("new.mdb");
        try {
            const RepairReport report = Repair("b.mdb", "new.mdb", kNow, disk_);
            for (const RepairedTable& table : report.tables)
                saved += table.rows;
        } catch (const Fault& fault) {
            const std::set<int> allowed{fault::kNotADatabook, fault::kPassword, fault::kUnsupported};
            ASSERT_TRUE(allowed.contains(fault.number)) << fault.number << " " << fault.description;
            ASSERT_FALSE(disk_.Exists("new.mdb"));
            continue;
        }
        const VerifyReport check = Verify("new.mdb", disk_);
        ASSERT_TRUE(check.Sound()) << check.findings.front().sentence;
    }
    EXPECT_GT(saved, 30000U);  // most of most files
}

TEST(Repair, SavesAFileOfAccess97InTheNewerFormat) {
    MemoryDisk disk;
    disk.Put("old.mdb", std::move(testing_support::SampleFile97().Bytes()));
    const RepairReport report = Repair("old.mdb", "new.mdb", kNow, disk);
    ASSERT_EQ(report.tables.size(), 1U);
    EXPECT_EQ(report.tables[0].name, "Sales");
    EXPECT_EQ(report.tables[0].rows, 4U);
    const auto before = Database::Open("old.mdb", Database::Access::ReadOnly, disk);
    const auto after = Database::Open("new.mdb", Database::Access::ReadOnly, disk);
    EXPECT_EQ(testing_support::ContentsOf(*after, false), testing_support::ContentsOf(*before, false));
}

TEST(Repair, SavesAllOfEveryRealFile) {
    if (testing_support::SampleNames().empty())
        GTEST_SKIP() << "ZENVORA_JET_SAMPLES names no folder: no real file was read";
    for (const std::string& name : testing_support::SampleNames()) {
        SCOPED_TRACE(name);
        const TempFolder folder;
        testing_support::CopySample(name, folder / "b.mdb");
        const RepairReport report = Repair(folder / "b.mdb", folder / "new.mdb", kNow);
        const auto before = Database::Open(folder / "b.mdb", Database::Access::ReadOnly);
        const auto after = Database::Open(folder / "new.mdb", Database::Access::ReadOnly);
        EXPECT_EQ(after->TableNames(), before->TableNames());
        for (const std::string& table : before->TableNames()) {
            auto expected = testing_support::RowsOf(before->OpenTable(table));
            auto saved = testing_support::RowsOf(after->OpenTable(table));
            std::sort(expected.begin(), expected.end());
            std::sort(saved.begin(), saved.end());
            EXPECT_EQ(saved, expected) << table;
        }
        // One has an index over Japanese texts, whose keys cannot be built.
        EXPECT_EQ(report.losses, name == "a2003-unicode-memo" ? 1U : 0U);
        if (const char* checker = std::getenv("ZENVORA_MDBCHECK")) {
            const auto result = testing_support::RunCommand("python3 '" + std::string(checker) + "' '" +
                                                            (folder / "new.mdb").string() + "'");
            EXPECT_EQ(result.status, 0) << result.output;
        }
    }
}

}  // namespace
}  // namespace zenvora::jet
