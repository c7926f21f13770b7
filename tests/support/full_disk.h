#pragma once

#include <filesystem>
#include <memory>
#include <utility>

#include "platform/fault.h"
#include "platform/files/host_file.h"

namespace zenvora::testing_support {

/// The machine's disk, which a test fills and empties: while it is full every write fails with fault 61.
class FullDisk final : public files::HostDisk {
  public:
    bool full = false;
    int fullFor = 0;  ///< so many attempts fail before there is room again

    std::unique_ptr<files::HostFile> Open(const std::filesystem::path& path, files::OpenMode mode) override {
        return std::make_unique<File>(*this, files::SystemDisk().Open(path, mode));
    }
    bool Exists(const std::filesystem::path& path) override { return files::SystemDisk().Exists(path); }
    void Remove(const std::filesystem::path& path) override { files::SystemDisk().Remove(path); }
    void Rename(const std::filesystem::path& from, const std::filesystem::path& to) override {
        files::SystemDisk().Rename(from, to);
    }
    void SyncFolder(const std::filesystem::path& folder) override { files::SystemDisk().SyncFolder(folder); }

  private:
    class File final : public files::HostFile {
      public:
        File(FullDisk& disk, std::unique_ptr<files::HostFile> file) : disk_(disk), file_(std::move(file)) {}
        void ReadAt(std::uint64_t offset, std::span<std::byte> bytes) override {
            file_->ReadAt(offset, bytes);
        }
        void WriteAt(std::uint64_t offset, std::span<const std::byte> bytes) override {
            disk_.Check();
            file_->WriteAt(offset, bytes);
        }
        std::uint64_t Size() override { return file_->Size(); }
        void Truncate(std::uint64_t size) override { file_->Truncate(size); }
        void Sync() override { file_->Sync(); }
        files::FileStamp Stamp() override { return file_->Stamp(); }
        files::LockAnswer TryLock(std::uint64_t offset, std::uint64_t length, files::LockKind kind) override {
            return file_->TryLock(offset, length, kind);
        }
        void Unlock(std::uint64_t offset, std::uint64_t length) override { file_->Unlock(offset, length); }
        files::LockAnswer TestLock(std::uint64_t offset, std::uint64_t length) override {
            return file_->TestLock(offset, length);
        }

      private:
        FullDisk& disk_;
        std::unique_ptr<files::HostFile> file_;
    };

    void Check() {
        if (full || fullFor-- > 0)
            throw Fault(fault::kDiskFull, "There is no space left. Make room on the disk.");
    }
};

}  // namespace zenvora::testing_support
