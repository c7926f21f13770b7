#pragma once

#include <filesystem>

#include "platform/ado/connection.h"
#include "platform/ado/connection_string.h"

namespace zenvora::ado::detail {

/// The host path of a connection string's data source. Fault 53: it names none.
[[nodiscard]] std::filesystem::path SourcePath(const ConnectionString& connection, const PathMapper& mapper);

}  // namespace zenvora::ado::detail
