#include "analysis/validity_estimate.h"

#include <gtest/gtest.h>

namespace zenvora::analysis {
namespace {

TEST(ValidityTimeText, CountsAHundredRecordsASecond) {
    EXPECT_EQ(ValidityTimeText(0), "0 seconds");
    EXPECT_EQ(ValidityTimeText(99), "0 seconds");
    EXPECT_EQ(ValidityTimeText(100), "1 seconds");
    EXPECT_EQ(ValidityTimeText(150), "1 seconds");
    EXPECT_EQ(ValidityTimeText(5999), "59 seconds");
    EXPECT_EQ(ValidityTimeText(6000), "1 minute(s) 0 second(s)");
    EXPECT_EQ(ValidityTimeText(6199), "1 minute(s) 1 second(s)");
    EXPECT_EQ(ValidityTimeText(1000000), "166 minute(s) 40 second(s)");
}

}  // namespace
}  // namespace zenvora::analysis
