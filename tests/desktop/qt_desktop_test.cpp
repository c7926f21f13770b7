// Forms, questions and long work on the real screen.

#include "desktop/qt_desktop.h"

#include <QDialog>
#include <QFileDialog>
#include <QMessageBox>
#include <gtest/gtest.h>
#include <thread>

#include "desktop/screen.h"
#include "platform/fault.h"
#include "support/temp_folder.h"

namespace zenvora::desktop {
namespace {

using controls::Answer;
using controls::Buttons;
using controls::Form;
using controls::Forms;
using controls::Modality;
using testing_support::Settle;
using testing_support::Soon;
using Texts = std::vector<std::string>;

class PlainForm final : public Form {
  public:
    PlainForm(Forms& forms, std::string name, Texts& events) : Form(forms, name, name), events_(events) {
        cmdOK.SetCaption("OK");
        Add(cmdOK);
    }
    controls::CommandButton cmdOK{"cmdOK"};
    std::function<void()> onActivate;

  protected:
    void OnActivate() override {
        events_.push_back(Name() + " activate");
        if (onActivate) onActivate();
    }
    void OnUnload() override { events_.push_back(Name() + " unload"); }

  private:
    Texts& events_;
};

QWidget* LayOut(PlainForm& form, Binder& bind, QWidget* parent) {
    auto* const window = new QDialog(parent);
    (new QVBoxLayout(window))->addWidget(bind.Bind(form.cmdOK));
    return window;
}

struct QtDesktopTest : testing::Test {
    QtDesktopTest() {
        for (const char* name : {"frmOne", "frmTwo", "frmThree"})
            screen.Register<PlainForm>(name, LayOut);
    }
    void Press(PlainForm& form) {
        auto* const button = screen.WindowOf(form)->findChild<QPushButton*>(QStringLiteral("cmdOK"));
        ASSERT_NE(button, nullptr);
        QTest::mouseClick(button, Qt::LeftButton);
    }
    /// Answers the message that comes next, once it is there.
    void AnswerSoon(QMessageBox::StandardButton button) {
        Soon([this, button] {
            auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            title = box->windowTitle();
            text = box->text();
            icon = box->icon();
            buttons = box->standardButtons();
            QTest::mouseClick(box->button(button), Qt::LeftButton);
        });
    }

    QtDesktop screen;
    Forms forms{screen};
    Texts events;
    PlainForm one{forms, "frmOne", events};
    PlainForm two{forms, "frmTwo", events};
    QString title;
    QString text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButtons buttons;
};

TEST_F(QtDesktopTest, AModalFormReturnsWhenItIsHiddenAndTheOneBelowIsActivatedWhenItIsUnloaded) {
    one.cmdOK.OnClick([&] {
        two.cmdOK.OnClick([&] { two.Hide(); });
        Soon([&] { Press(two); });
        two.Show(Modality::Modal);
        events.emplace_back("hidden");
        two.Unload();
    });
    one.Show(Modality::Modeless);
    ASSERT_TRUE(QTest::qWaitForWindowActive(screen.WindowOf(one)));
    Press(one);
    Settle();
    EXPECT_EQ(events,
              (Texts{"frmOne activate", "frmTwo activate", "hidden", "frmTwo unload", "frmOne activate"}))
        << "and the window's own coming to the front is not one more activation";
}

TEST_F(QtDesktopTest, SwitchingBetweenWindowsOfTheProgramActivatesTheirForms) {
    one.Show(Modality::Modeless);
    two.Show(Modality::Modeless);
    ASSERT_TRUE(QTest::qWaitForWindowActive(screen.WindowOf(two)));
    Settle();
    screen.WindowOf(one)->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(screen.WindowOf(one)));
    Settle();
    EXPECT_EQ(events, (Texts{"frmOne activate", "frmTwo activate", "frmOne activate"}));
}

TEST_F(QtDesktopTest, ClosingAModelessWindowActivatesTheOneThatComesToTheFront) {
    one.Show(Modality::Modeless);
    two.Show(Modality::Modeless);
    ASSERT_TRUE(QTest::qWaitForWindowActive(screen.WindowOf(two)));
    screen.WindowOf(two)->close();
    screen.WindowOf(one)->activateWindow();
    ASSERT_TRUE(QTest::qWaitFor([&] { return events.back() == "frmOne activate"; }));
}

TEST_F(QtDesktopTest, AFormThatClosesItselfOnActivationNeverFlashesUp) {
    one.onActivate = [&] {
        const QWidget* const window = screen.WindowOf(one);
        EXPECT_TRUE(window != nullptr && !window->isVisible());
        one.Unload();
    };
    one.Show(Modality::Modeless);
    EXPECT_EQ(screen.WindowOf(one), nullptr);
    one.Show(Modality::Modal);
    EXPECT_TRUE(screen.Ended());
}

TEST_F(QtDesktopTest, AMessageOfAnActivationStandsInFrontOfItsWindow) {
    one.onActivate = [&] {
        Soon([&] { EXPECT_TRUE(screen.WindowOf(one)->isVisible()); });
        AnswerSoon(QMessageBox::Ok);
        screen.Show({"text", "title"});
    };
    one.Show(Modality::Modeless);
    EXPECT_EQ(text, QStringLiteral("text"));
}

TEST_F(QtDesktopTest, MessagesShowWhatTheyAreGivenAndReturnTheButton) {
    AnswerSoon(QMessageBox::No);
    EXPECT_EQ(screen.Show({"5 < 6 & <b>", "Warning", controls::Icon::Exclamation, Buttons::YesNoCancel}),
              Answer::No);
    EXPECT_EQ(title, QStringLiteral("Warning"));
    EXPECT_EQ(text, QStringLiteral("5 < 6 & <b>"));
    EXPECT_EQ(icon, QMessageBox::Warning);
    EXPECT_EQ(buttons, QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
    const struct {
        Buttons buttons;
        QMessageBox::StandardButton button;
        Answer answer;
    } cases[] = {{Buttons::Ok, QMessageBox::Ok, Answer::Ok},
                 {Buttons::OkCancel, QMessageBox::Cancel, Answer::Cancel},
                 {Buttons::AbortRetryIgnore, QMessageBox::Retry, Answer::Retry},
                 {Buttons::AbortRetryIgnore, QMessageBox::Ignore, Answer::Ignore},
                 {Buttons::AbortRetryIgnore, QMessageBox::Abort, Answer::Abort},
                 {Buttons::YesNo, QMessageBox::Yes, Answer::Yes},
                 {Buttons::RetryCancel, QMessageBox::Retry, Answer::Retry}};
    for (const auto& entry : cases) {
        AnswerSoon(entry.button);
        EXPECT_EQ(screen.Show({"text", "title", controls::Icon::Critical, entry.buttons}), entry.answer);
    }
    EXPECT_EQ(icon, QMessageBox::Critical);
}

TEST_F(QtDesktopTest, EnterTakesTheFirstButtonOfAMessageAndEscapeCancels) {
    Soon([] { QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Return); });
    EXPECT_EQ(screen.Show({"text", "title", controls::Icon::None, Buttons::YesNoCancel}), Answer::Yes);
    Soon([] { QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape); });
    EXPECT_EQ(screen.Show({"text", "title", controls::Icon::None, Buttons::YesNoCancel}), Answer::Cancel);
}

