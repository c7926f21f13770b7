#include "platform/jet/detail/general_order_97.h"

#include <gtest/gtest.h>

#include "hex.h"

namespace zenvora::jet::detail {
namespace {

using jet::testing_support::FromHex;

std::string Key(std::string_view text, bool ascending = true) {
    std::string key;
    EXPECT_EQ(AppendGeneral97Key(text, ascending, key), 0U) << text;
    return key;
}

struct Case {
    const char* name;
    const char* text;
    const char* key;  // without the flag byte
};
class General97Keys : public testing::TestWithParam<Case> {};

TEST_P(General97Keys, AreThoseOfAccess97) {
    EXPECT_EQ(Key(GetParam().text), FromHex(GetParam().key));
}

INSTANTIATE_TEST_SUITE_P(
    Texts, General97Keys,
    testing::Values(Case{"Lower", "ab", "60 61 00"}, Case{"Upper", "AB", "60 61 00"}, Case{"Empty", "", "00"},
                    Case{"OnlyBlanks", "  ", "00"}, Case{"TrailingBlanks", "ab  ", "60 61 00"},
                    Case{"Address", "12 Oak St.", "57 58 11 72 60 6C 11 76 77 1F 00"},
                    Case{"Hyphen", "co-op", "62 72 1E 72 73 00"},
                    Case{"AccentBehindABaseLetter", "n\xC3\xA9", "70 66 02 40"},
                    Case{"AccentInFront", "\xC3\xA9n", "66 70 04 00"},
                    Case{"LettersThatBearNoAccentTakeNoPlace", "br\xC3\xA9ton", "61 75 66 77 72 70 04 00"},
                    Case{"TwoAccents", "\xC3\xA9t\xC3\xA9", "66 77 66 04 40"},
                    Case{"ABaseLetterBetweenTwoAccents", "\xC3\xA9n\xC3\xA9", "66 70 66 04 24 00"},
                    Case{"SharpSStandsForTwoLetters", "\xC3\x9F\xC3\xA9", "76 76 66 02 24 00"},
                    Case{"AeStandsForTwoLetters", "\xC3\xA6", "60 66 00"},
                    Case{"OeStandsForTwoLetters", "\xC5\x93", "72 66 00"},
                    Case{"SWithCaron", "\xC5\xA1", "76 0A 00"}, Case{"Euro", "\xE2\x82\xAC", "10 00"},
                    Case{"Oslash", "\xC3\x98", "81 00"}, Case{"NoBreakSpace", "\xC2\xA0", "11 00"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(General97Order, DescendingKeysAreInvertedWhole) {
    EXPECT_EQ(Key("ab", false), FromHex("9F 9E FF"));
    EXPECT_EQ(Key("n\xC3\xA9", false), FromHex("8F 99 FD BF"));
}

TEST(General97Order, LooksAtTheFirst255Characters) {
    EXPECT_EQ(Key(std::string(255, 'a') + "b"), Key(std::string(255, 'a')));
    EXPECT_NE(Key(std::string(254, 'a') + "b"), Key(std::string(254, 'a')));
}

TEST(General97Order, AppendsBehindWhatIsThere) {
    std::string key = FromHex("7F");
    EXPECT_EQ(AppendGeneral97Key("a", false, key), 0U);
    EXPECT_EQ(key, FromHex("7F 9F FF"));
}

TEST(General97Order, TellsACharacterThatTheCodePageLacks) {
    std::string key;
    EXPECT_EQ(AppendGeneral97Key("a\xE6\x97\xA5", true, key), U'\u65E5');
}

}  // namespace
}  // namespace zenvora::jet::detail
