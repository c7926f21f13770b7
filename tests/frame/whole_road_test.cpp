// From the start dialog to the figures and out again, on the sample; the command line says what must come
// out.

#include <cstdlib>
#include <gtest/gtest.h>
#include <map>
#include <nlohmann/json.hpp>
#include <sys/wait.h>

#include "frame/program_fixture.h"

namespace zenvora::frame {
namespace {

namespace fs = std::filesystem;

struct WholeRoadTest : ProgramTest {
    WholeRoadTest() { clock.Set(46203); }  // 6/30/2026

    /// Runs the command line program in the user's folder and gives what it printed.
    std::string CommandLine(const std::string& arguments) {
        const std::string command = "cd '" + folder.Path().string() + "' && '" ZENVORA_CLI "' " + arguments +
                                    " --today 2026-06-30 >out 2>err </dev/null";
        const int status = std::system(command.c_str());
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) <= 1) << folder.Read("err");
        return folder.Read("out");
    }

    /// The figures as the command line works them out: the cells of its CSV table by name and column.
    std::map<std::string, std::vector<std::string>> FiguresOf(const std::string& databook,
                                                              const std::string& date) {
        const std::string json = CommandLine("calc " + databook + " --date " + date + " --format json");
        std::map<std::string, std::vector<std::string>> figures;
        const auto parsed = nlohmann::json::parse(json);
        for (const auto& [name, cells] : parsed["results"].items())
            figures[name] = cells.get<std::vector<std::string>>();
        EXPECT_EQ(figures.size(), 9U);
        return figures;
    }
    std::map<std::string, std::vector<std::string>> FiguresOfThePage() {
        std::map<std::string, std::vector<std::string>> figures;
        for (const analysis::ResultRow& row : analysis::kResultRows) {
            for (int column = 0; column < 3; ++column)
                figures[std::string(row.name)].push_back(Text(row.name, column));
        }
        return figures;
    }
};

TEST_F(WholeRoadTest, FromTheSourceToTheFiguresAndBackToTheLastDatabook) {
    fs::copy_file(ZENVORA_SAMPLES "/LISTINGS.CSV", folder / "LISTINGS.CSV");
    fs::copy_file(ZENVORA_SAMPLES "/LISTINGS.map", folder / "LISTINGS.map");
    CommandLine("import LISTINGS.CSV --into expected.mdb");
    CommandLine("check expected.mdb --date 2026-06-30");
    CommandLine("select expected.mdb '951 Larkspur Ln' exclude");
    const auto expected = FiguresOf("expected.mdb", "2026-06-15");
    const auto before = FiguresOf("expected.mdb", "2026-06-30");
    ASSERT_NE(expected, before);

    desktop->ExpectAny();  // eight rows of the sample are wrong on purpose
    StartWith(folder / "LISTINGS.CSV");
    EXPECT_TRUE(desktop->messages.at(0).text.starts_with("LISTINGS.CSV\n393 rows: 384 written, 9 refused\n"));
    EXPECT_EQ(Main().tdbgData.RowCount(), 384);
    EXPECT_EQ(Main().tdgViewer.TabCaption(0), "Comps and Listings:  379/384");

    Type("txtCentralKey", "951 larkspur ln");
    const int row = Main().tdbgData.Row();
    ASSERT_EQ(Cell(row, 1), "951 Larkspur Ln");
    DblClickCell(row, 0);
    EXPECT_EQ(Cell(row, 0), "");

    for (const std::string text : {"6/15/", "6/15/2", "6/15/20", "6/15/202", "6/15/2026"})
        Type("txtBaseDate", text);
    Press("txtCalculate");
    EXPECT_EQ(Text("txtBaseDateT2"), "6/15/2026");
    EXPECT_EQ(FiguresOfThePage(), expected);

    Press("cmdExit");
    EXPECT_TRUE(desktop->ended);
    EXPECT_EQ(Stored("DIRECTORIES", "CURRDATABOOK"), "LISTINGS.MDB");

    NewRun();
    StartWith("");
    EXPECT_EQ(desktop->dialogs.at(0).fileName, "LISTINGS");
    EXPECT_EQ(Main().tdbgData.RowCount(), 384);
    // The exclusion has lasted.
    EXPECT_EQ(Main().tdbgData.Value(row, 0), "2");
    Press("txtCalculate");
    EXPECT_EQ(FiguresOfThePage(), before);
}

}  // namespace
}  // namespace zenvora::frame
