#pragma once

#include <vector>

#include "platform/jet/database.h"
#include "platform/shell/clock.h"

namespace zenvora::ado::detail {

/// What a new record holds before anything is set: per column its stored default, else Null (false in a
/// Boolean).
[[nodiscard]] std::vector<jet::Value> DefaultsOf(const jet::Table& table, const shell::Clock& clock);

}  // namespace zenvora::ado::detail
