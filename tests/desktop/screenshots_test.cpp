// Every window in light and dark: kept as pictures to be looked at, and checked for texts that do not fit.
// QT_SCALE_FACTOR=2 gives those of a screen with 192 dpi.

#include <QHeaderView>
#include <QPixmap>
#include <gtest/gtest.h>

#include "desktop/look.h"
#include "desktop/program_on_screen.h"
#include "frame/frm_about.h"
#include "frame/frm_config.h"
#include "frame/frm_path.h"
#include "frame/import_source.h"
#include "import/csv_wizard.h"
#include "import/frm_merge_dbs.h"

namespace zenvora::desktop {
namespace {

class Screenshots : public ProgramOnScreen, public testing::WithParamInterface<const char*> {
  protected:
    Screenshots() {
        dark_ = std::string(GetParam()) == "dark";
        before_ = QApplication::palette();
        QApplication::setPalette(dark_ ? DarkColors() : LightColors());
    }
    ~Screenshots() override { QApplication::setPalette(before_); }

    void Keep(QWidget& shown, const std::string& name) {
        Settle();
        ExpectAllTextsFit(shown, name);
        const QPixmap picture = shown.grab();
        const int dpi = static_cast<int>(96 * picture.devicePixelRatio());
        const std::filesystem::path place(ZENVORA_SCREENSHOTS);
        std::filesystem::create_directories(place);
        const std::string file = name + "-" + GetParam() + "-" + std::to_string(dpi) + ".png";
        EXPECT_TRUE(picture.save(QString::fromStdString((place / file).string()))) << file;
    }

    static void ExpectAllTextsFit(QWidget& shown, const std::string& name) {
        for (QWidget* widget : shown.findChildren<QWidget*>()) {
            if (!widget->isVisibleTo(&shown)) continue;
            const std::string where = name + ": " + widget->objectName().toStdString();
            if (auto* const button = qobject_cast<QAbstractButton*>(widget);
                button != nullptr && !button->text().isEmpty()) {
                EXPECT_GE(button->width(),
                          button->fontMetrics().size(Qt::TextShowMnemonic, button->text()).width() + 6)
                    << where;
                EXPECT_GE(button->height(), button->fontMetrics().height()) << where;
            } else if (auto* const label = qobject_cast<QLabel*>(widget);
                       label != nullptr && !label->wordWrap()) {
                EXPECT_GE(label->width(), label->minimumSizeHint().width())
                    << where << " " << label->text().toStdString();
                EXPECT_GE(label->height(), label->minimumSizeHint().height())
                    << where << " " << label->text().toStdString();
            } else if (auto* const edit = qobject_cast<QLineEdit*>(widget)) {
                EXPECT_GE(edit->height(), edit->fontMetrics().height() + 4) << where;
            } else if (auto* const table = qobject_cast<QTableView*>(widget)) {
                for (int column = 0; column < table->model()->columnCount(); ++column) {
                    EXPECT_GE(table->columnWidth(column), table->horizontalHeader()->sectionSizeHint(column))
                        << where;
                }
            }
        }
    }

    bool dark_ = false;
    QPalette before_;
};

TEST_P(Screenshots, OfEveryWindow) {
    NewRun("/V");
    user.When("frmSplash1", [&](QWidget& splash) {
        Keep(splash, "start");
        User::Press(splash, "cmdOK");
    });
    user.When("file", [&](QWidget& file) {
        dynamic_cast<QFileDialog&>(file).setDirectory(QString::fromStdString(folder.Path().string()));
        Keep(file, "open");
        file.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))
            ->setText(QString::fromStdString((folder / "LISTINGS.CSV").string()));
        QTest::keyClick(&file, Qt::Key_Return);
    });
    user.When("message", [&](QWidget& message) {
        Keep(message, "refused-rows");
        QTest::keyClick(&message, Qt::Key_Return);
    });
    ASSERT_TRUE(program->Start());
    window = screen->WindowOf(program->Main());
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    auto& grid = Find<QTableView>("tdbgData");
    for (int row = 0; row < grid.model()->rowCount(); ++row) {
        if (grid.model()->index(row, 0).data(Qt::AccessibleTextRole).toString() != QStringLiteral("invalid"))
            continue;
        grid.setCurrentIndex(grid.model()->index(row, 1));
        break;
    }
    window->resize(1080, 660);
    Keep(*window, "comps");
    TypeDate(QStringLiteral("06/30/20"));
    Keep(*window, "comps-date");
    TypeDate(QStringLiteral("06/30/2026"));
    User::Press(*window, "txtCalculate");
    Keep(*window, "calculations");
    QWidget* const viewer = screen->WindowOf(program->Main().viewer);
    ASSERT_NE(viewer, nullptr);
    viewer->resize(viewer->sizeHint());
    Keep(*viewer, "statistics");

    common::Session& session = program->Session();
    frame::OpenState open;
    frame::frmOverwrite overwrite(session, open);
    overwrite.txtFileName.SetText("C:\\ZVR\\DATA\\LISTINGS.MDB");
    frame::frmConfig config(session);
    frame::frmPath path(session);
    frame::frmAbout about(session, "1.0.0");
    path.StartFrom("C:\\ZVR\\DATA");
    config.Show(controls::Modality::Modeless);
    Keep(*screen->WindowOf(config), "configuration");
    config.tdgConfig.SetTab(1);
    Keep(*screen->WindowOf(config), "configuration-directories");
    path.Show(controls::Modality::Modeless);
    Keep(*screen->WindowOf(path), "path");
    about.Show(controls::Modality::Modeless);
    Keep(*screen->WindowOf(about), "about");
    overwrite.Show(controls::Modality::Modeless);
    overwrite.Close();
    Keep(*screen->WindowOf(overwrite), "overwrite");

    const std::filesystem::path databook = folder / "MAPPED.MDB";
    databook::CreateTemplate(databook, kToday);
    importing::AdoLoadTarget target(session.databooks, session.clock,
                                    [&](std::string_view) { return databook; });
    importing::frmCSVWizard wizard(session, target);
    wizard.CSVFilename = (folder / "LISTINGS.CSV").string();
    wizard.CSVFiledate = kToday;
    wizard.CSVMDBFilename = databook.string();
    wizard.DetailedView = true;
    wizard.Show(controls::Modality::Modeless);
    Keep(*screen->WindowOf(wizard), "wizard");
    wizard.btnSuggestMap.Click();
    wizard.btnShowAdvanced1.Click();
    wizard.btnPreview.Click();
    Keep(*screen->WindowOf(wizard), "wizard-preview");

    importing::frmMergeDBs merge(session, program->Main().adoDatabook, frame::TemplatePath(session));
    merge.Load();
    merge.txtFilename[0].SetText(session.settings.currentDirectory + session.settings.currentFile);
    merge.PathTyped(0);
    merge.Show(controls::Modality::Modeless);
    Keep(*screen->WindowOf(merge), "merge");

    user.When("message", [&](QWidget& message) {
        Keep(message, "warning");
        QTest::keyClick(&message, Qt::Key_Escape);
    });
    screen->Show({"It will take approximately 5 seconds to check the database. Do you wish to continue?",
                  "Warning - Large Database Detected", controls::Icon::Exclamation,
                  controls::Buttons::YesNoCancel});
}

INSTANTIATE_TEST_SUITE_P(Themes, Screenshots, testing::Values("light", "dark"),
                         [](const auto& theme) { return std::string(theme.param); });

}  // namespace
}  // namespace zenvora::desktop
