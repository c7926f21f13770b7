// Each kind of control and its widget, both ways.

#include "desktop/binder.h"

#include <QDialog>
#include <QHeaderView>
#include <QMainWindow>
#include <QScrollBar>
#include <QSignalSpy>
#include <QToolButton>
#include <gtest/gtest.h>

#include "desktop/pictures.h"
#include "desktop/screen.h"
#include "desktop/shades.h"
#include "desktop/strings.h"
#include "platform/fault.h"

namespace zenvora::desktop {
namespace {

using controls::CheckBox;
using controls::Control;
using controls::Form;
using controls::Forms;
using controls::Modality;
using testing_support::Settle;
using Texts = std::vector<std::string>;

/// Rows that are made up when they are asked for, and count how often that is.
class MadeRows final : public controls::GridRows {
  public:
    int count = 0;
    bool broken = false;
    mutable long asked = 0;
    [[nodiscard]] int RowCount() const override { return count; }
    [[nodiscard]] std::optional<std::string> Value(int row, int column) const override {
        ++asked;
        if (broken) throw Fault{fault::kDeviceIo, "The disk is gone."};
        if (column == 0) return row % 2 == 0 ? "1" : "0";
        return "r" + std::to_string(row) + "c" + std::to_string(column);
    }
};

/// One control of each kind.
class KindsForm final : public Form {
  public:
    explicit KindsForm(Forms& forms) : Form(forms, "frmKinds", "Kinds") {
        lblName.SetCaption("&Name");
        lblLink.SetCaption("Get <Help>");
        lblLink.OnClick([this] { events.emplace_back("link"); });
        cmdOK.SetCaption("&OK");
        cmdOK.SetDefault(true);
        cmdCancel.SetCaption("Cancel");
        cmdCancel.SetCancel(true);
        chkFlag.SetCaption("Flag");
        optTwo.JoinGroupOf(optOne);
        imgCalendar.SetPicture("calendar");
        imgCalendar.SetCaption("Choose a date");
        imgCalendar.OnClick([this] { events.emplace_back("calendar"); });
        fraGroup.SetCaption("Sale && List");
        tdbgRows.SetColumns(
            {{.caption = "", .width = 355, .pictures = true, .valueItems = {{"0", "cross"}, {"1", "check"}}},
             {.caption = "Address", .width = 2295},
             {.caption = "Price", .rightAligned = true, .valueItems = {{"r0c2", ""}}}});
        tdbgRows.SetRows(&rows);
        mnuFile.SetCaption("File");
        mnuItem[1].SetCaption("Open");
        mnuItem[1].SetShortcut("Ctrl+O");
        Add(txtFirst);
        Add(txtCell);
        Add(lblName);
        Add(lblLink);
        Add(cmdOK);
        Add(cmdCancel);
        Add(chkFlag);
        Add(optOne);
        Add(optTwo);
        Add(cboText);
        Add(cboPick);
        Add(lstOne);
        Add(lstMany);
        Add(fraGroup);
        Add(txtInside);
        Add(imgCalendar);
        Add(tabs);
        Add(tdbgRows);
        Add(bar);
        Add(mvwDate);
        Add(rtbHelp);
        AddMenu({&mnuFile, {{&mnuItem[0]}, {}, {&mnuItem[1]}}});
        cmdOK.OnClick([this] { events.emplace_back("ok"); });
        cmdCancel.OnClick([this] { events.emplace_back("cancel"); });
        mnuItem[1].OnClick([this] { events.emplace_back("open"); });
        for (Control* control : Controls()) {
            control->OnGotFocus([this, control] { focus.push_back(control->Name() + " comes"); });
            control->OnLostFocus([this, control] { focus.push_back(control->Name() + " leaves"); });
        }
    }

