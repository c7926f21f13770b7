// `zenvora-cli print`, with a page surface that records.

#include <algorithm>
#include <gtest/gtest.h>

#include "cli_fixture.h"
#include "support/recording_page.h"

namespace zenvora::cli {
namespace {

class PrintCommandTest : public CliTest {
  protected:
    [[nodiscard]] RunResult Print(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "print");
        return Run(arguments, link::NoCarrier(), testing_support::RecordingPdfMaker(record));
    }
    [[nodiscard]] bool IsPrinted(std::string_view text) const {
        return std::any_of(record.texts.begin(), record.texts.end(),
                           [&](const auto& drawn) { return drawn.text == text; });
    }

    testing_support::PageRecord record;
    std::string pdf = At("AUDIT.pdf");
};

TEST_F(PrintCommandTest, WritesTheReportAndSaysWhatItHolds) {
    const auto book = SixRecords();
    const auto run = Print({book, "--date", "06/30/2010", "--pdf", pdf});
    EXPECT_EQ(run.status, Exit::Done) << run.err;
    // 12 Oak St is for sale, 14, 16 and 18 Oak St were sold within the year, 20 Oak St a day too early, and
    // the user has excluded 22 Oak St.
    EXPECT_EQ(run.out, pdf + ": 1 listing and 3 comps as of 6/30/2010 on 1 page\n");
    EXPECT_EQ(Read(pdf), "%PDF-1.4 Market Conditions Audit Report");
    EXPECT_TRUE(IsPrinted("BOOK.MDB"));
    EXPECT_TRUE(IsPrinted("12 Oak St"));
    EXPECT_TRUE(IsPrinted("18 Oak St"));
    EXPECT_FALSE(IsPrinted("20 Oak St"));
    EXPECT_FALSE(IsPrinted("22 Oak St"));
}

TEST_F(PrintCommandTest, JudgesTheRecordsFirst) {
    const auto book = SixRecords();
    MustRun({"sql", book, "INSERT INTO COMPS (CENTRALKEY, ADDRESS, SELECTED) VALUES ('BARE', 'Bare', '1')"});
    EXPECT_EQ(Print({book, "--date", "06/30/2010", "--pdf", pdf}).status, Exit::Done);
    EXPECT_FALSE(IsPrinted("Bare")) << "it has no listing date: invalid";
}

TEST_F(PrintCommandTest, NoCheckTrustsTheVerdictsAndWritesNothing) {
    const auto book = SixRecords();
    MustRun({"sql", book, "INSERT INTO COMPS (CENTRALKEY, ADDRESS, SELECTED) VALUES ('BARE', 'Bare', '1')"});
    const auto before = Read(book);
    EXPECT_EQ(Print({book, "--date", "06/30/2010", "--pdf", pdf, "--no-check"}).status, Exit::Done);
    EXPECT_TRUE(IsPrinted("Bare"));
    EXPECT_EQ(Read(book), before);
}

TEST_F(PrintCommandTest, AsJsonAndCsv) {
    const auto book = SixRecords();
    auto run = Print({book, "--date", "2010-06-30", "--pdf", pdf, "--format", "json"});
    EXPECT_EQ(run.out, R"({"pdf":")" + pdf +
                           R"(","effectiveDate":"2010-06-30","listings":1,"comps":3,"pages":1})" + "\n");
    run = Print({book, "--date", "2010-06-30", "--pdf", pdf, "--format", "csv"});
    EXPECT_EQ(run.out, "pdf,effectiveDate,listings,comps,pages\r\n" + pdf + ",2010-06-30,1,3,1\r\n");
}

TEST_F(PrintCommandTest, FitSetsALongAddressSmaller) {
    const auto book = NewDatabook();
    const std::string address(50, 'x');
    MustRun({"sql", book,
             "INSERT INTO COMPS (CENTRALKEY, ADDRESS, ORIGLISTDATE, ORIGLISTPRICE, SELECTED) VALUES ('A', '" +
                 address + "', #6/1/2010#, 259900, '1')"});
    const auto sizeOf = [&] {
        for (const auto& drawn : record.texts) {
            if (drawn.text == address) return drawn.font.Size;
        }
        return 0.0;
    };
    EXPECT_EQ(Print({book, "--date", "06/30/2010", "--pdf", pdf}).status, Exit::Done);
    EXPECT_EQ(sizeOf(), 10);
    record.texts.clear();
    EXPECT_EQ(Print({book, "--date", "06/30/2010", "--pdf", pdf, "--fit"}).status, Exit::Done);
    EXPECT_NEAR(sizeOf(), 8.4, 0.001);
}

TEST_F(PrintCommandTest, KeepsThePdfThatItReplaces) {
    const auto book = SixRecords();
    Write("AUDIT.pdf", "%PDF-1.4 of yesterday");
    EXPECT_EQ(Print({book, "--date", "06/30/2010", "--pdf", pdf}).status, Exit::Done);
    EXPECT_EQ(Read(pdf + ".bak"), "%PDF-1.4 of yesterday");
}

TEST_F(PrintCommandTest, ABuildWithoutPrintingSaysSoAndTouchesNothing) {
    const auto book = SixRecords();
    const auto before = Everything();
    const auto run = Run({"print", book, "--date", "06/30/2010", "--pdf", pdf});
    EXPECT_EQ(run.status, Exit::FileTrouble);
    EXPECT_NE(run.LastLine().find(pdf + ": not written, for this build of zenvora-cli has no printing."),
              std::string::npos)
        << run.err;
    EXPECT_EQ(Everything(), before);
}

TEST_F(PrintCommandTest, ThePdfFileMustBeNamed) {
    const auto run = Print({SixRecords(), "--date", "06/30/2010"});
    EXPECT_EQ(run.status, Exit::BadCommandLine);
    EXPECT_NE(run.LastLine().find("--pdf"), std::string::npos);
}

TEST_F(PrintCommandTest, NeverTakesThePlaceOfAnotherFile) {
    const auto book = SixRecords();
    const auto before = Read(book);
    const auto run = Print({book, "--date", "06/30/2010", "--pdf", book, "--no-check"});
    EXPECT_EQ(run.status, Exit::FileTrouble);
    EXPECT_NE(run.LastLine().find("no PDF document"), std::string::npos) << run.err;
    EXPECT_EQ(Read(book), before);
}

TEST_F(PrintCommandTest, AFolderThatIsMissingIsNamed) {
    const auto run = Print({SixRecords(), "--date", "06/30/2010", "--pdf", At("none/AUDIT.pdf")});
    EXPECT_EQ(run.status, Exit::FileTrouble);
    EXPECT_NE(run.LastLine().find("none"), std::string::npos) << run.err;
}

TEST_F(PrintCommandTest, AFailureOfThePageLeavesNoFile) {
    const auto book = SixRecords();
    record.failAfter = 5;
    const auto run = Print({book, "--date", "06/30/2010", "--pdf", pdf});
    EXPECT_EQ(run.status, Exit::FileTrouble);
    EXPECT_NE(run.LastLine().find("The device failed"), std::string::npos) << run.err;
    EXPECT_FALSE(std::filesystem::exists(pdf));
}

TEST_F(PrintCommandTest, ADatabookThatIsNoneIsRefused) {
    const auto run = Print({Write("BAD.mdb", NoDatabook()), "--date", "06/30/2010", "--pdf", pdf});
    EXPECT_EQ(run.status, Exit::FileTrouble);
    EXPECT_FALSE(std::filesystem::exists(pdf));
}

}  // namespace
}  // namespace zenvora::cli
