#include "support/crash_disk.h"

#include <algorithm>
#include <cstring>
#include <fstream>

#include "platform/fault.h"

namespace zenvora::testing_support {

namespace {
constexpr std::size_t kSector = 512;
}

class CrashDisk::File final : public files::HostFile {
  public:
    File(CrashDisk& disk, std::shared_ptr<Content_> content) : disk_(disk), content_(std::move(content)) {}
    void ReadAt(std::uint64_t offset, std::span<std::byte> bytes) override {
        if (offset + bytes.size() > content_->now.size())
            throw Fault{fault::kDeviceIo, "the file ends too early"};
        std::memcpy(bytes.data(), content_->now.data() + offset, bytes.size());
    }
    void WriteAt(std::uint64_t offset, std::span<const std::byte> bytes) override {
        const Verdict verdict = disk_.Count();
        if (verdict == Verdict::Half) bytes = bytes.first(bytes.size() / 2);
        if (content_->now.size() < offset + bytes.size()) content_->now.resize(offset + bytes.size());
        std::memcpy(content_->now.data() + offset, bytes.data(), bytes.size());
        if (verdict == Verdict::Half) throw Fault{fault::kDiskFull, "the disk is full"};
    }
    std::uint64_t Size() override { return content_->now.size(); }
    void Truncate(std::uint64_t size) override {
        static_cast<void>(disk_.Count());
        content_->now.resize(size);
    }
    void Sync() override {
        static_cast<void>(disk_.Count());
        content_->synced = content_->now;
    }

  private:
    CrashDisk& disk_;
    std::shared_ptr<Content_> content_;
};

void CrashDisk::FailAt(long n, Failure failure) {
    failAt_ = n;
    failure_ = failure;
    operations_ = 0;
    failed_ = false;
}

CrashDisk::Verdict CrashDisk::Count() {
    ++operations_;
    if (failAt_ == 0 || operations_ < failAt_) return Verdict::Do;
    if (operations_ == failAt_) {
        failed_ = true;
        if (failure_ == Failure::ShortWrite) return Verdict::Half;
        throw Fault{fault::kDeviceIo, "the device failed"};
    }
    if (failure_ == Failure::PowerCut) throw Fault{fault::kDeviceIo, "the power is off"};
    return Verdict::Do;
}

void CrashDisk::Crash(unsigned seed) {
    std::mt19937 random(seed);
    // A name that was made, removed or changed since the folder was synced may be as before or as now.
    const bool folderArrived = random() % 2 == 0;
    if (!folderArrived) files_ = names_;
    names_ = files_;
    for (auto& [name, content] : files_) {
        std::vector<std::byte> after = random() % 2 == 0 ? content->synced : content->now;
        after.resize(random() % 2 == 0 ? content->synced.size() : content->now.size());
        for (std::size_t at = 0; at < after.size(); at += kSector) {
            const std::vector<std::byte>& from = random() % 2 == 0 ? content->synced : content->now;
            const std::size_t count = std::min(kSector, after.size() - at);
            if (at + count <= from.size()) std::memcpy(after.data() + at, from.data() + at, count);
        }
        content = std::make_shared<Content_>(Content_{after, after});
    }
    names_ = files_;
    FailAt(0);
}

std::unique_ptr<files::HostFile> CrashDisk::Open(const std::filesystem::path& path, files::OpenMode mode) {
    const std::string name = path.string();
    if (mode == files::OpenMode::CreateNew) {
        static_cast<void>(Count());
        if (files_.contains(name)) throw Fault{fault::kFileExists, "the file exists already", Place{name}};
        files_[name] = std::make_shared<Content_>();
    } else if (!files_.contains(name)) {
        throw Fault{fault::kFileNotFound, "the file was not found", Place{name}};
    }
    return std::make_unique<File>(*this, files_[name]);
}

void CrashDisk::Remove(const std::filesystem::path& path) {
    static_cast<void>(Count());
    files_.erase(path.string());
}

void CrashDisk::Rename(const std::filesystem::path& from, const std::filesystem::path& to) {
    static_cast<void>(Count());
    files_[to.string()] = files_.at(from.string());
    files_.erase(from.string());
}

void CrashDisk::SyncFolder(const std::filesystem::path&) {
    static_cast<void>(Count());
    names_ = files_;
}

void CrashDisk::Put(const std::filesystem::path& path, std::vector<std::byte> bytes) {
    files_[path.string()] = std::make_shared<Content_>(Content_{bytes, bytes});
    names_ = files_;
}

void CrashDisk::Export(const std::filesystem::path& path, const std::filesystem::path& hostPath) {
    const std::vector<std::byte>& bytes = Content(path);
    std::ofstream file(hostPath, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

}  // namespace zenvora::testing_support
