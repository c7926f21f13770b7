#pragma once

#include "platform/jet/rewrite_report.h"

namespace zenvora::jet {

/// Rewrites a file of Access 97 in the format of Access 2000 to 2003: its tables with all that belongs to
/// them, relationships and stored queries. Forms, reports, macros and modules stay in the original alone and
/// are named in the report.
///
/// The original is kept as NAME.bak, and until the new file has been read against it, value by value, it
/// stands where it stood: a crash at any instant leaves the one or the other.
///
/// Faults: 20001 (it is in that format already; an index that cannot be built), 3049 (damage), those of
/// Database::Open for writing, and those of the disk. After a fault the file is untouched.
RewriteReport Convert(const std::filesystem::path& path, text::Date now,
                      files::HostDisk& disk = files::SystemDisk());

}  // namespace zenvora::jet
