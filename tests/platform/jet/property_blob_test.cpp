#include "platform/jet/detail/property_blob.h"

#include <gtest/gtest.h>

#include "hex.h"

namespace zenvora::jet::detail {
namespace {

using jet::testing_support::BytesFromHex;

// Of the catalog entry MSysDb in a file of Access 2000.
std::vector<std::byte> AccessBlob() {
    return BytesFromHex(
        "4D 52 32 00 2E 00 00 00 80 00 1A 00 41 00 63 00 63 00 65 00 73 00 73 00 56 00 65 00 72 00 73 00 69 "
        "00 6F 00 6E 00"
        "0A 00 42 00 75 00 69 00 6C 00 64 00 2A 00 00 00 00 00 06 00 00 00 00 00 12 00 00 0A 00 00 0A 00"
        "30 00 38 00 2E 00 35 00 30 00 0C 00 00 04 01 00 04 00 DC 19 00 00");
}

TEST(Properties, AreKeptByteForByte) {
    const std::vector<std::byte> bytes = AccessBlob();
    ASSERT_EQ(bytes.size(), 92U);
    const PropertyBlob blob(bytes);
    EXPECT_FALSE(blob.Broken());
    EXPECT_EQ(blob.Bytes(), bytes);
}

TEST(Properties, NewOnesStandBehindThoseThatAreThere) {
    PropertyBlob blob(AccessBlob());
    blob.SetDefault("Price", "0");
    blob.SetRequired("Price", true);
    blob.SetAllowZeroLength("Street", false);
    const PropertyBlob read(blob.Bytes());
    ASSERT_FALSE(read.Broken());
    EXPECT_EQ(read.Of("PRICE").defaultValue, "0");
    EXPECT_TRUE(read.Of("price").required);
    EXPECT_FALSE(read.Of("Street").allowZeroLength);
    EXPECT_TRUE(read.Of("Price").allowZeroLength);
    // Names and object properties of before are still at their places.
    const auto old = AccessBlob();
    const auto now = blob.Bytes();
    EXPECT_TRUE(std::equal(old.begin() + 10, old.begin() + 50, now.begin() + 10));
    EXPECT_NE(std::search(now.begin(), now.end(), old.begin() + 50, old.end()), now.end());
}

TEST(Properties, ALaterValueReplacesTheEarlier) {
    PropertyBlob blob;
    blob.SetDefault("A", "1");
    blob.SetDefault("A", "2");
    EXPECT_EQ(PropertyBlob(blob.Bytes()).Of("A").defaultValue, "2");
}

TEST(Properties, OfAnUnknownFormAreKeptAndNotUsed) {
    const auto bytes = BytesFromHex("4B 4B 44 00 01 02 03");
    const PropertyBlob blob(bytes);
    EXPECT_TRUE(blob.Broken());
    EXPECT_EQ(blob.Bytes(), bytes);
    EXPECT_FALSE(blob.Of("A").required);
}

TEST(Properties, CutOffAnywhereAreBrokenButNeverACrash) {
    PropertyBlob full(AccessBlob());
    full.SetDefault("Price", "0");
    const auto bytes = full.Bytes();
    for (std::size_t size = 5; size < bytes.size(); ++size) {
        const PropertyBlob cut(std::span<const std::byte>(bytes.data(), size));
        // Whole chunks in front of the cut are a blob of their own; anything else is kept as it is.
        EXPECT_EQ(cut.Bytes(),
                  std::vector<std::byte>(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size)));
    }
}

// One byte a character: the names DefaultValue and Required; for column "Prix" (with an accent) both.
std::vector<std::byte> Access97Blob() {
    return BytesFromHex(
        "4B 4B 44 00"
        "1E 00 00 00 80 00"
        "0C 00 44 65 66 61 75 6C 74 56 61 6C 75 65"  // DefaultValue
        "08 00 52 65 71 75 69 72 65 64"              // Required
        "27 00 00 00 01 00"
        "0A 00 00 00 04 00 50 72 69 E9"              // the head: Prié
        "0E 00 01 0C 00 00 06 00 22 E9 74 E9 30 22"  // "été0"
        "09 00 01 01 01 00 01 00 01");
}

TEST(Properties, OfAccess97HaveOneByteACharacter) {
    const auto bytes = Access97Blob();
    const PropertyBlob blob(bytes, 1252);
    ASSERT_FALSE(blob.Broken());
    EXPECT_EQ(blob.Of("Pri\xC3\xA9").defaultValue,
              "\"\xC3\xA9t\xC3\xA9"
              "0\"");
    EXPECT_TRUE(blob.Of("Pri\xC3\xA9").required);
    EXPECT_EQ(blob.Bytes(), bytes);
}

TEST(Properties, OfAccess97CanBeBroughtIntoTheNewForm) {
    const PropertyBlob wide = PropertyBlob(Access97Blob(), 1252).InUtf16();
    const auto bytes = wide.Bytes();
    EXPECT_EQ(std::vector<std::byte>(bytes.begin(), bytes.begin() + 4), BytesFromHex("4D 52 32 00"));
    const PropertyBlob read(bytes);
    ASSERT_FALSE(read.Broken());
    EXPECT_EQ(read.Of("Pri\xC3\xA9").defaultValue,
              "\"\xC3\xA9t\xC3\xA9"
              "0\"");
    EXPECT_TRUE(read.Of("Pri\xC3\xA9").required);
    EXPECT_EQ(read.InUtf16().Bytes(), bytes);
}

TEST(Properties, OfTheOtherVersionAreNotRead) {
    EXPECT_TRUE(PropertyBlob(Access97Blob()).Broken());
    EXPECT_TRUE(PropertyBlob(AccessBlob(), 1252).Broken());
}

}  // namespace
}  // namespace zenvora::jet::detail
