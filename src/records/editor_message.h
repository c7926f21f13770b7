#pragma once

#include <string_view>

#include "common/session.h"
#include "platform/fault.h"

namespace zenvora::records {

/// Tells the user of a fault that nobody else has handled, in one message: `what` was not done, the field
/// (empty: none is known) and the reason, and what to do.
void TellFault(common::Session& session, std::string_view what, std::string_view field, const Fault& fault,
               std::string_view advice);

}  // namespace zenvora::records
