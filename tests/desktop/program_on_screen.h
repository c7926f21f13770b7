#pragma once

#include <cstdio>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "databook/selection.h"
#include "databook/template.h"
#include "desktop/screen.h"
#include "desktop/user.h"
#include "desktop/views.h"
#include "frame/zenvora_program.h"
#include "platform/ado/connection.h"
#include "support/recording_shell.h"
#include "support/temp_folder.h"

namespace zenvora::desktop {

using testing_support::Settle;
using testing_support::User;

/// The desktop program in real windows, with a user who works at them. C: is provisioned with settings and
/// template, the sample lies in a folder of the user's, and the clock stands on 6/30/2026.
struct ProgramOnScreen : testing::Test {
    static constexpr text::Date kToday = 46203;  // 6/30/2026

    ProgramOnScreen() {
        driveC.Write("Appraise/ZVR.INI", "[DIRECTORIES]\nTABLE=COMPS\n");
        std::filesystem::create_directories(driveC / "ZVR/DATA");
        databook::CreateTemplate(driveC / "ZVR/NEWDATA.MDB", kToday);
        for (const char* name : {"LISTINGS.CSV", "LISTINGS.map"})
            std::filesystem::copy_file(std::filesystem::path(ZENVORA_SAMPLES) / name, folder / name);
        NewRun();
    }
    ~ProgramOnScreen() override { program.reset(); }

    void NewRun(const std::string& commandLine = {}) {
        program.reset();
        screen = std::make_unique<QtDesktop>();
        RegisterViews(*screen);
        program = std::make_unique<frame::ZenvoraProgram>(
            frame::ProgramParts{.desktop = *screen,
                                .clock = clock,
                                .databooks = databooks,
                                .machine = machine,
                                .drives = files::DriveMap(driveC.Path()),
                                .share = {},
                                .services = {.commandLine = commandLine}});
    }
    /// "Go!", and the sample; then the main window is there.
    void StartWithSample() {
        user.When("frmSplash1", [](QWidget& splash) { User::Press(splash, "cmdOK"); });
        user.ChooseFile((folder / "LISTINGS.CSV").string());
        user.Answer(QMessageBox::Ok);  // the rows that were refused
        ASSERT_TRUE(program->Start());
        window = screen->WindowOf(program->Main());
        ASSERT_NE(window, nullptr);
        ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    }
    template <class Widget>
    Widget& Find(const char* name) {
        return testing_support::WidgetNamed<Widget>(*window, name);
    }
    void TypeDate(const QString& date) {
        auto& box = Find<QLineEdit>("txtBaseDate");
        box.setFocus();
        box.selectAll();
        QTest::keyClicks(&box, date);
    }
    std::string Cell(const std::string& name) { return Find<QLineEdit>(name.c_str()).text().toStdString(); }
    /// What the command line prints.
    static std::string Cli(const std::string& arguments) {
        std::string output;
        FILE* const pipe = popen((std::string(ZENVORA_CLI) + " " + arguments).c_str(), "r");
        char part[4096];
        while (const std::size_t length = std::fread(part, 1, sizeof part, pipe))
            output.append(part, length);
        pclose(pipe);
        return output;
    }
    std::filesystem::path MakeLarge(int records) {
        const std::filesystem::path path = folder / "LARGE.MDB";
        databook::CreateTemplate(path, kToday);
        ado::Connection connection(databooks, clock);
        connection.Open(databook::OneShotConnectionString(path.string()));
        connection.BeginBatch();
        for (int at = 0; at < records; ++at) {
            const std::string key = std::to_string(100000 + at) + " MAIN ST";
            connection.Execute(
                "INSERT INTO COMPS (CENTRALKEY, ADDRESS, ORIGLISTDATE, ORIGLISTPRICE, SALEDATE, SELECTED) "
                "VALUES ('" +
                key + "', '" + key + "', '3/1/2026', 250000, '1/1/1900', '1')");
        }
        connection.EndBatch();
        return path;
    }

    testing_support::TempFolder driveC;
    testing_support::TempFolder folder;
    shell::FixedClock clock{kToday};
    testing_support::RecordingShell machine;
    ado::DatabasePool databooks;
    std::unique_ptr<QtDesktop> screen;
    std::unique_ptr<frame::ZenvoraProgram> program;
    User user;
    QWidget* window = nullptr;
};

}  // namespace zenvora::desktop
