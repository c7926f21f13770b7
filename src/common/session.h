#pragma once

#include <string>

#include "common/settings.h"
#include "platform/ado/pool.h"
#include "platform/controls/desktop.h"
#include "platform/controls/forms.h"
#include "platform/files/drive_map.h"
#include "platform/ini/profiles.h"
#include "platform/shell/clock.h"
#include "platform/shell/shell.h"

namespace zenvora::common {

/// The few program-wide values. Made once in app/ and handed down; two sessions can run side by side in one
/// process.
struct Session {
    controls::Desktop& desktop;
    const shell::Clock& clock;
    ado::DatabasePool& databooks;
    std::string lastProcedure{};  ///< the procedure entered last, for the text of ReportFileError
    std::string table = "COMPS";  ///< the key TABLE of the settings
    long validRecords = 0;        ///< valid-record count of the last validity run
    controls::Forms forms{desktop};
    Settings settings{};
    files::DriveMap drives = files::DriveMap::Nowhere();  ///< where the drives of text paths lie
    shell::Shell& machine = shell::NoShell();             ///< the desktop around the program
    ini::Profiles profiles{};
    bool vistaFlag = false;  ///< set and cleared by OsVersionText alone
};

}  // namespace zenvora::common
