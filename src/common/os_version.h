#pragma once

#include <string>

#include "common/session.h"

/// The version of the system in words, as the program's settings rules know systems.
namespace zenvora::common {

/// "Windows XP Service Pack 3", "Unknown Windows Version"; empty for a version without a text, and when the
/// system does not tell. Every version that reports the major number 6 is "Windows Vista". Clears the
/// session's Vista flag and sets it again for those. Faults: none.
std::string OsVersionText(Session& session);

/// True when the text says Windows Vista.
[[nodiscard]] bool IsVista(Session& session);

}  // namespace zenvora::common
