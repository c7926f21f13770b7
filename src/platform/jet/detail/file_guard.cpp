#include "platform/jet/detail/file_guard.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <thread>

#include "platform/fault.h"
#include "platform/files/host_identity.h"
#include "platform/text/encoding.h"

namespace zenvora::jet::detail {

namespace {
using files::LockAnswer;
using files::LockKind;

// Behind the largest file that the format allows.
constexpr std::uint64_t kWriterByte = 0x7FFFFFF0;
constexpr std::uint64_t kCommitByte = 0x7FFFFFF1;
// In NAME.ldb: the lock of user slot i lies at 0x10000000 + i.
constexpr std::uint64_t kFirstUser = 0x10000001;
constexpr std::uint64_t kUsers = 255;
constexpr std::size_t kNameSize = 32;
constexpr std::chrono::seconds kPatience{10};
constexpr std::chrono::milliseconds kPause{2};

std::filesystem::path LockFileOf(const std::filesystem::path& database) {
    std::filesystem::path path = database;
    return path.replace_extension(database.extension() == ".MDB" ? ".LDB" : ".ldb");
}

std::string NameAt(files::HostFile& lockFile, std::uint64_t at) {
    std::array<std::byte, kNameSize> bytes{};
    lockFile.ReadAt(at, bytes);
    const std::string raw(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    std::string name = text::FromWindows1252(raw.substr(0, raw.find('\0')));
    name.erase(name.find_last_not_of(' ') + 1);
    return name;
}

/// "user Admin on OFFICE-PC", as far as NAME.ldb tells.
std::string WhoHasIt(files::HostDisk& disk, const std::filesystem::path& lockFile) {
    try {
        if (disk.Exists(lockFile)) {
            const auto file = disk.Open(lockFile, files::OpenMode::ReadOnly);
            const std::string computer = NameAt(*file, 0);
            const std::string user = NameAt(*file, kNameSize);
            if (!computer.empty()) return "user " + (user.empty() ? "unknown" : user) + " on " + computer;
        }
    } catch (const Fault&) {
        // A lock file that cannot be read names nobody.
    }
    return "another program";
}

Fault InUse(const std::filesystem::path& database, const std::string& who) {
    Place place;
    place.file = database.string();
    return {fault::kInUse,
            "the Databook is open in " + who +
                ": close it there, or open it for reading only. Nothing was changed",
            place};
}
}  // namespace

WriterGuard::WriterGuard(files::HostDisk& disk, const std::filesystem::path& database,
                         std::shared_ptr<files::HostFile> file)
    : disk_(disk), lockFilePath_(LockFileOf(database)), file_(std::move(file)) {
    const LockAnswer writer = file_->TryLock(kWriterByte, 1, LockKind::Exclusive);
    if (writer == LockAnswer::Held) throw InUse(database, WhoHasIt(disk_, lockFilePath_));
    try {
        if (disk_.Exists(lockFilePath_)) {
            // Somebody else's: its names prove nothing, its locks do. What cannot be judged counts as in use.
            LockAnswer answer = LockAnswer::Unsupported;
            try {
                lockFile_ = disk_.Open(lockFilePath_, files::OpenMode::ReadWrite);
                answer = lockFile_->TestLock(kFirstUser, kUsers);
            } catch (const Fault&) {
                answer = LockAnswer::Held;
            }
            if (answer != LockAnswer::Taken) throw InUse(database, WhoHasIt(disk_, lockFilePath_));
        }
        // Without locks an entry would only keep others out, and us, when a crash leaves it behind.
        if (writer == LockAnswer::Taken) EnterLockFile();
    } catch (...) {
        file_->Unlock(kWriterByte, 1);
        throw;
    }
}

void WriterGuard::EnterLockFile() {
    try {
        if (!lockFile_) lockFile_ = disk_.Open(lockFilePath_, files::OpenMode::CreateNew);
        static_cast<void>(lockFile_->TryLock(kFirstUser, 1, LockKind::Exclusive));
        std::array<std::byte, 2 * kNameSize> entry{};
        const auto put = [&](std::size_t at, const std::string& name) {
            std::memcpy(entry.data() + at, name.data(), std::min(name.size(), kNameSize - 1));
        };
        put(0, files::ComputerName());
        put(kNameSize, files::UserName());
        lockFile_->WriteAt(0, entry);
    } catch (const Fault&) {
        lockFile_.reset();  // a courtesy to other programs; our own lock is on the file itself
    }
}

WriterGuard::~WriterGuard() {
    try {
        if (lockFile_) {
            lockFile_->Unlock(kFirstUser, 1);
            const bool free = lockFile_->TestLock(kFirstUser, kUsers) == LockAnswer::Taken;
            lockFile_.reset();
            if (free) disk_.Remove(lockFilePath_);
        }
        file_->Unlock(kWriterByte, 1);
    } catch (const Fault&) {
        // A lock file that stays behind without a lock is known to be stale.
    }
}

CommitLock::CommitLock(files::HostFile& file, const std::filesystem::path& database, LockKind kind)
    : file_(file) {
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (file_.TryLock(kCommitByte, 1, kind) == LockAnswer::Held) {
        if (std::chrono::steady_clock::now() > end) {
            Place place;
            place.file = database.string();
            throw Fault{fault::kInUse,
                        kind == LockKind::Shared
                            ? "the Databook is being written by another program: try again in a moment"
                            : "another program keeps reading the Databook: the change was not made. Close it "
                              "there and "
                              "try again",
                        place};
        }
        std::this_thread::sleep_for(kPause);
    }
}

CommitLock::~CommitLock() {
    file_.Unlock(kCommitByte, 1);
}

bool HasWriter(files::HostFile& file) {
    return file.TestLock(kWriterByte, 1) == LockAnswer::Held;
}

}  // namespace zenvora::jet::detail
