#include "frame/program_fixture.h"

#include "common/fault_text.h"
#include "databook/selection.h"
#include "databook/template.h"
#include "platform/ado/connection.h"
#include "platform/text/number.h"
#include "platform/text/utf8.h"

namespace zenvora::frame {

using common::Shown;
using testing_support::ScriptedDesktop;

namespace {

/// The window on paper: says which page it showed.
class FakeFormPrint final : public page::FormPrint {
  public:
    FakeFormPrint(const controls::TabPages& pages, std::vector<int>& printed)
        : pages_(pages), printed_(printed) {}
    void PrintForm() override { printed_.push_back(pages_.Tab()); }
    std::string PdfOfForm(const std::string& title) override {
        PrintForm();
        return "%PDF-1.4 " + title;
    }

  private:
    const controls::TabPages& pages_;
    std::vector<int>& printed_;
};

}  // namespace

ProgramTest::ProgramTest() {
    driveC.Write("Appraise/ZVR.INI", "[DIRECTORIES]\nTABLE=COMPS\n");
    std::filesystem::create_directories(driveC / "ZVR/DATA");
    databook::CreateTemplate(driveC / "ZVR/NEWDATA.MDB", kToday);
    NewRun();
}

ProgramTest::~ProgramTest() {
    program.reset();
}

void ProgramTest::NewRun(std::string_view commandLine) {
    program.reset();
    desktop = std::make_unique<ScriptedDesktop>();
    program = std::make_unique<ZenvoraProgram>(ProgramParts{
        .desktop = *desktop,
        .clock = clock,
        .databooks = databooks,
        .machine = machine,
        .drives = files::DriveMap(driveC.Path()),
        .share = {},
        .services = {.commandLine = std::string(commandLine),
                     .link = &link,
                     .printer = printer.get(),
                     .makePdf = testing_support::RecordingPdfMaker(page),
                     .mainWindow = [this] {
                         return std::make_unique<FakeFormPrint>(Main().tdgViewer, windowsPrinted);
                     }}});
}

std::filesystem::path ProgramTest::MakeDatabook(std::string_view name,
                                                const std::vector<TestRecord>& records) {
    const std::filesystem::path path = folder / name;
    databook::CreateTemplate(path, kToday);
    ado::Connection connection(databooks, clock);
    connection.Open(databook::OneShotConnectionString(path.string()));
    connection.BeginBatch();
    for (const TestRecord& record : records) {
        connection.Execute(
            "INSERT INTO COMPS (CENTRALKEY, ADDRESS, ORIGLISTDATE, ORIGLISTPRICE, SALEDATE, SELLINGPR, "
            "SELECTED) VALUES ('" +
            databook::SqlDoubleUp(record.key) + "', '" + databook::SqlDoubleUp(record.key) + "', '" +
            record.origListDate + "', " + text::IntegerText(record.origListPrice) + ", '" + record.saleDate +
            "', " + text::IntegerText(record.salePrice) + ", '" + record.flag + "')");
    }
    connection.EndBatch();
    return path;
}

std::filesystem::path ProgramTest::MakeLargeDatabook(std::string_view name, int records) {
    std::vector<TestRecord> rows;
    for (int row = 1; row <= records; ++row) {
        const std::string number = std::to_string(100000 + row).substr(1);
        rows.push_back({.key = number + " MAIN ST"});
    }
    return MakeDatabook(name, rows);
}

void ProgramTest::WriteSettings(std::string_view text) {
    driveC.Write("Appraise/ZVR.INI", text);
}

void ProgramTest::LastOpened(const std::filesystem::path& databook) {
    const std::string path = files::DriveMap::TextPath(databook);
    const std::size_t slash = path.rfind('\\');
    WriteSettings("[DIRECTORIES]\nTABLE=COMPS\nCURRDATADIR=" + path.substr(0, slash + 1) +
                  "\nCURRDATABOOK=" + path.substr(slash + 1) + "\n");
}

void ProgramTest::StartWith(const std::filesystem::path& file) {
    desktop->ExpectForm("frmSplash1", [](controls::Form& form) { PressOn(form, "cmdOK"); });
    desktop->ExpectFile(file.string());
    desktop->ExpectForm("frmMain");
    Start();
}

void ProgramTest::OpenReport(const std::string& forms, const std::string& effectiveDate) {
    const std::string report = "C:\\KRN\\SMITH.RPT";
    link.values["KRN|Query"]["ActiveReports"] = report + ",";
    link.values["Krn|" + report]["UserID"] = "";
    link.values["KRN|" + report]["ListForms"] = forms;
    if (!effectiveDate.empty()) link.values["KRN|" + report]["OFFSCRN|11|2"] = effectiveDate;
}

void ProgramTest::Press(std::string_view name, int index) {
    User([&] { PressOn(Main(), name, index); });
}

void ProgramTest::Type(std::string_view name, std::string text) {
    User([&] { ControlOf<controls::TextBox>(Main(), name).SetText(std::move(text)); });
}

void ProgramTest::ClickCell(int row, int column) {
    User([&] { Main().tdbgData.MoveTo(row, column); });
    User([&] { Main().tdbgData.Click(); });
}

void ProgramTest::DblClickCell(int row, int column) {
    ClickCell(row, column);
    User([&] { Main().tdbgData.DblClick(); });
}

std::string ProgramTest::Text(std::string_view name, int index) {
    controls::Control* const control = Main().Find(name, index);
    if (const auto* box = dynamic_cast<const controls::TextBox*>(control)) return box->Text();
    if (const auto* combo = dynamic_cast<const controls::ComboBox*>(control)) return combo->Text();
    if (const auto* label = dynamic_cast<const controls::CaptionControl*>(control)) return label->Caption();
    ADD_FAILURE() << "no text of " << name;
    return {};
}

bool ProgramTest::Enabled(std::string_view name) {
    return ControlOf<controls::Control>(Main(), name).Enabled();
}

bool ProgramTest::Visible(std::string_view name) {
    return ControlOf<controls::Control>(Main(), name).Visible();
}

std::vector<std::string> ProgramTest::StoredFlags(const std::filesystem::path& databook) {
    ado::Adodc control(databooks, clock);
    control.Connectionstring = databook::OneShotConnectionString(databook.string());
    databook::AdoSelect(control, "COMPS", "CENTRALKEY, SELECTED", databook::kKeyOrder);
    ado::Recordset& records = control.Recordset();
    std::vector<std::string> rows;
    for (; !records.Eof(); records.MoveNext())
        rows.push_back(records.Text(0) + " " + text::Trim(records.Text(1)));
    return rows;
}

std::string ProgramTest::Stored(std::string_view section, std::string_view key) {
    ini::Profiles profiles;
    return profiles.Look(driveC / "Appraise/ZVR.INI").Find(section, key).value_or("(none)");
}

}  // namespace zenvora::frame
