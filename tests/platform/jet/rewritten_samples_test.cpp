#include <gtest/gtest.h>

#include "platform/fault.h"
#include "platform/jet/compact.h"
#include "platform/jet/convert.h"
#include "sample_files.h"
#include "sample_table.h"
#include "support/temp_folder.h"
#include "table_contents.h"

/// Real files, made by Access, compacted or converted.
namespace zenvora::jet {
namespace {

using testing_support::ContentsOf;
using testing_support::kNow;
using zenvora::testing_support::TempFolder;

std::vector<std::string> NamesOrNone() {
    std::vector<std::string> names = testing_support::SampleNames();
    if (names.empty()) names.emplace_back();
    return names;
}

class RewrittenSamples : public testing::TestWithParam<std::string> {
  protected:
    void SetUp() override {
        if (GetParam().empty()) GTEST_SKIP() << "ZENVORA_JET_SAMPLES names no folder: no real file was read";
        testing_support::CopySample(GetParam(), path_);
    }

    /// What other programs say of the file; those that are not there are passed over.
    void CheckWithOthers() const {
        if (const char* checker = std::getenv("ZENVORA_MDBCHECK")) {
            const auto result = testing_support::RunCommand("python3 '" + std::string(checker) + "' '" +
                                                            path_.string() + "'");
            EXPECT_EQ(result.status, 0) << result.output;
        }
        if (testing_support::RunCommand("command -v mdb-export").status != 0) return;
        const auto database = Database::Open(path_, Database::Access::ReadOnly);
        for (const std::string& name : database->TableNames()) {
            std::size_t rows = 0;
            database->OpenTable(name).Scan([&](const RowView&) {
                ++rows;
                return true;
            });
            const auto result =
                testing_support::RunCommand("mdb-count '" + path_.string() + "' '" + name + "'");
            EXPECT_EQ(result.output, std::to_string(rows) + "\n") << name;
        }
    }

    TempFolder folder_;
    std::filesystem::path path_ = folder_ / "sample.mdb";
};

INSTANTIATE_TEST_SUITE_P(Files, RewrittenSamples, testing::ValuesIn(NamesOrNone()), [](const auto& info) {
    std::string name = info.param.empty() ? "none" : info.param;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

TEST_P(RewrittenSamples, HoldWhatTheyHeldBefore) {
    const bool old = GetParam().starts_with("a97");
    std::map<std::string, std::vector<std::vector<std::string>>> before;
    std::map<std::string, std::string> properties;
    {
        const auto database = Database::Open(path_, Database::Access::ReadOnly);
        before = ContentsOf(*database, !old);
        for (const std::string& name : database->TableNames())
            properties[name] = testing_support::PropertiesOf(*database, name);
    }
    const std::string original = folder_.Read("sample.mdb");
    if (GetParam() == "a2003-unicode-memo") {
        // It has an index over Japanese texts, whose keys cannot be built.
        try {
            Compact(path_, kNow);
            ADD_FAILURE() << "compacted";
        } catch (const Fault& fault) {
            EXPECT_EQ(fault.number, fault::kUnsupported);
        }
        EXPECT_EQ(folder_.Read("sample.mdb"), original);
        EXPECT_FALSE(std::filesystem::exists(folder_ / "sample.mdb.bak"));
        return;
    }
    const RewriteReport report = old ? Convert(path_, kNow) : Compact(path_, kNow);
    EXPECT_EQ(folder_.Read("sample.mdb.bak"), original);
    EXPECT_EQ(report.contents.tables.size(), before.size());
    {
        const auto database = Database::Open(path_, Database::Access::ReadOnly);
        EXPECT_EQ(ContentsOf(*database, !old), before);
        for (const auto& [name, bytes] : properties) {
            if (!old) {
                EXPECT_EQ(testing_support::PropertiesOf(*database, name), bytes);
            }
        }
    }
    CheckWithOthers();
}

}  // namespace
}  // namespace zenvora::jet
