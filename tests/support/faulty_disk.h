#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "platform/fault.h"
#include "platform/files/host_file.h"

namespace zenvora::testing_support {

/// The machine's disk until its n-th changing operation, which fails with a device fault like all later ones:
/// a power cut, seen from the program.
class FaultyDisk final : public files::HostDisk {
  public:
    explicit FaultyDisk(long failAt) : left_(failAt) {}

    /// True when an operation failed.
    [[nodiscard]] bool WasCut() const { return left_ <= 0; }

    std::unique_ptr<files::HostFile> Open(const std::filesystem::path& path, files::OpenMode mode) override {
        if (mode == files::OpenMode::CreateNew) Count();
        return std::make_unique<File>(*this, files::SystemDisk().Open(path, mode));
    }
    bool Exists(const std::filesystem::path& path) override { return files::SystemDisk().Exists(path); }
    void Remove(const std::filesystem::path& path) override {
        Count();
        files::SystemDisk().Remove(path);
    }
    void Rename(const std::filesystem::path& from, const std::filesystem::path& to) override {
        Count();
        files::SystemDisk().Rename(from, to);
    }
    void SyncFolder(const std::filesystem::path& folder) override {
        Count();
        files::SystemDisk().SyncFolder(folder);
    }

  private:
    class File final : public files::HostFile {
      public:
        File(FaultyDisk& disk, std::unique_ptr<files::HostFile> file) : disk_(disk), file_(std::move(file)) {}
        void ReadAt(std::uint64_t offset, std::span<std::byte> bytes) override {
            file_->ReadAt(offset, bytes);
        }
        void WriteAt(std::uint64_t offset, std::span<const std::byte> bytes) override {
            disk_.Count();
            file_->WriteAt(offset, bytes);
        }
        std::uint64_t Size() override { return file_->Size(); }
        void Truncate(std::uint64_t size) override {
            disk_.Count();
            file_->Truncate(size);
        }
        void Sync() override {
            disk_.Count();
            file_->Sync();
        }

      private:
        FaultyDisk& disk_;
        std::unique_ptr<files::HostFile> file_;
    };

    void Count() {
        if (--left_ <= 0) throw Fault(fault::kDeviceIo, "the power was cut");
    }

    long left_;
};

}  // namespace zenvora::testing_support
