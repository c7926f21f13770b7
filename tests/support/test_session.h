#pragma once

#include "common/session.h"
#include "platform/ado/pool.h"
#include "platform/shell/clock.h"
#include "support/recording_shell.h"
#include "support/scripted_desktop.h"
#include "support/temp_folder.h"

namespace zenvora::testing_support {

/// A session of one test: a scripted desktop, a clock that stands on 6/30/2010, no open Databook, an empty
/// C:.
struct TestSession {
    TempFolder driveC;
    RecordingShell machine;
    ScriptedDesktop desktop;
    shell::FixedClock clock{text::DayNumber(2010, 6, 30).value_or(0)};
    ado::DatabasePool databooks;
    common::Session session{.desktop = desktop,
                            .clock = clock,
                            .databooks = databooks,
                            .drives = files::DriveMap(driveC.Path()),
                            .machine = machine};
};

}  // namespace zenvora::testing_support
