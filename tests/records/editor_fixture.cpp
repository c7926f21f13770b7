#include "records/editor_fixture.h"

#include <filesystem>

#include "common/primitives.h"
#include "databook/template.h"
#include "platform/text/utf8.h"

namespace zenvora::records {

void User::Type(std::string_view field, std::string_view text) {
    GoTo(field);
    Control<controls::TextBox>(field).SetText(std::string(text));
}

void User::TypeSlowly(std::string_view field, std::string_view text) {
    Type(field, "");
    for (std::size_t length = 1; length <= text::Length(text); ++length)
        Control<controls::TextBox>(field).SetText(text::Left(text, length));
}

void User::Press(std::string_view button) {
    Control<controls::Clickable>(button).Click();
}

void User::DblClickLabel(std::string_view label) {
    Control<controls::Label>(label).DblClick();
}

std::string User::Text(std::string_view field) const {
    return Control<controls::TextBox>(field).Text();
}

std::string User::Focus() const {
    const controls::Control* const active = form_.ActiveControl();
    return active == nullptr ? "" : active->Name();
}

controls::RichText& User::Panel() const {
    return Control<controls::RichText>("rtxtInfo");
}

EditorTest::EditorTest() {
    std::filesystem::create_directories(test.driveC / "DATA");
    databook::CreateTemplate(test.driveC / "DATA/LISTINGS.mdb", kToday);
    test.driveC.Write("Appraise/ZVR.INI", "[DIRECTORIES]\r\nTABLE=COMPS\r\n");
    session.settings.settingsFile = "C:\\Appraise\\ZVR.INI";
    session.settings.applicationDirectory = "C:\\ZVR\\";
    main.EffectiveDate = kToday;
    main.txtBaseDate.SetText("6/30/2010");
    main.Load();
    main.ReopenRecordViews();
    main.asked.clear();
}

jet::Value EditorTest::Day(int year, int month, int day) {
    return jet::DateTime{text::DayNumber(year, month, day).value()};
}

void EditorTest::Store(std::string_view key, const Fields& fields) {
    ado::Recordset& records = main.adoDatabook.Recordset();
    records.AddNew();
    records.SetValue("CENTRALKEY", std::string(key));
    for (const auto& [column, value] : fields)
        records.SetValue(column, value);
    records.Update();
}

std::string EditorTest::Stored(std::string_view key, std::string_view column) {
    ado::Adodc fresh{session.databooks, session.clock, main.adoDatabook.Mapper()};
    databook::AdoConnectSelect(fresh, "C:\\DATA", "LISTINGS.mdb", "COMPS", "", "");
    fresh.Recordset().Find(databook::KeyCriterion(key));
    if (fresh.Recordset().Eof()) return "(no record)";
    const jet::Value value = fresh.Recordset().Value(column);
    return jet::IsNull(value) ? "(null)" : jet::ValueText(value);
}

std::vector<std::string> EditorTest::Keys() {
    ado::Adodc fresh{session.databooks, session.clock, main.adoDatabook.Mapper()};
    databook::AdoConnectSelect(fresh, "C:\\DATA", "LISTINGS.mdb", "COMPS", "", databook::kKeyOrder);
    std::vector<std::string> keys;
    for (ado::Recordset& records = fresh.Recordset(); !records.Eof(); records.MoveNext())
        keys.push_back(records.Text(records.FieldIndex("CENTRALKEY")));
    return keys;
}

void EditorTest::Run(std::string_view keyBox, std::string_view mode, const std::function<void(User)>& user) {
    main.txtCentralKey.SetText(std::string(keyBox));
    main.ReopenRecordViews();
    main.asked.clear();
    desktop.ExpectForm("frmEdit", [&](controls::Form& form) { user(User{form}); });
    EditRecord(application, main, mode);
}

void EditorTest::Add(std::string_view keyBox, const std::function<void(User)>& user) {
    Run(keyBox, "ADD", user);
}

void EditorTest::Edit(std::string_view keyBox, const std::function<void(User)>& user) {
    Run(keyBox, "EDIT", user);
}

void EditorTest::WriteHelp(std::string_view name, std::string_view bytes) {
    test.driveC.Write("ZVR/" + std::string(name), bytes);
}

}  // namespace zenvora::records
