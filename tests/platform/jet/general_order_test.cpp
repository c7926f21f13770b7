#include "platform/jet/detail/general_order.h"

#include <gtest/gtest.h>

#include "hex.h"
#include "platform/jet/database.h"

namespace zenvora::jet {
namespace {

using testing_support::FromHex;

std::string Key(std::string_view text, bool ascending = true) {
    std::string key;
    EXPECT_EQ(detail::AppendGeneralKey(text, ascending, key), 0U) << text;
    return key;
}

struct Case {
    const char* name;
    const char* text;
    const char* key;  // without the flag byte
};
class GeneralKeys : public testing::TestWithParam<Case> {};

TEST_P(GeneralKeys, AreThoseOfAccess) {
    EXPECT_EQ(Key(GetParam().text), FromHex(GetParam().key));
}

INSTANTIATE_TEST_SUITE_P(
    Texts, GeneralKeys,
    testing::Values(Case{"Word", "Tables", "6D 4A 4C 5E 51 6B 01 00"}, Case{"Lower", "ab", "4A 4C 01 00"},
                    Case{"Upper", "AB", "4A 4C 01 00"}, Case{"Empty", "", "01 00"},
                    Case{"TrailingBlanks", "ab   ", "4A 4C 01 00"}, Case{"OnlyBlanks", "   ", "01 00"},
                    Case{"Hyphen", "co-op", "4D 64 64 66 01 01 01 01 80 0F 06 82 00"},
                    Case{"AccentBehind", "n\xC3\xA9", "62 51 01 02 0E 00"},
                    Case{"AccentInFront", "\xC3\xA9n", "51 62 01 0E 00"},
                    Case{"Address", "12 Main St.", "38 3A 07 60 4A 59 62 07 6B 6D 1C 01 00"},
                    Case{"CatalogName", "Databases", "4F 4A 6D 4A 4C 4A 6B 51 6B 01 00"},
                    Case{"SharpS", "\xC3\x9F", "6B 6B 01 00"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(GeneralOrder, DescendingKeysAreInvertedAndEndInAPlainZero) {
    EXPECT_EQ(Key("ab", false), FromHex("B5 B3 FE FF 00"));
}

TEST(GeneralOrder, TellsACharacterWithoutAWeight) {
    std::string key;
    EXPECT_EQ(detail::AppendGeneralKey("a\xE6\x97\xA5", true, key), U'\u65E5');
}

TEST(GeneralOrder, LooksAtTheFirst255Characters) {
    EXPECT_EQ(Key(std::string(255, 'a') + "b"), Key(std::string(255, 'a') + "c"));
}

TEST(GeneralOrder, PunctuationComesBeforeDigitsAndDigitsBeforeLetters) {
    EXPECT_LT(CompareGeneral("#1", "1"), 0);
    EXPECT_LT(CompareGeneral("9", "A"), 0);
    EXPECT_EQ(CompareGeneral("12 Oak St", "12 OAK ST  "), 0);
    EXPECT_LT(CompareGeneral("coop", "co-op"), 0);
    EXPECT_LT(CompareGeneral("co-op", "cooq"), 0);
}

TEST(GeneralOrder, EqualityKnowsCaseAndTrailingBlanksOnly) {
    EXPECT_TRUE(detail::EqualsGeneral("oak", "OAK "));
    EXPECT_FALSE(detail::EqualsGeneral("coop", "co-op"));
    EXPECT_FALSE(detail::EqualsGeneral("resume", "r\xC3\xA9sum\xC3\xA9"));
}

}  // namespace
}  // namespace zenvora::jet