    MadeRows rows;
    controls::TextBox txtFirst{"txtFirst"};
    controls::ControlArray<controls::TextBox> txtCell{"txtCell", 2};
    controls::Label lblName{"lblName"};
    controls::Label lblLink{"lblLink"};
    controls::CommandButton cmdOK{"cmdOK"};
    controls::CommandButton cmdCancel{"cmdCancel"};
    CheckBox chkFlag{"chkFlag"};
    controls::OptionButton optOne{"optOne"};
    controls::OptionButton optTwo{"optTwo"};
    controls::ComboBox cboText{"cboText"};
    controls::ComboBox cboPick{"cboPick"};
    controls::ListBox lstOne{"lstOne"};
    controls::ListBox lstMany{"lstMany"};
    controls::Frame fraGroup{"fraGroup"};
    controls::TextBox txtInside{"txtInside"};
    controls::Image imgCalendar{"imgCalendar"};
    controls::TabPages tabs{"tabs", {"One", "Two", "Three"}};
    controls::Grid tdbgRows{"tdbgRows"};
    controls::ProgressBar bar{"bar"};
    controls::MonthView mvwDate{"mvwDate"};
    controls::RichText rtbHelp{"rtbHelp"};
    controls::MenuItem mnuFile{"mnuFile"};
    controls::ControlArray<controls::MenuItem> mnuItem{"mnuItem", 2};

    Texts events;
    Texts focus;
    int closings = 0;
    bool refusesToClose = false;
    int helps = 0;
    int activations = 0;

  protected:
    void OnQueryUnload(bool& cancel) override {
        ++closings;
        cancel = refusesToClose;
    }
    void OnHelp() override { ++helps; }
    void OnActivate() override { ++activations; }
};

QWidget* LayOut(KindsForm& form, Binder& bind, QWidget* parent) {
    auto* const window = new QMainWindow(parent);
    auto* const body = new QWidget;
    auto* const layout = new QVBoxLayout(body);
    auto* const first = bind.Bind(form.txtFirst);
    layout->addWidget(bind.Bind(form.lblName, *first));
    layout->addWidget(first);
    for (controls::TextBox& cell : form.txtCell)
        layout->addWidget(bind.Bind(cell));
    layout->addWidget(bind.BindLink(form.lblLink));
    layout->addWidget(bind.Bind(form.cmdCancel));
    layout->addWidget(bind.Bind(form.cmdOK));
    layout->addWidget(bind.Bind(form.chkFlag));
    layout->addWidget(bind.Bind(form.optOne));
    layout->addWidget(bind.Bind(form.optTwo));
    layout->addWidget(bind.Bind(form.cboText));
    layout->addWidget(bind.Bind(form.cboPick));
    layout->addWidget(bind.Bind(form.lstOne));
    layout->addWidget(bind.Bind(form.lstMany));
    auto* const group = bind.Bind(form.fraGroup);
    (new QVBoxLayout(group))->addWidget(bind.Bind(form.txtInside));
    layout->addWidget(group);
    layout->addWidget(bind.Bind(form.imgCalendar, 16));
    layout->addWidget(bind.Bind(form.tabs));
    layout->addWidget(bind.Bind(form.tdbgRows));
    layout->addWidget(bind.Bind(form.bar));
    layout->addWidget(bind.Bind(form.mvwDate));
    layout->addWidget(bind.Bind(form.rtbHelp));
    bind.BindMenus(*window->menuBar());
    window->setCentralWidget(body);
    return window;
}

struct BinderTest : testing::Test {
    BinderTest() {
        screen.Register<KindsForm>("frmKinds", LayOut);
        forms.SetFaultHandler([this](const std::exception_ptr& fault) {
            try {
                std::rethrow_exception(fault);
            } catch (const Fault& problem) {
                told.push_back(problem.description);
            }
            return true;
        });
    }
    void Show() {
        form.Show(Modality::Modeless);
        window = screen.WindowOf(form);
        ASSERT_NE(window, nullptr);
        ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    }
    template <class Widget>
    Widget& Find(const char* name) {
        auto* const widget = window->findChild<Widget*>(QString::fromLatin1(name));
        if (widget == nullptr) throw std::runtime_error(std::string("no widget ") + name);
        return *widget;
    }

