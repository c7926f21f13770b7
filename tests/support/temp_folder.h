#pragma once

#include <filesystem>
#include <string_view>

namespace zenvora::testing_support {

/// A new empty folder of one test, removed with everything in it at the end of its life.
class TempFolder {
  public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& Path() const { return path_; }
    /// The path of a file of that name in the folder; makes nothing.
    [[nodiscard]] std::filesystem::path operator/(std::string_view name) const { return path_ / name; }
    /// Writes a file into the folder, making the folders on its way, and returns its path.
    std::filesystem::path Write(std::string_view name, std::string_view bytes) const;
    /// The bytes of a file in the folder; fails the test when it cannot be read.
    [[nodiscard]] std::string Read(std::string_view name) const;

  private:
    std::filesystem::path path_;
};

}  // namespace zenvora::testing_support
