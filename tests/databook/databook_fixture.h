#pragma once

#include <gtest/gtest.h>
#include <string>
#include <string_view>

#include "common/session.h"
#include "databook/field_access.h"
#include "databook/selection.h"
#include "databook/template.h"
#include "platform/ado/connection.h"
#include "platform/fault.h"
#include "support/fault_of.h"
#include "support/scripted_desktop.h"
#include "support/temp_folder.h"

namespace zenvora::databook {

using testing_support::FaultOf;

/// A folder with a new Databook, DATA.mdb, a session and a data control over it. The clock says 6/30/2010.
class DatabookTest : public testing::Test {
  protected:
    static constexpr text::Date kToday = 40359;  // 6/30/2010

    DatabookTest() { CreateTemplate(Path(), kToday); }

    [[nodiscard]] std::filesystem::path Path() const { return folder_ / "DATA.mdb"; }

    void Run(std::string_view statement) {
        ado::Connection connection(pool_, clock_);
        connection.Open(OneShotConnectionString(Path().string()));
        connection.Execute(statement);
    }

    void SelectAll() {
        control_.Connectionstring = OneShotConnectionString(Path().string());
        AdoSelect(control_, "COMPS", "*", kKeyOrder);
    }

    testing_support::TempFolder folder_;
    shell::FixedClock clock_{kToday};
    ado::DatabasePool pool_;
    testing_support::ScriptedDesktop desktop_;
    common::Session session_{desktop_, clock_, pool_, {}, "COMPS", 0};
    ado::Adodc control_{pool_, clock_};
};

}  // namespace zenvora::databook
