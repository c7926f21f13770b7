#include <cstring>
#include <gtest/gtest.h>

#include "hex.h"
#include "platform/fault.h"
#include "platform/jet/database.h"
#include "sample_table.h"

namespace zenvora::jet {
namespace {

using testing_support::BytesFromHex;
using testing_support::kNow;
using testing_support::MemoryDisk;

std::vector<std::byte> NewFile() {
    MemoryDisk disk;
    static_cast<void>(Database::Create("n.mdb", kNow, disk));
    return disk.Content("n.mdb");
}

Fault OpenFault(std::vector<std::byte> bytes, Database::Access access = Database::Access::ReadWrite) {
    MemoryDisk disk;
    disk.Put("f.mdb", std::move(bytes));
    try {
        static_cast<void>(Database::Open("f.mdb", access, disk));
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.place.file, "f.mdb");
        return fault;
    }
    return {0, "opened"};
}

TEST(NewDatabase, HasTheSixteenPagesOfTheSmallestFileThatAccessMakes) {
    EXPECT_EQ(NewFile().size(), 16U * 4096);
}

TEST(NewDatabase, HasTheHeaderThatItsAccountNamesBelongTo) {
    const auto bytes = NewFile();
    const auto expected = BytesFromHex(
        "B5 6E 03 62 60 09 C2 55 E9 A9 67 72 40 3F 00 9C 7E 9F 90 FF 85 9A 31 C5 79 BA ED 30 BC DF CC 9D"
        "63 D9 E4 C3 9F 46 FB 8A BC 4E DF 5E EC 37 04 E1 9C FA 9F FB 28 E6 4A 13 8A 60 0D 31 7B 36 AC D7"
        "DF B1 2E 51 13 43 96 0A B1 33 6D C4 79 5B CB 10 7C 2A 19 D7 7C 99 08 1F 98 FD 2C CA 99 AF 52 95"
        "84 66 5F 95 F8 D0 89 24 85 67 C6 1F 27 44 D2 EE CF 65 ED FF 07 C7 46 A1 78 16 0C ED E9 2D 62 D4");
    EXPECT_TRUE(std::equal(expected.begin(), expected.end(), bytes.begin() + 0x18));
    EXPECT_EQ(bytes[0xE00], std::byte{1});
    EXPECT_EQ(bytes[0xE01], std::byte{1});
    EXPECT_EQ(bytes[0xE02], std::byte{0});
    EXPECT_EQ(bytes[0xE03], std::byte{1});
}

TEST(NewDatabase, MapsItsSixteenPagesAsUsed) {
    const auto bytes = NewFile();
    // Row 0 of page 1 stands at the end of the page: form, start, then the bits.
    const std::size_t map = 2 * 4096 - 69;
    EXPECT_EQ(bytes[map + 5], std::byte{0});
    EXPECT_EQ(bytes[map + 6], std::byte{0});
    EXPECT_EQ(bytes[map + 7], std::byte{0xFF});
}

TEST(NewDatabase, IsNotMadeOverAnExistingFile) {
    MemoryDisk disk;
    disk.Put("n.mdb", {std::byte{1}});
    EXPECT_THROW(static_cast<void>(Database::Create("n.mdb", kNow, disk)), Fault);
    EXPECT_EQ(disk.Content("n.mdb").size(), 1U);
}

TEST(Opening, RefusesAnEmptyFile) {
    EXPECT_EQ(OpenFault({}).number, fault::kNotADatabook);
}
TEST(Opening, RefusesOtherFiles) {
    EXPECT_EQ(OpenFault(std::vector<std::byte>(20000, std::byte{'x'})).number, fault::kNotADatabook);
    EXPECT_EQ(OpenFault({std::byte{0}, std::byte{1}}).number, fault::kNotADatabook);
}
TEST(Opening, TellsANewerDatabase) {
    auto bytes = NewFile();
    const char name[] = "Standard ACE DB";
    std::memcpy(bytes.data() + 4, name, sizeof name);
    const Fault fault = OpenFault(bytes);
    EXPECT_EQ(fault.number, fault::kUnsupported);
    EXPECT_NE(fault.description.find(".accdb"), std::string::npos);
    bytes = NewFile();
    bytes[0x14] = std::byte{2};
    EXPECT_EQ(OpenFault(bytes).number, fault::kUnsupported);
}
TEST(Opening, RefusesAFileThatIsCutOff) {
    auto bytes = NewFile();
    bytes.resize(bytes.size() - 100);
    EXPECT_EQ(OpenFault(bytes).number, fault::kDamaged);
    bytes.resize(6000);
    EXPECT_EQ(OpenFault(bytes, Database::Access::ReadOnly).number, fault::kDamaged);
}
TEST(Opening, TellsAPassword) {
    auto bytes = NewFile();
    bytes[0x42] ^= std::byte{'s'};
    EXPECT_EQ(OpenFault(bytes).number, fault::kPassword);
}
TEST(Opening, TellsAnEncodedFile) {
    auto bytes = NewFile();
    bytes[0x3E] ^= std::byte{1};
    const Fault fault = OpenFault(bytes);
    EXPECT_EQ(fault.number, fault::kUnsupported);
    EXPECT_NE(fault.description.find("encoded"), std::string::npos);
}
TEST(Opening, ForReadingRefusesEveryChange) {
    MemoryDisk disk;
    Database::Create("n.mdb", kNow, disk)->CreateTable(testing_support::SampleTable(), kNow);
    const auto before = disk.Content("n.mdb");
    const auto database = Database::Open("n.mdb", Database::Access::ReadOnly, disk);
    std::vector<Value> row(16);
    row[0] = std::string("12 Oak St");
    try {
        database->OpenTable("Sample").Insert(row);
        FAIL();
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.number, fault::kReadOnly);
    }
    EXPECT_EQ(disk.Content("n.mdb"), before);
}
TEST(Opening, AMissingTableIsNamed) {
    MemoryDisk disk;
    const auto database = Database::Create("n.mdb", kNow, disk);
    try {
        static_cast<void>(database->OpenTable("COMPS"));
        FAIL();
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.number, fault::kNoSuchTable);
        EXPECT_NE(fault.description.find("COMPS"), std::string::npos);
    }
}

