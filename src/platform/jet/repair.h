#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/jet/database.h"

namespace zenvora::jet {

struct RepairedTable {
    std::string name;
    std::uint64_t rows = 0;        ///< saved
    std::uint64_t rowsLost = 0;    ///< known to be lost; of a page that is gone nobody knows what it held
    std::uint64_t valuesCut = 0;   ///< values of saved rows that are lost, or saved in part
    std::uint32_t rowsStated = 0;  ///< what the damaged file said it had
};

/// One thing that a repair could not save.
struct RepairLoss {
    std::string table;  ///< empty: no table in particular
    long page = -1;     ///< of the damaged file, from 0; -1 when none is meant
    int row = -1;       ///< place of the row on the page, from 0; -1 when none is meant
    std::string sentence;
};

struct RepairReport {
    std::vector<RepairedTable> tables;  ///< of the user, in the order of the file
    /// At most some hundred for each table; `losses` below counts all.
    std::vector<RepairLoss> lost;
    std::size_t losses = 0;
    /// Queries, relationships, forms... of which the catalog still knows the names. They are not carried.
    std::vector<std::string> leftBehind;

    [[nodiscard]] bool Complete() const noexcept { return losses == 0; }
};

/// Saves every record that can still be read of a damaged file into the new file `target`; the damaged one is
/// only read. Looks at all pages and believes no map and no index: a page belongs to the table that it names
/// as its owner. Tables whose names are lost become COMPS when they have a column CENTRALKEY, else "Recovered
/// 1", "Recovered 2"... Of two records with the same key the first is saved. A long value of which a piece is
/// gone is saved up to there.
///
/// Damage is never a fault. Faults: 3343 (nothing in the file looks like a database of a known version), 3031
/// (a password), 20001 (encoded), 58 (`target` exists), and those of the disk; then nothing stays of
/// `target`.
RepairReport Repair(const std::filesystem::path& path, const std::filesystem::path& target, text::Date now,
                    files::HostDisk& disk = files::SystemDisk());

}  // namespace zenvora::jet
