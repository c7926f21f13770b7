#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "platform/files/host_file.h"

namespace zenvora::testing_support {

/// A disk that can lose its power. What was synced is safe; of the rest each 512 bytes may or may not have
/// arrived.
class CrashDisk : public files::HostDisk {
  public:
    /// How an operation that changes something fails.
    enum class Failure {
        PowerCut,    ///< it and everything after it fails
        Error,       ///< it alone fails, with nothing written
        ShortWrite,  ///< it alone fails, a write with its first half written
    };

    /// The n-th changing operation from now on (from 1) fails; 0: none does.
    void FailAt(long n, Failure failure = Failure::PowerCut);
    /// True when the operation of FailAt was reached.
    [[nodiscard]] bool Failed() const { return failed_; }
    /// Operations since the last FailAt.
    [[nodiscard]] long Operations() const { return operations_; }
    /// Power comes back: unsynced bytes are kept or lost by chance, and nothing fails any more.
    void Crash(unsigned seed);

    std::unique_ptr<files::HostFile> Open(const std::filesystem::path& path, files::OpenMode mode) override;
    bool Exists(const std::filesystem::path& path) override { return files_.contains(path.string()); }
    void Remove(const std::filesystem::path& path) override;
    void Rename(const std::filesystem::path& from, const std::filesystem::path& to) override;
    void SyncFolder(const std::filesystem::path& folder) override;

    [[nodiscard]] std::vector<std::byte>& Content(const std::filesystem::path& path) {
        return files_.at(path.string())->now;
    }
    void Put(const std::filesystem::path& path, std::vector<std::byte> bytes);
    void Export(const std::filesystem::path& path, const std::filesystem::path& hostPath);

  private:
    struct Content_ {
        std::vector<std::byte> now;     // what the program sees
        std::vector<std::byte> synced;  // what is on the device
    };
    class File;
    enum class Verdict { Do, Half };
    Verdict Count();

    std::map<std::string, std::shared_ptr<Content_>> files_;
    std::map<std::string, std::shared_ptr<Content_>> names_;  // the folder as it is on the device
    long failAt_ = 0, operations_ = 0;
    Failure failure_ = Failure::PowerCut;
    bool failed_ = false;
};

}  // namespace zenvora::testing_support
