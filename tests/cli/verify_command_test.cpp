// zenvora-cli verify: what it prints of a sound Databook and of a damaged one, in each form.

#include <nlohmann/json.hpp>

#include "cli_fixture.h"

namespace zenvora::cli {
namespace {

using Json = nlohmann::ordered_json;

class VerifyCommand : public CliTest {
  protected:
    /// A Databook in which a page of rows claims more free bytes than it has; returns the number of that
    /// page.
    std::string Damaged(long& page) {
        const auto path = SixRecords();
        std::string bytes = Read(path);
        // The last page of data form that belongs to a definition behind the system tables.
        for (std::size_t at = 0; at + 4096 <= bytes.size(); at += 4096) {
            const auto owner = static_cast<unsigned char>(bytes[at + 4]);
            if (bytes[at] == 1 && owner > 5 && owner < 100 && bytes[at + 5] == 0)
                page = static_cast<long>(at / 4096);
        }
        bytes[static_cast<std::size_t>(page) * 4096 + 2] = '\xF0';
        bytes[static_cast<std::size_t>(page) * 4096 + 3] = '\x0F';
        return Write("DAMAGED.mdb", bytes);
    }
};

TEST_F(VerifyCommand, CallsASoundDatabookSound) {
    const auto book = SixRecords();
    EXPECT_EQ(MustRun({"verify", book}), book + " is sound: 0 errors, 0 notes\n");
    EXPECT_EQ(MustRun({"verify", book, "--format=json"}),
              "{\"databook\":\"" + book + "\",\"sound\":true,\"errors\":0,\"notes\":0,\"findings\":[]}\n");
    EXPECT_EQ(MustRun({"verify", book, "--format=csv"}), "severity,page,table,index,row,sentence\r\n");
}

TEST_F(VerifyCommand, SaysWhatIsWrongAndWhere) {
    long page = 0;
    const auto book = Damaged(page);
    const auto before = Everything();
    const auto result = Run({"verify", book});
    EXPECT_EQ(result.status, Exit::SomethingRefused);
    EXPECT_EQ(result.out.find("error: page " + std::to_string(page) +
                              ", table COMPS: the page claims 4080 free bytes"),
              0U)
        << result.out;
    EXPECT_NE(result.out.find(book + " is damaged: 1 error, 0 notes\n"), std::string::npos) << result.out;
    EXPECT_EQ(result.LastLine().find("zenvora-cli verify: " + book + " is damaged: 1 error."), 0U)
        << result.err;
    EXPECT_EQ(Everything(), before);
}

TEST_F(VerifyCommand, WritesFindingsInEachForm) {
    long page = 0;
    const auto book = Damaged(page);
    const auto json = Json::parse(Run({"verify", book, "--format=json"}).out);
    EXPECT_EQ(json["sound"], false);
    EXPECT_EQ(json["errors"], 1);
    ASSERT_EQ(json["findings"].size(), 1U);
    EXPECT_EQ(json["findings"][0]["severity"], "error");
    EXPECT_EQ(json["findings"][0]["page"], page);
    EXPECT_EQ(json["findings"][0]["table"], "COMPS");
    EXPECT_TRUE(json["findings"][0]["index"].is_null());
    EXPECT_TRUE(json["findings"][0]["row"].is_null());
    const auto csv = Run({"verify", book, "--format=csv"}).out;
    EXPECT_NE(csv.find("\r\nerror," + std::to_string(page) + ",COMPS,,,"), std::string::npos) << csv;
}

TEST_F(VerifyCommand, FindsAFileThatIsCutOff) {
    const auto book = SixRecords();
    const auto bytes = Read(book);
    const auto result = Run({"verify", Write("CUT.mdb", bytes.substr(0, bytes.size() - 4096 - 100))});
    EXPECT_EQ(result.status, Exit::SomethingRefused);
    EXPECT_NE(result.out.find("cut off"), std::string::npos) << result.out;
}

TEST_F(VerifyCommand, RefusesWhatIsNoDatabase) {
    for (const auto& path : {Write("TEXT.mdb", NoDatabook()), At("MISSING.mdb")}) {
        const auto result = Run({"verify", path});
        EXPECT_EQ(result.status, Exit::FileTrouble) << path;
        EXPECT_TRUE(result.out.empty()) << result.out;
        EXPECT_NE(result.LastLine().find(path), std::string::npos) << result.err;
    }
}

TEST_F(VerifyCommand, ShowsAnExampleInItsHelp) {
    EXPECT_NE(MustRun({"verify", "--help"}).find("zenvora-cli verify LISTINGS.mdb"), std::string::npos);
}

}  // namespace
}  // namespace zenvora::cli
