#include <chrono>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "platform/fault.h"
#include "platform/jet/detail/journal.h"
#include "platform/jet/verify.h"
#include "support/crash_disk.h"
#include "support/temp_folder.h"
#include "workload.h"

namespace zenvora::jet {
namespace {

using testing_support::Content;
using testing_support::kNow;
using testing_support::PrepareWorkload;
using testing_support::ReadContent;
using testing_support::Workload;
using zenvora::testing_support::CrashDisk;
using zenvora::testing_support::TempFolder;

std::unique_ptr<Database> OpenForWriting(CrashDisk& disk) {
    return Database::Open("d.mdb", Database::Access::ReadWrite, disk);
}

/// Runs transactions until the disk fails; the contents after each commit that was reported.
std::vector<Content> RunUntilFailure(CrashDisk& disk, unsigned seed, int transactions) {
    std::vector<Content> contents;
    try {
        const auto database = OpenForWriting(disk);
        contents.push_back(ReadContent(*database));
        Workload(*database, seed).Run(transactions, [&](const Content& content) {
            contents.push_back(content);
        });
    } catch (const Fault&) {
        // The failure that the test planted.
    }
    return contents;
}

void ExpectSoundForOthers(CrashDisk& disk) {
    const char* const checker = std::getenv("ZENVORA_MDBCHECK");
    if (checker == nullptr) return;
    const TempFolder folder;
    disk.Export("d.mdb", folder / "d.mdb");
    const std::string command = "python3 '" + std::string(checker) + "' '" + (folder / "d.mdb").string() +
                                "' > '" + (folder / "out").string() + "'";
    EXPECT_EQ(std::system(command.c_str()), 0) << folder.Read("out");
}

TEST(Durability, APowerCutAnywhereLeavesTheLastCommitOrTheOneBeingMade) {
    constexpr int kTransactions = 6;
    CrashDisk prepared;
    PrepareWorkload("d.mdb", prepared);
    const auto start = prepared.Content("d.mdb");
    CrashDisk whole;
    whole.Put("d.mdb", start);
    const std::vector<Content> expected = RunUntilFailure(whole, 1, kTransactions);
    ASSERT_EQ(expected.size(), kTransactions + 1U);

    long cuts = 0;
    for (long n = 1;; ++n) {
        CrashDisk disk;
        disk.Put("d.mdb", start);
        disk.FailAt(n);
        const std::vector<Content> reported = RunUntilFailure(disk, 1, kTransactions);
        if (!disk.Failed()) break;
        ++cuts;
        disk.Crash(static_cast<unsigned>(n));
        const auto database = OpenForWriting(disk);
        const Content found = ReadContent(*database);
        const std::size_t done = reported.empty() ? 0 : reported.size() - 1;
        const bool last = found == expected[done];
        const bool next = done + 1 < expected.size() && found == expected[done + 1];
        ASSERT_TRUE(last || next) << "cut at " << n << " after " << done << " commits";
        if (n % 10 == 0) ExpectSoundForOthers(disk);
        // And it can be worked on.
        Workload(*database, 99).Run(1, [](const Content&) {});
    }
    EXPECT_GT(cuts, 40);
    RecordProperty("cuts", static_cast<int>(cuts));
}

TEST(Durability, ASecondCutDuringTheRollbackDoesNoHarm) {
    CrashDisk prepared;
    PrepareWorkload("d.mdb", prepared);
    const auto start = prepared.Content("d.mdb");
    CrashDisk whole;
    whole.Put("d.mdb", start);
    const std::vector<Content> expected = RunUntilFailure(whole, 2, 3);
    int doubleCuts = 0;
    for (long n = 1;; ++n) {
        CrashDisk disk;
        disk.Put("d.mdb", start);
        disk.FailAt(n);
        const std::size_t reported = RunUntilFailure(disk, 2, 3).size();
        if (!disk.Failed()) break;
        disk.Crash(static_cast<unsigned>(n));
        for (long second = 1; second < 12; ++second) {
            disk.FailAt(second);
            try {
                static_cast<void>(OpenForWriting(disk));
            } catch (const Fault&) {
            }
            doubleCuts += disk.Failed() ? 1 : 0;
            disk.Crash(static_cast<unsigned>(n * 100 + second));
        }
        const auto database = OpenForWriting(disk);
        const Content found = ReadContent(*database);
        const std::size_t done = reported == 0 ? 0 : reported - 1;
        ASSERT_TRUE(found == expected[done] || (done + 1 < expected.size() && found == expected[done + 1]))
            << n;
    }
    EXPECT_GT(doubleCuts, 100);
}

/// Every operation of a run fails once, alone: the change faults, nothing of it is left, and the next one
/// works.
void FailEachOperationOnce(CrashDisk::Failure failure) {
    CrashDisk prepared;
    PrepareWorkload("d.mdb", prepared);
    const auto start = prepared.Content("d.mdb");
    CrashDisk whole;
    whole.Put("d.mdb", start);
    const std::vector<Content> expected = RunUntilFailure(whole, 3, 4);
    ASSERT_EQ(expected.size(), 5U);
    int failures = 0;
    for (long n = 1;; ++n) {
        CrashDisk disk;
        disk.Put("d.mdb", start);
        std::size_t done = 0;
        disk.FailAt(n, failure);
        try {
            const auto database = OpenForWriting(disk);
            try {
                Workload(*database, 3).Run(4, [&](const Content&) { ++done; });
            } catch (const Fault&) {
                ASSERT_EQ(ReadContent(*database), expected[done])
                    << "in the program that saw the fault, operation " << n;
                Workload(*database, 98).Run(1, [](const Content&) {});
                done = 100;
            }
        } catch (const Fault&) {
            // The opening itself failed.
        }
        if (!disk.Failed()) break;
        ++failures;
        const auto database = OpenForWriting(disk);
        const Content found = ReadContent(*database);
        if (done < 100) {
            ASSERT_EQ(found, expected[done]) << "operation " << n;
        } else {
            ASSERT_FALSE(found.rows.empty()) << "operation " << n;
        }
        if (n % 10 == 0) ExpectSoundForOthers(disk);
    }
    EXPECT_GT(failures, 30);
}

TEST(Durability, AFailingOperationUndoesItsChangeAndNoMore) {
    FailEachOperationOnce(CrashDisk::Failure::Error);
}
TEST(Durability, AFullDiskUndoesItsChangeAndNoMore) {
    FailEachOperationOnce(CrashDisk::Failure::ShortWrite);
}

TEST(Journal, OfACommitThatAnotherProgramHasBuiltUponIsKeptAside) {
    CrashDisk disk;
    PrepareWorkload("d.mdb", disk);
    static_cast<void>(RunUntilFailure(disk, 4, 2));
    bool kept = false;
    for (long n = 1; n < 200 && !kept; ++n) {
        CrashDisk each;
        each.Put("d.mdb", disk.Content("d.mdb"));
        each.FailAt(n);
        static_cast<void>(RunUntilFailure(each, 5, 1));
        if (!each.Failed()) break;
        each.FailAt(0);
        if (!each.Exists("d.mdb-journal") || each.Content("d.mdb-journal").empty()) continue;
        if (each.Content("d.mdb") == disk.Content("d.mdb")) continue;
        // Another program writes to the file: here to a page that the commit had begun to change.
        auto& bytes = each.Content("d.mdb");
        const auto& before = disk.Content("d.mdb");
        std::size_t at = 0;
        while (at < before.size() && bytes[at] == before[at])
            ++at;
        if (at == before.size()) continue;
        bytes[at] ^= std::byte{0x55};
        bytes[at + 1] ^= std::byte{0x55};
        const auto changed = bytes;
        std::string notice;
        try {
            notice = OpenForWriting(each)->Notice();
        } catch (const Fault&) {
            continue;  // the planted change broke something that opening looks at
        }
        EXPECT_NE(notice.find("another program"), std::string::npos) << notice;
        EXPECT_NE(notice.find("d.mdb-journal-1.kept"), std::string::npos) << notice;
        EXPECT_EQ(each.Content("d.mdb"), changed) << "nothing was rolled over the newer data";
        EXPECT_TRUE(each.Exists("d.mdb-journal-1.kept"));
        EXPECT_FALSE(OpenForWriting(each)->Notice().size() > 0) << "it is told once";
        kept = true;
    }
    EXPECT_TRUE(kept);
}

TEST(Journal, OfABrokenOffCommitIsToldOnce) {
    CrashDisk disk;
    PrepareWorkload("d.mdb", disk);
    bool told = false;
    for (long n = 1; n < 100 && !told; ++n) {
        CrashDisk each;
        each.Put("d.mdb", disk.Content("d.mdb"));
        each.FailAt(n);
        static_cast<void>(RunUntilFailure(each, 6, 1));
        each.FailAt(0);
        const std::string notice = OpenForWriting(each)->Notice();
        if (notice.empty()) continue;
        told = true;
        EXPECT_NE(notice.find("undone"), std::string::npos);
        EXPECT_TRUE(OpenForWriting(each)->Notice().empty());
        EXPECT_FALSE(each.Exists("d.mdb-journal"));
    }
    EXPECT_TRUE(told);
}

/// A disk on which nothing can be opened for writing.
class ReadOnlyDisk final : public files::HostDisk {
  public:
    explicit ReadOnlyDisk(files::HostDisk& disk) : disk_(disk) {}
    std::unique_ptr<files::HostFile> Open(const std::filesystem::path& path, files::OpenMode mode) override {
        if (mode != files::OpenMode::ReadOnly)
            throw Fault{fault::kPathAccess, "the disk is write-protected", Place{path.string()}};
        return disk_.Open(path, mode);
    }
    bool Exists(const std::filesystem::path& path) override { return disk_.Exists(path); }
    void Remove(const std::filesystem::path& path) override {
        throw Fault{fault::kPathAccess, "the disk is write-protected", Place{path.string()}};
    }
    void Rename(const std::filesystem::path& path, const std::filesystem::path&) override { Remove(path); }
    void SyncFolder(const std::filesystem::path&) override {}

