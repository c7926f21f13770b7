#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace zenvora::files {

/// Gives the drive letters and backslashes of the rules a home on a host that has neither.
///
/// `C:` is a folder of the program's own, and so is what has no drive; `Z:` is the root of the host. Any
/// other letter is a drive that does not exist (fault 76). "/" separates as "\" does, "." and ".." are worked
/// out in the text, and no path leaves its drive by them. Each component is matched exactly first and then
/// without regard to case (the first in byte order of several); from the first component that does not exist
/// on, names keep the case they are given.
class DriveMap {
  public:
    /// `driveC` is the host folder of C:. Nothing is made there.
    explicit DriveMap(std::filesystem::path driveC);
    /// A map whose C: holds nothing and takes nothing: for programs that have no files of their own.
    [[nodiscard]] static DriveMap Nowhere();

    /// The host path of a text path: "C:\ZVR\NEWDATA.MDB", "Z:\home\x", "\Appraise", "ZVR.INI". Faults: 76.
    [[nodiscard]] std::filesystem::path HostPath(std::string_view textPath) const;
    /// The text path of a host path, on Z:, whatever it leads to. A relative path is taken from the current
    /// folder. Faults: 75 when a name on the way holds a backslash, which no text path can say.
    [[nodiscard]] static std::string TextPath(const std::filesystem::path& hostPath);

    [[nodiscard]] const std::filesystem::path& DriveC() const { return driveC_; }

  private:
    std::filesystem::path driveC_;
};

/// The folder of C: by the values of ZENVORA_HOME, XDG_DATA_HOME and HOME, each empty when not set: the
/// first; else "zenvora" in the second, which counts only when it is absolute; else ".local/share/zenvora" in
/// the third. Always absolute.
[[nodiscard]] std::filesystem::path DriveCFolder(std::string_view zenvoraHome, std::string_view xdgDataHome,
                                                 std::string_view home);
/// The same from the environment of this process.
[[nodiscard]] std::filesystem::path DriveCFolder();

}  // namespace zenvora::files
