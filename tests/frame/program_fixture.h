#pragma once

#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "frame/zenvora_program.h"
#include "support/full_disk.h"
#include "support/recording_carrier.h"
#include "support/recording_page.h"
#include "support/recording_shell.h"
#include "support/scripted_desktop.h"
#include "support/temp_folder.h"

namespace zenvora::frame {

/// A record of a Databook of a test. The defaults are a sound listing of 3/1/2010.
struct TestRecord {
    std::string key;
    std::string origListDate = "3/1/2010";
    long origListPrice = 250000;
    std::string saleDate = "1/1/1900";
    long salePrice = 0;
    std::string flag = "1";
};

/// The desktop program on a scripted desktop. C: is provisioned with settings and template; the user's files
/// lie in a folder of their own, which is on Z:. The clock stands on 6/30/2010.
class ProgramTest : public testing::Test {
  protected:
    static constexpr text::Date kToday = 40359;  // 6/30/2010

    ProgramTest();
    ~ProgramTest() override;

    /// Makes a Databook in the user's folder and returns its path.
    std::filesystem::path MakeDatabook(std::string_view name, const std::vector<TestRecord>& records);
    /// So many sound listings with the keys "00001 MAIN ST" and on.
    std::filesystem::path MakeLargeDatabook(std::string_view name, int records);

    /// The settings file names this Databook as the one opened last.
    void LastOpened(const std::filesystem::path& databook);
    void WriteSettings(std::string_view text);

    /// Makes the program anew: another run of it.
    void NewRun(std::string_view commandLine = {});
    /// Starts the program: the user presses "Go!" and chooses this file (empty: cancels the dialog).
    void StartWith(const std::filesystem::path& file);
    /// Starts it on whatever the script expects; the main window is not expected here.
    void Start() { started = program->Start(); }

    [[nodiscard]] frmMain& Main() { return program->Main(); }
    [[nodiscard]] common::Session& Session() { return program->Session(); }

    /// KRN runs and has this report open: C:\\KRN\\SMITH.RPT.
    void OpenReport(const std::string& forms = "URAR,1004MC", const std::string& effectiveDate = {});
    /// KRN has gone.
    void CloseReport() { link.values.clear(); }

    /// What the user does, as events of the screen.
    void Press(std::string_view name, int index = controls::Control::kNoIndex);
    void Type(std::string_view name, std::string text);
    void ClickCell(int row, int column);
    void DblClickCell(int row, int column);
    void User(const std::function<void()>& action) { Session().forms.Event(action); }

    [[nodiscard]] std::string Text(std::string_view name, int index = controls::Control::kNoIndex);
    [[nodiscard]] bool Enabled(std::string_view name);
    [[nodiscard]] bool Visible(std::string_view name);
    /// A cell as the grid shows it.
    [[nodiscard]] std::string Cell(int row, int column) { return Main().tdbgData.Shown(row, column); }
    /// The rows of a Databook that is closed or open: "KEY flag" each, in key order.
    [[nodiscard]] std::vector<std::string> StoredFlags(const std::filesystem::path& databook);
    /// A key of the settings file as it is stored.
    [[nodiscard]] std::string Stored(std::string_view section, std::string_view key);

    testing_support::TempFolder driveC;
    testing_support::TempFolder folder;  ///< the files of the user
    shell::FixedClock clock{kToday};
    testing_support::RecordingShell machine;
    testing_support::FullDisk disk;
    ado::DatabasePool databooks{disk};
    std::unique_ptr<testing_support::ScriptedDesktop> desktop;
    testing_support::RecordingCarrier link;
    testing_support::PageRecord page;        ///< what reached the printer or a PDF document
    std::unique_ptr<page::Printer> printer;  ///< null: there is none; set it before NewRun
    std::vector<int> windowsPrinted;         ///< the pages that the main window showed when it was printed
    std::unique_ptr<ZenvoraProgram> program;
    bool started = false;
};

/// A control of a form by its name, as the kind that the test takes it for; fails the test when it is not.
template <class T>
T& ControlOf(controls::Form& form, std::string_view name, int index = controls::Control::kNoIndex) {
    auto* const control = dynamic_cast<T*>(form.Find(name, index));
    if (control == nullptr) throw Fault{fault::kItemNotFound, "no control " + std::string(name)};
    return *control;
}

/// Presses a control of a form.
inline void PressOn(controls::Form& form, std::string_view name, int index = controls::Control::kNoIndex) {
    ControlOf<controls::Clickable>(form, name, index).Click();
}

}  // namespace zenvora::frame
