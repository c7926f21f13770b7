#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "platform/files/host_file.h"

/// Who may write a database file, and when it may be read.
///
/// One program writes: it holds the writer lock of the file for as long as it has it open, and shows itself
/// to Access by an entry and a lock in NAME.ldb. Any number of programs read: each holds the commit lock,
/// shared, during one reading procedure; the writer takes it alone while it overwrites pages. So a reader
/// never sees half a commit. All are advisory locks on bytes behind the end of the file. Where the file
/// system has none, only a NAME.ldb of somebody else speaks against writing.
namespace zenvora::jet::detail {

/// The writer's place, held until destruction. Fault 3045: somebody has the file open for writing; the
/// description says who, as far as NAME.ldb tells.
class WriterGuard {
  public:
    WriterGuard(files::HostDisk& disk, const std::filesystem::path& database,
                std::shared_ptr<files::HostFile> file);
    ~WriterGuard();
    WriterGuard(const WriterGuard&) = delete;
    WriterGuard& operator=(const WriterGuard&) = delete;

  private:
    void EnterLockFile();

    files::HostDisk& disk_;
    std::filesystem::path lockFilePath_;
    std::shared_ptr<files::HostFile> file_;
    std::unique_ptr<files::HostFile> lockFile_;
};

/// The commit lock, held until destruction. Waits some seconds for it. Fault 3045: not got in that time.
class CommitLock {
  public:
    CommitLock(files::HostFile& file, const std::filesystem::path& database, files::LockKind kind);
    ~CommitLock();
    CommitLock(const CommitLock&) = delete;
    CommitLock& operator=(const CommitLock&) = delete;

  private:
    files::HostFile& file_;
};

/// True when somebody has the file open for writing (and locks can tell).
[[nodiscard]] bool HasWriter(files::HostFile& file);

}  // namespace zenvora::jet::detail
