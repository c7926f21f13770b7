#include "platform/ado/detail/text_match.h"

#include <gtest/gtest.h>

namespace zenvora::ado::detail {
namespace {

TEST(SameTextRule, LeavesCaseAndBlanksAtTheEndOut) {
    EXPECT_TRUE(SameText("12 Oak St", "12 OAK ST"));
    EXPECT_TRUE(SameText("Troy  ", "troy"));
    EXPECT_TRUE(SameText("", "  "));
    EXPECT_FALSE(SameText(" Troy", "Troy"));
    EXPECT_FALSE(SameText("Troy", "Tro"));
    EXPECT_FALSE(SameText("", "a"));
    EXPECT_FALSE(SameText("O'Brien", "OBrien"));
    EXPECT_FALSE(SameText("12-A", "12A"));
}

TEST(SameTextRule, KnowsLettersBeyondAscii) {
    EXPECT_TRUE(
        SameText("MONTR\xC3\x89"
                 "AL",
                 "montr\xC3\xA9"
                 "al"));
    EXPECT_FALSE(
        SameText("Montr\xC3\xA9"
                 "al",
                 "Montreal"));
    EXPECT_TRUE(SameText("\xE4\xB8\xAD", "\xE4\xB8\xAD "));  // a character without a weight
    EXPECT_FALSE(SameText("\xE4\xB8\xAD", "\xE4\xB8\xAE"));
}

}  // namespace
}  // namespace zenvora::ado::detail
