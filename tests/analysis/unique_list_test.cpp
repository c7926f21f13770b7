#include "analysis/unique_list.h"

#include <gtest/gtest.h>

namespace zenvora::analysis {
namespace {

TEST(AddItemUnique, AddsATextOnceWhateverItsCaseAndBlanks) {
    controls::ListBox list{"cboCity"};
    for (const char* text : {" Troy ", "TROY", "troy", "Berkley", "", "   "})
        AddItemUnique(list, text);
    ASSERT_EQ(list.ListCount(), 2);
    EXPECT_EQ(list.List(0), "Troy");
    EXPECT_EQ(list.List(1), "Berkley");
}

TEST(ListHolds, ComparesTrimmedAndUpperCased) {
    controls::ListBox list{"cboCity"};
    list.AddItem(" Troy ");
    EXPECT_TRUE(ListHolds(list, "troy"));
    EXPECT_TRUE(ListHolds(list, "  TROY"));
    EXPECT_FALSE(ListHolds(list, "Tro"));
    EXPECT_FALSE(ListHolds(list, ""));
}

}  // namespace
}  // namespace zenvora::analysis