    QtDesktop screen;
    Forms forms{screen};
    KindsForm form{forms};
    QWidget* window = nullptr;
    Texts told;
};

// ---- text ----

TEST_F(BinderTest, TypingReachesTheTextBoxAndRunsItsRuleOncePerKey) {
    Show();
    Texts texts;
    form.txtFirst.OnChange([&] { texts.push_back(form.txtFirst.Text()); });
    QTest::keyClicks(&Find<QLineEdit>("txtFirst"), QStringLiteral("ab"));
    EXPECT_EQ(texts, (Texts{"a", "ab"}));
}

TEST_F(BinderTest, ATextOfTheProgramShowsAndRunsItsRuleOnce) {
    Show();
    int changes = 0;
    form.txtFirst.OnChange([&] { ++changes; });
    form.txtFirst.SetText("caf\xC3\xA9");
    EXPECT_EQ(Find<QLineEdit>("txtFirst").text(), QString::fromUtf8("caf\xC3\xA9"));
    EXPECT_EQ(changes, 1);
}

TEST_F(BinderTest, ARuleThatChangesWhatIsTypedShowsAndKeepsTheCaret) {
    Show();
    form.txtFirst.OnChange([&] {
        std::string upper = form.txtFirst.Text();
        for (char& sign : upper)
            sign = static_cast<char>(std::toupper(sign));
        form.txtFirst.SetText(upper);
    });
    auto& edit = Find<QLineEdit>("txtFirst");
    QTest::keyClicks(&edit, QStringLiteral("ac"));
    QTest::keyClick(&edit, Qt::Key_Left);
    QTest::keyClick(&edit, Qt::Key_B);
    EXPECT_EQ(form.txtFirst.Text(), "ABC");
    EXPECT_EQ(edit.text(), QStringLiteral("ABC"));
    EXPECT_EQ(edit.cursorPosition(), 2);
}

TEST_F(BinderTest, PastingUndoAndClearingAreOneChangeEach) {
    Show();
    int changes = 0;
    form.txtFirst.OnChange([&] { ++changes; });
    auto& edit = Find<QLineEdit>("txtFirst");
    edit.insert(QStringLiteral("12/31/2025"));
    EXPECT_EQ(changes, 1);
    edit.undo();
    EXPECT_EQ(form.txtFirst.Text(), "");
    EXPECT_EQ(changes, 2);
    edit.redo();
    edit.clear();
    EXPECT_EQ(changes, 4);
}

TEST_F(BinderTest, TheLimitHoldsForTypingAndNotForTheProgram) {
    form.txtFirst.SetMaxLength(3);
    Show();
    auto& edit = Find<QLineEdit>("txtFirst");
    QTest::keyClicks(&edit, QStringLiteral("12345"));
    EXPECT_EQ(form.txtFirst.Text(), "123");
    form.txtFirst.SetText("123456");
    EXPECT_EQ(edit.text(), QStringLiteral("123456"));
    edit.setFocus();
    edit.end(false);
    QTest::keyClicks(&edit, QStringLiteral("7"));
    EXPECT_EQ(form.txtFirst.Text(), "123456");
    QTest::keyClick(&edit, Qt::Key_Backspace);
    EXPECT_EQ(form.txtFirst.Text(), "12345");
}

TEST_F(BinderTest, ALockedBoxTakesNoKeys) {
    form.txtFirst.SetText("fixed");
    form.txtFirst.SetLocked(true);
    Show();
    auto& edit = Find<QLineEdit>("txtFirst");
    QTest::keyClicks(&edit, QStringLiteral("x"));
    EXPECT_EQ(form.txtFirst.Text(), "fixed");
    form.txtFirst.SetLocked(false);
    edit.end(false);
    QTest::keyClicks(&edit, QStringLiteral("x"));
    EXPECT_EQ(form.txtFirst.Text(), "fixedx");
}

TEST_F(BinderTest, SelectAllSelectsOnTheScreen) {
    form.txtFirst.SetText("abc");
    Show();
    form.txtFirst.SelectAll();
    EXPECT_EQ(Find<QLineEdit>("txtFirst").selectedText(), QStringLiteral("abc"));
}

TEST_F(BinderTest, ALabelNamesTheBoxBesideItAndItsMnemonicGoesThere) {
    Show();
    auto& edit = Find<QLineEdit>("txtFirst");
    EXPECT_EQ(edit.accessibleName(), QStringLiteral("Name"));
    form.txtInside.SetFocus();
    QTest::keyClick(window, Qt::Key_N, Qt::AltModifier);
    EXPECT_TRUE(edit.hasFocus());
    form.lblName.SetCaption("Other");
    EXPECT_EQ(edit.accessibleName(), QStringLiteral("Other"));
}

TEST_F(BinderTest, ALinkIsPressedByMouseAndByKeyboard) {
    Show();
    auto& link = Find<QAbstractButton>("lblLink");
    EXPECT_EQ(link.accessibleName(), QStringLiteral("Get <Help>"));
    QTest::mouseClick(&link, Qt::LeftButton);
    form.lblLink.SetFocus();
    QTest::keyClick(&link, Qt::Key_Return);
    QTest::keyClick(&link, Qt::Key_Space);
    EXPECT_EQ(form.events, (Texts{"link", "link", "link"}));
}

// ---- what all controls have in common ----

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

// ---- buttons ----

TEST_F(BinderTest, AButtonIsPressedByMouseMnemonicEnterAndSpace) {
    Show();
    auto& ok = Find<QPushButton>("cmdOK");
    QTest::mouseClick(&ok, Qt::LeftButton);
    QTest::keyClick(window, Qt::Key_O, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return form.events.size() == 2; })) << "shown as pressed for a moment";
    ok.setFocus();
    QTest::keyClick(&ok, Qt::Key_Space);
    QTest::keyClick(&ok, Qt::Key_Return);
    EXPECT_EQ(form.events, (Texts{"ok", "ok", "ok", "ok"}));
}

