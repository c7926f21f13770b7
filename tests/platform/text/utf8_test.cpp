#include "platform/text/utf8.h"

#include <gtest/gtest.h>

namespace zenvora::text {
namespace {

TEST(Utf8Length, CountsCharactersAndNotBytes) {
    EXPECT_EQ(Length(""), 0U);
    EXPECT_EQ(Length("Oak St"), 6U);
    EXPECT_EQ(Length("Ca\xC3\xB1on"), 5U);
    EXPECT_EQ(Length("\xE2\x82\xAC\xF0\x9F\x8F\xA0"), 2U);
    EXPECT_EQ(Length("12345678\xC3\xA9"
                     "12345678"),
              17U);
}

TEST(Utf8Length, CountsAnInvalidByteAsOneCharacter) {
    EXPECT_EQ(Length("a\xFF"
                     "b"),
              3U);
    EXPECT_EQ(Length("\xC3"), 1U);
    EXPECT_EQ(Length("\xE2\x82"), 2U);
    EXPECT_EQ(Length("\xC0\x80"), 2U);
}

TEST(Utf8Parts, AreCutBetweenCharacters) {
    const std::string text = "Ca\xC3\xB1on Rd";
    EXPECT_EQ(Left(text, 3), "Ca\xC3\xB1");
    EXPECT_EQ(Left(text, 0), "");
    EXPECT_EQ(Left(text, 99), text);
    EXPECT_EQ(Right(text, 6), "\xC3\xB1on Rd");
    EXPECT_EQ(Right(text, 0), "");
    EXPECT_EQ(Right(text, 99), text);
    EXPECT_EQ(Mid(text, 3, 1), "\xC3\xB1");
    EXPECT_EQ(Mid(text, 4), "on Rd");
    EXPECT_EQ(Mid(text, 1, 2), "Ca");
    EXPECT_EQ(Mid(text, 99), "");
    EXPECT_EQ(Mid(text, 8, 99), "d");
}

TEST(Utf8Parts, KeepInvalidBytes) {
    EXPECT_EQ(Left("\xFF\xFE"
                   "a",
                   2),
              "\xFF\xFE");
    EXPECT_EQ(Mid("\xFF\xFE"
                  "a",
                  2, 1),
              "\xFE");
}

TEST(Trim, TakesBlanksAndNothingElse) {
    EXPECT_EQ(Trim("  a b  "), "a b");
    EXPECT_EQ(Trim("\t a\t "), "\t a\t");
    EXPECT_EQ(Trim("\xC2\xA0"
                   "a"),
              "\xC2\xA0"
              "a");
    EXPECT_EQ(Trim("   "), "");
    EXPECT_EQ(TrimView(""), "");
}

struct Folding {
    const char* name;
    const char* lower;
    const char* upper;
};
class CaseFolding : public testing::TestWithParam<Folding> {};

TEST_P(CaseFolding, GoesBothWays) {
    const Folding& c = GetParam();
    EXPECT_EQ(Upper(c.lower), c.upper);
    EXPECT_EQ(Lower(c.upper), c.lower);
    EXPECT_EQ(Upper(c.upper), c.upper);
    EXPECT_EQ(Lower(c.lower), c.lower);
    EXPECT_TRUE(EqualsNoCase(c.lower, c.upper));
}

INSTANTIATE_TEST_SUITE_P(
    Blocks, CaseFolding,
    testing::Values(Folding{"Ascii", "abcxyz 09[]{}@`", "ABCXYZ 09[]{}@`"},
                    Folding{"Latin1", "\xC3\xA0\xC3\xB6\xC3\xB8\xC3\xBE", "\xC3\x80\xC3\x96\xC3\x98\xC3\x9E"},
                    Folding{"YDiaeresis", "\xC3\xBF", "\xC5\xB8"},
                    Folding{"LatinAEven", "\xC4\x81\xC4\xAF", "\xC4\x80\xC4\xAE"},
                    Folding{"LatinAOdd", "\xC4\xBA\xC5\x88", "\xC4\xB9\xC5\x87"},
                    Folding{"LatinACarons", "\xC5\xA1\xC5\xBE", "\xC5\xA0\xC5\xBD"},
                    Folding{"Greek", "\xCE\xB1\xCF\x89\xCE\xAC\xCF\x8C\xCF\x8E",
                            "\xCE\x91\xCE\xA9\xCE\x86\xCE\x8C\xCE\x8F"},
                    Folding{"Cyrillic", "\xD0\xB0\xD1\x8F\xD1\x91\xD1\x9F",
                            "\xD0\x90\xD0\xAF\xD0\x81\xD0\x8F"},
                    Folding{"CyrillicPairs", "\xD2\x91\xD3\x8F\xD3\x82", "\xD2\x90\xD3\x80\xD3\x81"}),
    [](const auto& info) { return info.param.name; });

TEST(CaseFolding, LeavesLettersWithoutASinglePartner) {
    // times, division, sharp s, micro, dotless i, kra, long s, euro, invalid byte
    const std::string kept = "\xC3\x97\xC3\xB7\xC3\x9F\xC2\xB5\xC4\xB1\xC4\xB8\xC5\xBF\xE2\x82\xAC\xFF";
    EXPECT_EQ(Upper(kept), kept);
    EXPECT_EQ(Lower(kept), kept);
}

TEST(CaseFolding, TakesTheFinalSigmaUp) {
    EXPECT_EQ(Upper("\xCF\x82"), "\xCE\xA3");
    EXPECT_TRUE(EqualsNoCase("\xCF\x82", "\xCF\x83"));
}

TEST(CaseFolding, LowerAndUpperAreInverseOnEveryCharacter) {
    for (char32_t c = 1; c < 0x3000; ++c) {
        std::string text;
        AppendCharacter(text, c);
        if (Lower(text) != text) {
            ASSERT_EQ(Upper(Lower(text)), text) << static_cast<unsigned>(c);
        }
        ASSERT_EQ(Upper(Upper(text)), Upper(text)) << static_cast<unsigned>(c);
        ASSERT_EQ(Upper(text).size(), text.size()) << static_cast<unsigned>(c);
    }
}

TEST(EqualsNoCase, TellsTextsApart) {
    EXPECT_TRUE(EqualsNoCase("12 Oak St", "12 OAK ST"));
    EXPECT_FALSE(EqualsNoCase("12 Oak St", "12 Oak Rd"));
    EXPECT_FALSE(EqualsNoCase("a", "ab"));
    EXPECT_FALSE(EqualsNoCase("\xC3\xA9", "e\xCC"));
    EXPECT_FALSE(EqualsNoCase("\xFF", "\xFE"));
    EXPECT_TRUE(EqualsNoCase("\xFF", "\xFF"));
    EXPECT_TRUE(EqualsNoCase("", ""));
}

struct Bytes {
    const char* name;
    const char* bytes;
    bool valid;
};
class Utf8Validity : public testing::TestWithParam<Bytes> {};

TEST_P(Utf8Validity, IsSeen) {
    EXPECT_EQ(IsUtf8(GetParam().bytes), GetParam().valid);
}

INSTANTIATE_TEST_SUITE_P(
    Sequences, Utf8Validity,
    testing::Values(Bytes{"Empty", "", true}, Bytes{"Ascii", "12 Oak Street", true},
                    Bytes{"Two", "\xC2\x80\xDF\xBF", true}, Bytes{"Three", "\xE0\xA0\x80\xEF\xBF\xBF", true},
                    Bytes{"BelowSurrogates", "\xED\x9F\xBF", true},
                    Bytes{"Four", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", true},
                    Bytes{"LoneContinuation", "\x80", false}, Bytes{"CutShort", "abc\xC3", false},
                    Bytes{"CutShortThree", "\xE2\x82", false}, Bytes{"OverlongTwo", "\xC0\x80", false},
                    Bytes{"OverlongSlash", "\xC1\xAF", false}, Bytes{"OverlongThree", "\xE0\x9F\xBF", false},
                    Bytes{"OverlongFour", "\xF0\x8F\xBF\xBF", false},
                    Bytes{"Surrogate", "\xED\xA0\x80", false},
                    Bytes{"AboveTheEnd", "\xF4\x90\x80\x80", false}, Bytes{"FF", "\xFF", false},
                    Bytes{"Windows1252", "caf\xE9 au lait", false}),
    [](const auto& info) { return info.param.name; });

TEST(Utf16, GoesThereAndBackForEveryCharacter) {
    for (char32_t c = 1; c <= 0x10FFFF; c += c < 0x11000 ? 1 : 37) {
        if (c >= 0xD800 && c <= 0xDFFF) continue;
        std::string text;
        AppendCharacter(text, c);
        ASSERT_TRUE(IsUtf8(text)) << static_cast<unsigned>(c);
        ASSERT_EQ(FromUtf16(ToUtf16(text)), text) << static_cast<unsigned>(c);
        std::size_t at = 0;
        ASSERT_EQ(NextCharacter(text, at), c);
        ASSERT_EQ(at, text.size());
    }
}

TEST(Utf16, ReplacesWhatIsNoCharacter) {
    EXPECT_EQ(FromUtf16(std::u16string{u'a', char16_t{0xD800}, u'b'}),
              "a\xEF\xBF\xBD"
              "b");
    EXPECT_EQ(FromUtf16(std::u16string{char16_t{0xDC00}}), "\xEF\xBF\xBD");
    EXPECT_EQ(FromUtf16(std::u16string{char16_t{0xDBFF}}), "\xEF\xBF\xBD");
    EXPECT_EQ(ToUtf16("\xFF"), std::u16string(1, char16_t{0xFFFD}));
    EXPECT_EQ(ToUtf16("\xF0\x9F\x8F\xA0"), (std::u16string{char16_t{0xD83C}, char16_t{0xDFE0}}));
}

TEST(AppendCharacter, ReplacesSurrogatesAndWhatLiesAboveTheEnd) {
    std::string text;
    AppendCharacter(text, 0xD800);
    AppendCharacter(text, 0x110000);
    EXPECT_EQ(text, "\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(ReplaceAll, GoesLeftToRightAndNeverLooksAtAReplacementAgain) {
    EXPECT_EQ(ReplaceAll("O'Brien's", "'", "''"), "O''Brien''s");
    EXPECT_EQ(ReplaceAll("aaa", "aa", "a"), "aa");
    EXPECT_EQ(ReplaceAll("abc", "b", ""), "ac");
    EXPECT_EQ(ReplaceAll("abc", "x", "y"), "abc");
    EXPECT_EQ(ReplaceAll("abc", "", "y"), "abc");
    EXPECT_EQ(ReplaceAll("", "a", "y"), "");
}

}  // namespace
}  // namespace zenvora::text
