#pragma once

#include <string>

#include "common/settings.h"
#include "platform/ado/pool.h"
#include "platform/controls/desktop.h"
#include "platform/controls/forms.h"
#include "platform/shell/clock.h"

namespace zenvora::common {

/// The few program-wide values. Made once in app/ and handed down; two sessions can run side by side in one
/// process.
struct Session {
    controls::Desktop& desktop;
    const shell::Clock& clock;
    ado::DatabasePool& databooks;
    std::string lastProcedure;    ///< the procedure entered last, for the text of ReportFileError
    std::string table = "COMPS";  ///< the key TABLE of the settings
    long validRecords = 0;        ///< valid-record count of the last validity run
    controls::Forms forms{desktop};
    Settings settings{};
};

}  // namespace zenvora::common
