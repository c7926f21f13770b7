#include "analysis/databook_fixture.h"

#include "databook/template.h"

namespace zenvora::analysis {

DatabookTest::DatabookTest() {
    const std::filesystem::path path = folder / "LISTINGS.mdb";
    databook::CreateTemplate(path, clock.Now());
    Open(path);
}

void DatabookTest::Open(const std::filesystem::path& path) {
    adoDatabook.Connectionstring = "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + path.string() +
                                   ";Mode=ReadWrite|Share Deny None;Persist Security Info=False;";
    adoDatabook.RecordSource = "SELECT * FROM COMPS ORDER BY CENTRALKEY";
    adoDatabook.Refresh();
}

void DatabookTest::OpenOwnTable(std::vector<jet::NewColumn> columns) {
    const std::filesystem::path path = folder / "OWN.mdb";
    jet::NewTable table;
    table.name = "COMPS";
    table.columns = std::move(columns);
    jet::Database::Create(path, clock.Now())->CreateTable(table, clock.Now());
    Open(path);
}

void DatabookTest::Add(std::string_view key, const Fields& fields) {
    ado::Recordset& records = adoDatabook.Recordset();
    records.AddNew();
    records.SetValue("CENTRALKEY", std::string(key));
    for (const auto& [column, value] : fields)
        records.SetValue(column, value);
    records.Update();
}

void DatabookTest::Find(std::string_view key) {
    adoDatabook.Recordset().Find("CENTRALKEY='" + std::string(key) + "'");
    ASSERT_FALSE(adoDatabook.Recordset().Eof()) << "no record " << key;
}

void DatabookTest::Set(std::string_view key, const Fields& fields) {
    Find(key);
    ado::Recordset& records = adoDatabook.Recordset();
    for (const auto& [column, value] : fields)
        records.SetValue(column, value);
    records.Update();
}

jet::Value DatabookTest::Value(std::string_view key, std::string_view column) {
    Find(key);
    return adoDatabook.Recordset().Value(column);
}

std::string DatabookTest::Text(std::string_view key, std::string_view column) {
    return jet::ValueText(Value(key, column));
}

}  // namespace zenvora::analysis
