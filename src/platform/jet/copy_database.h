#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/jet/database.h"

/// Everything that a database holds, written anew into a fresh file.
namespace zenvora::jet {

struct CopiedTable {
    std::string name;
    std::uint64_t rows = 0;
};

struct CopyReport {
    std::vector<CopiedTable> tables;         ///< the user tables, by name
    std::vector<std::string> queries;        ///< stored queries, by name
    std::vector<std::string> relationships;  ///< by name
    std::vector<std::string> leftBehind;     ///< objects that a copy cannot carry, as "form Customers"
};

/// The objects of a database that a copy cannot carry: forms, reports, macros, modules, data access pages,
/// linked tables. As "form Customers", in the order of the catalog.
[[nodiscard]] std::vector<std::string> ObjectsNotCarried(Database& source);

/// Makes `target`, a Jet 4 file, and copies into it all tables (those of Access itself too) with their
/// columns in order, their properties byte for byte, indexes, auto-number counters and rows, relationships,
/// stored queries, the properties of the file, its owners and access rights. Rows come in the order of the
/// primary key where there is one.
///
/// From an Access 97 file text is converted from its code page, properties are written in the newer form, and
/// the rights are those of a new file.
///
/// Bounded memory: commits now and then, so a fault leaves a part of the copy behind, for the caller to
/// remove. Faults: 58 (`target` exists), 3049 (damage in the source), 20001 (an index key that cannot be
/// built), and those of the disk.
CopyReport CopyDatabase(Database& source, const std::filesystem::path& target, text::Date now,
                        files::HostDisk& disk = files::SystemDisk());

/// Reads a copy as it came from CopyDatabase against its source, each value of each row. Fault 3049: the
/// first difference.
void CompareCopy(Database& source, Database& copy);

}  // namespace zenvora::jet
