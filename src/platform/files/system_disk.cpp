#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/files/host_fault.h"
#include "platform/files/host_file.h"
#include "platform/text/number.h"

namespace zenvora::files {
namespace {

/// Repeats a call that a signal interrupted.
template <class Call>
auto Uninterrupted(Call call) {
    for (;;) {
        const auto result = call();
        if (result != -1 || errno != EINTR) return result;
    }
}

/// A reader that takes this much at once goes on behind it.
constexpr std::size_t kLargeRead = std::size_t{128} << 10;
/// Linux moves at most this many bytes in one call.
constexpr std::size_t kLargestTransfer = 0x7ffff000;

class SystemFile final : public HostFile {
  public:
    SystemFile(int descriptor, std::filesystem::path path)
        : descriptor_(descriptor), path_(std::move(path)) {}
    ~SystemFile() override { ::close(descriptor_); }
    SystemFile(const SystemFile&) = delete;
    SystemFile& operator=(const SystemFile&) = delete;

    void ReadAt(std::uint64_t offset, std::span<std::byte> bytes) override {
        const std::size_t size = bytes.size();
        while (!bytes.empty()) {
            const std::size_t wanted = std::min(bytes.size(), kLargestTransfer);
            const auto got = Uninterrupted(
                [&] { return ::pread(descriptor_, bytes.data(), wanted, static_cast<off_t>(offset)); });
            if (got < 0) throw HostFault(errno, "read from", path_);
            if (got == 0) throw EndsEarly(offset);
            bytes = bytes.subspan(static_cast<std::size_t>(got));
            offset += static_cast<std::uint64_t>(got);
        }
        // While this is worked on the disk goes for the next.
        if (size >= kLargeRead)
            static_cast<void>(::posix_fadvise(descriptor_, static_cast<off_t>(offset),
                                              static_cast<off_t>(size), POSIX_FADV_WILLNEED));
    }

    void WriteAt(std::uint64_t offset, std::span<const std::byte> bytes) override {
        while (!bytes.empty()) {
            const std::size_t wanted = std::min(bytes.size(), kLargestTransfer);
            const auto put = Uninterrupted(
                [&] { return ::pwrite(descriptor_, bytes.data(), wanted, static_cast<off_t>(offset)); });
            if (put < 0) throw HostFault(errno, "write to", path_);
            if (put == 0) throw HostFault(ENOSPC, "write to", path_);
            bytes = bytes.subspan(static_cast<std::size_t>(put));
            offset += static_cast<std::uint64_t>(put);
        }
    }

    std::uint64_t Size() override {
        struct stat status {};
        if (::fstat(descriptor_, &status) != 0) throw HostFault(errno, "take the size of", path_);
        return static_cast<std::uint64_t>(status.st_size);
    }

    void Truncate(std::uint64_t size) override {
        if (Uninterrupted([&] { return ::ftruncate(descriptor_, static_cast<off_t>(size)); }) != 0) {
            throw HostFault(errno, "change the size of", path_);
        }
    }

    void Sync() override {
        if (Uninterrupted([&] { return ::fsync(descriptor_); }) != 0) {
            throw HostFault(errno, "write out", path_);
        }
    }

