#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>

/// The one door to the disk for everything that must survive a crash or be tested against a failing disk.
namespace zenvora::files {

enum class OpenMode { ReadOnly, ReadWrite, CreateNew };

enum class LockKind { Shared, Exclusive };
enum class LockAnswer {
    Taken,        ///< the lock is held now, or nobody holds one that is in the way
    Held,         ///< another opener of the file holds it
    Unsupported,  ///< the file system has no locks: nothing can be said
};

/// What tells two states of a file apart without reading it.
struct FileStamp {
    std::uint64_t size = 0;
    std::int64_t modified = 0;  ///< nanoseconds of the host's clock; 0 when it is not known
    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

/// An open file on the host. Not thread-safe. Every fault carries the file's path and one of the numbers 53,
/// 57, 61, 70, 75, 76.
class HostFile {
  public:
    virtual ~HostFile() = default;
    /// Reads exactly bytes.size() bytes at `offset`; a file that ends before them is a fault (57).
    virtual void ReadAt(std::uint64_t offset, std::span<std::byte> bytes) = 0;
    /// Writes all bytes at `offset`; the file grows as needed.
    virtual void WriteAt(std::uint64_t offset, std::span<const std::byte> bytes) = 0;
    [[nodiscard]] virtual std::uint64_t Size() = 0;
    virtual void Truncate(std::uint64_t size) = 0;
    /// Returns when everything written is on the device.
    virtual void Sync() = 0;

    [[nodiscard]] virtual FileStamp Stamp() { return {Size(), 0}; }
    /// Advisory locks on byte ranges, which may lie behind the end of the file. They belong to this opening
    /// of the file, also within one process, and end with it. None of the calls waits.
    [[nodiscard]] virtual LockAnswer TryLock(std::uint64_t offset, std::uint64_t length, LockKind kind) {
        static_cast<void>(offset), static_cast<void>(length), static_cast<void>(kind);
        return LockAnswer::Unsupported;
    }
    virtual void Unlock(std::uint64_t offset, std::uint64_t length) {
        static_cast<void>(offset), static_cast<void>(length);
    }
    /// Would TryLock get an exclusive lock? Takes none.
    [[nodiscard]] virtual LockAnswer TestLock(std::uint64_t offset, std::uint64_t length) {
        static_cast<void>(offset), static_cast<void>(length);
        return LockAnswer::Unsupported;
    }
};

/// Opens files. Tests put a faulty disk in its place.
class HostDisk {
  public:
    virtual ~HostDisk() = default;
    /// Faults: 53 no such file, 76 no such folder, 75 not permitted or a directory, 58 exists (CreateNew).
    [[nodiscard]] virtual std::unique_ptr<HostFile> Open(const std::filesystem::path& path,
                                                         OpenMode mode) = 0;
    [[nodiscard]] virtual bool Exists(const std::filesystem::path& path) = 0;
    /// Removes a file; a file that is not there is no fault.
    virtual void Remove(const std::filesystem::path& path) = 0;
    /// Renames over what stands at `to`.
    virtual void Rename(const std::filesystem::path& from, const std::filesystem::path& to) = 0;
    /// Makes renames, creations and removals in a folder durable.
    virtual void SyncFolder(const std::filesystem::path& folder) = 0;
};

/// The machine's own disk.
[[nodiscard]] HostDisk& SystemDisk();

}  // namespace zenvora::files
