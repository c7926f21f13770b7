#include "support/memory_disk.h"

#include <cstring>
#include <fstream>

#include "platform/fault.h"

namespace zenvora::testing_support {

namespace {
class MemoryFile : public files::HostFile {
  public:
    explicit MemoryFile(MemoryDisk::Bytes bytes, bool readOnly)
        : bytes_(std::move(bytes)), readOnly_(readOnly) {}
    void ReadAt(std::uint64_t offset, std::span<std::byte> bytes) override {
        if (offset + bytes.size() > bytes_->size()) throw Fault{fault::kDeviceIo, "the file ends too early"};
        if (!bytes.empty()) std::memcpy(bytes.data(), bytes_->data() + offset, bytes.size());
    }
    void WriteAt(std::uint64_t offset, std::span<const std::byte> bytes) override {
        if (readOnly_) throw Fault{fault::kPathAccess, "the file is open for reading"};
        if (bytes_->size() < offset + bytes.size()) bytes_->resize(offset + bytes.size());
        if (!bytes.empty()) std::memcpy(bytes_->data() + offset, bytes.data(), bytes.size());
    }
    std::uint64_t Size() override { return bytes_->size(); }
    void Truncate(std::uint64_t size) override { bytes_->resize(size); }
    void Sync() override {}

  private:
    MemoryDisk::Bytes bytes_;
    bool readOnly_;
};
}  // namespace

std::unique_ptr<files::HostFile> MemoryDisk::Open(const std::filesystem::path& path, files::OpenMode mode) {
    const std::string name = path.string();
    if (mode == files::OpenMode::CreateNew) {
        if (files_.contains(name)) throw Fault{fault::kFileExists, "the file exists already", Place{name}};
        files_[name] = std::make_shared<std::vector<std::byte>>();
    } else if (!files_.contains(name)) {
        throw Fault{fault::kFileNotFound, "the file was not found", Place{name}};
    }
    return std::make_unique<MemoryFile>(files_[name], mode == files::OpenMode::ReadOnly);
}

void MemoryDisk::Rename(const std::filesystem::path& from, const std::filesystem::path& to) {
    files_[to.string()] = files_.at(from.string());
    files_.erase(from.string());
}

void MemoryDisk::Put(const std::filesystem::path& path, std::vector<std::byte> bytes) {
    files_[path.string()] = std::make_shared<std::vector<std::byte>>(std::move(bytes));
}

void MemoryDisk::Export(const std::filesystem::path& path, const std::filesystem::path& hostPath) {
    const std::vector<std::byte>& bytes = Content(path);
    std::ofstream file(hostPath, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

}  // namespace zenvora::testing_support
