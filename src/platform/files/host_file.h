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

/// An open file on the host. Not thread-safe. Every fault carries the file's path and one of the numbers 53, 57, 61,
/// 70, 75, 76.
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
};

/// Opens files. Tests put a faulty disk in its place.
class HostDisk {
public:
    virtual ~HostDisk() = default;
    /// Faults: 53 no such file, 76 no such folder, 75 not permitted or a directory, 58 exists (CreateNew).
    [[nodiscard]] virtual std::unique_ptr<HostFile> Open(const std::filesystem::path& path, OpenMode mode) = 0;
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
