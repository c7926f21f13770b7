#pragma once

#include "platform/jet/rewrite_report.h"

namespace zenvora::jet::detail {

/// The file that a link leads to, so that the link itself stays; any other path as it is.
[[nodiscard]] std::filesystem::path BehindLink(const std::filesystem::path& path);

/// Puts a copy of an open database in the place of its file: made beside it, read against it value by value,
/// verified, and only then renamed over it, when the original lies in NAME.bak. After a fault the file is
/// untouched and the copy is gone. `path` is no link.
RewriteReport Rewrite(Database& source, const std::filesystem::path& path, text::Date now,
                      files::HostDisk& disk);

}  // namespace zenvora::jet::detail
