// What all controls have in common: names, state, colours, focus, and their window.

#include <gtest/gtest.h>

#include "desktop/binder_fixture.h"
#include "desktop/shades.h"

namespace zenvora::desktop {
namespace {

using controls::CheckBox;

TEST_F(BinderTest, WidgetsAreNamedAfterTheirControls) {
    Show();
    EXPECT_NO_THROW(Find<QLineEdit>("txtCell_1"));
    EXPECT_NO_THROW(Find<QAction>("mnuItem_1"));
    EXPECT_EQ(window->objectName(), QStringLiteral("frmKinds"));
}

TEST_F(BinderTest, EnablingVisibilityAndTipsFollow) {
    Show();
    auto& edit = Find<QLineEdit>("txtFirst");
    form.txtFirst.SetEnabled(false);
    EXPECT_FALSE(edit.isEnabled());
    form.txtFirst.SetVisible(false);
    EXPECT_TRUE(edit.isHidden());
    form.txtFirst.SetVisible(true);
    EXPECT_FALSE(edit.isHidden());
    form.txtFirst.SetToolTipText("<b>sale");
    EXPECT_EQ(edit.toolTip(), QStringLiteral("<p>&lt;b&gt;sale</p>"));
}

TEST_F(BinderTest, ADisabledFrameDisablesWhatStandsInItAndLeavesTheirStateAlone) {
    Show();
    form.fraGroup.SetEnabled(false);
    EXPECT_FALSE(Find<QLineEdit>("txtInside").isEnabled());
    EXPECT_TRUE(form.txtInside.Enabled());
    form.fraGroup.SetEnabled(true);
    EXPECT_TRUE(Find<QLineEdit>("txtInside").isEnabled());
}

TEST_F(BinderTest, AFrameShowsOneAmpersandForTwo) {
    Show();
    EXPECT_EQ(Find<QGroupBox>("fraGroup").title(), QStringLiteral("Sale && List"));
    EXPECT_EQ(Find<QGroupBox>("fraGroup").accessibleName(), QStringLiteral("Sale & List"));
}

TEST_F(BinderTest, BackColoursAreShownWithATextThatReadsWell) {
    Show();
    auto& edit = Find<QLineEdit>("txtFirst");
    const QColor plain = edit.palette().color(QPalette::Base);
    form.txtFirst.SetBackColor(0xFFC0C0);
    EXPECT_EQ(edit.palette().color(QPalette::Base), QColor(0xFF, 0xC0, 0xC0));
    EXPECT_GE(Contrast(edit.palette().color(QPalette::Base), edit.palette().color(QPalette::Text)), 7);
    form.txtFirst.SetBackColor(controls::kWhite);
    EXPECT_EQ(edit.palette().color(QPalette::Base), plain);
}

TEST_F(BinderTest, BackColoursFollowTheThemeWhileTheProgramRuns) {
    Show();
    form.txtFirst.SetBackColor(controls::kLightYellow);
    const QPalette light = QGuiApplication::palette();
    QPalette dark(QColor(0x30, 0x30, 0x30));
    QApplication::setPalette(dark);
    Settle();
    auto& edit = Find<QLineEdit>("txtFirst");
    const QColor back = edit.palette().color(QPalette::Base);
    EXPECT_LT(back.lightness(), 80) << "a dark tint on a dark ground";
    EXPECT_GT(back.red(), back.blue()) << "still a yellow one";
    EXPECT_GE(Contrast(back, edit.palette().color(QPalette::Text)), 7);
    QApplication::setPalette(light);
    Settle();
    EXPECT_EQ(edit.palette().color(QPalette::Base), QColor(0xFF, 0xFF, 0xC0));
}

TEST_F(BinderTest, TheThemesOwnColourIsNoColour) {
    Show();
    auto& edit = Find<QLineEdit>("txtFirst");
    const QColor plain = edit.palette().color(QPalette::Base);
    form.txtFirst.SetBackColor(controls::kLightRed);
    form.txtFirst.SetBackColor(controls::kSystemColor | 0x0F);
    EXPECT_EQ(edit.palette().color(QPalette::Base), plain);
}

TEST_F(BinderTest, ClicksAndDoubleClicksReachBoxesLabelsAndFrames) {
    Show();
    Texts seen;
    form.txtFirst.OnClick([&] { seen.emplace_back("box"); });
    form.lblLink.OnDblClick([&] { seen.emplace_back("label"); });
    form.fraGroup.OnDblClick([&] { seen.emplace_back("frame"); });
    QTest::mouseClick(&Find<QLineEdit>("txtFirst"), Qt::LeftButton);
    Settle();
    QTest::mouseDClick(&Find<QWidget>("lblLink"), Qt::LeftButton);
    Settle();
    auto& group = Find<QGroupBox>("fraGroup");
    QTest::mouseDClick(&group, Qt::LeftButton, {}, QPoint(3, group.height() - 3));
    QTest::mouseDClick(&group, Qt::LeftButton, {}, Find<QLineEdit>("txtInside").geometry().center());
    Settle();
    EXPECT_EQ(seen, (Texts{"box", "label", "frame"}));
}

// ---- focus ----

TEST_F(BinderTest, TheFirstControlHasTheFocusWhenTheWindowComes) {
    Show();
    EXPECT_EQ(form.ActiveControl(), &form.txtFirst);
    EXPECT_TRUE(Find<QLineEdit>("txtFirst").hasFocus());
    EXPECT_EQ(form.focus, (Texts{"txtFirst comes"}));
}

TEST_F(BinderTest, TheTabKeyGoesInTheOrderOfTheForm) {
    Show();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(form.ActiveControl(), &form.txtCell[0]);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(form.ActiveControl(), &form.lblLink);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(form.ActiveControl(), &form.cmdOK) << "the form's order, not that of the layout";
    EXPECT_EQ(form.focus.size(), 1U + 4 * 2) << "each rule of leaving and coming once";
}

TEST_F(BinderTest, TheProgramMovesTheFocusOnTheScreen) {
    Show();
    form.txtInside.SetFocus();
    EXPECT_TRUE(Find<QLineEdit>("txtInside").hasFocus());
    EXPECT_EQ(form.focus, (Texts{"txtFirst comes", "txtFirst leaves", "txtInside comes"}));
}

TEST_F(BinderTest, ARuleOfLeavingSendsTheFocusBack) {
    Show();
    form.txtFirst.OnLostFocus([&] { form.txtFirst.SetFocus(); });
    QTest::mouseClick(&Find<QLineEdit>("txtInside"), Qt::LeftButton);
    Settle();
    EXPECT_TRUE(Find<QLineEdit>("txtFirst").hasFocus());
    EXPECT_EQ(form.ActiveControl(), &form.txtFirst);
}

TEST_F(BinderTest, ChangingToAnotherWindowAndBackRunsNoFocusRule) {
    Show();
    form.focus.clear();
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    EXPECT_TRUE(form.focus.empty());
    EXPECT_EQ(form.activations, 1) << "another program's window does not count";
}

// ---- the window ----

TEST_F(BinderTest, TheCloseBoxAsksTheFormAndUnloadsIt) {
    Show();
    form.refusesToClose = true;
    window->close();
    EXPECT_TRUE(form.Loaded());
    EXPECT_TRUE(window->isVisible());
    form.refusesToClose = false;
    window->close();
    EXPECT_EQ(form.closings, 2);
    EXPECT_FALSE(form.Loaded());
    EXPECT_EQ(screen.WindowOf(form), nullptr);
}

TEST_F(BinderTest, HelpIsOneKeyAwayFromEverywhere) {
    Show();
    QTest::keyClick(&Find<QLineEdit>("txtInside"), Qt::Key_F1);
    QTest::keyClick(&Find<QTableView>("tdbgRows"), Qt::Key_F1);
    QTest::keyClick(window, Qt::Key_F1, Qt::ShiftModifier);
    EXPECT_EQ(form.helps, 2);
}

TEST_F(BinderTest, TheTitleAndThePlacementFollow) {
    Show();
    form.SetCaption("Other");
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Other"));
    window->resize(900, 1500);
    Settle();
    EXPECT_FLOAT_EQ(form.Placement().width, 900 * 15);
    EXPECT_FLOAT_EQ(form.Placement().height, static_cast<float>(window->height()) * 15);
}

TEST_F(BinderTest, AFormShownAgainShowsWhatItsControlsHoldNow) {
    Show();
    form.Hide();
    form.txtFirst.SetText("later");
    form.chkFlag.SetValue(CheckBox::kChecked);
    Show();
    EXPECT_EQ(Find<QLineEdit>("txtFirst").text(), QStringLiteral("later"));
    EXPECT_TRUE(Find<QCheckBox>("chkFlag").isChecked());
}

TEST_F(BinderTest, AFaultOfARuleGoesToTheProgramsHandler) {
    Show();
    form.txtFirst.OnChange([] { throw Fault{fault::kDiskFull, "The disk is full."}; });
    QTest::keyClicks(&Find<QLineEdit>("txtFirst"), QStringLiteral("x"));
    EXPECT_EQ(told, (Texts{"The disk is full."}));
    EXPECT_EQ(form.txtFirst.Text(), "x") << "the new value stays";
}

TEST_F(BinderTest, AWidgetOfAFormThatHasGoneReachesNothing) {
    Show();
    const QPointer<QLineEdit> edit = &Find<QLineEdit>("txtFirst");
    form.cmdOK.OnClick([&] {
        form.Unload();
        ASSERT_NE(edit, nullptr) << "a window goes after the press of its own button";
        edit->setText(QStringLiteral("late"));
    });
    QTest::mouseClick(&Find<QPushButton>("cmdOK"), Qt::LeftButton);
    EXPECT_EQ(form.txtFirst.Text(), "");
    Settle();
    EXPECT_EQ(edit, nullptr);
}

}  // namespace
}  // namespace zenvora::desktop