  private:
    files::HostDisk& disk_;
};

TEST(Journal, AReaderThatMayNotWriteSeesTheStateBeforeTheBrokenOffCommit) {
    CrashDisk disk;
    PrepareWorkload("d.mdb", disk);
    const std::vector<Content> first = RunUntilFailure(disk, 7, 2);
    int seen = 0;
    for (long n = 1; n < 100; ++n) {
        CrashDisk each;
        each.Put("d.mdb", disk.Content("d.mdb"));
        each.FailAt(n);
        static_cast<void>(RunUntilFailure(each, 8, 1));
        if (!each.Failed()) break;
        each.FailAt(0);
        if (!each.Exists("d.mdb-journal") || each.Content("d.mdb-journal").empty()) continue;
        if (each.Content("d.mdb-journal")[0] == std::byte{0})
            continue;  // the commit was done, only the rest was not
        ReadOnlyDisk protectedDisk(each);
        const auto bytes = each.Content("d.mdb");
        const auto database = Database::Open("d.mdb", Database::Access::ReadOnly, protectedDisk);
        EXPECT_EQ(ReadContent(*database), first.back()) << n;
        EXPECT_EQ(each.Content("d.mdb"), bytes);
        ++seen;
    }
    EXPECT_GT(seen, 3);
}

/// The disk after each cut of a commit that leaves a sealed journal behind.
void ForEachBrokenOffCommit(const CrashDisk& disk, const std::function<void(CrashDisk&)>& look) {
    for (long n = 1; n < 100; ++n) {
        CrashDisk each;
        each.Put("d.mdb", CrashDisk(disk).Content("d.mdb"));
        each.FailAt(n);
        static_cast<void>(RunUntilFailure(each, 8, 1));
        if (!each.Failed()) return;
        each.FailAt(0);
        if (!each.Exists("d.mdb-journal") || each.Content("d.mdb-journal").empty()) continue;
        if (each.Content("d.mdb-journal")[0] == std::byte{0}) continue;
        look(each);
    }
}

TEST(Journal, OfABrokenOffCommitIsNoDamageToTheCheckAndStaysAsItIs) {
    CrashDisk disk;
    PrepareWorkload("d.mdb", disk);
    static_cast<void>(RunUntilFailure(disk, 7, 2));
    const auto before = disk.Content("d.mdb");
    int torn = 0;
    ForEachBrokenOffCommit(disk, [&](CrashDisk& each) {
        const auto file = each.Content("d.mdb");
        const auto journal = each.Content("d.mdb-journal");
        ReadOnlyDisk protectedDisk(each);
        for (files::HostDisk* way :
             {static_cast<files::HostDisk*>(&each), static_cast<files::HostDisk*>(&protectedDisk)}) {
            const VerifyReport report = Verify("d.mdb", *way);
            EXPECT_TRUE(report.Sound()) << report.findings.front().sentence;
            ASSERT_EQ(report.findings.size(), 1U);
            EXPECT_NE(report.findings[0].sentence.find("a change was broken off"), std::string::npos);
            EXPECT_NE(report.findings[0].sentence.find("keep d.mdb-journal beside it"), std::string::npos);
        }
        EXPECT_EQ(each.Content("d.mdb"), file);
        EXPECT_EQ(each.Content("d.mdb-journal"), journal);
        torn += file != before ? 1 : 0;
    });
    EXPECT_GT(torn, 2) << "the file itself was never half written";
}

TEST(Journal, ThatAnotherProgramHasOvertakenIsToldByTheCheck) {
    CrashDisk disk;
    PrepareWorkload("d.mdb", disk);
    static_cast<void>(RunUntilFailure(disk, 7, 2));
    const auto before = disk.Content("d.mdb");
    int overtaken = 0;
    ForEachBrokenOffCommit(disk, [&](CrashDisk& each) {
        auto& bytes = each.Content("d.mdb");
        if (bytes != before) return;
        // Another program writes a date of its own into the header.
        bytes[0x72] ^= std::byte{1};
        const auto changed = bytes;
        const VerifyReport report = Verify("d.mdb", each);
        ASSERT_FALSE(report.findings.empty());
        EXPECT_NE(report.findings[0].sentence.find("another program has written to the file since"),
                  std::string::npos)
            << report.findings[0].sentence;
        EXPECT_EQ(each.Content("d.mdb"), changed);
        EXPECT_TRUE(each.Exists("d.mdb-journal"));
        ++overtaken;
    });
    EXPECT_GT(overtaken, 0);
}

TEST(Journal, AFolderThatTakesNoJournalIsFoundOutBeforeAnythingIsChanged) {
    CrashDisk disk;
    PrepareWorkload("d.mdb", disk);
    const auto before = disk.Content("d.mdb");
    disk.FailAt(1, CrashDisk::Failure::Error);
    EXPECT_THROW(static_cast<void>(OpenForWriting(disk)), Fault);
    EXPECT_EQ(disk.Content("d.mdb"), before);
}

struct Report {
    char kind = 0;  // 'b' before a commit, 'c' behind it
    std::uint64_t fingerprint = 0;
};

/// Works on the file until it is killed, and reports each commit through the pipe.
[[noreturn]] void WorkUntilKilled(const std::filesystem::path& path, unsigned seed, int pipe) {
    const auto report = [&](char kind, std::uint64_t fingerprint) {
        char bytes[9];
        bytes[0] = kind;
        std::memcpy(bytes + 1, &fingerprint, 8);
        if (::write(pipe, bytes, sizeof bytes) != sizeof bytes) ::_exit(1);
    };
    try {
        const auto database = Database::Open(path, Database::Access::ReadWrite);
        report('c', testing_support::Fingerprint(ReadContent(*database)));
        Workload(*database, seed)
            .Run(
                1000, [&](const Content& content) { report('c', testing_support::Fingerprint(content)); },
                [&](const Content& content) { report('b', testing_support::Fingerprint(content)); });
    } catch (const std::exception&) {
        ::_exit(2);
    }
    ::_exit(0);
}

/// Runs `work` in a process of its own and kills it after at most `longest` microseconds.
void KillAfter(std::uint32_t longest, std::mt19937& random, const std::function<void()>& work) {
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        try {
            work();
        } catch (const std::exception&) {
            ::_exit(2);
        }
        ::_exit(0);
    }
    std::this_thread::sleep_for(std::chrono::microseconds(random() % longest));
    ::kill(child, SIGKILL);
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 0);
}