TEST_F(BinderTest, EnterPressesTheDefaultButtonAndEscapeTheCancelButtonFromAnywhere) {
    Show();
    auto& edit = Find<QLineEdit>("txtInside");
    edit.setFocus();
    QTest::keyClick(&edit, Qt::Key_Return);
    EXPECT_TRUE(form.cmdOK.HasFocus()) << "so that the rule of leaving has run";
    edit.setFocus();
    QTest::keyClick(&edit, Qt::Key_Escape);
    EXPECT_EQ(form.events, (Texts{"ok", "cancel"}));
}

TEST_F(BinderTest, EnterOnAButtonPressesThatOneAndNotTheDefault) {
    Show();
    auto& cancel = Find<QPushButton>("cmdCancel");
    cancel.setFocus();
    QTest::keyClick(&cancel, Qt::Key_Return);
    EXPECT_EQ(form.events, (Texts{"cancel"}));
}

TEST_F(BinderTest, ACheckBoxIsToggledByTheUserAndSetByTheProgram) {
    Show();
    int clicks = 0;
    form.chkFlag.OnClick([&] { ++clicks; });
    auto& box = Find<QCheckBox>("chkFlag");
    QTest::keyClick(&box, Qt::Key_Space);
    EXPECT_EQ(form.chkFlag.Value(), CheckBox::kChecked);
    form.chkFlag.SetValue(CheckBox::kGrayed);
    EXPECT_EQ(box.checkState(), Qt::PartiallyChecked);
    EXPECT_EQ(clicks, 2);
    QTest::keyClick(&box, Qt::Key_Space);
    EXPECT_EQ(form.chkFlag.Value(), CheckBox::kUnchecked) << "a grey box becomes unchecked";
    EXPECT_EQ(box.checkState(), Qt::Unchecked);
    EXPECT_EQ(clicks, 3);
}

TEST_F(BinderTest, OptionsOfAGroupExcludeEachOtherBothWays) {
    Show();
    int clicks = 0;
    form.optOne.OnClick([&] { ++clicks; });
    form.optTwo.OnClick([&] { ++clicks; });
    auto& one = Find<QRadioButton>("optOne");
    auto& two = Find<QRadioButton>("optTwo");
    one.click();
    EXPECT_TRUE(form.optOne.Value());
    form.optTwo.SetValue(true);
    EXPECT_TRUE(two.isChecked());
    EXPECT_FALSE(one.isChecked());
    two.click();
    EXPECT_EQ(clicks, 2) << "one that is set already does not change";
    form.optTwo.SetValue(false);
    EXPECT_FALSE(two.isChecked()) << "a group may have none";
    one.setFocus();
    one.click();
    QTest::keyClick(&one, Qt::Key_Down);
    EXPECT_TRUE(form.optTwo.Value()) << "the arrow keys choose";
}

