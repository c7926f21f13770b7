#pragma once

#include <exception>
#include <string>

#include "common/session.h"
#include "platform/fault.h"

/// Faults that nobody handles, told to the user.
namespace zenvora::frame {

/// One message: what failed, then where, why, the number, and what to do. `file` is the one in work when the
/// fault names none.
void TellFault(common::Session& session, const std::string& whatFailed, const Fault& fault,
               const std::string& file = {});

/// The same for anything that comes out of an event. True when it was a Fault, after which the program can go
/// on; false when it must end, because a rule has ended it (then nothing is said) or because of something
/// that is no matter of a file.
[[nodiscard]] bool TellWhatFailed(common::Session& session, const std::string& whatFailed,
                                  const std::exception_ptr& failure);

}  // namespace zenvora::frame
