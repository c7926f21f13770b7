#include "analysis/selected_flag.h"

#include <gtest/gtest.h>

namespace zenvora::analysis {
namespace {

struct Case {
    const char* name;
    const char* flag;
    bool usable;
    bool counted;
};

class SelectedFlag : public testing::TestWithParam<Case> {};

TEST_P(SelectedFlag, SaysWhetherARecordTakesPart) {
    EXPECT_EQ(IsSelectedUsable(std::string_view{GetParam().flag}), GetParam().usable);
    EXPECT_EQ(IsSelectedCounted(GetParam().flag), GetParam().counted);
}

INSTANTIATE_TEST_SUITE_P(
    Flags, SelectedFlag,
    testing::Values(Case{"Invalid", "0", true, false}, Case{"Valid", "1", true, true},
                    Case{"Excluded", "2", true, false}, Case{"Included", "3", true, true},
                    Case{"AboveThree", "4", false, false}, Case{"Nine", "9", false, false},
                    Case{"BelowZero", "-1", false, false}, Case{"Empty", "", false, false},
                    Case{"NoNumber", "Y", false, false}, Case{"JustAboveThree", "3.1", false, false},
                    Case{"InBlanks", " 1 ", true, true}, Case{"Blank", " ", false, false}),
    [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace zenvora::analysis
