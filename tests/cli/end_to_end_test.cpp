// The real program, as a shell starts it, on the sample.

#include <cstdlib>
#include <nlohmann/json.hpp>
#include <sys/wait.h>

#include "cli_fixture.h"

namespace zenvora::cli {
namespace {

using Json = nlohmann::ordered_json;

class EndToEnd : public CliTest {
  protected:
    /// Runs `zenvora-cli ARGUMENTS` by the shell, in the test's folder.
    RunResult Shell(const std::string& arguments, const std::string& before = "") {
        const auto command = "cd '" + At("") + "' && " + before + " '" ZENVORA_CLI "' " + arguments + " >'" +
                             At("out") + "' 2>'" + At("err") + "' </dev/null";
        const int status = std::system(command.c_str());
        EXPECT_TRUE(WIFEXITED(status));
        return {static_cast<Exit>(WEXITSTATUS(status)), Read(At("out")), Read(At("err"))};
    }
    static constexpr const char* kSource = " '" ZENVORA_SAMPLES "/LISTINGS.CSV' ";
    static constexpr const char* kDay = " --date 2026-06-30 --today 2026-06-30 ";
};

TEST_F(EndToEnd, TheSampleGoesFromItsSourceToItsFigures) {
    const auto imported = Shell(std::string("import --format=json") + kSource);
    EXPECT_EQ(imported.status, Exit::SomethingRefused);
    const auto outcome = Json::parse(imported.out);
    EXPECT_EQ(outcome["databook"], "LISTINGS.mdb");  // in the working directory
    // The source holds 392 records and ends in a line break; eight records are wrong on purpose.
    EXPECT_EQ(outcome["rows"], 393);
    EXPECT_EQ(outcome["written"], 384);
    EXPECT_EQ(outcome["refused"].size(), 9U);
    EXPECT_EQ(imported.err.find('\r'), std::string::npos) << "no progress is drawn into a file";

    const auto checked = Shell(std::string("check LISTINGS.mdb --format=json") + kDay);
    EXPECT_EQ(checked.status, Exit::Done) << checked.err;
    const auto verdicts = Json::parse(checked.out);
    EXPECT_EQ(verdicts["records"], 384);
    EXPECT_EQ(verdicts["verdicts"].size(), 384U);
    // Four sales of over a year ago and a listing without its original price.
    EXPECT_EQ(verdicts["valid"], 379);

    const auto calculated = Shell(std::string("calc LISTINGS.mdb --format=json") + kDay);
    EXPECT_EQ(calculated.status, Exit::Done) << calculated.err;
    EXPECT_EQ(Json::parse(calculated.out)["results"].size(), 9U);
}

TEST_F(EndToEnd, NeitherLocaleNorTimeZoneChangesAResult) {
    Shell(std::string("import --quiet") + kSource);
    const auto plain = Shell(std::string("calc LISTINGS.mdb --lists") + kDay).out;
    EXPECT_NE(plain.find("Absorption Rate"), std::string::npos);
    for (const char* setting :
         {"LC_ALL=de_DE.UTF-8 TZ=Pacific/Kiritimati", "LC_ALL=C TZ=Pacific/Pago_Pago", "env -i"}) {
        EXPECT_EQ(Shell(std::string("calc LISTINGS.mdb --lists") + kDay, setting).out, plain) << setting;
    }
}

TEST_F(EndToEnd, TheShellSeesEachStatus) {
    EXPECT_EQ(Shell("new A.mdb").status, Exit::Done);
    EXPECT_EQ(Shell("select A.mdb '12 OAK ST' exclude").status, Exit::SomethingRefused);
    EXPECT_EQ(Shell("select A.mdb").status, Exit::BadCommandLine);
    EXPECT_EQ(Shell("records B.mdb").status, Exit::FileTrouble);
}

TEST_F(EndToEnd, AFullDiskBehindStandardOutputIsTrouble) {
    MustRun({"new", At("A.mdb")});
    const int status = std::system(
        ("'" ZENVORA_CLI "' records '" + At("A.mdb") + "' >/dev/full 2>'" + At("err") + "'").c_str());
    EXPECT_EQ(WEXITSTATUS(status), static_cast<int>(Exit::FileTrouble));
    EXPECT_NE(Read(At("err")).find("standard output"), std::string::npos);
}

}  // namespace
}  // namespace zenvora::cli