TEST_F(QtDesktopTest, FileDialogsFilterAndReturnHostPaths) {
    const testing_support::TempFolder folder;
    folder.Write("LISTINGS.CSV", "x");
    folder.Write("notes.doc", "x");
    const std::string path = (folder / "LISTINGS.CSV").string();
    Soon([&] {
        auto* const box = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        EXPECT_EQ(box->windowTitle(), QStringLiteral("Open"));
        EXPECT_EQ(box->nameFilters().value(0), QStringLiteral("CSV & TXT (*.csv *.CSV *.txt *.TXT)"));
        EXPECT_EQ(box->nameFilters().size(), 2);
        box->selectFile(QString::fromStdString(path));
        QMetaObject::invokeMethod(box, "accept");
    });
    EXPECT_EQ(screen.Choose({.title = "Open",
                             .filter = "CSV & TXT (*.csv; *.txt)|*.csv;*.txt|XML (*.xml)|*.xml",
                             .directory = folder.Path().string(),
                             .fileName = "",
                             .defaultExtension = ""}),
              path);
    Soon([] { QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape); });
    EXPECT_EQ(screen.Choose({.title = "Open",
                             .filter = "",
                             .directory = folder.Path().string(),
                             .fileName = "LISTINGS.CSV",
                             .defaultExtension = ""}),
              "");
}

TEST_F(QtDesktopTest, ASavedFileGetsTheDefaultExtension) {
    const testing_support::TempFolder folder;
    Soon([&] {
        auto* const box = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        box->findChild<QLineEdit*>()->setText(QStringLiteral("columns"));
        QMetaObject::invokeMethod(box, "accept");
    });
    EXPECT_EQ(screen.Choose({.title = "Load Map",
                             .filter = "Map Files (*.map)|*.map",
                             .directory = folder.Path().string(),
                             .fileName = "",
                             .defaultExtension = "map",
                             .forSaving = true}),
              (folder / "columns.map").string());
}

TEST_F(QtDesktopTest, AFormWithoutAViewIsAFault) {
    PlainForm stray{forms, "frmStray", events};
    EXPECT_THROW(stray.Show(Modality::Modal), Fault);
}

TEST_F(QtDesktopTest, AFaultThatEndsTheProgramComesOutOfTheModalFormAndOfTheLoop) {
    forms.SetFaultHandler([](const std::exception_ptr&) { return false; });
    two.cmdOK.OnClick([] { throw Fault{fault::kDiskFull, "full"}; });
    one.cmdOK.OnClick([&] {
        Soon([&] { Press(two); });
        two.Show(Modality::Modal);
        events.emplace_back("never");
    });
    one.Show(Modality::Modeless);
    Soon([&] { Press(one); });
    screen.Run();
    EXPECT_TRUE(forms.Ending());
    EXPECT_THROW(forms.Result(), Fault);
    EXPECT_NE(events.back(), "never");
}

