// The integrity check: what is sound is called sound, and each kind of damage is found where it is.

#include "platform/jet/verify.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

#include "platform/fault.h"
#include "platform/jet/detail/definition_codec.h"
#include "sample_table.h"

namespace zenvora::jet {
namespace {

using detail::kJet4;
using detail::PageNumber;
using detail::RowPointer;
using detail::U16;
using detail::U32;
using testing_support::kNow;
using testing_support::MemoryDisk;
using testing_support::SampleTable;

constexpr std::size_t kPage = 4096;

/// A row of SampleTable; `whole` is the value of its unique index.
std::vector<Value> RowOf(const std::string& street, int whole, std::string note) {
    return {street, true,   7,      8,   whole, Currency{90000}, 1.5F, 2.5, DateTime{40000.0}, note, Bytes{},
            Guid{}, Null{}, "Troy", "3", "12"};
}

/// Streets in no order, so that their keys share no beginning.
std::string Street(int i) {
    return std::to_string(100 + i * 37 % 300) + " Orchard Lake Road, House " + std::to_string(i);
}

/// The bytes of a Databook with the table Sample (300 rows: an index of two levels, a moved row, a deleted
/// one, long values on one page and on several) and the table Other (two rows), and the places of their
/// parts.
class Book {
  public:
    Book() {
        MemoryDisk disk;
        {
            const auto databook = Database::Create("b.mdb", kNow, disk);
            databook->Begin();
            Table& sample = databook->CreateTable(SampleTable(), kNow);
            std::vector<RowId> rows;
            for (int i = 0; i < 300; ++i) {
                const std::size_t note = i == 0 ? 9000 : i == 1 ? 500 : i == 2 ? 20 : 0;
                rows.push_back(sample.Insert(RowOf(Street(i), i, std::string(note, 'n'))));
            }
            sample.Delete(rows[7]);
            auto longer = RowOf(Street(5), 5, "");
            longer[13] = std::string(250, 't');
            longer[9] = std::string(60, 'n');
            longer[10] = Bytes(60, std::byte{1});
            sample.Update(rows[5], longer);
            moved_ = rows[5];
            first_ = rows[0];
            NewTable other;
            other.name = "Other";
            other.columns = {testing_support::TextColumn("Key", 20)};
            NewIndex key;
            key.name = "Key";
            key.columns = {"Key"};
            other.indexes = {key};
            Table& second = databook->CreateTable(other, kNow);
            second.Insert(std::vector<Value>{"a"});
            second.Insert(std::vector<Value>{"a"});
            databook->Commit();
        }
        bytes = disk.Content("b.mdb");
        sampleDefinition_ = DefinitionPage(0);
        otherDefinition_ = DefinitionPage(1);
        EXPECT_EQ(*At(moved_.page, 14 + 2 * std::size_t{moved_.slot} + 1) & std::byte{0xC0}, std::byte{0x40});
        sample_ = Read(disk, sampleDefinition_);
        other_ = Read(disk, otherDefinition_);
    }

    [[nodiscard]] VerifyReport Verify() const {
        MemoryDisk disk;
        disk.Put("b.mdb", bytes);
        VerifyReport report = jet::Verify("b.mdb", disk);
        EXPECT_EQ(disk.Content("b.mdb"), bytes) << "the check changed the file";
        return report;
    }

