#pragma once

#include <filesystem>
#include <string>

#include "platform/fault.h"

/// Faults in words for the user, the same on the command line and on the screen. Faults: none.
namespace zenvora::common {

/// A fault in one line: the file and the place in it unless the description names them, the description,
/// which says what to do, and the fault's number. `file` is the one in work when the fault names none.
[[nodiscard]] std::string FaultLine(const Fault& fault, const std::string& file = {});

/// A path as it is shown to the user.
[[nodiscard]] std::string Shown(const std::filesystem::path& path);

}  // namespace zenvora::common