    FileStamp Stamp() override {
        struct stat status {};
        if (::fstat(descriptor_, &status) != 0) throw HostFault(errno, "look at", path_);
        return {static_cast<std::uint64_t>(status.st_size),
                static_cast<std::int64_t>(status.st_mtim.tv_sec) * 1'000'000'000 + status.st_mtim.tv_nsec};
    }

    // Locks of the open file description: unlike the older ones of a process they do not vanish when another
    // part of the program closes the same file.
    LockAnswer TryLock(std::uint64_t offset, std::uint64_t length, LockKind kind) override {
        struct flock range = Range(kind == LockKind::Shared ? F_RDLCK : F_WRLCK, offset, length);
        return Answer(Uninterrupted([&] { return ::fcntl(descriptor_, F_OFD_SETLK, &range); }));
    }

    void Unlock(std::uint64_t offset, std::uint64_t length) override {
        struct flock range = Range(F_UNLCK, offset, length);
        static_cast<void>(Uninterrupted([&] { return ::fcntl(descriptor_, F_OFD_SETLK, &range); }));
    }

    LockAnswer TestLock(std::uint64_t offset, std::uint64_t length) override {
        struct flock range = Range(F_WRLCK, offset, length);
        const int result = Uninterrupted([&] { return ::fcntl(descriptor_, F_OFD_GETLK, &range); });
        if (result != 0) return LockAnswer::Unsupported;
        return range.l_type == F_UNLCK ? LockAnswer::Taken : LockAnswer::Held;
    }

  private:
    static struct flock Range(short type, std::uint64_t offset, std::uint64_t length) {
        struct flock range {};
        range.l_type = type;
        range.l_whence = SEEK_SET;
        range.l_start = static_cast<off_t>(offset);
        range.l_len = static_cast<off_t>(length);
        return range;
    }
    static LockAnswer Answer(int result) {
        if (result == 0) return LockAnswer::Taken;
        return errno == EAGAIN || errno == EACCES ? LockAnswer::Held : LockAnswer::Unsupported;
    }

    [[nodiscard]] Fault EndsEarly(std::uint64_t offset) const {
        Place place;
        place.file = path_.string();
        return {fault::kDeviceIo,
                "\"" + path_.string() + "\" ends at byte " +
                    text::IntegerText(static_cast<std::int64_t>(offset)) +
                    ", where more was expected. The file is cut off: restore it from a copy.",
                std::move(place)};
    }

    int descriptor_;
    std::filesystem::path path_;
};

class LocalDisk final : public HostDisk {
  public:
    std::unique_ptr<HostFile> Open(const std::filesystem::path& path, OpenMode mode) override {
        int flags = O_CLOEXEC | O_NONBLOCK;  // a pipe must be refused, not waited for
        flags |= mode == OpenMode::ReadOnly ? O_RDONLY : O_RDWR;
        if (mode == OpenMode::CreateNew) flags |= O_CREAT | O_EXCL;
        const int descriptor = Uninterrupted([&] { return ::open(path.c_str(), flags, 0666); });
        if (descriptor < 0) throw HostFault(errno, mode == OpenMode::CreateNew ? "create" : "open", path);
        auto file = std::make_unique<SystemFile>(descriptor, path);
        struct stat status {};
        if (::fstat(descriptor, &status) != 0) throw HostFault(errno, "open", path);
        if (S_ISDIR(status.st_mode)) throw HostFault(EISDIR, "open", path);
        if (!S_ISREG(status.st_mode)) throw NoFile(path);
        return file;
    }

    bool Exists(const std::filesystem::path& path) override {
        struct stat status {};
        if (::stat(path.c_str(), &status) == 0) return true;
        if (errno == ENOENT || errno == ENOTDIR) return false;
        throw HostFault(errno, "look at", path);
    }

    void Remove(const std::filesystem::path& path) override {
        if (::unlink(path.c_str()) != 0 && errno != ENOENT) throw HostFault(errno, "remove", path);
    }

    void Rename(const std::filesystem::path& from, const std::filesystem::path& to) override {
        if (::rename(from.c_str(), to.c_str()) == 0) return;
        const int error = errno;
        // The name at fault may be either of the two.
        struct stat status {};
        const bool there = ::lstat(from.c_str(), &status) == 0;
        throw HostFault(error, there ? "replace" : "rename", there ? to : from);
    }

    void SyncFolder(const std::filesystem::path& folder) override {
        const std::filesystem::path path = folder.empty() ? std::filesystem::path(".") : folder;
        const int descriptor =
            Uninterrupted([&] { return ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
        if (descriptor < 0) throw HostFault(errno, "write out the folder", path);
        const int result = Uninterrupted([&] { return ::fsync(descriptor); });
        const int error = errno;
        ::close(descriptor);
        // Some file systems cannot sync a folder and keep its changes in order by themselves.
        if (result != 0 && error != EINVAL && error != EROFS)
            throw HostFault(error, "write out the folder", path);
    }

  private:
    static Fault NoFile(const std::filesystem::path& path) {
        Place place;
        place.file = path.string();
        return {fault::kPathAccess,
                "Cannot open \"" + path.string() + "\": it is a device or a pipe. Name a file.",
                std::move(place)};
    }
};

}  // namespace

HostDisk& SystemDisk() {
    static LocalDisk disk;
    return disk;
}

}  // namespace zenvora::files