    std::byte* At(std::size_t page, std::size_t offset = 0) { return bytes.data() + page * kPage + offset; }
    [[nodiscard]] std::size_t SlotBegin(PageNumber page, unsigned slot) {
        return U16(At(page, 14 + 2 * std::size_t{slot})) & 0x1FFF;
    }
    std::byte* RowBytes(PageNumber page, unsigned slot) { return At(page, SlotBegin(page, slot)); }
    /// The bytes of a map's row.
    std::byte* Map(RowPointer row) { return RowBytes(row.Page(), row.Row()); }
    void SetBit(RowPointer map, PageNumber page) {
        std::byte* const row = Map(map);
        const std::size_t bit = page - U32(row + 1);
        row[5 + bit / 8] |= static_cast<std::byte>(1U << (bit % 8));
    }
    std::byte* Definition(std::size_t offset) { return At(sampleDefinition_, offset); }
    /// The n-th page of type 1 that belongs to a definition.
    PageNumber DataPage(PageNumber owner, std::size_t n = 0) {
        for (PageNumber page = 6; page < bytes.size() / kPage; ++page) {
            if (*At(page) == std::byte{1} && U32(At(page, 4)) == owner && n-- == 0) return page;
        }
        ADD_FAILURE() << "no such page";
        return 0;
    }
    /// The leaf that comes n-th in an index of Sample.
    PageNumber Leaf(std::size_t index, std::size_t n = 0) {
        PageNumber page = sample_.indexes[index].root;
        while (*At(page) == std::byte{3}) {
            std::size_t end = 0;
            while ((static_cast<unsigned>(*At(page, 27 + end / 8)) >> (end % 8) & 1U) == 0)
                ++end;
            page = detail::U32BigEndian(At(page, 480 + end - 4));
        }
        while (n-- > 0)
            page = U32(At(page, 16));
        return page;
    }
    /// The raw bytes of the Memo value of Sample's first row.
    std::byte* FirstNote() {
        std::byte* const row = RowBytes(first_.page, first_.slot);
        const std::size_t end = first_.slot == 0 ? kPage : SlotBegin(first_.page, first_.slot - 1U);
        const std::size_t length = end - SlotBegin(first_.page, first_.slot);
        const std::size_t index = sample_.table.columns[9].variableIndex;
        return row + U16(row + length - 2 - 4 - 2 * index);
    }

    std::vector<std::byte> bytes;
    detail::StoredDefinition sample_, other_;
    PageNumber sampleDefinition_ = 0, otherDefinition_ = 0;
    RowId moved_, first_;

  private:
    PageNumber DefinitionPage(int n) {
        for (PageNumber page = 6; page < bytes.size() / kPage; ++page) {
            if (*At(page) == std::byte{2} && n-- == 0) return page;
        }
        ADD_FAILURE() << "no such definition";
        return 0;
    }
    static detail::StoredDefinition Read(MemoryDisk& disk, PageNumber page) {
        detail::Pager pager(disk.Open("b.mdb", files::OpenMode::ReadOnly), "b.mdb", kJet4, true);
        return detail::ReadDefinition(pager, page);
    }
};

std::string Text(const VerifyReport& report) {
    std::string text;
    for (const VerifyFinding& each : report.findings) {
        text += (each.severity == VerifyFinding::Severity::Error ? "error" : "note") + std::string(" page ") +
                std::to_string(each.page) + " row " + std::to_string(each.row) + " " + each.table + " " +
                each.index + ": " + each.sentence + "\n";
    }
    return text;
}

TEST(SoundFile, HasNoFindings) {
    const Book book;
    const VerifyReport report = book.Verify();
    EXPECT_TRUE(report.Sound()) << Text(report);
    EXPECT_EQ(report.notes, 0U) << Text(report);
}

TEST(SoundFile, IsTheEmptyOne) {
    MemoryDisk disk;
    static_cast<void>(Database::Create("n.mdb", kNow, disk));
    const VerifyReport report = Verify("n.mdb", disk);
    EXPECT_EQ(report.errors + report.notes, 0U) << Text(report);
}

TEST(SoundFile, IsEveryOneThatAccessMade) {
    const char* const folder = std::getenv("ZENVORA_JET_SAMPLES");
    if (folder == nullptr) GTEST_SKIP() << "ZENVORA_JET_SAMPLES names no folder with sample files";
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() != ".mdb") continue;
        const VerifyReport report = Verify(entry.path());
        EXPECT_TRUE(report.Sound()) << entry.path() << "\n" << Text(report);
        ++files;
    }
    EXPECT_GT(files, 0);
}

struct Damage {
    const char* name;
    void (*make)(Book&);
    VerifyFinding::Severity severity;
    const char* table;
    const char* index;
    const char* sentence;  ///< part of it
};
constexpr auto kError = VerifyFinding::Severity::Error;
constexpr auto kNote = VerifyFinding::Severity::Note;

void PutU16At(std::byte* at, std::size_t value) {
    detail::PutU16(at, value);
}
void PutU32At(std::byte* at, std::size_t value) {
    detail::PutU32(at, value);
}

