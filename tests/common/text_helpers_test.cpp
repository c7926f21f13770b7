#include "common/text_helpers.h"

#include <gtest/gtest.h>
#include <limits>

namespace zenvora::common {
namespace {

TEST(CkRPipe, AddsOnePipeInPlace) {
    std::string text = " <INIDIR>Zvr.ini ";
    EXPECT_EQ(CkRPipe(text), "<INIDIR>Zvr.ini|");
    EXPECT_EQ(CkRPipe(text), "<INIDIR>Zvr.ini|");
    EXPECT_EQ(text, "<INIDIR>Zvr.ini|");
    std::string blank = "  ";
    EXPECT_EQ(CkRPipe(blank), "");
    EXPECT_EQ(blank, "");
}

TEST(StripRChar, DropsOneTrailingBackslash) {
    for (const auto& [given, result] : {std::pair{" C:\\ZVR\\ ", "C:\\ZVR"},
                                        {"C:\\ZVR", "C:\\ZVR"},
                                        {"C:\\", "C:"},
                                        {"C:\\ZVR\\\\", "C:\\ZVR\\"},
                                        {"\\", ""},
                                        {"  ", ""},
                                        {"C:\\A \\", "C:\\A"}}) {
        std::string text = given;
        EXPECT_EQ(StripRChar(text), result);
        EXPECT_EQ(text, result);
    }
}

struct Split {
    const char* name;
    const char* text;
    const char* side;
    const char* delimiter;
    const char* result;
};
class FirstSplits : public testing::TestWithParam<Split> {};

TEST_P(FirstSplits, GiveTheirSide) {
    const Split& c = GetParam();
    EXPECT_EQ(SplitFirst(c.text, c.side, c.delimiter), c.result);
}

INSTANTIATE_TEST_SUITE_P(
    SplitFirst, FirstSplits,
    testing::Values(Split{"Left", "A|B|C", "L", "|", "A"}, Split{"Right", "A|B|C", "R", "|", "B|C"},
                    Split{"FirstLetterOfTheSide", "A|B", "left", "|", "A"},
                    Split{"LowerCaseSide", "A|B", "r", "|", "B"}, Split{"OtherSide", "A|B", "M", "|", ""},
                    Split{"EmptySide", "A|B", "", "|", ""},
                    Split{"LongDelimiter", "A <-> B", "R", " <-> ", "B"},
                    Split{"LongDelimiterLeft", "A <-> B", "L", " <-> ", "A"},
                    Split{"MissingLeft", "ABC", "L", "X", ""}, Split{"MissingRight", "ABC", "R", "X", ""},
                    Split{"CaseMatters", "AxB", "L", "X", ""}, Split{"AtTheFront", "|A", "L", "|", ""},
                    Split{"AtTheEnd", "A|", "R", "|", ""}, Split{"EmptyText", "", "L", "|", ""},
                    Split{"EmptyDelimiter", "AB", "R", "", ""}),
    [](const auto& info) { return info.param.name; });

class LastSplits : public testing::TestWithParam<Split> {};

TEST_P(LastSplits, GiveTheirSide) {
    const Split& c = GetParam();
    EXPECT_EQ(SplitLast(c.text, c.side, c.delimiter), c.result);
}

INSTANTIATE_TEST_SUITE_P(
    SplitLast, LastSplits,
    testing::Values(Split{"Left", "A.B.C", "L", ".", "A.B"}, Split{"Right", "A.B.C", "R", ".", "C"},
                    Split{"MissingLeft", "ABC", "L", "X", ""}, Split{"MissingRight", "ABC", "R", "X", ""},
                    Split{"AtTheEnd", "A.", "R", ".", ""}, Split{"AtTheFront", ".A", "L", ".", ""},
                    Split{"AtTheFrontRight", ".A", "R", ".", "A"}, Split{"OtherSide", "A.B", "X", ".", ""},
                    Split{"OtherCaseStandsNowhere", "AxB", "R", "X", ""},
                    Split{"LongDelimiterStandsNowhere", "A--B", "R", "--", ""},
                    Split{"WideCharacters", "\xC3\xB1-\xC3\xA9", "R", "-", "\xC3\xA9"}),
    [](const auto& info) { return info.param.name; });

TEST(TextBefore, EndsAtTheFirstDelimiterWhateverItsCase) {
    EXPECT_EQ(TextBefore("12 Oak Unit 4 unit 5", "UNIT"), "12 Oak ");
    EXPECT_EQ(TextBefore("12 Oak", "#"), "12 Oak");
    EXPECT_EQ(TextBefore("#4", "#"), "");
    EXPECT_EQ(TextBefore("abc", ""), "abc");
    EXPECT_EQ(TextBefore("\xC3\xA9xX", "\xC3\x89"), "");
}

TEST(TextBetween, LiesRightOfTheOpenAndLeftOfTheClose) {
    EXPECT_EQ(TextBetween("<TOKEN>file", "<", ">"), "TOKEN");
    EXPECT_EQ(TextBetween("a>b<c>d>", "<", ">"), "c");
    EXPECT_EQ(TextBetween("no", "<", ">"), "");
    EXPECT_EQ(TextBetween("<open", "<", ">"), "");
}

TEST(PadLeft, KeepsTheLastCharacters) {
    EXPECT_EQ(PadLeft("5", 3, "0"), "005");
    EXPECT_EQ(PadLeft(" 5 ", 3, "0"), "005");
    EXPECT_EQ(PadLeft("12345", 3, "0"), "345");
    EXPECT_EQ(PadLeft("", 2, " "), "  ");
    EXPECT_EQ(PadLeft("5", 0, "0"), "");
    EXPECT_EQ(PadLeft("\xC3\xA9", 2, "\xC3\xB1"), "\xC3\xB1\xC3\xA9");
}

TEST(IntToText, HasNoBlanks) {
    EXPECT_EQ(IntToText(0), "0");
    EXPECT_EQ(IntToText(16), "16");
    EXPECT_EQ(IntToText(-16), "-16");
    EXPECT_EQ(IntToText(std::numeric_limits<std::int64_t>::max()), "9223372036854775807");
}

TEST(RemoveCharacter, DropsItAndTheBlankBeforeItBetweenTwoBlanks) {
    EXPECT_EQ(RemoveCharacter("1,234,567", ','), "1234567");
    EXPECT_EQ(RemoveCharacter("Oak # 4", '#'), "Oak 4");
    EXPECT_EQ(RemoveCharacter("Oak #4", '#'), "Oak 4");
    EXPECT_EQ(RemoveCharacter("Oak# 4", '#'), "Oak 4");
    EXPECT_EQ(RemoveCharacter("Oak ## 4", '#'), "Oak 4");
    EXPECT_EQ(RemoveCharacter("# a #", '#'), " a ");
    EXPECT_EQ(RemoveCharacter("abc", '#'), "abc");
}

TEST(ReplaceText, IsPlain) {
    EXPECT_EQ(ReplaceText("a.b.c", ".", ", "), "a, b, c");
    EXPECT_EQ(ReplaceText("abc", "x", "y"), "abc");
    EXPECT_EQ(ReplaceText("a.  ", ".", ";"), "a;  ");
}

TEST(CleanText, BlanksWhatIsNoPlainCharacter) {
    EXPECT_EQ(CleanText("a\tb\x1F"
                        "c\x7F"
                        "d ~"),
              "a b c d ~");
    EXPECT_EQ(CleanText("Service Pack 3\r\n"), "Service Pack 3  ");
    EXPECT_EQ(CleanText("caf\xC3\xA9!"), "caf !");  // one character, one blank
    EXPECT_EQ(CleanText(std::string("a\0b", 3)), "a b");
}

TEST(IsValidState, TakesTheStatesOfItsList) {
    int states = 0;
    for (char a = 'A'; a <= 'Z'; ++a) {
        for (char b = 'A'; b <= 'Z'; ++b) {
            states += IsValidState(std::string{a, b}) ? 1 : 0;
        }
    }
    EXPECT_EQ(states, 49);  // fifty states and DC, without ME and NV
    EXPECT_TRUE(IsValidState("DC"));
    EXPECT_TRUE(IsValidState("NC"));
    EXPECT_TRUE(IsValidState("mi"));
    EXPECT_TRUE(IsValidState("WY"));
}

TEST(IsValidState, RefusesMaineAndNevada) {
    EXPECT_FALSE(IsValidState("ME"));
    EXPECT_FALSE(IsValidState("NV"));
}

TEST(IsValidState, NeedsTwoCharactersAndLooksUpTheUntrimmedText) {
    for (const char* text : {"", " ", "M", "MIC", "XX", " MI", "MI ", "M I", "A,", "12"}) {
        EXPECT_FALSE(IsValidState(text)) << "\"" << text << "\"";
    }
}

TEST(IsValidState, IsAPlainSearchThatACommaAndALetterPass) {
    EXPECT_TRUE(IsValidState(",A"));
}

}  // namespace
}  // namespace zenvora::common