TEST_F(BinderTest, AnImageWithARuleIsAButtonOfTheKeyboard) {
    Show();
    auto& image = Find<QToolButton>("imgCalendar");
    EXPECT_EQ(image.accessibleName(), QStringLiteral("Choose a date"));
    EXPECT_FALSE(image.icon().isNull());
    image.setFocus();
    QTest::keyClick(&image, Qt::Key_Space);
    QTest::keyClick(&image, Qt::Key_Return);
    EXPECT_EQ(form.events, (Texts{"calendar", "calendar"}));
}

TEST(Pictures, AreCrispAtAnyScaleAndUnknownOnesAreNone) {
    EXPECT_TRUE(Picture("no such picture").isNull());
    for (const char* name : {"check", "cross", "calendar", "sent", "splash", "zenvora"}) {
        const QImage image = Picture(name).pixmap(QSize(64, 64)).toImage();
        ASSERT_EQ(image.size(), QSize(64, 64)) << name;
        bool drawn = false;
        for (int place = 0; place < 64 * 64; ++place)
            drawn |= qAlpha(image.pixel(place % 64, place / 64)) > 0;
        EXPECT_TRUE(drawn) << name;
    }
}

// ---- lists ----

TEST_F(BinderTest, TypingIntoAComboBoxRunsTheChangeRuleAlone) {
    form.cboText.AddItem("abc");
    Show();
    int changes = 0;
    int clicks = 0;
    form.cboText.OnChange([&] { ++changes; });
    form.cboText.OnClick([&] { ++clicks; });
    auto& box = Find<QComboBox>("cboText");
    QTest::keyClicks(box.lineEdit(), QStringLiteral("ab"));
    EXPECT_EQ(form.cboText.Text(), "ab") << "nothing is completed";
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(clicks, 0);
    QTest::keyClick(box.lineEdit(), Qt::Key_Return);
    EXPECT_EQ(form.cboText.ListCount(), 1) << "Enter adds no entry";
    EXPECT_EQ(form.events, (Texts{"ok"}));
}

TEST_F(BinderTest, PickingFromAComboBoxIsOneChangeAndOneClick) {
    form.cboText.AddItem("one");
    form.cboText.AddItem("two");
    Show();
    Texts seen;
    form.cboText.OnChange([&] { seen.push_back("change " + form.cboText.Text()); });
    form.cboText.OnClick([&] { seen.push_back("click " + form.cboText.Text()); });
    auto& box = Find<QComboBox>("cboText");
    box.setFocus();
    QTest::keyClick(&box, Qt::Key_Down);
    EXPECT_EQ(seen, (Texts{"change one", "click one"}));
    form.cboText.SetText("two");
    EXPECT_EQ(box.currentText(), QStringLiteral("two"));
    EXPECT_EQ(seen.size(), 3U);
}

TEST_F(BinderTest, EntriesOfAComboBoxComeAndGoAndTheTextStays) {
    Show();
    auto& box = Find<QComboBox>("cboText");
    form.cboText.SetText("typed");
    int changes = 0;
    form.cboText.OnChange([&] { ++changes; });
    form.cboText.AddItem("one");
    form.cboText.AddItem("two");
    EXPECT_EQ(box.count(), 2);
    form.cboText.Clear();
    EXPECT_EQ(box.count(), 0);
    EXPECT_EQ(box.currentText(), QStringLiteral("typed"));
    EXPECT_EQ(changes, 0);
}

TEST_F(BinderTest, AComboBoxGrowsAtItsEndAndTakesAnotherListBehindAClear) {
    form.cboText.AddItem("one");
    Show();
    auto& box = Find<QComboBox>("cboText");
    form.cboText.AddItems({"two", "three"});
    EXPECT_EQ(box.count(), 3);
    EXPECT_EQ(box.itemText(0), QStringLiteral("one"));
    EXPECT_EQ(box.itemText(2), QStringLiteral("three"));
    form.cboText.Clear();
    form.cboText.AddItems({"four", "five", "six"});
    EXPECT_EQ(box.count(), 3);
    EXPECT_EQ(box.itemText(0), QStringLiteral("four"));
}