TEST_F(QtDesktopTest, TheLoopEndsWithTheLastForm) {
    one.Show(Modality::Modeless);
    Soon([&] { screen.WindowOf(one)->close(); });
    screen.Run();
    EXPECT_EQ(events.back(), "frmOne unload");
    screen.Run();  // has ended already, and returns at once
}

TEST_F(QtDesktopTest, TheHourglassIsOneHoweverOftenItIsTurned) {
    screen.SetHourglass(true);
    screen.SetHourglass(true);
    ASSERT_NE(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    AnswerSoon(QMessageBox::Ok);
    Soon([] { EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::ArrowCursor); });
    screen.Show({"text", "title"});
    screen.SetHourglass(false);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

/// Counts its paintings.
class Painted final : public QWidget {
  public:
    using QWidget::QWidget;
    int paintings = 0;

  protected:
    void paintEvent(QPaintEvent* /*event*/) override { ++paintings; }
};

TEST_F(QtDesktopTest, LongWorkRepaintsAndShowsHowFarItIs) {
    two.Show(Modality::Modeless);
    QWidget* const window = screen.WindowOf(two);
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    auto* const painted = new Painted(window);
    painted->resize(20, 20);
    painted->show();
    Settle();
    painted->paintings = 0;
    bool panel = false;
    int shown = 0;
    one.cmdOK.OnClick([&] {
        const auto began = std::chrono::steady_clock::now();
        for (long done = 0; std::chrono::steady_clock::now() - began < std::chrono::milliseconds(700);
             ++done) {
            painted->update();
            screen.Progress(done % 1000, 1000);
            panel |= window->findChild<QWidget*>(QStringLiteral("progress")) != nullptr;
            shown = painted->paintings;
        }
        screen.Progress(1000, 1000);
        EXPECT_EQ(window->findChild<QWidget*>(QStringLiteral("progress")), nullptr);
    });
    forms.Event([&] { one.cmdOK.Click(); });
    EXPECT_TRUE(panel);
    EXPECT_GE(shown, 3);
    EXPECT_LE(shown, 15) << "at most every 50 ms";
}

TEST_F(QtDesktopTest, ACloseThatComesDuringLongWorkIsDoneBehindIt) {
    one.cmdOK.OnClick([&] {
        screen.Progress(0, 1000);
        std::this_thread::sleep_for(std::chrono::milliseconds(60));
        QCoreApplication::postEvent(screen.WindowOf(one), new QCloseEvent);
        screen.Progress(1, 1000);
        EXPECT_TRUE(one.Loaded());
        events.emplace_back("work done");
    });
    one.Show(Modality::Modeless);
    Press(one);
    EXPECT_EQ(events, (Texts{"frmOne activate", "work done", "frmOne unload"}));
}

TEST_F(QtDesktopTest, ProgressCostsNextToNothing) {
    const auto began = std::clock();
    for (long done = 0; done < 1'000'000; ++done)
        screen.Progress(done, 2'000'000);
    EXPECT_LT(static_cast<double>(std::clock() - began) / CLOCKS_PER_SEC, 0.5);
}

TEST_F(QtDesktopTest, TheEndOfTheSessionClosesTheForms) {
    one.Show(Modality::Modeless);
    two.Show(Modality::Modeless);
    screen.EndSession(forms);
    EXPECT_FALSE(one.Loaded());
    EXPECT_FALSE(two.Loaded());
    EXPECT_TRUE(screen.Ended());
}

TEST_F(QtDesktopTest, TheEndOfTheSessionTakesAQuestionAwayAndClosesBehindTheRule) {
    Answer answer = Answer::Yes;
    one.cmdOK.OnClick([&] {
        Soon([&] { screen.EndSession(forms); });
        answer = screen.Show({"Go on?", "title", controls::Icon::None, Buttons::YesNo});
        EXPECT_TRUE(one.Loaded());
    });
    one.Show(Modality::Modeless);
    Press(one);
    EXPECT_EQ(answer, Answer::No);
    EXPECT_FALSE(one.Loaded());
}

TEST_F(QtDesktopTest, WhileTheSessionEndsNoOtherQuestionComesUp) {
    Answer answer = Answer::Retry;
    one.cmdOK.OnClick([&] {
        Soon([&] { screen.EndSession(forms); });
        screen.Show({"Go on?", "title", controls::Icon::None, Buttons::YesNo});
        answer = screen.Show({"Again?", "title", controls::Icon::None, Buttons::RetryCancel});
        EXPECT_EQ(
            screen.Choose(
                {.title = "Open", .filter = "", .directory = "", .fileName = "", .defaultExtension = ""}),
            "");
    });
    one.Show(Modality::Modeless);
    Press(one);
    EXPECT_EQ(answer, Answer::Cancel);
    EXPECT_FALSE(one.Loaded());
}

}  // namespace
}  // namespace zenvora::desktop
