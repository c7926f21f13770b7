#pragma once

#include <cstring>
#include <filesystem>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <utility>

#include "platform/fault.h"
#include "platform/files/host_file.h"

namespace zenvora::testing_support {

/// Files that live as long as their test.
class MemoryDisk final : public files::HostDisk {
  public:
    std::map<std::string, std::string> contents;
    bool refusesWriting = false;

    [[nodiscard]] std::unique_ptr<files::HostFile> Open(const std::filesystem::path& path,
                                                        files::OpenMode mode) override {
        Place place;
        place.file = path.string();
        const bool isNew = mode == files::OpenMode::CreateNew;
        if (isNew && refusesWriting) throw Fault{fault::kPathAccess, "The folder is read-only.", place};
        if (!isNew && !Exists(path)) throw Fault{fault::kFileNotFound, "There is no such file.", place};
        return std::make_unique<File>(contents[path.string()]);
    }
    [[nodiscard]] bool Exists(const std::filesystem::path& path) override {
        return contents.count(path.string()) != 0;
    }
    void Remove(const std::filesystem::path& path) override { contents.erase(path.string()); }
    void Rename(const std::filesystem::path& from, const std::filesystem::path& to) override {
        contents[to.string()] = std::exchange(contents.at(from.string()), {});
        contents.erase(from.string());
    }
    void SyncFolder(const std::filesystem::path&) override {}

  private:
    class File final : public files::HostFile {
      public:
        explicit File(std::string& bytes) : bytes_(bytes) {}
        void ReadAt(std::uint64_t offset, std::span<std::byte> bytes) override {
            if (!bytes.empty()) std::memcpy(bytes.data(), bytes_.data() + offset, bytes.size());
        }
        void WriteAt(std::uint64_t offset, std::span<const std::byte> bytes) override {
            bytes_.resize(static_cast<std::size_t>(offset));
            for (const std::byte b : bytes)
                bytes_.push_back(static_cast<char>(b));
        }
        [[nodiscard]] std::uint64_t Size() override { return bytes_.size(); }
        void Truncate(std::uint64_t size) override { bytes_.resize(static_cast<std::size_t>(size)); }
        void Sync() override {}

      private:
        std::string& bytes_;
    };
};

}  // namespace zenvora::testing_support
