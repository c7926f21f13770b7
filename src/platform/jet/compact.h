#pragma once

#include <cstdint>
#include <filesystem>

#include "platform/jet/copy_database.h"

/// A database rewritten in its place. The original is kept as NAME.bak, and until the new file has been read
/// against it, value by value, it stands where it stood: a crash at any instant leaves the one or the other.
namespace zenvora::jet {

struct RewriteReport {
    std::filesystem::path backup;  ///< where the original is now
    std::uint64_t bytesBefore = 0, bytesAfter = 0;
    CopyReport contents;
};

/// Rewrites a file without the room that deleted and changed rows left behind. Nothing may be lost, so a file
/// with objects that a copy cannot carry (see ObjectsNotCarried) is refused. `now` is for the objects of the
/// engine's own that the file lacks.
///
/// Faults: 20001 (a form, a report...; Access 97; an index that cannot be built), 3049 (damage: repair it),
/// those of Database::Open for writing, and those of the disk. After a fault the file is untouched.
RewriteReport Compact(const std::filesystem::path& path, text::Date now,
                      files::HostDisk& disk = files::SystemDisk());

/// Rewrites a file of Access 97 in the format of Access 2000 to 2003: its tables with all that belongs to
/// them, relationships and stored queries. Forms, reports, macros and modules stay in the original alone and
/// are named in the report.
///
/// Faults: 20001 (it is in that format already; an index that cannot be built), 3049 (damage), those of
/// Database::Open, and those of the disk. After a fault the file is untouched.
RewriteReport Convert(const std::filesystem::path& path, text::Date now,
                      files::HostDisk& disk = files::SystemDisk());

}  // namespace zenvora::jet
