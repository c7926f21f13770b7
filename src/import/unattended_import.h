#pragma once

#include <functional>
#include <string>

#include "common/session.h"
#include "import/load_log.h"
#include "import/load_outcome.h"
#include "import/suggested_map.h"
#include "platform/ado/connection.h"
#include "platform/text/date.h"

namespace zenvora::importing {

/// What is imported, from where into what. Paths are host paths.
struct ImportJob {
    std::string source;  ///< its extension decides how it is read: CSV, TXT or XML
    std::string map;     ///< empty: the desktop is asked for one
    std::string databook;
    bool headerRow = true;      ///< the first line of a delimited source names the fields
    text::Date sourceDate = 0;  ///< last change of the source, see SourceFileDate
    bool logWanted = false;
    std::string mapsFolder{};  ///< where the map is remembered for its layout; empty: it is not
};

struct ImportResult {
    LoadOutcome outcome;
    LoadLog log;  ///< empty unless it was wanted
};

/// The local date and time of a file's last change. Faults: 53 there is no such file, 75 it cannot be looked
/// at.
[[nodiscard]] text::Date SourceFileDate(const std::string& path);

/// Imports a source file without a window.
///
/// Everything that is wrong with the source or the map is found before `makeDatabook` is called, which makes
/// the (empty) Databook; so a fault of a file leaves none behind. Rows that the store refuses are in the
/// outcome and are no fault. Without any mapping the desktop says so and every row is refused. Faults: 20002
/// a source of another kind, an empty one, one that cannot be read; those of the parsers, the map file
/// (frmCSVWizard), `makeDatabook` and the Databook.
[[nodiscard]] ImportResult ImportFile(common::Session& session, const ImportJob& job,
                                      const std::function<void()>& makeDatabook, ado::PathMapper mapper = {});

/// What the program would propose as the map of a source file. `headerRow` as in ImportJob. Faults: 20002 and
/// those of the parsers, as above.
[[nodiscard]] SuggestedMap SuggestFor(common::Session& session, const std::string& source, bool headerRow);

/// Writes proposed mappings as a map file; a file that stands there is kept as NAME.bak. Faults: as
/// WriteMapFile.
void SaveSuggestion(const SuggestedMap& suggestion, const std::string& path);

}  // namespace zenvora::importing