bool HasLiveJournal(const std::filesystem::path& path) {
    std::error_code none;
    const auto size = std::filesystem::file_size(detail::Journal::PathOf(path), none);
    return !none && size > 0;
}

// A process at work (inserts, updates, deletes, new columns, pages of indexes that split) is killed at a
// random instant, hundreds of times, on the machine's own disk; and now and then the one that brings the file
// back.
TEST(Durability, AKilledProgramLosesNothingThatItReported) {
    const TempFolder folder;
    std::filesystem::path path;
    std::mt19937 random(11);
    int broken = 0;
    int inFlight = 0;
    int rollbacksKilled = 0;
    constexpr int kKills = 320;
    for (int kill = 0; kill < kKills; ++kill) {
        if (kill % 25 == 0) {
            // A fresh file now and then, so that the contents stay small.
            path = folder / ("k" + std::to_string(kill) + ".mdb");
            PrepareWorkload(path, files::SystemDisk());
        }
        int pipe[2];
        ASSERT_EQ(::pipe(pipe), 0);
        const auto seed = static_cast<unsigned>(random());
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) WorkUntilKilled(path, seed, pipe[1]);
        ::close(pipe[1]);
        std::vector<Report> reports;
        const auto readReport = [&] {
            char bytes[9];
            if (::read(pipe[0], bytes, sizeof bytes) != sizeof bytes) return false;
            Report report{bytes[0], 0};
            std::memcpy(&report.fingerprint, bytes + 1, 8);
            reports.push_back(report);
            return true;
        };
        ASSERT_TRUE(readReport()) << "the program could not open the file, kill " << kill;
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 20000));
        ::kill(child, SIGKILL);
        int status = 0;
        ::waitpid(child, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status)) << "it ended by itself with " << WEXITSTATUS(status);
        while (readReport()) {
        }
        ::close(pipe[0]);

        std::uint64_t reported = 0;
        std::uint64_t begun = 0;
        for (const Report& report : reports) {
            if (report.kind == 'c') reported = report.fingerprint;
            begun = report.fingerprint;
        }
        for (int again = 0; again < 3 && HasLiveJournal(path); ++again) {
            KillAfter(400, random,
                      [&] { static_cast<void>(Database::Open(path, Database::Access::ReadWrite)); });
            rollbacksKilled += HasLiveJournal(path) ? 1 : 0;
        }
        const VerifyReport check = Verify(path);
        ASSERT_TRUE(check.Sound()) << "kill " << kill << ": " << check.findings.front().sentence;
        const auto database = Database::Open(path, Database::Access::ReadWrite);
        broken += database->Notice().empty() ? 0 : 1;
        const std::uint64_t found = testing_support::Fingerprint(ReadContent(*database));
        inFlight += found != reported ? 1 : 0;
        ASSERT_TRUE(found == reported || found == begun) << "kill " << kill;
    }
    RecordProperty("rolledBack", broken);
    RecordProperty("committedButNotReported", inFlight);
    RecordProperty("rollbacksKilled", rollbacksKilled);
    EXPECT_GT(broken + rollbacksKilled, 0) << "no kill fell into a commit: the test proves nothing";
    if (const char* const checker = std::getenv("ZENVORA_MDBCHECK")) {
        for (const auto& entry : std::filesystem::directory_iterator(folder.Path())) {
            if (entry.path().extension() != ".mdb") continue;
            const std::string command =
                "python3 '" + std::string(checker) + "' '" + entry.path().string() + "' > /dev/null";
            EXPECT_EQ(std::system(command.c_str()), 0) << entry.path();
        }
    }
}

}  // namespace
}  // namespace zenvora::jet
