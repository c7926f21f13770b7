#include "platform/controls/list_box.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "platform/controls/control_array.h"
#include "platform/controls/text_box.h"

namespace zenvora::controls {
namespace {

std::vector<std::string> Entries(const ListControl& list) {
    std::vector<std::string> entries;
    for (int index = 0; index < list.ListCount(); ++index)
        entries.push_back(list.List(index));
    return entries;
}

TEST(ListBox, KeepsTheOrderOfAdding) {
    ListBox list{"lbMappings"};
    list.AddItem("b");
    list.AddItem("a");
    list.AddItem("c", 1);
    list.AddItem("d", 3);
    EXPECT_EQ(Entries(list), (std::vector<std::string>{"b", "c", "a", "d"}));
    list.RemoveItem(0);
    EXPECT_EQ(Entries(list), (std::vector<std::string>{"c", "a", "d"}));
    list.Clear();
    EXPECT_EQ(list.ListCount(), 0);
}

TEST(ListBox, FaultsBeyondItsEntries) {
    ListBox list{"lbMappings"};
    list.AddItem("a");
    for (const int place : {-1, 1}) {
        EXPECT_THROW(static_cast<void>(list.List(place)), Fault);
        EXPECT_THROW(list.RemoveItem(place), Fault);
    }
    EXPECT_THROW(list.AddItem("b", 2), Fault);
    EXPECT_THROW(list.SetListIndex(1), Fault);
    EXPECT_EQ(Entries(list), (std::vector<std::string>{"a"}));
}

TEST(ListBox, SelectionMovesWithItsEntryAndIsLostWithIt) {
    ListBox list{"lbMappings"};
    for (const char* text : {"a", "b", "c"})
        list.AddItem(text);
    EXPECT_EQ(list.ListIndex(), -1);
    list.SetListIndex(1);
    list.AddItem("front", 0);
    EXPECT_EQ(list.ListIndex(), 2);
    list.RemoveItem(3);
    EXPECT_EQ(list.ListIndex(), 2);
    list.RemoveItem(0);
    EXPECT_EQ(list.ListIndex(), 1);
    list.RemoveItem(1);
    EXPECT_EQ(list.ListIndex(), -1);
    list.SetListIndex(0);
    list.Clear();
    EXPECT_EQ(list.ListIndex(), -1);
}

TEST(ListBox, TellsItsViewsOfEntriesAndSelection) {
    ListBox list{"lbMappings"};
    std::vector<Property> told;
    const Observation view = list.Observe([&](Property property) { told.push_back(property); });
    list.Clear();
    list.AddItem("a");
    list.SetListIndex(0);
    list.SetListIndex(0);
    list.RemoveItem(0);
    EXPECT_EQ(told, (std::vector<Property>{Property::Items, Property::Selection, Property::Items}));
}

TEST(ControlArray, TellsItsElementsApartByIndex) {
    ControlArray<TextBox> cells{"txtTotalC", 3};
    EXPECT_EQ(cells.Count(), 3);
    EXPECT_EQ(cells.Name(), "txtTotalC");
    EXPECT_EQ(cells[2].Name(), "txtTotalC");
    EXPECT_EQ(cells[2].Index(), 2);
    cells[1].SetText("4");
    EXPECT_EQ(cells[0].Text(), "");
    EXPECT_EQ(cells[1].Text(), "4");
    EXPECT_THROW(static_cast<void>(cells[3]), Fault);
    EXPECT_THROW(static_cast<void>(cells[-1]), Fault);
}

TEST(ControlArray, ItsChangeRuleIsToldTheIndex) {
    ControlArray<TextBox> cells{"txtTotalC", 3};
    std::vector<int> changed;
    cells.OnChange([&](int index) { changed.push_back(index); });
    cells[2].SetText("1");
    cells[0].SetText("1");
    cells[0].SetText("1");
    EXPECT_EQ(changed, (std::vector<int>{2, 0}));
}

}  // namespace
}  // namespace zenvora::controls
