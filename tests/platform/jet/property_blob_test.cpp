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

}  // namespace
}  // namespace zenvora::jet::detail
