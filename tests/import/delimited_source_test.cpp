#include "import/delimited_source.h"

#include <gtest/gtest.h>

#include "grid_text.h"

namespace zenvora::importing {
namespace {

using testing_support::CellsOf;
using testing_support::FaultOf;
using Cells = std::vector<testing_support::Row>;

struct Source {
    SourceGrid grid;
    DelimitedFormat format;
    std::vector<std::uint32_t> lines;
};

Source Parsed(std::string_view text, bool headerRow = true) {
    Source source;
    ParseDelimitedText(text, "L.CSV", headerRow, source.grid, source.format, source.lines);
    return source;
}

TEST(DelimitedSource, ReadsNamesAndRows) {
    const Source source = Parsed("Address|Price\n12 Oak St|5\n9 Elm St|6");
    EXPECT_EQ(CellsOf(source.grid),
              (Cells{{"", "Address", "Price"}, {"", "12 Oak St", "5"}, {"", "9 Elm St", "6"}}));
    EXPECT_EQ(source.format.Delimiter, '|');
    EXPECT_EQ(source.lines, (std::vector<std::uint32_t>{1, 2, 3}));
}

TEST(DelimitedSource, EndsInABlankRowAfterALastLineBreak) {
    EXPECT_EQ(CellsOf(Parsed("a,b\n1,2\n").grid), (Cells{{"", "a", "b"}, {"", "1", "2"}, {"", "", ""}}));
}

TEST(DelimitedSource, GivesABlankLineARow) {
    const Source source = Parsed("a,b\n\n1,2");
    EXPECT_EQ(CellsOf(source.grid), (Cells{{"", "a", "b"}, {"", "", ""}, {"", "1", "2"}}));
    EXPECT_EQ(source.lines, (std::vector<std::uint32_t>{1, 2, 3}));
}

TEST(DelimitedSource, HasOneBlankRowBehindAHeaderAlone) {
    EXPECT_EQ(CellsOf(Parsed("a,b").grid), (Cells{{"", "a", "b"}, {"", "", ""}}));
    EXPECT_EQ(CellsOf(Parsed("").grid), (Cells{{""}, {""}}));
}

TEST(DelimitedSource, LooksForTheSeparatorInTheFirstLineOnly) {
    EXPECT_EQ(CellsOf(Parsed("a;b,c\n1,2,3;4").grid), (Cells{{"", "a", "b,c"}, {"", "1,2,3", "4"}}));
}

TEST(DelimitedSource, KeepsAFirstLineWithoutSeparatorWhole) {
    const Source source = Parsed("Street Address\n12 Oak St, Troy");
    EXPECT_EQ(CellsOf(source.grid), (Cells{{"", "Street Address"}, {"", "12 Oak St, Troy"}}));
    EXPECT_EQ(source.format.Delimiter, ';');
}

TEST(DelimitedSource, DropsStrayQuotesOfEachLine) {
    EXPECT_EQ(CellsOf(Parsed("Item,N\n12\" TV,5\n1\" bolt,6").grid),
              (Cells{{"", "Item", "N"}, {"", "12 TV", "5"}, {"", "1 bolt", "6"}}));
}

TEST(DelimitedSource, WithoutAHeaderNamesDoNotLineUpWithValues) {
    const Source source = Parsed("12 Oak St,5\n9 Elm St,6", false);
    EXPECT_EQ(CellsOf(source.grid),
              (Cells{{"Field  1", "Field  2", ""}, {"", "12 Oak St", "5"}, {"", "9 Elm St", "6"}}));
    EXPECT_EQ(source.lines, (std::vector<std::uint32_t>{0, 1, 2}));
    EXPECT_FALSE(source.format.BookEnd);
}

TEST(DelimitedSource, NotesQuotesOfAFirstLineWithoutNames) {
    EXPECT_TRUE(Parsed("\"Smith, John\",12", false).format.BookEnd);
    EXPECT_FALSE(Parsed("\"Smith, John\",12", true).format.BookEnd);
}

TEST(DelimitedSource, WithoutAHeaderAMiscountedFirstLineIsTooLong) {
    // Behind a quoted field a character too many is passed over, so the empty field is not counted.
    EXPECT_EQ(FaultOf([] { Parsed("\"a\",,c", false); }).number, fault::kSubscript);
}

TEST(DelimitedSource, FaultsNameFileAndLine) {
    const Fault fault = FaultOf([] { Parsed("a,b\n1,2\n1,2,3\n4,5"); });
    EXPECT_EQ(fault.number, fault::kSubscript);
    EXPECT_EQ(fault.place.file, "L.CSV");
    EXPECT_EQ(fault.place.line, 3);
    EXPECT_EQ(FaultOf([] { Parsed("a,b\n\"1,2\n"); }).place.line, 2);
    EXPECT_EQ(FaultOf([] { Parsed("\"a,b", false); }).place.line, 1);
}

TEST(DelimitedSource, FaultsAtTheLineWithTooManyFields) {
    const std::string wide(256, ',');
    const Fault fault = FaultOf([&] { Parsed("a,b\n" + wide); });
    EXPECT_EQ(fault.number, fault::kSubscript);
    EXPECT_EQ(fault.place.line, 2);
}

std::string ManyRows(int rows) {
    std::string text = "a,b";
    for (int row = 0; row < rows; ++row)
        text += "\n1,2";
    return text;
}

TEST(DelimitedSource, Takes32767Rows) {
    EXPECT_EQ(Parsed(ManyRows(32767)).grid.Rows(), 32768);
    const Fault fault = FaultOf([] { Parsed(ManyRows(32767) + "\n"); });
    EXPECT_EQ(fault.number, fault::kOverflow);
    EXPECT_EQ(fault.place.line, 32769);
    EXPECT_NE(fault.description.find("32,767 rows"), std::string::npos);
}

}  // namespace
}  // namespace zenvora::importing