// Whatever byte is hurt: reading ends in rows or in a fault, never in a crash or a loop.
TEST(Opening, AnyDamagedByteGivesRowsOrAFault) {
    MemoryDisk disk;
    {
        const auto database = Database::Create("n.mdb", kNow, disk);
        Table& table = database->CreateTable(testing_support::SampleTable(), kNow);
        for (int i = 0; i < 60; ++i) {
            std::vector<Value> row(16);
            row[0] = std::to_string(i) + " Oak St";
            row[9] = std::string(static_cast<std::size_t>(i) * 40, 'n');
            row[13] = std::string("Troy");
            table.Insert(row);
        }
    }
    const auto sound = disk.Content("n.mdb");
    for (std::size_t at = 0; at < sound.size(); at += at % 4096 < 96 ? 5 : 211) {
        auto hurt = sound;
        hurt[at] ^= std::byte{0x81};
        MemoryDisk other;
        other.Put("h.mdb", std::move(hurt));
        try {
            const auto database = Database::Open("h.mdb", Database::Access::ReadWrite, other);
            for (const std::string& name : database->TableNames()) {
                Table& table = database->OpenTable(name);
                table.Scan([&](const RowView& view) {
                    for (std::size_t i = 0; i < table.Definition().columns.size(); ++i)
                        static_cast<void>(view.Get(i));
                    return true;
                });
                for (std::size_t i = 0; i < table.Definition().indexes.size(); ++i) {
                    table.ScanIndex(i, [](RowId) { return true; });
                }
            }
        } catch (const Fault& fault) {
            EXPECT_FALSE(fault.description.empty());
        }
    }
}

}  // namespace
}  // namespace zenvora::jet
