#pragma once

#include "common/session.h"
#include "platform/ado/pool.h"
#include "platform/shell/clock.h"
#include "support/scripted_desktop.h"

namespace zenvora::testing_support {

/// A session of one test: a scripted desktop, a clock that stands on 6/30/2010, no open Databook.
struct TestSession {
    ScriptedDesktop desktop;
    shell::FixedClock clock{text::DayNumber(2010, 6, 30).value_or(0)};
    ado::DatabasePool databooks;
    common::Session session{desktop, clock, databooks, {}, "COMPS", 0};
};

}  // namespace zenvora::testing_support
