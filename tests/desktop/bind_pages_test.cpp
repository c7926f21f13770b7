// Pages, menus, bars and the calendar, both ways.

#include <gtest/gtest.h>

#include "desktop/binder_fixture.h"

namespace zenvora::desktop {
namespace {

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

}  // namespace
}  // namespace zenvora::desktop
