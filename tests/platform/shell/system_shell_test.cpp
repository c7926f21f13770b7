#include "platform/shell/system_shell.h"

#include <chrono>
#include <csignal>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "platform/shell/child_process.h"
#include "support/temp_folder.h"

namespace zenvora::shell {
namespace {

using testing_support::TempFolder;

constexpr std::string_view kTitle = "Select File to Calculate";

class Machine : public testing::Test {
  protected:
    /// A program of this test: a script.
    std::string Program(std::string_view name, std::string_view lines) {
        const auto path = folder_.Write(name, "#!/bin/sh\n" + std::string(lines));
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return path.string();
    }
    SystemShell::Tools Tools() {
        SystemShell::Tools tools;
        tools.opener = (folder_ / "opener").string();
        tools.kinds = (folder_ / "kinds").string();
        tools.windowsRunner = (folder_ / "runner").string();
        return tools;
    }
    SystemShell Shell() { return SystemShell(folder_ / "locks", Tools()); }
    /// The text of a file that another program is about to write.
    std::string Awaited(std::string_view name) {
        for (int tries = 0; tries < 1000 && !std::filesystem::exists(folder_ / name); ++tries)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        return folder_.Read(name);
    }

    TempFolder folder_;
};

TEST_F(Machine, HandsADocumentToItsProgram) {
    Program("opener", "printf %s \"$1\" > \"$(dirname \"$0\")/seen\"\n");
    const std::string file = folder_.Write("a b.txt", "x").string();
    EXPECT_EQ(Shell().Open({file}), opened::kOpened);
    EXPECT_EQ(folder_.Read("seen"), file);
}

TEST_F(Machine, TellsWhatTheOpenerAnswers) {
    const std::string file = folder_.Write("a.txt", "x").string();
    for (const auto& [status, answer] : std::vector<std::pair<int, int>>{{0, opened::kOpened},
                                                                         {1, 1},
                                                                         {2, opened::kFileNotFound},
                                                                         {3, opened::kNoAssociation},
                                                                         {4, opened::kNoAssociation}}) {
        Program("opener", "exit " + std::to_string(status) + "\n");
        EXPECT_EQ(Shell().Open({file}), answer) << status;
    }
}

TEST_F(Machine, WithoutAnOpenerNothingIsAssociated) {
    EXPECT_EQ(Shell().Open({folder_.Write("a.txt", "x").string()}), opened::kNoAssociation);
}

TEST_F(Machine, TellsAMissingFileFromAMissingFolder) {
    SystemShell shell = Shell();
    EXPECT_EQ(shell.Open({(folder_ / "none.txt").string()}), opened::kFileNotFound);
    EXPECT_EQ(shell.Open({(folder_ / "none/none.txt").string()}), opened::kPathNotFound);
}

TEST_F(Machine, DoesNotWaitForAnOpenerThatShowsTheDocumentItself) {
    Program("opener", "sleep 5\n");
    SystemShell::Tools tools = Tools();
    tools.patience = 20;
    SystemShell shell(folder_ / "locks", tools);
    EXPECT_EQ(shell.Open({folder_.Write("a.txt", "x").string()}), opened::kOpened);
}

TEST_F(Machine, AWindowsProgramIsRunWithItsParametersInItsDirectory) {
    Program("runner",
            "{ pwd; for a; do echo \"$a\"; done; } > \"$(dirname \"$0\")/part\"\n"
            "mv \"$(dirname \"$0\")/part\" \"$(dirname \"$0\")/seen\"\n");
    const std::string file = folder_.Write("dir/KRN.exe", "MZ").string();
    const std::string directory = (folder_ / "dir").string();
    EXPECT_EQ(Shell().Open({file, "OPEN", "/a \"b c\"", directory, 0}), opened::kOpened);
    EXPECT_EQ(Awaited("seen"), directory + "\n" + file + "\n/a\nb c\n");
}

TEST_F(Machine, AWindowsProgramRunsInThePrefixThatItLiesIn) {
    Program("runner",
            "echo \"$WINEPREFIX\" > \"$(dirname \"$0\")/part\"\nmv \"$(dirname \"$0\")/part\" \"$(dirname "
            "\"$0\")/seen\"\n");
    const std::string file = folder_.Write("prefix/drive_c/KRN/KRN.EXE", "MZ").string();
    EXPECT_EQ(Shell().Open({file}), opened::kOpened);
    EXPECT_EQ(Awaited("seen"), (folder_ / "prefix").string() + "\n");
}

TEST_F(Machine, AWindowsProgramNeedsItsRunner) {
    EXPECT_EQ(Shell().Open({folder_.Write("KRN.EXE", "MZ").string()}), opened::kNoAssociation);
}

TEST_F(Machine, AnotherVerbIsNotKnown) {
    Program("opener", "exit 0\n");
    EXPECT_EQ(Shell().Open({folder_.Write("a.txt", "x").string(), "explode"}), opened::kNoAssociation);
}

TEST_F(Machine, AsksWhoReadsAKindOfFile) {
    const std::string file = folder_.Write("ZVR.CHM", "ITSF").string();
    EXPECT_FALSE(Shell().HasReader(file));
    Program("kinds", "case \"$2 $3\" in\n\"filetype " + file +
                         "\") echo application/vnd.ms-htmlhelp ;;\n"
                         "\"default application/vnd.ms-htmlhelp\") echo reader.desktop ;;\nesac\n");
    EXPECT_TRUE(Shell().HasReader(file));
    Program("kinds", "test $2 = default || echo application/vnd.ms-htmlhelp\n");
    EXPECT_FALSE(Shell().HasReader(file));
    Program("kinds", "exit 1\n");
    EXPECT_FALSE(Shell().HasReader(file));
}

TEST_F(Machine, NamesTheProgramsThatRun) {
    using std::string_literals::operator""s;
    folder_.Write("proc/1/comm", "systemd\n");
    folder_.Write("proc/1/cmdline", "/sbin/init\0splash\0"s);
    folder_.Write("proc/20/comm", "krn-with-a-long\n");
    folder_.Write("proc/20/cmdline", "C:\\krn32\\krn-with-a-long-name.EXE\0/x\0"s);
    folder_.Write("proc/30/comm", "kworker\n");
    folder_.Write("proc/30/cmdline", "");
    folder_.Write("proc/self/comm", "other\n");
    std::filesystem::create_directories(folder_ / "proc/40");
    SystemShell::Tools tools = Tools();
    tools.processes = folder_ / "proc";
    SystemShell shell(folder_ / "locks", tools);
    std::vector<std::string> names = shell.ProcessNames();
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::string>{"krn-with-a-long-name.EXE", "kworker", "systemd"}));
}

