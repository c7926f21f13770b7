#include "platform/jet/detail/row_codec.h"

#include <gtest/gtest.h>

#include "access97_file.h"
#include "hex.h"
#include "platform/fault.h"
#include "support/memory_disk.h"

/// Rows of Access 97, whose offsets of one byte need a jump table beyond 256 bytes.
namespace zenvora::jet::detail {
namespace {

using jet::testing_support::BytesFromHex;
using jet::testing_support::ByteWriter;
using jet::testing_support::FileBytes;
using jet::testing_support::Row97;
using zenvora::testing_support::MemoryDisk;

class Row97Test : public testing::Test {
  protected:
    /// A table of variable texts, `variable` of them.
    void SetTable(std::uint16_t columns, std::uint16_t variable) {
        table_.maxColumns = columns;
        table_.variableCount = variable;
    }
    [[nodiscard]] RowShape Parse(const FileBytes& row) const { return ParseRow(pager_, 1, row, table_); }

    static ColumnDefinition Variable(std::uint16_t number, std::uint16_t index) {
        ColumnDefinition column;
        column.type = ColumnType::Text;
        column.codePage = 1252;
        column.number = number;
        column.variableIndex = index;
        return column;
    }
    static ColumnDefinition Fixed(ColumnType type, std::uint16_t number, std::uint16_t offset,
                                  std::uint16_t length) {
        ColumnDefinition column;
        column.type = type;
        column.number = number;
        column.fixedOffset = offset;
        column.byteLength = length;
        column.fixedLength = true;
        return column;
    }
    /// The text at a variable index, "(null)" for none.
    static std::string Text(const RowShape& row, std::uint16_t index) {
        const auto raw = RawField(row, Variable(index, index));
        if (!raw) return "(null)";
        std::string text;
        DecodeTextField(Variable(index, index), *raw, text);
        return text;
    }