TEST_F(BinderTest, ABoxToPickFromTakesNoText) {
    form.cboPick.SetPickOnly(true);
    form.cboPick.AddItem("one");
    form.cboPick.AddItem("two");
    Show();
    auto& box = Find<QComboBox>("cboPick");
    EXPECT_EQ(box.currentIndex(), -1);
    EXPECT_FALSE(box.isEditable());
    form.cboPick.SetText("two");
    EXPECT_EQ(box.currentIndex(), 1);
    box.setFocus();
    QTest::keyClick(&box, Qt::Key_Up);
    EXPECT_EQ(form.cboPick.Text(), "one");
}

TEST_F(BinderTest, AListIsSelectedBothWaysAndOpenedByEnter) {
    for (const char* text : {"a", "b", "c"})
        form.lstOne.AddItem(text);
    int selects = 0;
    Texts opened;
    form.lstOne.OnSelect([&] { ++selects; });
    form.lstOne.OnDblClick([&] { opened.push_back(form.lstOne.List(form.lstOne.ListIndex())); });
    Show();
    auto& list = Find<QListView>("lstOne");
    list.setFocus();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                      list.visualRect(list.model()->index(1, 0)).center());
    EXPECT_EQ(form.lstOne.ListIndex(), 1);
    QTest::keyClick(&list, Qt::Key_Down);
    EXPECT_EQ(form.lstOne.ListIndex(), 2);
    EXPECT_EQ(selects, 2);
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_EQ(opened, (Texts{"c"}));
    form.lstOne.SetListIndex(0);
    EXPECT_EQ(list.selectionModel()->selectedIndexes().value(0).row(), 0);
    form.lstOne.RemoveItem(0);
    EXPECT_EQ(list.model()->rowCount(), 2);
    EXPECT_TRUE(list.selectionModel()->selectedIndexes().isEmpty()) << "the selection goes with its entry";
    EXPECT_EQ(selects, 3);
}

TEST_F(BinderTest, SeveralEntriesAreSelectedBothWays) {
    form.lstMany.SetMultiSelect(true);
    for (const char* text : {"a", "b", "c", "d"})
        form.lstMany.AddItem(text);
    Show();
    auto& list = Find<QListView>("lstMany");
    const auto at = [&](int row) { return list.visualRect(list.model()->index(row, 0)).center(); };
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, at(0));
    QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::ControlModifier, at(2));
    EXPECT_TRUE(form.lstMany.Selected(0));
    EXPECT_FALSE(form.lstMany.Selected(1));
    EXPECT_TRUE(form.lstMany.Selected(2));
    form.lstMany.SetSelected(3, true);
    form.lstMany.SetSelected(0, false);
    EXPECT_EQ(list.selectionModel()->selectedIndexes().size(), 2);
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, at(1));
    EXPECT_EQ(form.lstMany.ListIndex(), 1);
    EXPECT_FALSE(form.lstMany.Selected(3));
}

// ---- pages, menus, bars, calendar ----

TEST_F(BinderTest, PagesAreChangedBothWaysAndUnavailableOnesNot) {
    Show();
    int changes = 0;
    form.tabs.OnTabChange([&](int) { ++changes; });
    auto& tabs = Find<QTabWidget>("tabs");
    tabs.tabBar()->setCurrentIndex(1);
    EXPECT_EQ(form.tabs.Tab(), 1);
    form.tabs.SetTab(0);
    EXPECT_EQ(tabs.currentIndex(), 0);
    EXPECT_EQ(changes, 2);
    form.tabs.SetTabEnabled(1, false);
    EXPECT_FALSE(tabs.isTabEnabled(1));
    tabs.setCurrentIndex(1);
    EXPECT_EQ(form.tabs.Tab(), 0);
    EXPECT_EQ(tabs.currentIndex(), 0) << "what the control refuses does not show";
    form.tabs.SetTabCaption(0, "Comps and Listings:  3/4");
    EXPECT_EQ(tabs.tabText(0), QStringLiteral("Comps and Listings:  3/4"));
    form.tabs.SetTabEnabled(0, false);
    EXPECT_EQ(tabs.currentIndex(), 0) << "a page that is shown stays shown";
    EXPECT_EQ(changes, 2);
}

