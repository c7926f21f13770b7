#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/files/host_file.h"

namespace zenvora::jet {

/// One thing that Verify found.
struct VerifyFinding {
    enum class Severity {
        Error,  ///< damage: something is lost, or the next change may lose something
        Note    ///< unusual or wasteful, and harmless
    };
    Severity severity = Severity::Error;
    long page = -1;     ///< page of the file, from 0; -1 when none is meant
    std::string table;  ///< empty: the file itself
    std::string index;  ///< empty: not about an index
    int row = -1;       ///< place of the row on the page, from 0; -1 when none is meant
    std::string sentence;
};

struct VerifyReport {
    /// At most some hundred for each table; the counts below count all.
    std::vector<VerifyFinding> findings;
    std::size_t errors = 0;
    std::size_t notes = 0;

    [[nodiscard]] bool Sound() const noexcept { return errors == 0; }
    /// How many findings are counted but not listed.
    [[nodiscard]] std::size_t LeftOut() const noexcept { return errors + notes - findings.size(); }
};

/// Checks a file page by page: header, page accounting, usage maps, definitions, rows and their values, long
/// values, indexes against the rows, catalog. Changes nothing, and goes on behind what it finds: a damaged
/// table does not hide the others. A change that was broken off is no damage: the file is checked as it was
/// before it, with a note. Takes memory in proportion to the number of pages and rows.
///
/// Faults only when nothing can be said about the file: 53, 57, 75, 76 (the disk); 3343 (no Access database),
/// 3031 (password), 20001 (encoded, or of a version that is not read), 3049 (cut off before the catalog).
[[nodiscard]] VerifyReport Verify(const std::filesystem::path& path,
                                  files::HostDisk& disk = files::SystemDisk());

}  // namespace zenvora::jet