const Damage kDamages[] = {
    // the file
    {"HeaderPointer", [](Book& b) { *b.At(0, 0x20) ^= std::byte{1}; }, kError, "", "",
     "header does not lead"},
    {"CommitBytes", [](Book& b) { *b.At(0, 0xE01) = *b.At(0, 0xE00) = std::byte{0}; }, kNote, "", "",
     "commit bytes"},
    {"HalfAPage", [](Book& b) { b.bytes.resize(b.bytes.size() + 100); }, kError, "", "",
     "100 bytes into a page"},
    {"CutOff", [](Book& b) { b.bytes.resize(b.bytes.size() - 2 * kPage); }, kError, "Other", "",
     "behind the end of the file"},
    // page accounting
    {"PageInUseCountsAsFree",
     [](Book& b) { b.SetBit(RowPointer::Of(1, 0), b.DataPage(b.sampleDefinition_)); }, kError, "", "",
     "counts as free"},
    {"PageInTwoMaps", [](Book& b) { b.SetBit(b.other_.ownedMap, b.DataPage(b.sampleDefinition_)); }, kError,
     "Other", "", "and also to the rows of table Sample"},
    {"LostPage",
     [](Book& b) {
         b.bytes.resize(b.bytes.size() + kPage);
         std::byte* const map = b.Map(RowPointer::Of(1, 0));
         const std::size_t page = b.bytes.size() / kPage - 1;
         map[5 + page / 8] &= ~static_cast<std::byte>(1U << (page % 8));
     },
     kNote, "", "", "1 page wasted"},
    {"FreeMapOutsideOfOwnedMap", [](Book& b) { b.SetBit(b.sample_.freeMap, b.sampleDefinition_); }, kError,
     "Sample", "", "are not the table's own"},
    {"MapOfUnknownForm", [](Book& b) { *b.Map(b.sample_.ownedMap) = std::byte{7}; }, kError, "Sample", "",
     "unknown form"},
    {"MapOnAnotherPage",
     [](Book& b) { PutU32At(b.Definition(55), RowPointer::Of(b.sampleDefinition_, 0).value); }, kError,
     "Sample", "", "no page of maps"},
    {"MapOfTwoTables", [](Book& b) { PutU32At(b.Definition(59), b.sample_.ownedMap.value); }, kError,
     "Sample", "", "is also that of"},
    {"MapThatIsNotThere",
     [](Book& b) { PutU32At(b.Definition(59), RowPointer::Of(b.sample_.freeMap.Page(), 200).value); }, kError,
     "Sample", "", "is not on its page"},
    {"BitsOnAnotherPage",
     [](Book& b) {
         std::byte* const map = b.Map(b.sample_.freeMap);
         std::fill_n(map, 69, std::byte{0});
         map[0] = std::byte{1};
         PutU32At(map + 1, 16);
     },
     kError, "Sample", "", "and also to"},
    // definitions
    {"DefinitionOfAnotherKind", [](Book& b) { *b.Definition(0) = std::byte{1}; }, kError, "Sample", "",
     "definition of the table cannot be read"},
    {"DefinitionThatEndsLater", [](Book& b) { PutU32At(b.Definition(8), U32(b.Definition(8)) + 4); }, kError,
     "Sample", "", "states a length"},
    {"DefinitionInACircle", [](Book& b) { PutU32At(b.Definition(4), b.sampleDefinition_); }, kError, "Sample",
     "", "circle"},
    {"TooManyColumns", [](Book& b) { PutU16At(b.Definition(45), 400); }, kError, "Sample", "",
     "impossible counts"},
    {"FreeWordOfADefinition", [](Book& b) { PutU16At(b.Definition(2), 1); }, kNote, "Sample", "",
     "page of the definition claims 1 free"},
    {"LengthOfAColumn", [](Book& b) { PutU16At(b.Definition(63 + 3 * 12 + 4 * 25 + 23), 2); }, kError,
     "Sample", "", "column Whole states a length of 2 bytes"},
    {"ColumnsThatOverlap", [](Book& b) { PutU16At(b.Definition(63 + 3 * 12 + 4 * 25 + 21), 0); }, kError,
     "Sample", "", "overlap"},
    {"MapsOfALongColumnListedForAnother",
     [](Book& b) { PutU16At(b.Definition(b.sample_.bytes.size() - 2 - 10), 9); }, kError, "Sample", "",
     "no maps for its long values"},
    {"NumberOfAnIndexTwice",
     [](Book& b) { PutU32At(b.Definition(b.sample_.realIndexesAt + 3 * 52 + 28 + 4), 0); }, kError, "Sample",
     "", "same number"},
    {"RowCount", [](Book& b) { PutU32At(b.Definition(16), 12); }, kNote, "Sample", "",
     "counts 12 rows, and there are 299"},
    // data pages
    {"DataPageOfAnotherKind", [](Book& b) { *b.At(b.DataPage(b.sampleDefinition_)) = std::byte{4}; }, kError,
     "Sample", "", "it is of another kind (4)"},
    {"OwnerOfADataPage", [](Book& b) { PutU32At(b.At(b.DataPage(b.sampleDefinition_), 4), 2); }, kError,
     "Sample", "", "another owner (page 2)"},
    {"FreeWordTooHigh", [](Book& b) { PutU16At(b.At(b.DataPage(b.sampleDefinition_), 2), 4000); }, kError,
     "Sample", "", "would destroy others"},
    {"FreeWordTooLow", [](Book& b) { PutU16At(b.At(b.DataPage(b.otherDefinition_), 2), 5); }, kNote, "Other",
     "", "claims 5 free bytes"},
    {"TooManySlots", [](Book& b) { PutU16At(b.At(b.DataPage(b.sampleDefinition_), 12), 300); }, kError,
     "Sample", "", "claims 300 rows"},
    {"SlotOutsideOfItsPlace",
     [](Book& b) { PutU16At(b.At(b.DataPage(b.sampleDefinition_), 14 + 4), 0x0FFF); }, kError, "Sample", "",
     "outside of its place"},
    {"SlotWithAnUnknownMark", [](Book& b) { *b.At(b.DataPage(b.otherDefinition_), 15) |= std::byte{0x20}; },
     kError, "Other", "", "mark that is not known"},
    // rows
    {"ColumnCountOfARow", [](Book& b) { PutU16At(b.RowBytes(b.first_.page, b.first_.slot), 99); }, kError,
     "Sample", "", "impossible number of columns"},
    {"VariableCountOfARow", [](Book& b) { PutU16At(b.At(b.DataPage(b.otherDefinition_), kPage - 3), 9); },
     kError, "Other", "", "impossible number of values"},
    {"OffsetsOfARow", [](Book& b) { PutU16At(b.At(b.DataPage(b.otherDefinition_), kPage - 5), 4000); },
     kError, "Other", "", "of variable length"},
    // moved rows
    {"PointerToNowhere",
     [](Book& b) { PutU32At(b.RowBytes(b.moved_.page, b.moved_.slot), RowPointer::Of(2, 1).value); }, kError,
     "Sample", "", "not where its pointer leads"},
    {"PointerInACircle",
     [](Book& b) { PutU32At(b.RowBytes(b.moved_.page, b.moved_.slot), RowPointer::Of(b.moved_).value); },
     kError, "Sample", "", "two pointers lead to the same row"},
    {"TargetWithoutItsMark",
     [](Book& b) {
         const RowPointer target{U32(b.RowBytes(b.moved_.page, b.moved_.slot))};
         *b.At(target.Page(), 14 + 2 * std::size_t{target.Row()} + 1) &= std::byte{0x7F};
     },
     kError, "Sample", "", "not marked as one"},
    {"TargetWithoutPointer",
     [](Book& b) { *b.At(b.moved_.page, 14 + 2 * std::size_t{b.moved_.slot} + 1) |= std::byte{0xC0}; }, kNote,
     "Sample", "", "hidden rows that no pointer leads to"},
    // long values
    {"LongValueTooLong", [](Book& b) { PutU32At(b.FirstNote(), 30000); }, kError, "Sample", "",
     "a long value of 30000 bytes has 18000"},
    {"LongValueTooShort", [](Book& b) { PutU32At(b.FirstNote(), 100); }, kNote, "Sample", "",
     "a long value of 100 bytes has 18000"},
    {"LongValueOfUnknownForm", [](Book& b) { *(b.FirstNote() + 3) = std::byte{0xC0}; }, kError, "Sample", "",
     "unknown form"},
    {"LongValueInTheRowCutOff", [](Book& b) { *(b.FirstNote() + 3) = std::byte{0x80}; }, kError, "Sample", "",
     "in the row is cut off"},
    {"LongValueElsewhere",
     [](Book& b) { PutU32At(b.FirstNote() + 4, RowPointer::Of(b.DataPage(b.sampleDefinition_), 0).value); },
     kError, "Sample", "", "not where it should be"},
    {"LongValueInACircle",
     [](Book& b) {
         const RowPointer piece{U32(b.FirstNote() + 4)};
         PutU32At(b.RowBytes(piece.Page(), piece.Row()), piece.value);
     },
     kError, "Sample", "", "runs in a circle"},
    {"LongValueThatNobodyUses",
     [](Book& b) {
         std::byte* const row = b.RowBytes(b.first_.page, b.first_.slot);
         const std::size_t end = b.first_.slot == 0 ? kPage : b.SlotBegin(b.first_.page, b.first_.slot - 1U);
         row[end - b.SlotBegin(b.first_.page, b.first_.slot) - 1] &= std::byte{0xFD};  // Note is column 9
     },
     kNote, "Sample", "", "pieces of long values are used by no row"},
    {"PageOfLongValuesOfAnotherKind",
     [](Book& b) { *b.At(RowPointer{U32(b.FirstNote() + 4)}.Page()) = std::byte{2}; }, kError, "Sample", "",
     "long values of column Note are expected"},
    // indexes
    {"RootOutsideOfTheFile", [](Book& b) { PutU32At(b.Definition(b.sample_.realIndexesAt + 38), 99999); },
     kError, "Sample", "PrimaryKey", "which is not in the file"},
    {"LeafOfAnotherKind", [](Book& b) { *b.At(b.Leaf(0)) = std::byte{1}; }, kError, "Sample", "PrimaryKey",
     "a page of the index is expected"},
    {"OwnerOfALeaf", [](Book& b) { PutU32At(b.At(b.Leaf(0), 4), 2); }, kError, "Sample", "PrimaryKey",
     "names another owner"},
    {"KeyOfAnEntry", [](Book& b) { *b.At(b.Leaf(2), 480 + 4) ^= std::byte{0xFF}; }, kError, "Sample", "Whole",
     "another key than the row"},
    {"EntriesOutOfOrder", [](Book& b) { *b.At(b.Leaf(2), 480 + 1) = std::byte{0xFF}; }, kError, "Sample",
     "Whole", "out of order"},
    {"EntryOfARowThatIsNotThere", [](Book& b) { *b.At(b.Leaf(2), 480 + 8) = std::byte{250}; }, kError,
     "Sample", "Whole", "names a row that is not there"},
    {"RowWithoutEntry", [](Book& b) { *b.At(b.Leaf(2), 480 + 8) = std::byte{250}; }, kError, "Sample",
     "Whole", "the row has no entry in the index"},
    {"RowWithTwoEntries",
     [](Book& b) { std::copy_n(b.At(b.Leaf(2), 480 + 5), 4, b.At(b.Leaf(2), 480 + 9 + 5)); }, kError,
     "Sample", "Whole", "more than one entry"},
    {"MarksOfTheEntries", [](Book& b) { *b.At(b.Leaf(2), 27) |= std::byte{1}; }, kError, "Sample", "Whole",
     "marks of the entries"},
    {"FreeWordOfALeaf", [](Book& b) { PutU16At(b.At(b.Leaf(0), 2), 3600); }, kError, "Sample", "PrimaryKey",
     "claims 3600 free bytes"},
    {"LinkOfALeaf", [](Book& b) { PutU32At(b.At(b.Leaf(0), 16), 0); }, kError, "Sample", "PrimaryKey",
     "not linked with its neighbours"},
    {"KeyInTheNode", [](Book& b) { *b.At(b.sample_.indexes[0].root, 480 + 5) ^= std::byte{1}; }, kError,
     "Sample", "PrimaryKey", "is not the last entry of that page"},
    {"TreeInACircle",
     [](Book& b) { PutU32At(b.At(b.sample_.indexes[0].root, 20), b.sample_.indexes[0].root); }, kError,
     "Sample", "PrimaryKey", "twice"},
    {"PageThatTheTreeDoesNotKnow",
     [](Book& b) {
         b.bytes.resize(b.bytes.size() + kPage);
         b.SetBit(b.sample_.indexes[2].ownedMap, static_cast<PageNumber>(b.bytes.size() / kPage - 1));
     },
     kError, "Sample", "Whole", "not part of its tree"},
    {"KeyThatIsThereTwice",
     [](Book& b) { *b.At(b.otherDefinition_, b.other_.realIndexesAt + 46) |= std::byte{1}; }, kError, "Other",
     "Key", "there twice"},
    // the catalog
    {"RightsOfATable",
     [](Book& b) {
         const PageNumber rights = b.DataPage(3);
         const unsigned count = U16(b.At(rights, 12));
         for (unsigned slot = 0; slot < count; ++slot) {
             std::byte* const row = b.RowBytes(rights, slot);
             if (U32(row + 2) == b.otherDefinition_) PutU32At(row + 2, 77);
         }
     },
     kNote, "MSysObjects", "", "nobody has rights to table Other"},
    {"CatalogWithoutNames", [](Book& b) { *b.At(2) = std::byte{9}; }, kError, "", "",
     "the catalog cannot be read"},
};

