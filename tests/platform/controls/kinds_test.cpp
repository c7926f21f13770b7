#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "platform/controls/check_box.h"
#include "platform/controls/combo_box.h"
#include "platform/controls/command_button.h"
#include "platform/controls/frame.h"
#include "platform/controls/grid.h"
#include "platform/controls/label.h"
#include "platform/controls/list_box.h"
#include "platform/controls/month_view.h"
#include "platform/controls/option_button.h"
#include "platform/controls/tab_pages.h"
#include "platform/controls/text_box.h"
#include "platform/fault.h"

namespace zenvora::controls {
namespace {

text::Date Day(int year, int month, int day) {
    return text::DayNumber(year, month, day).value();
}

TEST(PlainCaption, HasNoMarksOfMnemonics) {
    EXPECT_EQ(PlainCaption("&Add"), "Add");
    EXPECT_EQ(PlainCaption("&Mkt R && A"), "Mkt R & A");
    EXPECT_EQ(PlainCaption("<<  Comps and Listings"), "<<  Comps and Listings");
    EXPECT_EQ(PlainCaption("x&"), "x");
}

TEST(CommandButton, IsPressedOnlyWhenItIsThereAndAvailable) {
    CommandButton button{"cmdAdd"};
    int presses = 0;
    button.OnClick([&] { ++presses; });
    button.Click();
    button.SetEnabled(false);
    button.Click();
    button.SetEnabled(true);
    button.SetVisible(false);
    button.Click();
    EXPECT_EQ(presses, 1);
}

TEST(DblClick, OfALabelAndAFrameRunsItsRuleWhereTheyAreAvailable) {
    Label label{"lblSaleDate"};
    Frame frame{"fraNonAddrFields1"};
    int ofLabel = 0;
    int ofFrame = 0;
    label.DblClick();
    frame.DblClick();
    label.OnDblClick([&] { ++ofLabel; });
    frame.OnDblClick([&] { ++ofFrame; });
    label.DblClick();
    frame.DblClick();
    label.SetEnabled(false);
    frame.SetVisible(false);
    label.DblClick();
    frame.DblClick();
    EXPECT_EQ(ofLabel, 1);
    EXPECT_EQ(ofFrame, 1);
}

TEST(TextBox, AClickRunsItsRuleWhereItIsAvailable) {
    TextBox field{"txtStreet"};
    int clicks = 0;
    field.Click();
    field.OnClick([&] { ++clicks; });
    field.Click();
    field.SetEnabled(false);
    field.Click();
    EXPECT_EQ(clicks, 1);
}

TEST(ComboBox, TakesManyEntriesAndTellsTheViewsOnce) {
    ComboBox combo{"cboCity"};
    combo.AddItem("Ashby, OH  44001");
    int told = 0;
    const Observation view = combo.Observe([&](Property property) { told += property == Property::Items; });
    combo.AddItems({"Dayton, OH  45401", "Troy, OH  45373"});
    combo.AddItems({});
    EXPECT_EQ(told, 1);
    EXPECT_EQ(combo.ListCount(), 3);
    EXPECT_EQ(combo.List(2), "Troy, OH  45373");
}

TEST(CheckBox, RunsItsRuleOnARealChangeWhicheverSideMadeIt) {
    CheckBox box{"chkAddZeroes"};
    int runs = 0;
    box.OnClick([&] { ++runs; });
    box.SetValue(CheckBox::kUnchecked);
    EXPECT_EQ(runs, 0);
    box.SetValue(CheckBox::kGrayed);
    box.Toggle();
    EXPECT_EQ(box.Value(), CheckBox::kUnchecked);
    box.Toggle();
    EXPECT_EQ(box.Value(), CheckBox::kChecked);
    EXPECT_EQ(runs, 3);
    EXPECT_THROW(box.SetValue(3), Fault);
    box.SetEnabled(false);
    box.Toggle();
    EXPECT_EQ(box.Value(), CheckBox::kChecked);
}

TEST(OptionButton, OneOfAGroupIsSet) {
    OptionButton first{"optDirToUse", 0};
    OptionButton second{"optDirToUse", 1};
    second.JoinGroupOf(first);
    std::vector<int> clicked;
    first.OnClick([&] { clicked.push_back(0); });
    second.OnClick([&] { clicked.push_back(1); });
    first.Select();
    second.Select();
    second.Select();
    EXPECT_FALSE(first.Value());
    EXPECT_TRUE(second.Value());
    EXPECT_EQ(clicked, (std::vector<int>{0, 1}));
    second.SetValue(false);
    EXPECT_FALSE(first.Value());
}

TEST(ComboBox, AChangeOfTextAndAPickRunTheirRules) {
    ComboBox combo{"cboBaseDate"};
    std::vector<std::string> log;
    combo.OnChange([&] { log.push_back("change " + combo.Text()); });
    combo.OnClick([&] { log.push_back("click " + combo.Text()); });
    combo.AddItem("6/30/2010");
    combo.AddItem("7/1/2010");
    EXPECT_EQ(combo.ListIndex(), -1);
    combo.Pick(1);
    combo.Pick(1);
    combo.SetText("x");
    EXPECT_EQ(log,
              (std::vector<std::string>{"change 7/1/2010", "click 7/1/2010", "click 7/1/2010", "change x"}));
    EXPECT_THROW(combo.Pick(2), Fault);
    combo.Clear();
    EXPECT_EQ(combo.Text(), "x");
    EXPECT_EQ(combo.ListCount(), 0);
}

TEST(ListBox, SeveralEntriesAreSelectedWhereTheDialogAllowsIt) {
    ListBox list{"lbSourceFields"};
    for (const char* text : {"a", "b", "c"})
        list.AddItem(text);
    list.SetSelected(0, true);
    list.SetSelected(2, true);
    EXPECT_FALSE(list.Selected(0)) << "one at most";
    list.SetMultiSelect(true);
    list.SetSelected(0, true);
    EXPECT_TRUE(list.Selected(0));
    EXPECT_EQ(list.ListIndex(), 2) << "the last of them";
    list.RemoveItem(2);
    EXPECT_EQ(list.ListIndex(), 0);
}

TEST(ListBox, TellsTheViewsOfARealChangeOfTheSelection) {
    ListBox list{"dirPath"};
    int runs = 0;
    const Observation view =
        list.Observe([&](Property property) { runs += property == Property::Selection; });
    list.AddItem("a");
    list.SetListIndex(0);
    list.SetListIndex(0);
    list.SetListIndex(-1);
    list.SetListIndex(-1);
    EXPECT_EQ(runs, 2);
}

TEST(TabPages, ARealChangeTellsThePageLeft) {
    TabPages tabs{"tdgViewer", {"Comps and Listings", "Calculations"}};
    std::vector<int> left;
    tabs.OnTabChange([&](int previous) { left.push_back(previous); });
    tabs.SetTab(0);
    tabs.SetTab(1);
    tabs.SetTab(0);
    EXPECT_EQ(left, (std::vector<int>{0, 1}));
    EXPECT_THROW(tabs.SetTab(2), Fault);
}

TEST(TabPages, AnUnavailablePageIsNotShown) {
    TabPages tabs{"tdgViewer", {"Comps and Listings", "Calculations"}};
    tabs.SetTabEnabled(1, false);
    tabs.SetTab(1);
    EXPECT_EQ(tabs.Tab(), 0);
    tabs.SetTabEnabled(1, true);
    tabs.SetTab(1);
    EXPECT_EQ(tabs.Tab(), 1);
}

class TwoRows final : public GridRows {
  public:
    [[nodiscard]] int RowCount() const override { return 2; }
    [[nodiscard]] std::optional<std::string> Value(int row, int column) const override {
        if (row == 1 && column == 1) return std::nullopt;
        return column == 0 ? "01/01/1900" : "9 ELM";
    }
};

TEST(Grid, ShowsValuesByTheItemsOfTheirColumn) {
    const TwoRows rows;
    Grid grid{"tdbgData"};
    grid.SetColumns({{.caption = "Date", .valueItems = {{"01/01/1900", ""}}}, {.caption = "Address"}});
    EXPECT_EQ(grid.RowCount(), 0);
    grid.SetRows(&rows);
    EXPECT_EQ(grid.RowCount(), 2);
    EXPECT_EQ(grid.Shown(0, 0), "");
    EXPECT_EQ(grid.Value(0, 0), "01/01/1900");
    EXPECT_EQ(grid.Shown(0, 1), "9 ELM");
    EXPECT_EQ(grid.Value(1, 1), std::nullopt);
    EXPECT_EQ(grid.Shown(1, 1), "");
    EXPECT_EQ(grid.Value(2, 0), std::nullopt);
}

TEST(Grid, MovingRunsItsRuleAndFollowingTheRecordsDoesNot) {
    const TwoRows rows;
    Grid grid{"tdbgData"};
    grid.SetRows(&rows);
    int moves = 0;
    grid.OnRowColChange([&] { ++moves; });
    grid.MoveTo(1, 0);
    grid.MoveTo(1, 0);
    grid.MoveTo(1, 2);
    grid.ShowCurrent(0);
    EXPECT_EQ(moves, 2);
    EXPECT_EQ(grid.Row(), 0);
    EXPECT_EQ(grid.Col(), 2);
}

TEST(MonthView, RefusesAMonthWithoutTheDay) {
    MonthView calendar{"calCalendar"};
    calendar.SetValue(Day(2010, 1, 31));
    try {
        calendar.SetMonth(2);
        ADD_FAILURE() << "there is no February 31";
    } catch (const Fault& refusal) {
        EXPECT_EQ(refusal.number, fault::kInvalidProperty);
    }
    EXPECT_EQ(calendar.Value(), Day(2010, 1, 31));
    calendar.SetMonth(3);
    EXPECT_EQ(calendar.Value(), Day(2010, 3, 31));
    calendar.SetYear(2009);
    EXPECT_EQ(calendar.Value(), Day(2009, 3, 31));
    calendar.MoveWeeks(-1);
    EXPECT_EQ(calendar.Value(), Day(2009, 3, 24));
}

TEST(MonthView, KeepsWholeDaysWithinTheLegalRange) {
    MonthView calendar{"calCalendar"};
    calendar.SetValue(Day(2010, 1, 31) + 0.75);
    EXPECT_EQ(calendar.Value(), Day(2010, 1, 31));
    EXPECT_THROW(calendar.SetValue(text::kLastDate + 1), Fault);
    EXPECT_THROW(calendar.SetValue(text::kFirstDate - 1), Fault);
}

TEST(MonthView, AClickSetsTheDayBeforeItsRuleRuns) {
    MonthView calendar{"calCalendar"};
    text::Date seen = 0;
    calendar.OnDateClick([&] { seen = calendar.Value(); });
    calendar.ClickDate(Day(2010, 6, 5));
    EXPECT_EQ(seen, Day(2010, 6, 5));
}

}  // namespace
}  // namespace zenvora::controls
