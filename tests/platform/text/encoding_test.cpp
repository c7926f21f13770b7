#include "platform/text/encoding.h"

#include <gtest/gtest.h>

namespace zenvora::text {
namespace {

TEST(Decode, ReadsValidUtf8AsUtf8) {
    const Decoded decoded = Decode("Ca\xC3\xB1on");
    EXPECT_EQ(decoded.text, "Ca\xC3\xB1on");
    EXPECT_EQ(decoded.encoding, Encoding::Utf8);
}

TEST(Decode, ReadsAllElseAsWindows1252) {
    const Decoded decoded = Decode("Ca\xF1on \x80 5");
    EXPECT_EQ(decoded.text, "Ca\xC3\xB1on \xE2\x82\xAC 5");
    EXPECT_EQ(decoded.encoding, Encoding::Windows1252);
}

TEST(Decode, DropsAByteOrderMark) {
    EXPECT_EQ(Decode("\xEF\xBB\xBF"
                     "a")
                  .text,
              "a");
    EXPECT_EQ(Decode("\xEF\xBB\xBF").text, "");
    EXPECT_EQ(Decode("\xEF\xBB\xBF"
                     "a\xE9")
                  .text,
              "a\xC3\xA9");
}

TEST(Decode, OfNothingIsEmptyUtf8) {
    EXPECT_EQ(Decode("").text, "");
    EXPECT_EQ(Decode("").encoding, Encoding::Utf8);
}

TEST(Windows1252, HasItsQuotesAndDashes) {
    EXPECT_EQ(FromWindows1252("\x91\x92\x93\x94\x96\x97"),
              "\xE2\x80\x98\xE2\x80\x99\xE2\x80\x9C\xE2\x80\x9D\xE2\x80\x93\xE2\x80\x94");
}

TEST(Windows1252, ReadsItsFiveUnassignedBytesAsControls) {
    EXPECT_EQ(FromWindows1252("\x81\x8D\x8F\x90\x9D"), "\xC2\x81\xC2\x8D\xC2\x8F\xC2\x90\xC2\x9D");
}

TEST(Windows1252, EveryByteComesBack) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) {
        all.push_back(static_cast<char>(byte));
    }
    const std::string text = FromWindows1252(all);
    EXPECT_TRUE(FitsWindows1252(text));
    EXPECT_EQ(Encode(text, Encoding::Windows1252), all);
}

TEST(Windows1252, PutsAQuestionMarkForWhatItLacks) {
    EXPECT_EQ(Encode("a\xCE\xB1\xC2\x80"
                     "b",
                     Encoding::Windows1252),
              "a??b");
    EXPECT_FALSE(FitsWindows1252("\xCE\xB1"));
    EXPECT_FALSE(FitsWindows1252("\xC2\x80"));
    EXPECT_FALSE(FitsWindows1252("\xFF"));
}

TEST(Encode, LeavesUtf8AsItIs) {
    EXPECT_EQ(Encode("\xCE\xB1", Encoding::Utf8), "\xCE\xB1");
}

}  // namespace
}  // namespace zenvora::text
