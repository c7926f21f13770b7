#pragma once

#include <filesystem>
#include <functional>

namespace zenvora::cli {

/// A Databook that appears under its name only when it is whole: it is made under another name beside its
/// target and takes the target's place at the end. What was there before is kept as NAME.bak.
class FinishedFile {
  public:
    /// Faults: 58 (the target exists and may not be replaced), 75 (it is no plain file), 76 (its folder is
    /// missing).
    FinishedFile(const std::filesystem::path& target, bool replace);
    /// Removes what was not finished.
    ~FinishedFile();
    FinishedFile(const FinishedFile&) = delete;
    FinishedFile& operator=(const FinishedFile&) = delete;

    /// Makes it: `make` is given a path where nothing stands yet. A fault that names this path comes out with
    /// the target's name, the one that the user knows.
    void Make(const std::function<void(const std::filesystem::path&)>& make) const;
    /// Where it is made.
    [[nodiscard]] const std::filesystem::path& Path() const noexcept { return path_; }
    /// Puts it in its place. Faults: as HostDisk::Rename; the old file then stands where it stood.
    void Finish();

  private:
    std::filesystem::path target_;
    std::filesystem::path path_;
    bool finished_ = false;
};

}  // namespace zenvora::cli