    MemoryDisk disk_;
    Pager pager_{disk_.Open("t", files::OpenMode::CreateNew), "t", kJet3, true};
    StoredDefinition table_;
};

TEST_F(Row97Test, OfTwoTexts) {
    SetTable(2, 2);
    const FileBytes row = BytesFromHex("02 7A 79 03 02 01 02 03");
    const RowShape shape = Parse(row);
    EXPECT_EQ(shape.columnCount, 2U);
    EXPECT_EQ(shape.variableCount, 2U);
    EXPECT_EQ(Text(shape, 0), "z");
    EXPECT_EQ(Text(shape, 1), "y");
}

TEST_F(Row97Test, WithoutVariableColumnsHasNoOffsets) {
    SetTable(3, 0);
    const FileBytes row = BytesFromHex("03 2A 00 00 00 07 05");
    const RowShape shape = Parse(row);
    EXPECT_EQ(
        DecodeNumber(Fixed(ColumnType::Long, 0, 0, 4), *RawField(shape, Fixed(ColumnType::Long, 0, 0, 4))),
        42);
    EXPECT_FALSE(RawField(shape, Fixed(ColumnType::Boolean, 1, 0, 1)).has_value());
    EXPECT_EQ(U8(RawField(shape, Fixed(ColumnType::Byte, 2, 4, 1))->data()), 7U);
}

TEST_F(Row97Test, ReadsFixedTextsWithoutTheirPadding) {
    SetTable(1, 0);
    const FileBytes row = BytesFromHex("01 31 E9 20 20 01");
    const RowShape shape = Parse(row);
    EXPECT_EQ(DecodeField(
                  [] {
                      ColumnDefinition column = Fixed(ColumnType::Text, 0, 0, 4);
                      column.codePage = 1252;
                      return column;
                  }(),
                  *RawField(shape, Fixed(ColumnType::Text, 0, 0, 4))),
              Value{std::string("1\xC3\xA9")});
}

TEST_F(Row97Test, TellsNullFromEmpty) {
    SetTable(3, 3);
    const FileBytes row = BytesFromHex("03 61 02 02 02 01 03 05");  // "a", null, empty
    const RowShape shape = Parse(row);
    EXPECT_EQ(Text(shape, 0), "a");
    EXPECT_EQ(Text(shape, 1), "(null)");
    EXPECT_EQ(Text(shape, 2), "");
}

TEST_F(Row97Test, OfBeforeColumnsWereAddedHaveNullInThem) {
    SetTable(9, 4);
    const FileBytes row = BytesFromHex("02 7A 79 03 02 01 02 03");
    EXPECT_EQ(Text(Parse(row), 2), "(null)");
}

// A text of 300 and one of 10: 1 + 310 + 3 offsets + 1 jump + count + mask = 317 bytes. Index 1 is the first
// whose value begins beyond 256 (at 301, that is 2D).
TEST_F(Row97Test, BeyondAPageOfOffsetsTakesAJump) {
    SetTable(2, 2);
    const FileBytes row = ByteWriter().U8(2).Fill(300, 'a').Fill(10, 'b').Hex("37 2D 01 01 02 03");
    ASSERT_EQ(row.size(), 317U);
    const RowShape shape = Parse(row);
    EXPECT_EQ(Text(shape, 0), std::string(300, 'a'));
    EXPECT_EQ(Text(shape, 1), std::string(10, 'b'));
    EXPECT_EQ(Row97(2, {}, {FileBytes(300, std::byte{'a'}), FileBytes(10, std::byte{'b'})}, 3), row);
}

// Only the trailer lies beyond 256: the jump is there and counts for nothing.
TEST_F(Row97Test, ADummyJumpIsPassedOver) {
    SetTable(1, 1);
    const FileBytes row = ByteWriter().U8(1).Fill(252, 'c').Hex("FD 01 FF 01 01");
    ASSERT_EQ(row.size(), 258U);
    EXPECT_EQ(Text(Parse(row), 0), std::string(252, 'c'));
    // Even where its value would be that of an index.
    const FileBytes odd = ByteWriter().U8(1).Fill(252, 'c').Hex("FD 01 00 01 01");
    EXPECT_EQ(Text(Parse(odd), 0), std::string(252, 'c'));
}

// 10, 600 and 5 characters: the third begins at 611 = 2 x 256 + 63h, both jumps stand at its index.
TEST_F(Row97Test, AValueOfMoreThanTwoPagesTakesTwoJumpsAtOnce) {
    SetTable(3, 3);
    const FileBytes row =
        ByteWriter().U8(3).Fill(10, 'a').Fill(600, 'b').Fill(5, 'c').Hex("68 63 0B 01 02 02 03 07");
    ASSERT_EQ(row.size(), 624U);
    const RowShape shape = Parse(row);
    EXPECT_EQ(Text(shape, 0), std::string(10, 'a'));
    EXPECT_EQ(Text(shape, 1), std::string(600, 'b'));
    EXPECT_EQ(Text(shape, 2), std::string(5, 'c'));
}

// Two times 300: at 301 (2D) and to 601 (59); jump 0, nearest to the count, at index 1, jump 1 at the end.
TEST_F(Row97Test, JumpsStandInReverse) {
    SetTable(2, 2);
    const FileBytes row = ByteWriter().U8(2).Fill(300, 'a').Fill(300, 'b').Hex("59 2D 01 02 01 02 03");
    ASSERT_EQ(row.size(), 608U);
    const RowShape shape = Parse(row);
    EXPECT_EQ(Text(shape, 0), std::string(300, 'a'));
    EXPECT_EQ(Text(shape, 1), std::string(300, 'b'));
}

TEST_F(Row97Test, OfEverySizeGiveBackTheirValues) {
    SetTable(5, 4);
    for (std::size_t size = 0; size < 1990; size += 7) {
        for (const std::size_t share : {std::size_t{0}, size / 3, size}) {
            const FileBytes first(share, std::byte{'x'});
            const FileBytes last(size - share, std::byte{'y'});
            const FileBytes row = Row97(5, FileBytes(2, std::byte{9}),
                                        {first, std::nullopt, last, FileBytes(1, std::byte{'z'})}, 0x1B);
            const RowShape shape = Parse(row);
            ASSERT_EQ(Text(shape, 0), std::string(share, 'x')) << size;
            const auto middle = RawField(shape, Variable(3, 2));
            ASSERT_TRUE(middle.has_value());
            ASSERT_EQ(middle->size(), size - share);
            const auto end = RawField(shape, Variable(4, 3));
            ASSERT_TRUE(end.has_value());
            ASSERT_EQ(end->size(), 1U);
            ASSERT_EQ(U8(end->data()), unsigned{'z'});
        }
    }
}

TEST_F(Row97Test, ThatClaimTooMuchAreDamage) {
    SetTable(2, 2);
    for (const char* const hex : {"", "02", "00 01", "03 7A 79 03 02 01 02 03", "02 7A 79 03 02 01 03 03",
                                  "02 01 02 03", "02 02 03"}) {
        const FileBytes row = BytesFromHex(hex);
        try {
            static_cast<void>(Parse(row));
            ADD_FAILURE() << hex;
        } catch (const Fault& fault) {
            EXPECT_EQ(fault.number, fault::kDamaged);
            EXPECT_EQ(fault.place.page, 1);
        }
    }
}

}  // namespace
}  // namespace zenvora::jet::detail
