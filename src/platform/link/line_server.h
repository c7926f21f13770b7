#pragma once

#include <string>
#include <string_view>

#include "platform/link/carrier.h"

namespace zenvora::link {

/// The other end of the line protocol: answers one line of a client by a carrier. Returns the reply with its
/// line end. A line that is no query is answered with fault 285 under the number 0. Faults: none,
/// they become replies.
[[nodiscard]] std::string AnswerLine(Carrier& carrier, std::string_view line);

}  // namespace zenvora::link
