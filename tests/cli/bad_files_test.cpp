// Every command with a file that it cannot use: status 3, one line that names the file, and nothing changed.

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "cli_fixture.h"

namespace zenvora::cli {
namespace {

namespace fs = std::filesystem;

/// The commands that take a Databook; DATABOOK stands for its path.
const std::vector<std::vector<std::string>> kDatabookCommands = {
    {"records", "DATABOOK"},
    {"check", "DATABOOK", "--date=6/30/2010"},
    {"calc", "DATABOOK", "--date=6/30/2010"},
    {"calc", "DATABOOK", "--date=6/30/2010", "--no-check"},
    {"addendum", "DATABOOK"},
    {"transfer", "DATABOOK", "--dry-run", "--report=S"},
    {"select", "DATABOOK", "12 OAK ST", "exclude"},
    {"sql", "DATABOOK", "SELECT * FROM COMPS"},
    {"sql", "DATABOOK", "INSERT INTO COMPS (CENTRALKEY) VALUES ('1 ELM')"},
};

class BadFiles : public CliTest {
  protected:
    void ExpectFileTrouble(std::vector<std::string> arguments, const std::string& path,
                           const std::string& named) {
        for (auto& argument : arguments) {
            if (argument == "DATABOOK") argument = path;
        }
        const auto before = Everything();
        const auto result = Run(arguments);
        const std::string what = arguments[0] + ": " + result.err;
        EXPECT_EQ(result.status, Exit::FileTrouble) << what;
        EXPECT_TRUE(result.out.empty()) << what << result.out.substr(0, 200);
        EXPECT_EQ(result.err, result.LastLine() + "\n") << what;
        EXPECT_NE(result.LastLine().find(named), std::string::npos) << what;
        EXPECT_EQ(result.LastLine().find("zenvora-cli " + arguments[0] + ": "), 0U) << what;
        EXPECT_TRUE(Everything() == before) << what << "a file has changed";
    }
    void ExpectFileTroubleOfAll(const std::string& path) {
        for (const auto& command : kDatabookCommands)
            ExpectFileTrouble(command, path, path);
    }
    /// A Databook of many pages.
    std::string LargeDatabook() {
        const auto book = NewDatabook("LARGE.mdb");
        std::string source = "Street,City\r\n";
        for (int i = 0; i < 3000; ++i)
            source += std::to_string(i) + " Long Lake Road,Orchard Lake Village\r\n";
        MustRun({"import", Write("MANY.CSV", source), "--map",
                 Write("MANY.map", "Street <-> Address\r\nCity <-> City\r\n"), "--into", book, "--force",
                 "--quiet"});
        fs::remove(book + ".bak");
        return book;
    }
};

TEST_F(BadFiles, AMissingFile) {
    ExpectFileTroubleOfAll(At("NONE.mdb"));
}

TEST_F(BadFiles, AFileInAMissingFolder) {
    ExpectFileTroubleOfAll(At("none/NONE.mdb"));
}

TEST_F(BadFiles, ADirectory) {
    fs::create_directory(At("FOLDER.mdb"));
    ExpectFileTroubleOfAll(At("FOLDER.mdb"));
}

TEST_F(BadFiles, AnEmptyFile) {
    ExpectFileTroubleOfAll(Write("EMPTY.mdb", ""));
}

TEST_F(BadFiles, AFileThatIsNoDatabook) {
    ExpectFileTroubleOfAll(Write("TEXT.mdb", NoDatabook()));
}

TEST_F(BadFiles, APathBelowAFile) {
    Write("file.txt", "text");
    ExpectFileTroubleOfAll(At("file.txt/A.mdb"));
}

TEST_F(BadFiles, ATruncatedDatabook) {
    const auto whole = Read(LargeDatabook());
    ASSERT_GT(whole.size(), 20U * 4096U);
    // In the middle of its first page, between two pages, in the middle of one.
    for (const std::size_t length : {std::size_t{100}, std::size_t{8 * 4096}, whole.size() / 2 + 77}) {
        SCOPED_TRACE(std::to_string(length) + " of " + std::to_string(whole.size()) + " bytes");
        ExpectFileTroubleOfAll(Write("SHORT.mdb", whole.substr(0, length)));
    }
}

TEST_F(BadFiles, ADatabookThatLacksItsLastByte) {
    const auto whole = Read(LargeDatabook());
    const auto book = Write("SHORT.mdb", whole.substr(0, whole.size() - 1));
    for (const auto& command : kDatabookCommands) {
        // What its last page held decides whether reading finds everything; there is no third way.
        if (command[0] == "sql" && command[2].find("SELECT") == 0) {
            const auto result = Run({"sql", book, command[2], "--format=csv"});
            const auto lines = std::count(result.out.begin(), result.out.end(), '\n');
            EXPECT_TRUE(result.status == Exit::FileTrouble || (result.status == Exit::Done && lines == 3001))
                << lines;
        } else {
            ExpectFileTrouble(command, book, book);
        }
    }
}

TEST_F(BadFiles, ADatabookWithoutItsTable) {
    const auto book = At("OTHER.mdb");
    static_cast<void>(jet::Database::Create(book, *text::DayNumber(2010, 6, 30)));
    for (const auto& command : kDatabookCommands) {
        if (command[0] != "sql") ExpectFileTrouble(command, book, "COMPS");
    }
    // For a statement the missing table is no trouble of the file.
    EXPECT_EQ(Run({"sql", book, "SELECT * FROM COMPS"}).status, Exit::SomethingRefused);
}

TEST_F(BadFiles, ADatabookThatAnotherProgramWorksOn) {
    const auto book = SixRecords();
    const auto source = Write("A.CSV", "Street,City\r\n12 Oak St,Troy\r\n");
    Write("A.map", "Street <-> Address\r\nCity <-> City\r\n");
    const auto other = jet::Database::Open(book, jet::Database::Access::ReadWrite);
    ExpectFileTrouble({"check", book, "--date=6/30/2010"}, book, book);
    ExpectFileTrouble({"select", book, "12 OAK ST", "exclude"}, book, book);
    ExpectFileTrouble({"sql", book, "INSERT INTO COMPS (CENTRALKEY) VALUES ('1 ELM')"}, book, book);
    ExpectFileTrouble({"new", book, "--force"}, book, book);
    ExpectFileTrouble({"import", source, "--into", book, "--force"}, book, book);
    MustRun({"records", book});
}

TEST_F(BadFiles, AFileThatMayNotBeWritten) {
    const auto book = SixRecords();
    fs::permissions(book, fs::perms::owner_read, fs::perm_options::replace);
    if (std::ofstream(book, std::ios::app).is_open()) GTEST_SKIP() << "this user may write everywhere";
    ExpectFileTrouble({"check", book, "--date=6/30/2010"}, book, book);
    ExpectFileTrouble({"calc", book, "--date=6/30/2010"}, book, book);
    ExpectFileTrouble({"select", book, "12 OAK ST", "exclude"}, book, book);
    ExpectFileTrouble({"sql", book, "INSERT INTO COMPS (CENTRALKEY) VALUES ('1 ELM')"}, book, book);
    MustRun({"records", book});
    MustRun({"calc", book, "--no-check"});
}

TEST_F(BadFiles, ASourceThatCannotBeUsed) {
    fs::create_directory(At("FOLDER.CSV"));
    Write("EMPTY.CSV", "");
    Write("OPEN.CSV", "Street,City\r\n\"12 Oak St,Troy\r\n");
    Write("WIDE.CSV", "Street,City\r\n12 Oak St,Troy,MI\r\n");
    Write("CUT.XML", "<Street>12 Oak St</Street>\n<City>Troy</City>\n<Street>14 Oak St</Street>\n");
    Write("SOURCE.DAT", "Street,City\r\n");
    Write("file.txt", "text");
    Write("M.map", "Street <-> Address\r\nCity <-> City\r\n");
    for (const char* name : {"NONE.CSV", "none/NONE.CSV", "FOLDER.CSV", "EMPTY.CSV", "OPEN.CSV", "WIDE.CSV",
                             "CUT.XML", "SOURCE.DAT", "file.txt/A.CSV"}) {
        ExpectFileTrouble({"import", At(name), "--map", At("M.map"), "--into", At("NEW.mdb")}, "", At(name));
    }
}

TEST_F(BadFiles, ASourceFaultNamesItsLineAndLeavesAnOldDatabookAlone) {
    const auto source = Write("WIDE.CSV", "Street,City\r\n12 Oak St,Troy\r\n14 Oak St,Troy,MI\r\n");
    const auto map = Write("M.map", "Street <-> Address\r\nCity <-> City\r\n");
    const auto book = SixRecords();
    ExpectFileTrouble({"import", source, "--map", map, "--into", book, "--force"}, "", "WIDE.CSV, line 3");
}

TEST_F(BadFiles, AMapThatCannotBeUsed) {
    const auto source = Write("A.CSV", "Street,City\r\n12 Oak St,Troy\r\n");
    ExpectFileTrouble({"import", source, "--into", At("NEW.mdb")}, "", At("A.map"));
    ExpectFileTrouble({"import", source, "--map", At("none.map"), "--into", At("NEW.mdb")}, "",
                      At("none.map"));
    fs::create_directory(At("FOLDER.map"));
    ExpectFileTrouble({"import", source, "--map", At("FOLDER.map"), "--into", At("NEW.mdb")}, "",
                      At("FOLDER.map"));
    const auto noMap = Write("NOMAP.map", "Street = Address\r\n");
    ExpectFileTrouble({"import", source, "--map", noMap, "--into", At("NEW.mdb")}, "", noMap);
}

TEST_F(BadFiles, ADatabookThatCannotBeMade) {
    const auto source = Write("A.CSV", "Street,City\r\n12 Oak St,Troy\r\n");
    Write("A.map", "Street <-> Address\r\nCity <-> City\r\n");
    fs::create_directory(At("FOLDER.mdb"));
    for (const char* name : {"none/NEW.mdb", "A.CSV/NEW.mdb", "FOLDER.mdb"}) {
        ExpectFileTrouble({"import", source, "--into", At(name), "--force"}, "", At(name));
    }
    ExpectFileTrouble({"import", source, "--into", At("NEW.mdb"), "--log", At("none/log.txt")}, "",
                      At("none/log.txt"));
}

}  // namespace
}  // namespace zenvora::cli
