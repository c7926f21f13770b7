// The road of one file through the real windows.

#include <QAbstractItemModel>
#include <QHeaderView>
#include <QScrollBar>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <memory>

#include "analysis/period.h"
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
namespace {

using testing_support::Settle;
using testing_support::User;

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
                                .services = {.commandLine = commandLine}});
    }
    /// "Go!", and that file; then the main window is there.
    void StartWith(const std::filesystem::path& file) {
        user.When("frmSplash1", [](QWidget& window) { User::Press(window, "cmdOK"); });
        user.ChooseFile(file.string());
        ASSERT_TRUE(program->Start());
        window = screen->WindowOf(program->Main());
        ASSERT_NE(window, nullptr);
        ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    }
    void StartWithSample() {
        user.Answer(QMessageBox::Ok);  // the rows that were refused; comes behind the choice of the file
        StartWith(folder / "LISTINGS.CSV");
    }
    template <class Widget>
    Widget& Find(const char* name) {
        auto* const widget = window->findChild<Widget*>(QString::fromLatin1(name));
        if (widget == nullptr) throw std::runtime_error(std::string("no widget ") + name);
        return *widget;
    }
    void TypeDate(const QString& date) {
        auto& box = Find<QLineEdit>("txtBaseDate");
        box.setFocus();
        box.selectAll();
        QTest::keyClicks(&box, date);
    }
    std::string Cell(const std::string& name) { return Find<QLineEdit>(name.c_str()).text().toStdString(); }
    /// A line with one of the figures, as zenvora-cli prints them.
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
        connection.Open(path);
        connection.BeginTrans();
        for (int at = 0; at < records; ++at) {
            connection.Execute(
                "INSERT INTO COMPS (CENTRALKEY, ORIGLISTDATE, ORIGLISTPRICE, SELECTED) VALUES (\"" +
                std::to_string(100000 + at) + " MAIN ST\", \"3/1/2026\", 250000, \"1\")");
        }
        connection.CommitTrans();
        connection.Close();
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

TEST_F(ProgramOnScreen, TheRoadOfOneFile) {
    user.When("frmSplash1", [](QWidget& splash) { User::Press(splash, "cmdOK"); });
    user.ChooseFile((folder / "LISTINGS.CSV").string());
    user.Answer(QMessageBox::Ok);
    ASSERT_TRUE(program->Start());
    window = screen->WindowOf(program->Main());
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));

    // The grid is filled.
    auto& grid = Find<QTableView>("tdbgData");
    EXPECT_EQ(grid.model()->rowCount(), 384);
    EXPECT_EQ(Find<QTabWidget>("tdgViewer").tabText(0), QStringLiteral("Comps and Listings:  379/384"));

    // The date is typed, and each full date checks the records anew.
    TypeDate(QStringLiteral("06/30/20"));
    EXPECT_EQ(program->Main().txtBaseDate.BackColor(), controls::kLightRed);
    QTest::keyClicks(&Find<QLineEdit>("txtBaseDate"), QStringLiteral("26"));
    EXPECT_EQ(program->Main().txtBaseDate.BackColor(), controls::kWhite);

    // A valid record is excluded by a double click on its flag.
    int row = 0;
    while (grid.model()->index(row, 0).data(Qt::AccessibleTextRole).toString() != QStringLiteral("valid"))
        ++row;
    const QString key = grid.model()->index(row, 1).data().toString();
    grid.scrollTo(grid.model()->index(row, 0));
    const QPoint flag = grid.visualRect(grid.model()->index(row, 0)).center();
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, flag);
    EXPECT_EQ(Cell("txtCentralKey"), key.toStdString());
    QTest::mouseDClick(grid.viewport(), Qt::LeftButton, {}, flag);
    EXPECT_EQ(grid.model()->index(row, 0).data(Qt::AccessibleTextRole).toString(),
              QStringLiteral("excluded"));

    // Calculate: the figures are those of the command line for the same file.
    User::Press(*window, "txtCalculate");
    EXPECT_EQ(Find<QTabWidget>("tdgViewer").currentIndex(), 1);
    std::string figures;
    for (const analysis::ResultRow& entry : analysis::kResultRows) {
        for (int column = 0; column < 3; ++column)
            figures += Cell(std::string(entry.name) + "_" + std::to_string(column)) + " ";
        figures += "\n";
    }

    // Exit.
    user.When("frmMain", [](QWidget& main) { User::Press(main, "cmdExit"); });
    screen->Run();
    EXPECT_EQ(program->ExitStatus(), 0);
    const std::string settings = driveC.Read("Appraise/ZVR.INI");
    EXPECT_NE(settings.find("CURRDATABOOK=LISTINGS.mdb"), std::string::npos) << settings;
    program.reset();

    const std::filesystem::path databook = driveC / "ZVR/DATA/LISTINGS.mdb";
    std::string expected;
    std::istringstream lines(Cli("calc " + databook.string() + " --date 06/30/2026 --today 06/30/2026"));
    for (std::string line; std::getline(lines, line);) {
        const auto isRow = [&](const analysis::ResultRow& entry) {
            return line.starts_with(controls::PlainCaption(std::string(entry.caption)));
        };
        const auto* const entry =
            std::find_if(analysis::kResultRows.begin(), analysis::kResultRows.end(), isRow);
        if (entry == analysis::kResultRows.end()) continue;
        std::istringstream cells(line.substr(entry->caption.size()));
        for (std::string cell; cells >> cell;)
            expected += cell + " ";
        expected += "\n";
    }
    EXPECT_EQ(figures, expected);
    EXPECT_EQ(std::count(expected.begin(), expected.end(), '\n'), 9);

    // The second start offers the Databook.
    NewRun();
    QString offered;
    user.When("frmSplash1", [](QWidget& splash) { User::Press(splash, "cmdOK"); });
    user.When("file", [&](QWidget& file) {
        offered = file.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->text();
        QTest::keyClick(&file, Qt::Key_Escape);
    });
    ASSERT_TRUE(program->Start());
    window = screen->WindowOf(program->Main());
    EXPECT_EQ(offered, QStringLiteral("LISTINGS"));
    EXPECT_EQ(Find<QTableView>("tdbgData").model()->rowCount(), 384)
        << "and it is opened when nothing else is";
}

}  // namespace
}  // namespace zenvora::desktop
