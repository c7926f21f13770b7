// Lists and combo boxes, both ways.

#include <gtest/gtest.h>

#include "desktop/binder_fixture.h"

namespace zenvora::desktop {
namespace {

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
    const controls::Observation view = form.lstOne.Observe(
        [&](controls::Property property) { selects += property == controls::Property::Selection; });
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

}  // namespace
}  // namespace zenvora::desktop
