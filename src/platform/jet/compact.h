#pragma once

#include "platform/jet/rewrite_report.h"

namespace zenvora::jet {

/// Rewrites a file without the room that deleted and changed rows left behind. Nothing may be lost, so a file
/// with objects that a copy cannot carry (see ObjectsNotCarried) is refused. `now` is for the objects of the
/// engine's own that the file lacks.
///
/// The original is kept as NAME.bak, and until the new file has been read against it, value by value, it
/// stands where it stood: a crash at any instant leaves the one or the other.
///
/// Faults: 20001 (a form, a report...; Access 97; an index that cannot be built), 3049 (damage: repair it),
/// those of Database::Open for writing, and those of the disk. After a fault the file is untouched.
RewriteReport Compact(const std::filesystem::path& path, text::Date now,
                      files::HostDisk& disk = files::SystemDisk());

}  // namespace zenvora::jet
