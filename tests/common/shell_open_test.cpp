#include "common/shell_open.h"

#include <gtest/gtest.h>

#include "common/globals.h"
#include "common/processes.h"
#include "support/test_session.h"

namespace zenvora::common {
namespace {

using testing_support::TestSession;

class ShellOpening : public testing::Test {
  protected:
    ShellOpening() { ReadGlobals(session_); }
    [[nodiscard]] std::string Host(std::string_view name) { return (test_.driveC / name).string(); }

    TestSession test_;
    Session& session_ = test_.session;
    std::vector<shell::OpenRequest>& requests_ = test_.machine.requests;
};

TEST_F(ShellOpening, AProgramWithParametersStartsHidden) {
    EXPECT_TRUE(ShellOpen(session_, "C:\\X.EXE", 3, "-a b", "", "open"));
    ASSERT_EQ(requests_.size(), 1U);
    EXPECT_EQ(requests_[0].showCommand, 0);
    EXPECT_EQ(requests_[0].parameters, "-a b");
    EXPECT_EQ(requests_[0].file, Host("X.EXE"));
    EXPECT_EQ(requests_[0].verb, "open");
}

TEST_F(ShellOpening, WithoutParametersAndDirectoryTheWindowIsNormal) {
    ShellOpen(session_, "C:\\X.EXE", 3);
    ShellOpen(session_, "C:\\x.txt", 0);
    ShellOpen(session_, "C:\\x.txt", 3, "", "C:\\ZVR");
    ASSERT_EQ(requests_.size(), 3U);
    EXPECT_EQ(requests_[0].showCommand, 1);
    EXPECT_EQ(requests_[1].showCommand, 1);
    EXPECT_EQ(requests_[1].directory, "");
    EXPECT_EQ(requests_[2].showCommand, 3);
    EXPECT_EQ(requests_[2].directory, Host("ZVR"));
}

TEST_F(ShellOpening, AnswersFrom33UpAndBelowZeroAreSuccess) {
    for (const int answer : {33, 42, -1}) {
        test_.machine.answer = answer;
        EXPECT_TRUE(ShellOpen(session_, "C:\\x.txt"));
    }
    EXPECT_TRUE(test_.desktop.messages.empty());
}

TEST_F(ShellOpening, EveryOtherAnswerHasItsMessage) {
    const std::vector<std::pair<int, std::string>> table = {
        {0, "Out of memory"},
        {8, "Out of memory"},
        {2, "File not found"},
        {3, "Path not found"},
        {5, "Path/file access error"},
        {11, "The executable file is invalid or corrupt"},
        {26, "A sharing violation occurred."},
        {27, "This file type does not have a valid file association."},
        {28, "The file could not be opened due to time out. Please try again in a moment."},
        {29,
         "The file could not be opened because the DDE transaction failed. Please try again in a moment."},
        {30,
         "The file could not be opened because the target application is busy. Please try again in a "
         "moment."},
        {31, "No application is associated with this file type."},
        {32, "The specified dynamic-link library was not found."},
        {1, "An error occurred occurred whilst trying to open or print the selected file."},
        {25, "An error occurred occurred whilst trying to open or print the selected file."},
    };
    session_.settings.programAlias = "My_Zenvora_1";
    for (const auto& [answer, text] : table) {
        test_.machine.answer = answer;
        test_.desktop.Expect(text);
        EXPECT_FALSE(ShellOpen(session_, "C:\\x.txt")) << answer;
        EXPECT_EQ(test_.desktop.messages.back().title, "My Zenvora 1");
        EXPECT_EQ(test_.desktop.messages.back().icon, controls::Icon::Information);
    }
}

TEST_F(ShellOpening, TheNumbersOfTheFailures) {
    const std::vector<std::pair<int, int>> table = {{0, 7},    {8, 7},
                                                    {2, 53},   {3, 76},
                                                    {5, 75},   {11, -2147220445},
                                                    {26, 75},  {27, -2147220429},
                                                    {28, 286}, {29, 285},
                                                    {30, 285}, {31, -2147220425},
                                                    {32, 48},  {1, -2147220455}};
    for (const auto& [answer, number] : table)
        EXPECT_EQ(ShellFailureOf(answer).number, number) << answer;
}

TEST_F(ShellOpening, ADriveThatDoesNotExistIsAPathThatIsNotFound) {
    test_.desktop.Expect("Path not found");
    EXPECT_FALSE(ShellOpen(session_, "Q:\\x.txt"));
    EXPECT_TRUE(requests_.empty());
}

TEST_F(ShellOpening, TheHelpFileGoesToItsReader) {
    test_.driveC.Write("ZVR/ZVR.CHM", "ITSF and more");
    test_.driveC.Write("ZVR/HELP/ZVR.html", "<html>");
    EXPECT_TRUE(OpenHelp(session_));
    OpenHelpIfThere(session_);
    ASSERT_EQ(requests_.size(), 2U);
    EXPECT_EQ(requests_[0].file, Host("ZVR/ZVR.CHM"));
    EXPECT_EQ(requests_[0].verb, "open");
    EXPECT_EQ(requests_[1].file, Host("ZVR/ZVR.CHM"));
}

TEST_F(ShellOpening, WithoutAReaderTheHtmlEditionIsOpened) {
    test_.machine.reader = false;
    test_.driveC.Write("ZVR/ZVR.CHM", "ITSF and more");
    test_.driveC.Write("ZVR/HELP/ZVR.html", "<html>");
    test_.driveC.Write("ZVR/HELP/config.html", "<html>");
    EXPECT_TRUE(OpenHelp(session_));
    EXPECT_TRUE(OpenHelp(session_, "config"));
    EXPECT_TRUE(OpenHelp(session_, "nowhere"));
    ASSERT_EQ(requests_.size(), 3U);
    EXPECT_EQ(requests_[0].file, Host("ZVR/HELP/ZVR.html"));
    EXPECT_EQ(requests_[1].file, Host("ZVR/HELP/config.html"));
    EXPECT_EQ(requests_[2].file, Host("ZVR/HELP/ZVR.html"));
}

TEST_F(ShellOpening, ANoteInThePlaceOfTheHelpFileLeadsToTheHtmlEdition) {
    test_.driveC.Write("ZVR/ZVR.CHM", "The help is in the folder HELP.");
    test_.driveC.Write("ZVR/HELP/ZVR.html", "<html>");
    EXPECT_TRUE(OpenHelp(session_));
    ASSERT_EQ(requests_.size(), 1U);
    EXPECT_EQ(requests_[0].file, Host("ZVR/HELP/ZVR.html"));
}

TEST_F(ShellOpening, AMissingHelpFileIsToldByTheMenuAndPassedOverByTheStartDialog) {
    test_.driveC.Write("ZVR/HELP/ZVR.html", "<html>");
    OpenHelpIfThere(session_);
    EXPECT_TRUE(requests_.empty());
    test_.machine.answer = shell::opened::kFileNotFound;
    test_.desktop.Expect("File not found");
    EXPECT_FALSE(OpenHelp(session_));
    EXPECT_EQ(requests_.size(), 1U);
}

TEST_F(ShellOpening, TheProcessListGrowsAndKeepsWhatHasEnded) {
    controls::ListBox lstProcesses("lstProcesses");
    test_.machine.processes = {"bash", "zenvora"};
    EXPECT_FALSE(IsKrnRunning(session_, lstProcesses));
    EXPECT_EQ(lstProcesses.ListCount(), 2);
    test_.machine.processes = {"bash", std::string(" krn.exe\0rest", 13)};
    EXPECT_TRUE(IsKrnRunning(session_, lstProcesses));
    EXPECT_EQ(lstProcesses.ListCount(), 4);
    EXPECT_EQ(lstProcesses.List(3), " krn.exe");
    test_.machine.processes = {};
    EXPECT_TRUE(IsKrnRunning(session_, lstProcesses));
}

}  // namespace
}  // namespace zenvora::common