class EveryDamage : public testing::TestWithParam<Damage> {};

TEST_P(EveryDamage, IsFoundAndNamed) {
    const Damage& damage = GetParam();
    Book book;
    damage.make(book);
    const VerifyReport report = book.Verify();
    EXPECT_TRUE(!report.Sound() || damage.severity == kNote);
    const bool found =
        std::any_of(report.findings.begin(), report.findings.end(), [&](const VerifyFinding& each) {
            return each.severity == damage.severity && each.table == damage.table &&
                   each.index == damage.index && each.sentence.find(damage.sentence) != std::string::npos;
        });
    EXPECT_TRUE(found) << Text(report);
}

INSTANTIATE_TEST_SUITE_P(Kinds, EveryDamage, testing::ValuesIn(kDamages),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(Findings, NameThePageAndTheRow) {
    Book book;
    PutU16At(book.RowBytes(book.first_.page, book.first_.slot), 99);
    const VerifyReport report = book.Verify();
    ASSERT_FALSE(report.findings.empty());
    EXPECT_EQ(report.findings[0].page, static_cast<long>(book.first_.page));
    EXPECT_EQ(report.findings[0].row, static_cast<int>(book.first_.slot));
}

TEST(Findings, OfOneTableDoNotHideThoseOfAnother) {
    Book book;
    *book.Definition(0) = std::byte{1};
    PutU16At(book.At(book.DataPage(book.otherDefinition_), 2), 4000);
    const std::string text = Text(book.Verify());
    EXPECT_NE(text.find("Sample : the definition of the table cannot be read"), std::string::npos) << text;
    EXPECT_NE(text.find("Other : the page claims 4000 free bytes"), std::string::npos) << text;
}

TEST(Findings, OfARuinedTableAreCountedAndSomeAreKept) {
    Book book;
    for (PageNumber page = 6; page < book.bytes.size() / kPage; ++page) {
        if (*book.At(page) != std::byte{1} || U32(book.At(page, 4)) != book.sampleDefinition_) continue;
        for (unsigned slot = 0; slot < U16(book.At(page, 12)); ++slot)
            PutU16At(book.RowBytes(page, slot), 0);
    }
    const VerifyReport report = book.Verify();
    EXPECT_GT(report.errors, 200U);
    EXPECT_LE(report.findings.size(), 250U);
    EXPECT_EQ(report.LeftOut(), report.errors + report.notes - report.findings.size());
}

TEST(Verifying, FaultsWhenThereIsNoDatabase) {
    MemoryDisk disk;
    disk.Put("x.mdb", std::vector<std::byte>(9000, std::byte{'x'}));
    const auto number = [&](const char* path) {
        try {
            static_cast<void>(Verify(path, disk));
        } catch (const Fault& fault) {
            return fault.number;
        }
        return 0;
    };
    EXPECT_EQ(number("x.mdb"), fault::kNotADatabook);
    EXPECT_EQ(number("none.mdb"), fault::kFileNotFound);
}

}  // namespace
}  // namespace zenvora::jet
