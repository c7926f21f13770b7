#pragma once

#include "platform/jet/detail/pager.h"
#include "platform/jet/detail/verify_findings.h"

namespace zenvora::jet::detail {

/// Looks at what opening a file does not need: the page pointers of the header, its sort order, its commit
/// bytes.
void CheckHeaderDetails(Pager& pager, Findings& findings);

}  // namespace zenvora::jet::detail
