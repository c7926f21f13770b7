#pragma once

#include <filesystem>

/// What stands at a path of the host.
namespace zenvora::files {

/// True when the file has at least one byte: an empty file counts as absent, and so does a directory. No such
/// file or folder gives false. Faults: 75 (the path may not be looked at) and what else the host reports.
[[nodiscard]] bool FileExists(const std::filesystem::path& path);

/// True when something, a file or a directory, stands at the path. Faults: as FileExists.
[[nodiscard]] bool PathExists(const std::filesystem::path& path);

/// Makes one directory; its parent must exist. Faults: 75 (exists, not permitted), 76 (no parent), 61.
void MakeHostDirectory(const std::filesystem::path& path);

}  // namespace zenvora::files
