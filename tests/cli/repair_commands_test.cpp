// compact, convert and repair on small Databooks.

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "cli_fixture.h"

namespace zenvora::cli {
namespace {

using Json = nlohmann::ordered_json;

using CompactCommand = CliTest;
using ConvertCommand = CliTest;
using RepairCommand = CliTest;

void WriteFile(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

/// The file without the rows of its catalog.
std::string WithoutCatalogRows(std::string bytes) {
    for (std::size_t page = 1; page < bytes.size() / 4096; ++page) {
        const std::size_t at = page * 4096;
        // A page of rows whose owner is the catalog, on page 2.
        if (bytes[at] == 1 && bytes[at + 4] == 2 && bytes[at + 5] == 0) bytes.replace(at, 4096, 4096, '\0');
    }
    return bytes;
}

TEST_F(CompactCommand, KeepsTheRecordsAndTheOriginal) {
    const auto book = SixRecords();
    const auto before = Read(book);
    const auto records = MustRun({"records", book, "--format=json"});
    const auto out = MustRun({"compact", book});
    EXPECT_EQ(out, book + ": compacted from " + std::to_string(before.size()) + " to " +
                       std::to_string(Read(book).size()) +
                       " bytes (1 table, 6 records); the original is kept as " + book + ".bak\n");
    EXPECT_EQ(Read(book + ".bak"), before);
    EXPECT_EQ(MustRun({"records", book, "--format=json"}), records);
    EXPECT_EQ(Everything().size(), 2U);
    MustRun({"verify", book});
}

TEST_F(CompactCommand, WritesItsResultInEachForm) {
    const auto book = SixRecords();
    const auto json = Json::parse(MustRun({"compact", book, "--format=json"}));
    EXPECT_EQ(json.at("databook"), book);
    EXPECT_EQ(json.at("backup"), book + ".bak");
    EXPECT_EQ(json.at("tables"), Json::parse(R"([{"name":"COMPS","rows":6}])"));
    EXPECT_EQ(json.at("notCarried"), Json::array());
    EXPECT_EQ(MustRun({"compact", book, "--format=csv"}), "table,rows\r\nCOMPS,6\r\n");
}

TEST_F(CompactCommand, RefusesWhatIsNoDatabookAndChangesNothing) {
    Write("text.mdb", NoDatabook());
    const auto before = Everything();
    for (const char* name : {"text.mdb", "none.mdb"}) {
        const auto result = Run({"compact", At(name)});
        EXPECT_EQ(result.status, Exit::FileTrouble);
        EXPECT_NE(result.LastLine().find(name), std::string::npos) << result.err;
    }
    EXPECT_EQ(Everything(), before);
}

TEST_F(ConvertCommand, HasNothingToDoForTheNewerFormat) {
    const auto book = SixRecords();
    const auto before = Everything();
    const auto result = Run({"convert", book});
    EXPECT_EQ(result.status, Exit::FileTrouble);
    EXPECT_NE(result.LastLine().find("nothing to convert"), std::string::npos) << result.err;
    EXPECT_EQ(Everything(), before);
}

TEST_F(ConvertCommand, MakesAFileOfAccess97UsableAndSaysWhereTheOriginalIs) {
    const char* samples = std::getenv("ZENVORA_JET_SAMPLES");
    if (samples == nullptr) GTEST_SKIP() << "ZENVORA_JET_SAMPLES names no folder: no real file was converted";
    const auto book = Write("old.mdb", Read(std::string(samples) + "/a97-small.mdb"));
    const auto before = Read(book);
    const auto refused = Run({"sql", book, "INSERT INTO [Table] (Id) VALUES (1)"});
    EXPECT_NE(refused.status, Exit::Done);
    EXPECT_NE(refused.LastLine().find("convert"), std::string::npos) << refused.err;
    EXPECT_EQ(MustRun({"convert", book}),
              book +
                  ": converted from Access 97 to the format of Access 2000 to 2003 (1 table, 2 records); the "
                  "original is kept as " +
                  book + ".bak\n");
    EXPECT_EQ(Read(book + ".bak"), before);
    MustRun({"verify", book});
}

TEST_F(RepairCommand, SavesASoundDatabookWhole) {
    const auto book = SixRecords();
    const auto before = Read(book);
    const auto json = Json::parse(MustRun({"repair", book, "--into", At("NEW.mdb"), "--format=json"}));
    EXPECT_EQ(json.at("tables"), Json::parse(R"([{"name":"COMPS","saved":6,"lost":0,"cut":0,"stated":6}])"));
    EXPECT_EQ(json.at("losses"), 0);
    EXPECT_EQ(json.at("lost"), Json::array());
    EXPECT_EQ(Read(book), before);
    EXPECT_EQ(MustRun({"records", At("NEW.mdb")}), MustRun({"records", book}));
    EXPECT_EQ(MustRun({"repair", book, "--into", At("NEWER.mdb"), "--format=csv"}),
              "table,saved,lost,cut,stated\r\nCOMPS,6,0,0,6\r\n");
    EXPECT_EQ(Everything().size(), 3U);
}

TEST_F(RepairCommand, SaysWhatWasLostAndEndsWithStatusOne) {
    const auto book = SixRecords();
    const auto records = MustRun({"records", book});
    WriteFile(book, WithoutCatalogRows(Read(book)));
    const auto result = Run({"repair", book, "--into", At("NEW.mdb")});
    EXPECT_EQ(result.status, Exit::SomethingRefused);
    EXPECT_NE(result.out.find("COMPS"), std::string::npos) << result.out;
    EXPECT_NE(result.out.find("a page of the catalog is lost"), std::string::npos) << result.out;
    EXPECT_NE(result.LastLine().find(book), std::string::npos) << result.err;
    EXPECT_NE(result.LastLine().find("2 things could not be saved"), std::string::npos) << result.err;
    EXPECT_EQ(MustRun({"records", At("NEW.mdb")}), records);
}

TEST_F(RepairCommand, SaysThatNothingCouldBeSaved) {
    const auto book = At("CUT.mdb");
    WriteFile(book,
              Read(SixRecords()).substr(0, 14 * 4096));  // the catalog's rows and all tables are behind that
    const auto result = Run({"repair", book, "--into", At("saved.mdb")});
    EXPECT_EQ(result.status, Exit::SomethingRefused);
    EXPECT_EQ(result.LastLine(), "zenvora-cli repair: " + book + ": no table of it could be saved, and " +
                                     At("saved.mdb") + " is empty. Look for a backup copy.");
    EXPECT_EQ(result.out.find("Table  Saved"), std::string::npos) << result.out;
}

TEST_F(RepairCommand, ReplacesAFileOnlyWhenForced) {
    const auto book = SixRecords();
    const auto other = Write("NEW.mdb", "mine");
    const auto before = Everything();
    const auto result = Run({"repair", book, "--into", other});
    EXPECT_EQ(result.status, Exit::FileTrouble);
    EXPECT_NE(result.LastLine().find("--force"), std::string::npos) << result.err;
    EXPECT_EQ(Everything(), before);
    MustRun({"repair", book, "--into", other, "--force"});
    EXPECT_EQ(Read(other + ".bak"), "mine");
}

TEST_F(RepairCommand, NeverSavesIntoTheDamagedFileItself) {
    const auto book = SixRecords();
    const auto before = Everything();
    const auto result = Run({"repair", book, "--into", book, "--force"});
    EXPECT_EQ(result.status, Exit::BadCommandLine);
    EXPECT_EQ(Everything(), before);
}

TEST_F(RepairCommand, FindsNothingToSaveInATextFile) {
    const auto text = Write("text.mdb", NoDatabook());
    const auto before = Everything();
    const auto result = Run({"repair", text, "--into", At("NEW.mdb")});
    EXPECT_EQ(result.status, Exit::FileTrouble);
    EXPECT_NE(result.LastLine().find(text), std::string::npos) << result.err;
    EXPECT_EQ(Everything(), before);
}

TEST_F(RepairCommand, HasAnExampleInItsHelpAsTheOthersHave) {
    for (const char* verb : {"compact", "convert", "repair"}) {
        const auto help = MustRun({verb, "--help"});
        EXPECT_NE(help.find(std::string("Example:\n  zenvora-cli ") + verb), std::string::npos) << help;
    }
}

}  // namespace
}  // namespace zenvora::cli
