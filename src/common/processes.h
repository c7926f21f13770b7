#pragma once

#include "common/session.h"
#include "platform/controls/list_box.h"

namespace zenvora::common {

/// Adds the names of the programs that run to the scratch list `lstProcesses`, behind what it holds.
void FillProcessList(Session& session, controls::ListBox& lstProcesses);

/// True when "KRN.EXE" is in the list, case and outer blanks aside, once the programs that run now are added.
/// The list is not cleared: a program that has ended stays found.
[[nodiscard]] bool IsKrnRunning(Session& session, controls::ListBox& lstProcesses);

}  // namespace zenvora::common
