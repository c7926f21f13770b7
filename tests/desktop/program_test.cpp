// The road of one file through the real windows.

#include <QAbstractItemModel>
#include <QAccessible>
#include <QDragEnterEvent>
#include <QHeaderView>
#include <QMimeData>
#include <QScrollBar>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "analysis/period.h"
#include "desktop/program_on_screen.h"

namespace zenvora::desktop {
namespace {

using testing_support::Settle;
using testing_support::User;

TEST_F(ProgramOnScreen, TheRoadOfOneFile) {
    StartWithSample();

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
    EXPECT_NE(settings.find("CURRDATABOOK=LISTINGS.MDB"), std::string::npos) << settings;
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

TEST_F(ProgramOnScreen, AFileThatIsDroppedOnTheWindowIsTakenAndAnythingElseIsNot) {
    StartWithSample();
    const std::filesystem::path large = MakeLarge(3);
    // True when the window takes it.
    const auto drop = [&](const QMimeData& dragged) {
        QDragEnterEvent enter(QPoint(9, 9), Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        QApplication::sendEvent(window, &enter);
        QDropEvent fall(QPointF(9, 9), Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(window, &fall);
        Settle();
        return enter.isAccepted();
    };
    QMimeData empty;
    empty.setData(QStringLiteral("text/uri-list"), "");
    EXPECT_FALSE(drop(empty));
    QMimeData page;
    page.setUrls({QUrl(QStringLiteral("https://example.org/A.MDB"))});
    EXPECT_FALSE(drop(page));
    QMimeData text;
    text.setText(QStringLiteral("1 ELM ST"));
    EXPECT_FALSE(drop(text));
    EXPECT_EQ(Find<QTableView>("tdbgData").model()->rowCount(), 384);
    QMimeData file;
    file.setUrls({QUrl::fromLocalFile(QString::fromStdString(large.string()))});
    EXPECT_TRUE(drop(file));
    EXPECT_EQ(Find<QTableView>("tdbgData").model()->rowCount(), 3);
}

TEST_F(ProgramOnScreen, ClosingTheStartDialogEndsTheProgramWithoutAWindow) {
    user.When("frmSplash1", [](QWidget& splash) { splash.close(); });
    EXPECT_FALSE(program->Start());
    screen->Run();
    EXPECT_EQ(program->ExitStatus(), 0);
    EXPECT_EQ(screen->WindowOf(program->Main()), nullptr);
}

TEST_F(ProgramOnScreen, TheEndOfTheSessionTakesTheQuestionsOfTheStartAwayToo) {
    user.When("frmSplash1", [](QWidget& splash) { User::Press(splash, "cmdOK"); });
    user.When("file", [&](QWidget&) { screen->EndSession(program->Session().forms); });
    program->Start();
    screen->Run();
    EXPECT_FALSE(program->Main().Loaded());
    EXPECT_TRUE(screen->Ended());
    EXPECT_EQ(program->ExitStatus(), 0);
}

TEST_F(ProgramOnScreen, TheStatisticsWindowOpensBesideTheStartDialog) {
    NewRun("/v");
    bool shown = false;
    user.When("frmSplash1", [&](QWidget& splash) {
        const QWidget* const viewer = screen->WindowOf(program->Main().viewer);
        shown = viewer != nullptr && viewer->isVisible();
        splash.close();
    });
    EXPECT_FALSE(program->Start());
    EXPECT_TRUE(shown);
}

TEST_F(ProgramOnScreen, TheWindowMayBeClosedAtAnyMoment) {
    StartWithSample();
    // In the middle of typing a date, on a page that is just being left, and by Alt+F4 from the box itself.
    QTest::keyClicks(&Find<QLineEdit>("txtBaseDate"), QStringLiteral("06/3"));
    window->close();
    EXPECT_FALSE(program->Main().Loaded());
    screen->Run();
    EXPECT_EQ(program->ExitStatus(), 0);
    program.reset();
    const std::string report = Cli("verify " + (driveC / "ZVR/DATA/LISTINGS.mdb").string());
    EXPECT_NE(report.find("sound"), std::string::npos) << report;
}

TEST_F(ProgramOnScreen, EverythingOnBothPagesIsReachedByTheTabKeyAndNamed) {
    StartWithSample();
    for (const int page : {0, 1}) {
        Find<QTabWidget>("tdgViewer").setCurrentIndex(page);
        Settle();
        QSet<QWidget*> reached;
        QWidget* const first = QApplication::focusWidget();
        ASSERT_NE(first, nullptr);
        do {
            QWidget* const now = QApplication::focusWidget();
            reached << now;
            QTest::keyClick(now, Qt::Key_Tab);
        } while (QApplication::focusWidget() != first && reached.size() < 200);
        for (QWidget* widget : window->findChildren<QWidget*>()) {
            const bool takes = (widget->focusPolicy() & Qt::TabFocus) != 0 &&
                               widget->focusProxy() == nullptr && widget->isVisibleTo(window) &&
                               widget->isEnabled() && !widget->objectName().startsWith("qt_");
            if (!takes) continue;
            EXPECT_TRUE(reached.contains(widget)) << widget->objectName().toStdString();
            const QAccessibleInterface* const spoken = QAccessible::queryAccessibleInterface(widget);
            ASSERT_NE(spoken, nullptr);
            EXPECT_FALSE(spoken->text(QAccessible::Name).isEmpty() &&
                         qobject_cast<QTabBar*>(widget) == nullptr)
                << widget->metaObject()->className() << " " << widget->objectName().toStdString();
        }
    }
}

TEST_F(ProgramOnScreen, TheKeyboardAloneGoesTheWholeWay) {
    StartWithSample();
    auto& grid = Find<QTableView>("tdbgData");
    grid.setFocus();
    QTest::keyClick(&grid, Qt::Key_Home, Qt::ControlModifier);
    while (grid.currentIndex().data(Qt::AccessibleTextRole).toString() != QStringLiteral("valid"))
        QTest::keyClick(&grid, Qt::Key_Down);
    QTest::keyClick(&grid, Qt::Key_Space);
    EXPECT_EQ(grid.currentIndex().data(Qt::AccessibleTextRole).toString(), QStringLiteral("excluded"));
    QTest::keyClick(window, Qt::Key_C, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return Find<QTabWidget>("tdgViewer").currentIndex() == 1; }));
    QTest::keyClick(window, Qt::Key_X, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !program->Main().Loaded(); }));
}

TEST_F(ProgramOnScreen, HelpIsOpenedByF1) {
    driveC.Write("ZVR/ZVR.CHM", "help");
    user.When("frmSplash1", [&](QWidget& splash) {
        QTest::keyClick(&splash, Qt::Key_F1);
        splash.close();
    });
    EXPECT_FALSE(program->Start());
    ASSERT_EQ(machine.requests.size(), 1U);
    EXPECT_NE(QString::fromStdString(machine.requests.front().file)
                  .indexOf(QStringLiteral("ZVR.CHM"), 0, Qt::CaseInsensitive),
              -1);
}

TEST_F(ProgramOnScreen, TheNoticeOfALargeDatabookStandsInFrontOfItsWindow) {
    const std::filesystem::path large = MakeLarge(501);
    user.When("frmSplash1", [](QWidget& splash) { User::Press(splash, "cmdOK"); });
    user.ChooseFile(large.string());
    bool visible = false;
    user.When("message", [&](QWidget& box) {
        visible = screen->WindowOf(program->Main())->isVisible();
        box.close();
    });
    ASSERT_TRUE(program->Start());
    window = screen->WindowOf(program->Main());
    EXPECT_TRUE(visible);
    EXPECT_FALSE(Find<QTabWidget>("tdgViewer").isTabEnabled(1));
    user.Answer(QMessageBox::Yes);
    User::Press(*window, "cmdChkValidity");
    EXPECT_TRUE(Find<QTabWidget>("tdgViewer").isTabEnabled(1));
    EXPECT_TRUE(Find<QPushButton>("cmdChkValidity").isHidden());
}

TEST_F(ProgramOnScreen, AHundredThousandRecordsScrollAtOnceAndTheWindowRepaintsDuringTheRun) {
    const std::filesystem::path large = MakeLarge(100000);
    user.When("frmSplash1", [](QWidget& splash) { User::Press(splash, "cmdOK"); });
    user.ChooseFile(large.string());
    user.Answer(QMessageBox::Ok);  // the notice
    ASSERT_TRUE(program->Start());
    window = screen->WindowOf(program->Main());
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    auto& grid = Find<QTableView>("tdbgData");
    ASSERT_EQ(grid.model()->rowCount(), 100000);

    const auto before = std::clock();
    for (int part = 0; part <= 50; ++part) {
        grid.verticalScrollBar()->setValue(grid.verticalScrollBar()->maximum() * part / 50);
        grid.viewport()->repaint();
    }
    const double perScroll = static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC / 51;
    EXPECT_LT(perScroll, 0.05) << "seconds of processor time";
    EXPECT_EQ(grid.model()->index(99999, 1).data().toString(), QStringLiteral("199999 MAIN ST"));

    // Each repaint of the run is a paint event of the grid.
    int paintings = 0;
    testing_support::PaintCount count(*grid.viewport(), paintings);
    user.Answer(QMessageBox::Yes);
    QTimer repainting;
    repainting.setInterval(1);
    QObject::connect(&repainting, &QTimer::timeout, grid.viewport(), [&] { grid.viewport()->update(); });
    repainting.start();
    const auto began = std::chrono::steady_clock::now();
    User::Press(*window, "cmdChkValidity");
    const auto took =
        std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - began);
    const int during = paintings;
    repainting.stop();
    if (took > std::chrono::milliseconds(250)) {
        EXPECT_GE(during, 2) << took.count() << " ms";
    }
    EXPECT_EQ(Find<QTabWidget>("tdgViewer").tabText(0), QStringLiteral("Comps and Listings:  100000/100000"));
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

}  // namespace
}  // namespace zenvora::desktop
