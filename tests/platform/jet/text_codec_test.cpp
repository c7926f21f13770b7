#include "platform/jet/detail/text_codec.h"

#include <gtest/gtest.h>

#include "hex.h"
#include "platform/fault.h"

namespace zenvora::jet::detail {
namespace {

using jet::testing_support::BytesFromHex;

std::string Decoded(std::string_view hex) {
    std::string text;
    DecodeText(BytesFromHex(hex), text);
    return text;
}
std::vector<std::byte> Encoded(std::string_view text, bool compress) {
    std::vector<std::byte> bytes;
    EncodeText(text, compress, bytes);
    return bytes;
}

TEST(StoredText, ReadsPlainAndCompressed) {
    EXPECT_EQ(Decoded("7A 00"), "z");
    EXPECT_EQ(Decoded("FF FE 66 6F 6F"), "foo");
    EXPECT_EQ(Decoded("FF FE E9 74 E9"), "\xC3\xA9t\xC3\xA9");
    EXPECT_EQ(Decoded(""), "");
    EXPECT_EQ(Decoded("FF FE"), "");
}
TEST(StoredText, AZeroByteSwitchesBetweenOneAndTwoBytes) {
    EXPECT_EQ(Decoded("FF FE 61 00 E5 65 00 62"),
              "a\xE6\x97\xA5"
              "b");
}
TEST(StoredText, AnUnpairedSurrogateIsReplaced) {
    EXPECT_EQ(Decoded("00 D8 61 00"),
              "\xEF\xBF\xBD"
              "a");
}
TEST(StoredText, ReadsPairsOfSurrogates) {
    EXPECT_EQ(Decoded("3D D8 00 DE"), "\xF0\x9F\x98\x80");
}

TEST(StoredText, TwoCharactersAreNotWorthCompressing) {
    EXPECT_EQ(Encoded("ab", true), BytesFromHex("61 00 62 00"));
    EXPECT_EQ(Encoded("abc", true), BytesFromHex("FF FE 61 62 63"));
    EXPECT_EQ(Encoded("abc", false), BytesFromHex("61 00 62 00 63 00"));
}
TEST(StoredText, ACharacterBeyondLatin1KeepsATextPlain) {
    EXPECT_EQ(Encoded("ab\xE2\x82\xAC", true), BytesFromHex("61 00 62 00 AC 20"));
}
TEST(StoredText, LongTextsStayPlain) {
    EXPECT_EQ(Encoded(std::string(1024, 'x'), true).size(), 1026U);
    EXPECT_EQ(Encoded(std::string(1025, 'x'), true).size(), 2050U);
}
TEST(StoredText, DropsAByteOrderMarkWhichWouldReadAsCompression) {
    EXPECT_EQ(Encoded("\xEF\xBB\xBF"
                      "a",
                      false),
              BytesFromHex("61 00"));
}
TEST(StoredText, CountsUtf16Units) {
    EXPECT_EQ(Utf16Length("a\xC3\xA9"), 2U);
    EXPECT_EQ(Utf16Length("\xF0\x9F\x98\x80"), 2U);
}

std::string DecodedFrom(std::uint16_t codePage, std::string_view hex) {
    std::string text;
    DecodeText(BytesFromHex(hex), codePage, text);
    return text;
}

TEST(StoredText, OfAccess97HasOneByteACharacter) {
    EXPECT_EQ(DecodedFrom(1252, "7A"), "z");
    EXPECT_EQ(DecodedFrom(1252, "43 61 66 E9 20 80"), "Caf\xC3\xA9 \xE2\x82\xAC");
    EXPECT_EQ(DecodedFrom(1252, "FF FE"), "\xC3\xBF\xC3\xBE");  // no mark of compression
    EXPECT_EQ(DecodedFrom(1252, ""), "");
}
TEST(StoredText, KeepsTheBytesThatTheCodePageLeavesUnassigned) {
    EXPECT_EQ(DecodedFrom(1252, "81 9D"), "\xC2\x81\xC2\x9D");
}
TEST(StoredText, OfAnotherCodePageIsReadWhereItIsAscii) {
    EXPECT_EQ(DecodedFrom(1251, "4D 53 79 73"), "MSys");
    try {
        static_cast<void>(DecodedFrom(1251, "4D E9"));
        FAIL();
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.number, fault::kUnsupported);
        EXPECT_NE(fault.description.find("1251"), std::string::npos) << fault.description;
    }
}
TEST(StoredText, WithoutACodePageIsUtf16) {
    EXPECT_EQ(DecodedFrom(0, "7A 00"), "z");
}

}  // namespace
}  // namespace zenvora::jet::detail
