#include "cli_fixture.h"
#include "platform/text/utf8.h"

namespace zenvora::cli {
namespace {

using CommandLine = CliTest;

const std::vector<std::string> kCommands = {"new",     "import",  "check",    "calc",     "records", "print",
                                            "select",  "sql",     "addendum", "transfer", "upgrade", "merge",
                                            "compact", "convert", "repair",   "verify"};

TEST_F(CommandLine, HelpListsEveryCommand) {
    const auto out = MustRun({"--help"});
    for (const auto& command : kCommands)
        EXPECT_NE(out.find("\n  " + command + " "), std::string::npos) << command;
}

TEST_F(CommandLine, EachCommandHasHelpWithAnExampleOfItsOwn) {
    for (const auto& command : kCommands) {
        const auto out = MustRun({command, "--help"});
        EXPECT_NE(out.find("\n  zenvora-cli " + command + " "), std::string::npos) << out;
        EXPECT_NE(out.find("--format"), std::string::npos) << out;
        EXPECT_NE(out.find("--today"), std::string::npos) << out;
        EXPECT_NE(out.find("--quiet"), std::string::npos) << out;
    }
}

TEST_F(CommandLine, ShowsTheDateOptionWhereItHasAMeaning) {
    EXPECT_NE(MustRun({"calc", "--help"}).find("--date"), std::string::npos);
    EXPECT_NE(MustRun({"check", "--help"}).find("--date"), std::string::npos);
    EXPECT_EQ(MustRun({"records", "--help"}).find("--date"), std::string::npos);
}

TEST_F(CommandLine, TakesTheCommonOptionsEverywhere) {
    const auto book = NewDatabook();
    EXPECT_EQ(
        MustRun({"records", book, "--date", "6/30/2010", "--today=2010-06-30", "--quiet", "--format=json"}),
        "{\"records\":[]}\n");
}

TEST_F(CommandLine, SaysItsVersion) {
    const auto out = MustRun({"--version"});
    EXPECT_EQ(out.substr(0, 12), "zenvora-cli ");
    EXPECT_EQ(out.back(), '\n');
}

TEST_F(CommandLine, EndsOptionsAtTwoDashes) {
    const auto result = Run({"records", "--", "--format"});
    EXPECT_EQ(result.status, Exit::FileTrouble);
    EXPECT_NE(result.LastLine().find("--format"), std::string::npos) << result.err;
}

TEST_F(CommandLine, TakesAFileNamedLikeACommand) {
    const auto result = Run({"records", "calc"});
    EXPECT_EQ(result.status, Exit::FileTrouble);
    EXPECT_NE(result.LastLine().find("calc"), std::string::npos) << result.err;
}

struct WrongLine {
    const char* name;
    std::vector<std::string> arguments;
    const char* reason;
};
class WrongCommandLine : public CliTest, public testing::WithParamInterface<WrongLine> {};

TEST_P(WrongCommandLine, GivesStatusTwoAndOneLineThatSaysWhy) {
    const auto result = Run(GetParam().arguments);
    EXPECT_EQ(result.status, Exit::BadCommandLine);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, result.LastLine() + "\n");
    EXPECT_NE(result.err.find(GetParam().reason), std::string::npos) << result.err;
    EXPECT_NE(result.err.find("--help"), std::string::npos) << result.err;
}

INSTANTIATE_TEST_SUITE_P(
    Lines, WrongCommandLine,
    testing::Values(
        WrongLine{"NoCommand", {}, "name a command"},
        WrongLine{"UnknownCommand", {"frobnicate"}, "no command \"frobnicate\""},
        WrongLine{"NoDatabook", {"calc"}, "DATABOOK"}, WrongLine{"NoKey", {"select", "a.mdb"}, "KEY"},
        WrongLine{"NoState", {"select", "a.mdb", "12 OAK ST"}, "STATE"},
        WrongLine{"OtherState", {"select", "a.mdb", "12 OAK ST", "toggle"}, "toggle"},
        WrongLine{"NoStatement", {"sql", "a.mdb"}, "STATEMENT"},
        WrongLine{"UnknownOption", {"calc", "a.mdb", "--frobnicate"}, "--frobnicate"},
        WrongLine{"TooManyArguments", {"records", "a.mdb", "b.mdb"}, "b.mdb"},
        WrongLine{"OptionTwice", {"calc", "a.mdb", "--date=6/30/2010", "--date=7/1/2010"}, "--date"},
        WrongLine{"UnknownFormat", {"calc", "a.mdb", "--format", "xml"}, "xml"},
        WrongLine{"DateIsNone", {"calc", "a.mdb", "--date", "June"}, "\"June\" is no date"},
        WrongLine{"DateIsNoDay", {"calc", "a.mdb", "--date=2/30/2010"}, "\"2/30/2010\" is no date"},
        WrongLine{"DateTooEarly", {"check", "a.mdb", "--date=12/31/1900"}, "before 1/1/1901"},
        WrongLine{"DateWithoutAMeaning", {"records", "a.mdb", "--date=x"}, "records: --date: \"x\" is no"},
        WrongLine{"DateEmpty", {"calc", "a.mdb", "--date="}, "--date"},
        WrongLine{"TodayIsNone", {"calc", "a.mdb", "--today", "6/30"}, "\"6/30\" is no date"}),
    [](const auto& info) { return info.param.name; });

TEST_F(CommandLine, TakesTheFirstDayOf1901AsADate) {
    EXPECT_EQ(Run({"check", NewDatabook(), "--date", "1/1/1901"}).status, Exit::Done);
}

TEST_F(CommandLine, TheDateIsTodayUnlessTold) {
    const auto book = NewDatabook();
    EXPECT_NE(MustRun({"check", book, "--format=json"}).find(R"("effectiveDate":"2010-06-30")"),
              std::string::npos);
    EXPECT_NE(
        MustRun({"check", book, "--format=json", "--today=3/4/2015"}).find(R"("effectiveDate":"2015-03-04")"),
        std::string::npos);
}

}  // namespace
}  // namespace zenvora::cli
