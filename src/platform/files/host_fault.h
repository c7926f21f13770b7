#pragma once

#include <filesystem>
#include <string_view>

#include "platform/fault.h"

namespace zenvora::files {

/// The fault of a failed call of the host, by its errno.
///
/// `action` says what could not be done, e.g. "open", "write to". Numbers: 53 and 76 (no such file, no such
/// folder), 75 (not permitted, read-only, a directory, a name the host cannot take), 58 (exists), 70 (in
/// use), 61 (disk full), 68 (no such device), 57 (all else). The place names the path.
[[nodiscard]] Fault HostFault(int error, std::string_view action, const std::filesystem::path& path);

}  // namespace zenvora::files