TEST_F(Machine, FindsItselfAmongThePrograms) {
    SystemShell shell(folder_ / "locks");
    const std::vector<std::string> names = shell.ProcessNames();
    std::ifstream own("/proc/self/comm");
    std::string name;
    std::getline(own, name);
    EXPECT_NE(std::find(names.begin(), names.end(), name), names.end()) << name;
}

TEST_F(Machine, OnlyALaterCopyHasAnEarlierOne) {
    auto first = std::make_unique<SystemShell>(folder_ / "locks", Tools());
    auto second = std::make_unique<SystemShell>(folder_ / "locks", Tools());
    SystemShell elsewhere(folder_ / "other", Tools());
    EXPECT_FALSE(first->EarlierInstance());
    EXPECT_TRUE(second->EarlierInstance());
    EXPECT_FALSE(elsewhere.EarlierInstance());
    // The second one is an earlier copy for the third, also when the first has ended.
    first.reset();
    EXPECT_FALSE(second->EarlierInstance());
    SystemShell third(folder_ / "locks", Tools());
    EXPECT_TRUE(third.EarlierInstance());
}

TEST_F(Machine, AWindowIsFoundAsLongAsItIsAnnounced) {
    SystemShell first(folder_ / "locks", Tools());
    SystemShell second(folder_ / "locks", Tools());
    EXPECT_FALSE(second.FindWindow(kTitle));
    WindowNotice notice = first.AnnounceWindow(kTitle);
    ASSERT_TRUE(notice);
    EXPECT_TRUE(second.FindWindow(kTitle));
    EXPECT_FALSE(second.FindWindow("Configuration"));
    notice.reset();
    EXPECT_FALSE(second.FindWindow(kTitle));
}

