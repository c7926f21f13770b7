#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/files/host_file.h"

namespace zenvora::testing_support {

/// A disk in memory, for tests that write much and for looking at the bytes.
class MemoryDisk : public files::HostDisk {
  public:
    using Bytes = std::shared_ptr<std::vector<std::byte>>;

    std::unique_ptr<files::HostFile> Open(const std::filesystem::path& path, files::OpenMode mode) override;
    bool Exists(const std::filesystem::path& path) override { return files_.contains(path.string()); }
    void Remove(const std::filesystem::path& path) override { files_.erase(path.string()); }
    void Rename(const std::filesystem::path& from, const std::filesystem::path& to) override;
    void SyncFolder(const std::filesystem::path&) override {}

    /// The bytes of a file, which must be there.
    [[nodiscard]] std::vector<std::byte>& Content(const std::filesystem::path& path) {
        return *files_.at(path.string());
    }
    void Put(const std::filesystem::path& path, std::vector<std::byte> bytes);
    /// Writes a file out to the machine's disk, for other programs to read.
    void Export(const std::filesystem::path& path, const std::filesystem::path& hostPath);

  private:
    std::map<std::string, Bytes> files_;
};

}  // namespace zenvora::testing_support
