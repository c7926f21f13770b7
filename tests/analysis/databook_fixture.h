#pragma once

#include <filesystem>
#include <gtest/gtest.h>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "analysis/facts_builder.h"
#include "common/session.h"
#include "platform/ado/adodc.h"
#include "platform/jet/database.h"
#include "platform/jet/value.h"
#include "platform/shell/clock.h"
#include "support/scripted_desktop.h"
#include "support/temp_folder.h"

namespace zenvora::analysis {

/// Values of a record by column.
using Fields = std::vector<std::pair<std::string_view, jet::Value>>;

[[nodiscard]] inline jet::Value Dated(Date date) {
    return jet::DateTime{date};
}
/// A date so many days before Effective().
[[nodiscard]] inline jet::Value DaysBack(int days) {
    return jet::DateTime{Effective() - days};
}
[[nodiscard]] inline jet::Value Flag(const char* flag) {
    return std::string(flag);
}

/// A test with a Databook of its own, made from the template, and a session around it. The clock stands at
/// 12/31/2010.
class DatabookTest : public testing::Test {
  protected:
    DatabookTest();

    /// Adds a record; columns that are not named take their defaults.
    void Add(std::string_view key, const Fields& fields);
    /// Makes the record of that key the current one.
    void Find(std::string_view key);
    /// Changes some fields of a record.
    void Set(std::string_view key, const Fields& fields);
    /// A field as text, read anew from the current Recordset.
    [[nodiscard]] std::string Text(std::string_view key, std::string_view column);
    [[nodiscard]] jet::Value Value(std::string_view key, std::string_view column);

    /// Points adoDatabook at another file.
    void Open(const std::filesystem::path& path);
    /// Makes a Databook whose COMPS has these columns alone, and points adoDatabook at it.
    void OpenOwnTable(std::vector<jet::NewColumn> columns);

    testing_support::TempFolder folder;
    testing_support::ScriptedDesktop desktop;
    shell::FixedClock clock{Day(2010, 12, 31)};
    ado::DatabasePool databooks;
    common::Session session{desktop, clock, databooks, {}};
    ado::Adodc adoDatabook{databooks, clock};
};

}  // namespace zenvora::analysis
