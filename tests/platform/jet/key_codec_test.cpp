#include "platform/jet/detail/key_codec.h"

#include <gtest/gtest.h>

#include "hex.h"
#include "platform/fault.h"

namespace zenvora::jet::detail {
namespace {

using jet::testing_support::FromHex;

std::string Key(ColumnType type, const Value& value, bool ascending = true) {
    ColumnDefinition column;
    column.name = "C";
    column.type = type;
    std::string key;
    AppendKey(column, value, ascending, key);
    return key;
}

TEST(IndexKeys, OfLongs) {
    EXPECT_EQ(Key(ColumnType::Long, 1), FromHex("7F 80 00 00 01"));
    EXPECT_EQ(Key(ColumnType::Long, 1, false), FromHex("80 7F FF FF FE"));
    EXPECT_EQ(Key(ColumnType::Long, 19, false), FromHex("80 7F FF FF EC"));
    EXPECT_EQ(Key(ColumnType::Long, 0x0F000000), FromHex("7F 8F 00 00 00"));
}
TEST(IndexKeys, OfNull) {
    EXPECT_EQ(Key(ColumnType::Long, Null{}), FromHex("00"));
    EXPECT_EQ(Key(ColumnType::Text, Null{}, false), FromHex("FF"));
}
TEST(IndexKeys, OfDates) {
    EXPECT_EQ(Key(ColumnType::DateTime, DateTime{2.0}), FromHex("7F C0 00 00 00 00 00 00 00"));
    EXPECT_LT(Key(ColumnType::DateTime, DateTime{-1.25}), Key(ColumnType::DateTime, DateTime{0.0}));
    EXPECT_LT(Key(ColumnType::DateTime, DateTime{-2.0}), Key(ColumnType::DateTime, DateTime{-1.25}));
    EXPECT_GT(Key(ColumnType::DateTime, DateTime{-2.0}, false),
              Key(ColumnType::DateTime, DateTime{-1.25}, false));
}
TEST(IndexKeys, OfBooleansWhichAreNeverNull) {
    EXPECT_EQ(Key(ColumnType::Boolean, true), FromHex("7F 00"));
    EXPECT_EQ(Key(ColumnType::Boolean, false), FromHex("7F FF"));
    EXPECT_EQ(Key(ColumnType::Boolean, true, false), FromHex("80 FF"));
    EXPECT_EQ(Key(ColumnType::Boolean, Null{}), FromHex("7F FF"));
}
TEST(IndexKeys, OfBinaryDataInGroupsOfEight) {
    Bytes nine;
    for (int i = 1; i <= 9; ++i)
        nine.push_back(static_cast<std::byte>(i));
    EXPECT_EQ(Key(ColumnType::Binary, nine),
              FromHex("7F 01 02 03 04 05 06 07 08 09 09 00 00 00 00 00 00 00 01"));
    EXPECT_EQ(Key(ColumnType::Binary, nine, false),
              FromHex("80 FE FD FC FB FA F9 F8 F7 09 F6 FF FF FF FF FF FF FF FE"));
    EXPECT_EQ(Key(ColumnType::Binary, Bytes{}), FromHex("7F"));
}
TEST(IndexKeys, OfTextsCarryTheirFlagByte) {
    EXPECT_EQ(Key(ColumnType::Text, std::string("Tables")), FromHex("7F 6D 4A 4C 5E 51 6B 01 00"));
    EXPECT_EQ(Key(ColumnType::Text, std::string("ab"), false), FromHex("80 B5 B3 FE FF 00"));
}
TEST(IndexKeys, RefuseATextThatTheOrderDoesNotKnow) {
    try {
        static_cast<void>(Key(ColumnType::Text, std::string("\xE6\x97\xA5")));
        FAIL();
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.number, fault::kUnsupported);
        EXPECT_EQ(fault.place.column, "C");
        EXPECT_NE(fault.description.find("U+65E5"), std::string::npos) << fault.description;
    }
}
TEST(IndexKeys, RowIdentitiesAreBigEndian) {
    std::string entry;
    AppendRowId({14, 1}, entry);
    EXPECT_EQ(entry, FromHex("00 00 0E 01"));
    EXPECT_EQ(RowIdOf(FromHex("7F 12 34 56 78")), (RowId{0x123456, 0x78}));
}
TEST(IndexKeys, OfOtherSortOrdersAreNotKnown) {
    ColumnDefinition column;
    column.type = ColumnType::Text;
    EXPECT_TRUE(CanEncodeKey(column));
    column.sortVersion = 1;
    EXPECT_FALSE(CanEncodeKey(column));
    column.sortVersion = 0;
    column.sortOrder = 0x0411;
    EXPECT_FALSE(CanEncodeKey(column));
}

TEST(IndexKeys, OfTextsOfAccess97FollowTheOrderOf1997) {
    ColumnDefinition column;
    column.type = ColumnType::Text;
    column.codePage = 1252;
    ASSERT_TRUE(CanEncodeKey(column));
    std::string key;
    AppendKey(column, std::string("n\xC3\xA9"), true, key);
    EXPECT_EQ(key, FromHex("7F 70 66 02 40"));
    key.clear();
    AppendKey(column, std::string("ab"), false, key);
    EXPECT_EQ(key, FromHex("80 9F 9E FF"));
    key.clear();
    AppendKey(column, Null{}, true, key);
    EXPECT_EQ(key, FromHex("00"));
}
TEST(IndexKeys, OfTextsInOtherCodePagesAreNotKnown) {
    ColumnDefinition column;
    column.type = ColumnType::Text;
    column.codePage = 1250;
    EXPECT_FALSE(CanEncodeKey(column));
}

}  // namespace
}  // namespace zenvora::jet::detail