TEST_F(BinderTest, MenuEntriesArePressedFollowTheirStateAndHaveKeys) {
    Show();
    auto& open = Find<QAction>("mnuItem_1");
    open.trigger();
    QTest::keyClick(window, Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(form.events, (Texts{"open", "open"}));
    form.mnuItem[1].SetEnabled(false);
    EXPECT_FALSE(open.isEnabled());
    form.mnuItem[1].SetVisible(false);
    EXPECT_FALSE(open.isVisible());
    form.mnuItem[1].SetChecked(true);
    EXPECT_TRUE(open.isChecked());
    form.mnuItem[1].SetCaption("Close");
    EXPECT_EQ(open.text(), QStringLiteral("Close"));
}

TEST_F(BinderTest, AProgressBarFollows) {
    Show();
    form.bar.SetRange(0, 384);
    form.bar.SetValue(96);
    EXPECT_EQ(Find<QProgressBar>("bar").maximum(), 384);
    EXPECT_EQ(Find<QProgressBar>("bar").value(), 96);
}

TEST_F(BinderTest, ACalendarIsClickedAndFollows) {
    Show();
    Texts seen;
    form.mvwDate.OnDateClick([&] { seen.emplace_back("click"); });
    form.mvwDate.OnDateDblClick([&] { seen.emplace_back("double click"); });
    auto& calendar = Find<QCalendarWidget>("mvwDate");
    form.mvwDate.SetValue(text::DayNumber(2026, 6, 30).value());
    EXPECT_EQ(calendar.selectedDate(), QDate(2026, 6, 30));
    calendar.setSelectedDate(QDate(2026, 7, 1));
    EXPECT_EQ(form.mvwDate.Value(), text::DayNumber(2026, 7, 1).value());
    EXPECT_TRUE(seen.empty()) << "the arrow keys choose and do not click";
    emit calendar.clicked(QDate(2026, 7, 2));
    emit calendar.activated(QDate(2026, 7, 3));
    EXPECT_EQ(seen, (Texts{"click", "double click"}));
    EXPECT_EQ(form.mvwDate.Value(), text::DayNumber(2026, 7, 3).value());
    form.mvwDate.SetValue(text::kFirstDate);
    EXPECT_EQ(calendar.selectedDate(), QDate(100, 1, 1));
}

TEST_F(BinderTest, FormattedTextIsShownAndCanBeReadOnAnyGround) {
    Show();
    auto& panel = Find<QTextBrowser>("rtbHelp");
    form.rtbHelp.SetParagraphs(
        {{.runs = {{.text = "Original "}, {.text = "List", .bold = true, .color = 0xFFFF00}},
          .align = controls::RichAlign::Center},
         {}});
    EXPECT_EQ(panel.toPlainText(), QStringLiteral("Original List\n"));
    QTextCursor cursor(panel.document());
    cursor.setPosition(12);
    EXPECT_EQ(cursor.charFormat().fontWeight(), QFont::Bold);
    EXPECT_EQ(cursor.blockFormat().alignment(), Qt::AlignHCenter);
    const auto contrast = [&] {
        return Contrast(panel.palette().color(QPalette::Base), cursor.charFormat().foreground().color());
    };
    EXPECT_GE(contrast(), 4.5) << "yellow on white cannot be read";
    form.rtbHelp.SetBackColor(0x800000);
    cursor.setPosition(12);
    EXPECT_GE(contrast(), 4.5);
    form.rtbHelp.SetText("plain");
    EXPECT_EQ(panel.toPlainText(), QStringLiteral("plain"));
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

// ---- grid ----

TEST_F(BinderTest, AGridReadsTheRowsOnTheScreenAndNoOthers) {
    form.rows.count = 100000;
    Show();
    auto& view = Find<QTableView>("tdbgRows");
    view.grab();
    EXPECT_LT(form.rows.asked, 2000) << "of 300,000 cells";
    view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum());
    view.grab();
    EXPECT_LT(form.rows.asked, 4000);
    EXPECT_EQ(view.model()->rowCount(), 100000);
}

TEST_F(BinderTest, AGridShowsPicturesValueItemsAndNumbersAtTheRight) {
    form.rows.count = 3;
    Show();
    const QAbstractItemModel& model = *Find<QTableView>("tdbgRows").model();
    EXPECT_FALSE(qvariant_cast<QIcon>(model.index(0, 0).data(Qt::DecorationRole)).isNull());
    EXPECT_EQ(model.index(0, 0).data(Qt::AccessibleTextRole).toString(), QStringLiteral("valid"));
    EXPECT_EQ(model.index(1, 0).data(Qt::AccessibleTextRole).toString(), QStringLiteral("invalid"));
    EXPECT_TRUE(model.index(1, 0).data().toString().isEmpty());
    EXPECT_EQ(model.index(0, 1).data().toString(), QStringLiteral("r0c1"));
    EXPECT_EQ(model.index(0, 2).data().toString(), QString()) << "a value item";
    EXPECT_TRUE(model.index(0, 2).data(Qt::TextAlignmentRole).value<Qt::Alignment>() & Qt::AlignRight);
    EXPECT_EQ(model.headerData(1, Qt::Horizontal).toString(), QStringLiteral("Address"));
}

TEST_F(BinderTest, TheCurrentCellGoesBothWaysAndItsRuleRunsOnce) {
    form.rows.count = 50;
    Show();
    int moves = 0;
    form.tdbgRows.OnRowColChange([&] { ++moves; });
    auto& view = Find<QTableView>("tdbgRows");
    form.tdbgRows.ShowCurrent(20);
    EXPECT_EQ(view.currentIndex().row(), 20);
    EXPECT_EQ(moves, 0) << "following the records runs no rule";
    view.setFocus();
    QTest::keyClick(&view, Qt::Key_Down);
    EXPECT_EQ(form.tdbgRows.Row(), 21);
    QTest::keyClick(&view, Qt::Key_Right);
    EXPECT_EQ(form.tdbgRows.Col(), 1);
    EXPECT_EQ(moves, 2);
}

TEST_F(BinderTest, AGridIsClickedAndDoubleClickedByMouseAndByKeyboard) {
    form.rows.count = 5;
    Texts seen;
    form.tdbgRows.OnClick([&] { seen.push_back("click " + std::to_string(form.tdbgRows.Row())); });
    form.tdbgRows.OnDblClick([&] { seen.push_back("double " + std::to_string(form.tdbgRows.Row())); });
    Show();
    auto& view = Find<QTableView>("tdbgRows");
    const QPoint cell = view.visualRect(view.model()->index(1, 0)).center();
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, cell);
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, cell);
    EXPECT_EQ(seen, (Texts{"click 1", "double 1"}));
    QTest::keyClick(&view, Qt::Key_Return);
    QTest::keyClick(&view, Qt::Key_Space);
    EXPECT_EQ(seen.size(), 4U);
    EXPECT_EQ(seen.back(), "double 1");
    EXPECT_TRUE(form.events.empty()) << "Enter does not press the default button here";
}

TEST_F(BinderTest, ChangedRowsKeepThePlaceAndNewRowsAppear) {
    form.rows.count = 1000;
    Show();
    auto& view = Find<QTableView>("tdbgRows");
    form.tdbgRows.ShowCurrent(500);
    const int top = view.verticalScrollBar()->value();
    form.tdbgRows.Refresh();
    EXPECT_EQ(view.verticalScrollBar()->value(), top);
    form.rows.count = 1001;
    form.tdbgRows.Refresh();
    EXPECT_EQ(view.model()->rowCount(), 1001);
    EXPECT_EQ(view.currentIndex().row(), 500);
    EXPECT_EQ(view.verticalScrollBar()->value(), top);
    form.tdbgRows.SetRows(nullptr);
    EXPECT_EQ(view.model()->rowCount(), 0);
}

TEST_F(BinderTest, AFaultInReadingACellIsToldOnceAndCrossesNoLoop) {
    form.rows.count = 100;
    Show();
    form.rows.broken = true;
    Find<QTableView>("tdbgRows").viewport()->repaint();
    Settle();
    EXPECT_EQ(told, (Texts{"The disk is gone."}));
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
