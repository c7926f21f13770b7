#pragma once

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/adodc.h"
#include "platform/ado/connection.h"
#include "platform/ado/pool.h"
#include "platform/fault.h"
#include "platform/jet/database.h"
#include "platform/shell/clock.h"
#include "support/fault_of.h"
#include "support/temp_folder.h"

namespace zenvora::ado {

using testing_support::FaultOf;

/// The fault a call raised; fails the test when it raises none.
template <class Call>
Fault CaughtFault(const Call& call) {
    try {
        call();
    } catch (const Fault& fault) {
        return fault;
    }
    ADD_FAILURE() << "no fault was raised";
    return Fault{0, ""};
}

inline jet::NewColumn NewColumn(std::string_view name, jet::ColumnType type, int characters = 0) {
    jet::NewColumn column;
    column.name = name;
    column.type = type;
    column.characters = characters;
    return column;
}

inline jet::NewIndex PrimaryKey(std::string_view column) {
    jet::NewIndex key;
    key.name = "PrimaryKey";
    key.columns = {std::string(column)};
    key.unique = key.required = key.primaryKey = true;
    return key;
}

/// A folder with one Databook, STOCK.mdb, and what is needed to work on it. The clock says 6/30/2010.
class StoreTest : public testing::Test {
  protected:
    static constexpr text::Date kToday = 40359;  // 6/30/2010

    StoreTest() {
        const auto database = jet::Database::Create(Path(), kToday);
        // The table of most tests: a key, and a column of each kind that a Databook has.
        jet::NewTable table;
        table.name = "STOCK";
        table.columns = {
            NewColumn("KEYNAME", jet::ColumnType::Text, 20), NewColumn("CITY", jet::ColumnType::Text, 10),
            NewColumn("PRICE", jet::ColumnType::Double),     NewColumn("LISTED", jet::ColumnType::DateTime),
            NewColumn("FLAG", jet::ColumnType::Text, 2),     NewColumn("NOTES", jet::ColumnType::Memo)};
        table.columns[2].properties.defaultValue = "0";
        table.columns[3].properties.defaultValue = "#1/1/1900#";
        table.columns[4].properties.defaultValue = "\"3\"";
        table.columns[4].fixedLength = true;
        table.indexes = {PrimaryKey("KEYNAME")};
        database->CreateTable(table, kToday);
    }

    [[nodiscard]] std::filesystem::path Path() const { return folder_ / "STOCK.mdb"; }
    [[nodiscard]] std::string ConnectionText() const {
        return "Data Source=" + Path().string() + ";Mode=ReadWrite";
    }

    /// Runs one statement on a connection of its own.
    void Run(std::string_view statement) {
        Connection connection(pool_, clock_);
        connection.Open(ConnectionText());
        connection.Execute(statement);
    }

    [[nodiscard]] std::unique_ptr<Adodc> Select(std::string_view statement) {
        auto control = std::make_unique<Adodc>(pool_, clock_);
        control->Connectionstring = ConnectionText();
        control->RecordSource = statement;
        control->Refresh();
        return control;
    }

    /// All values of one field, in the order of the records, as text; Null is "<Null>".
    [[nodiscard]] std::vector<std::string> Column(std::string_view statement, int field = 0) {
        const auto control = Select(statement);
        Recordset& records = control->Recordset();
        std::vector<std::string> values;
        for (; !records.Eof(); records.MoveNext())
            values.push_back(records.IsNull(field) ? "<Null>" : records.Text(field));
        return values;
    }

    testing_support::TempFolder folder_;
    shell::FixedClock clock_{kToday};
    DatabasePool pool_;
};

}  // namespace zenvora::ado
