#pragma once

#include "common/session.h"

namespace zenvora::common {

/// Fills the session's settings and its table name from the machine and from ZVR.INI in the Appraise
/// directory. Runs once, at the start of the program: the values do not follow later changes of the file. A
/// key or file that is missing gives the default without a message; TABLE has none and stays empty then.
/// Faults take the error rule.
void ReadGlobals(Session& session);

}  // namespace zenvora::common
