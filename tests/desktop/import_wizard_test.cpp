// The import wizard and the merge through their real windows.

#include <QAbstractItemModel>
#include <QListView>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "desktop/program_on_screen.h"

namespace zenvora::desktop {
namespace {

const std::vector<std::pair<const char*, const char*>> kMap{
    {"Address", "Address"},
    {"List Date", "Original Listing Date"},
    {"Original List Price", "Original Listing Price"},
    {"Price Change Date", "Current Listing Date"},
    {"List Price", "Current Listing Price"},
    {"Contract Date", "Contract Date"},
    {"Off Market Date", "Listing Cancel Date"},
    {"Close Date", "Sale Date"},
    {"Close Price", "Selling Price"},
    {"City", "City"},
    {"State", "State"},
    {"Zip Code", "Zip"},
};

QListView& List(QWidget& window, const char* name) {
    auto* const list = window.findChild<QListView*>(QString::fromLatin1(name));
    if (list == nullptr) throw std::runtime_error(std::string("no list ") + name);
    return *list;
}

std::vector<std::string> Entries(QWidget& window, const char* name) {
    const QAbstractItemModel& model = *List(window, name).model();
    std::vector<std::string> entries;
    for (int row = 0; row < model.rowCount(); ++row)
        entries.push_back(model.index(row, 0).data().toString().toStdString());
    return entries;
}

/// Clicks the entry with that text.
void Choose(QWidget& window, const char* name, const char* text) {
    QListView& list = List(window, name);
    const QModelIndexList found =
        list.model()->match(list.model()->index(0, 0), Qt::DisplayRole, QString::fromLatin1(text), 1,
                            Qt::MatchExactly | Qt::MatchCaseSensitive);
    ASSERT_EQ(found.size(), 1) << text << " in " << name;
    list.scrollTo(found.first());
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualRect(found.first()).center());
}

/// Presses a button that asks something: the user is free to answer meanwhile.
void PressAndGoOn(QWidget& window, const char* name) {
    QTimer::singleShot(0, &window, [&window, name] { User::Press(window, name); });
}

struct ImportWizardOnScreen : ProgramOnScreen {
    /// All records of a Databook, every column.
    static std::string Records(const std::filesystem::path& databook) {
        return Cli("sql \"" + databook.string() +
                   "\" \"SELECT * FROM COMPS ORDER BY CENTRALKEY\" --format csv");
    }
};

TEST_F(ImportWizardOnScreen, AMapMadeByHandIsSavedLoadedAndGivesTheSameDatabookUnattended) {
    std::filesystem::remove(folder / "LISTINGS.map");
    const std::string map = (folder / "BYHAND.map").string();
    std::vector<std::string> rows;
    for (const auto& [source, destination] : kMap)
        rows.push_back(std::string(source) + " <-> " + destination);

    user.When("frmSplash1", [](QWidget& splash) {
        User::Press(splash, "cbShowDetailedMapping");
        User::Press(splash, "cmdOK");
    });
    user.ChooseFile((folder / "LISTINGS.CSV").string());
    user.When("frmCSVWizard", [&](QWidget& wizard) {
        for (const auto& [source, destination] : kMap) {
            Choose(wizard, "lbSourceFields", source);
            Choose(wizard, "lbDestFields", destination);
            User::Press(wizard, "btnAddMapping");
        }
        EXPECT_EQ(Entries(wizard, "lbMappings"), rows);
        EXPECT_EQ(Entries(wizard, "lbDestFields"), std::vector<std::string>{"Days On Market"});
        PressAndGoOn(wizard, "btnSaveMappings");
    });
    user.ChooseFile(map);
    user.When("frmCSVWizard", [&](QWidget& wizard) {
        User::Press(wizard, "btnReset");
        EXPECT_TRUE(Entries(wizard, "lbMappings").empty());
        PressAndGoOn(wizard, "btnLoadMappings");
    });
    user.ChooseFile(map);
    user.When("frmCSVWizard", [&](QWidget& wizard) {
        EXPECT_EQ(Entries(wizard, "lbMappings"), rows);
        PressAndGoOn(wizard, "btnLoadDB");
    });
    user.Answer(QMessageBox::Ok);  // the rows that were refused
    ASSERT_TRUE(program->Start());
    ASSERT_TRUE(user.Done());
    EXPECT_EQ(program->Main().tdgViewer.TabCaption(0), "Comps and Listings:  379/384");
    program->Main().Unload();
    program.reset();

    const std::string other = (folder / "OTHER.mdb").string();
    Cli("import " + (folder / "LISTINGS.CSV").string() + " --map " + map + " --into " + other +
        " --today 06/30/2026");
    Cli("check " + other + " --date 06/30/2026 --today 06/30/2026");
    const std::string byHand = Records(driveC / "ZVR/DATA/LISTINGS.mdb");
    EXPECT_GT(byHand.size(), 10000U);
    EXPECT_EQ(byHand, Records(other));
}

TEST_F(ImportWizardOnScreen, TwoDatabooksAreMergedIntoANewOne) {
    StartWithSample();
    const std::filesystem::path large = MakeLarge(20);
    const std::string merged = (folder / "MERGED.MDB").string();
    user.When("frmMain", [&](QWidget& main) {
        QTimer::singleShot(0, &main, [this] { program->Main().mnuFileItem[3].Click(); });
    });
    user.When("frmMergeDBs", [](QWidget& merge) { PressAndGoOn(merge, "cmdFileDialog_0"); });
    user.ChooseFile((driveC / "ZVR/DATA/LISTINGS.mdb").string());
    user.When("frmMergeDBs", [](QWidget& merge) { PressAndGoOn(merge, "cmdFileDialog_1"); });
    user.ChooseFile(large.string());
    user.When("frmMergeDBs", [](QWidget& merge) { PressAndGoOn(merge, "cmdFileDialog_2"); });
    user.ChooseFile(merged);
    user.When("frmMergeDBs", [this](QWidget& merge) {
        User::Press(merge, "cmdCopy");
        User::Press(merge, "cmdOK");
        PressAndGoOn(*window, "cmdExit2");
    });
    screen->Run();
    EXPECT_TRUE(user.Done());
    program.reset();
    const std::string count = Cli("records " + merged + " --format csv");
    EXPECT_EQ(std::count(count.begin(), count.end(), '\n'), 384 + 20 + 1) << count.substr(0, 500);
}

}  // namespace
}  // namespace zenvora::desktop
