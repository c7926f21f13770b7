#include "transfer/launch_krn.h"

#include <gtest/gtest.h>

#include "common/globals.h"
#include "support/test_session.h"

namespace zenvora::transfer {
namespace {

class LaunchKrnTest : public testing::Test {
  protected:
    LaunchKrnTest() { common::ReadGlobals(test.session); }
    /// Files that were started, below C:.
    std::vector<std::string> Started() {
        LaunchKrn(test.session);
        std::vector<std::string> files;
        for (const auto& request : test.machine.requests) {
            EXPECT_EQ(request.verb, "OPEN");
            files.push_back(
                std::filesystem::path(request.file).lexically_relative(test.driveC.Path()).string());
        }
        return files;
    }
    testing_support::TestSession test;
};

TEST_F(LaunchKrnTest, TakesThe32BitProgramFirst) {
    test.driveC.Write("Appraise/KRN.INI", "[Directories]\r\nAppDir=C:\\KRN\r\n");
    test.driveC.Write("KRN/KRN32/KRN.EXE", "MZ");
    test.driveC.Write("KRN/KRN.EXE", "MZ");
    EXPECT_EQ(Started(), std::vector<std::string>{"KRN/KRN32/KRN.EXE"});
}

TEST_F(LaunchKrnTest, ElseTheOneInTheDirectoryItself) {
    test.driveC.Write("Appraise/KRN.INI", "[DIRECTORIES]\nAPPDIR=C:\\KRN\\\n");
    test.driveC.Write("KRN/KRN32/KRN.EXE", "");
    test.driveC.Write("KRN/KRN.EXE", "MZ");
    EXPECT_EQ(Started(), std::vector<std::string>{"KRN/KRN.EXE"});
}

TEST_F(LaunchKrnTest, WithoutProgramOrSettingsNothingHappens) {
    EXPECT_TRUE(Started().empty());
    test.driveC.Write("Appraise/KRN.INI", "[DIRECTORIES]\nAPPDIR=C:\\KRN\n");
    EXPECT_TRUE(Started().empty());
    EXPECT_TRUE(test.desktop.messages.empty());
}

}  // namespace
}  // namespace zenvora::transfer
