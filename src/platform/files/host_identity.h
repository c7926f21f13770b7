#pragma once

#include <string>

namespace zenvora::files {

/// The name of this computer and of the user, as other users of a shared file should read them; "?" when
/// unknown.
[[nodiscard]] std::string ComputerName();
[[nodiscard]] std::string UserName();

}  // namespace zenvora::files