TEST_F(Machine, ACopyThatIsKilledLeavesNoTrace) {
    std::array<int, 2> ready{};
    ASSERT_EQ(::pipe(ready.data()), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        SystemShell shell(folder_ / "locks", Tools());
        const WindowNotice notice = shell.AnnounceWindow(kTitle);
        static_cast<void>(::write(ready[1], "x", 1) + 1);
        for (;;)
            ::pause();
    }
    char byte = 0;
    ASSERT_EQ(::read(ready[0], &byte, 1), 1);
    SystemShell shell(folder_ / "locks", Tools());
    EXPECT_TRUE(shell.EarlierInstance());
    EXPECT_TRUE(shell.FindWindow(kTitle));
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    EXPECT_FALSE(shell.EarlierInstance());
    EXPECT_FALSE(shell.FindWindow(kTitle));
}

TEST_F(Machine, WithoutAPlaceForLocksNoOtherCopyIsKnown) {
    folder_.Write("file", "x");
    SystemShell shell(folder_ / "file/locks", Tools());
    EXPECT_FALSE(shell.EarlierInstance());
    EXPECT_FALSE(shell.AnnounceWindow(kTitle));
    EXPECT_FALSE(shell.FindWindow(kTitle));
}

TEST_F(Machine, TellsItsVersionAndName) {
    SystemShell::Tools tools = Tools();
    tools.release = folder_.Write("os-release", "ID=x\nPRETTY_NAME=\"Some System 12\"\n");
    SystemShell shell(folder_ / "locks", tools);
    EXPECT_EQ(shell.SystemName(), "Some System 12");
    tools.release = folder_ / "none";
    EXPECT_FALSE(SystemShell(folder_ / "locks", tools).SystemName().empty());
    ASSERT_TRUE(shell.Version());
    EXPECT_EQ(shell.Version()->major, 10);
    EXPECT_EQ(shell.WindowsDirectory(), "C:\\WINDOWS");
    EXPECT_EQ(shell.SystemDirectory(), "C:\\WINDOWS\\SYSTEM32");
}

TEST(LockFolder, IsOneForEachDriveOfAUser) {
    const auto one = LockFolder("/home/a/one", "/run/user/1000");
    EXPECT_TRUE(one.string().starts_with("/run/user/1000/zenvora/"));
    EXPECT_NE(one, LockFolder("/home/a/two", "/run/user/1000"));
    EXPECT_EQ(LockFolder("/home/a/one", ""), "/home/a/one/.run");
    EXPECT_EQ(LockFolder("/home/a/one", "relative"), "/home/a/one/.run");
}

TEST(ChildProcess, TakesACommandLineApart) {
    EXPECT_EQ(Arguments("  /a  \"b c\"d \"\" "), (std::vector<std::string>{"/a", "b cd", ""}));
    EXPECT_TRUE(Arguments("  ").empty());
}

TEST(ChildProcess, ReadsWhatAProgramPrintsAndNothingOfOneThatHangsOrFails) {
    EXPECT_EQ(OutputOf({"printf", "some text"}, 5000), "some text");
    EXPECT_EQ(OutputOf({"sh", "-c", "echo x; exit 1"}, 5000), std::nullopt);
    EXPECT_EQ(OutputOf({"sleep", "60"}, 20), std::nullopt);
    EXPECT_EQ(OutputOf({"/nonexistent/tool"}, 20), std::nullopt);
}

}  // namespace
}  // namespace zenvora::shell
