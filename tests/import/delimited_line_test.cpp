#include "import/delimited_line.h"

#include <gtest/gtest.h>

#include "grid_text.h"

namespace zenvora::importing {
namespace {

using testing_support::CellsOf;
using testing_support::FaultOf;
using Cells = std::vector<testing_support::Row>;

struct DelimiterCase {
    const char* name;
    const char* line;
    char delimiter;
};
class DetectedDelimiter : public testing::TestWithParam<DelimiterCase> {};

TEST_P(DetectedDelimiter, IsTheMostFrequent) {
    EXPECT_EQ(DetectDelimiter(GetParam().line), GetParam().delimiter);
}

INSTANTIATE_TEST_SUITE_P(Lines, DetectedDelimiter,
                         testing::Values(DelimiterCase{"Comma", "a,b,c", ','},
                                         DelimiterCase{"Tilde", "a~b~c,d", '~'},
                                         DelimiterCase{"Pipe", "a|b|c", '|'},
                                         DelimiterCase{"Tab", "a\tb", '\t'},
                                         DelimiterCase{"Semicolon", "a;b", ';'},
                                         DelimiterCase{"SemicolonWinsATieWithComma", "a;b,c", ';'},
                                         DelimiterCase{"TildeWinsATieWithComma", "a,b~c", '~'},
                                         DelimiterCase{"TabWinsATieWithPipe", "a|b\tc", '\t'},
                                         DelimiterCase{"NoneGivesSemicolon", "Address", ';'},
                                         DelimiterCase{"EmptyLineGivesSemicolon", "", ';'},
                                         DelimiterCase{"QuotedTextCounts", "\"a|b|c\",d", '|'}),
                         [](const auto& info) { return std::string(info.param.name); });

std::string Normalized(std::string_view line, char delimiter = ',') {
    std::string scratch;
    return std::string(NormalizeLine(line, delimiter, scratch));
}

TEST(NormalizeLine, LosesExactlyOneTrailingSeparator) {
    EXPECT_EQ(Normalized("a,b,"), "a,b");
    EXPECT_EQ(Normalized("a,b,,"), "a,b,");
    EXPECT_EQ(Normalized(","), "");
    EXPECT_EQ(Normalized(""), "");
    EXPECT_EQ(Normalized("\"a\",b,"), "\"a\",b");
}

TEST(NormalizeLine, DropsStrayQuotesOfUnquotedFields) {
    EXPECT_EQ(Normalized("12\" TV,5"), "12 TV,5");
    EXPECT_EQ(Normalized("a \"b\" c,5"), "a b c,5");
    EXPECT_EQ(Normalized("5,12\" TV,"), "5,12 TV");
}

TEST(NormalizeLine, LeavesTheLastFieldAlone) {
    EXPECT_EQ(Normalized("5,12\" TV"), "5,12\" TV");
    EXPECT_EQ(Normalized("12\" TV"), "12\" TV");
}

TEST(NormalizeLine, LeavesFieldsThatStartOrEndInAQuote) {
    EXPECT_EQ(Normalized("\"a\"b,c"), "\"a\"b,c");
    EXPECT_EQ(Normalized("a\"b\",c"), "a\"b\",c");
    EXPECT_EQ(Normalized("\"Smith, John\",12"), "\"Smith, John\",12");
}

TEST(NormalizeLine, CutsQuotedFieldsToo) {
    // The middle piece of the quoted field stands alone at this point and loses its quote.
    EXPECT_EQ(Normalized("\"a, 5\" b, c\",d"), "\"a, 5 b, c\",d");
}

TEST(NormalizeLine, Takes255FieldsAndNotOneMore) {
    std::string line = "x";
    for (int i = 2; i <= 255; ++i)
        line += ",x";
    EXPECT_EQ(Normalized(line), line);
    EXPECT_EQ(Normalized(line + ","), line);  // the separator behind the 255th field begins no other
    EXPECT_EQ(FaultOf([&] { Normalized(line + ",x"); }).number, fault::kSubscript);
    EXPECT_EQ(FaultOf([&] { Normalized(line + ",,"); }).number, fault::kSubscript);
}

TEST(NormalizeLine, CountsPositionsTo32767) {
    const std::string before(32766, 'x');
    EXPECT_EQ(Normalized(before + ",y"), before + ",y");
    EXPECT_EQ(FaultOf([&] { Normalized(before + "x,y"); }).number, fault::kOverflow);
    EXPECT_EQ(Normalized(before + "xxxxx"), before + "xxxxx");  // no separator, no position
}

int Counted(std::string_view line) {
    bool bookEnd = false;
    return CountDelimitedFields(line, ',', bookEnd);
}

TEST(CountDelimitedFields, CountsSeparatorsOutsideOfQuotes) {
    EXPECT_EQ(Counted("a,b,c"), 2);
    EXPECT_EQ(Counted("abc"), 0);
    EXPECT_EQ(Counted(""), 0);
    EXPECT_EQ(Counted("\"Smith, John\",12"), 1);
    EXPECT_EQ(Counted("\"a\",\"b\",c"), 2);
}

TEST(CountDelimitedFields, EatsTheCharacterBehindAQuotedField) {
    // Behind "a" the quote, the separator and the next separator go, so one is not counted.
    EXPECT_EQ(Counted("\"a\",,c"), 1);
}

TEST(CountDelimitedFields, NotesAQuote) {
    bool bookEnd = false;
    static_cast<void>(CountDelimitedFields("a,b", ',', bookEnd));
    EXPECT_FALSE(bookEnd);
    static_cast<void>(CountDelimitedFields("a,b\"", ',', bookEnd));
    EXPECT_TRUE(bookEnd);
}

TEST(CountDelimitedFields, FaultsAtAQuoteLeftOpen) {
    EXPECT_EQ(FaultOf([] { Counted("\"a,b"); }).number, fault::kOverflow);
    EXPECT_EQ(Counted("\"ab"), 0);  // without a separator nobody looks for the quote
}

/// The grid after a header and data lines.
SourceGrid Parsed(const std::string& header, const std::vector<std::string>& rows = {}) {
    SourceGrid grid;
    ParseDelimitedLine(header, ',', true, grid);
    for (const std::string& row : rows)
        ParseDelimitedLine(row, ',', false, grid);
    return grid;
}

TEST(ParseDelimitedLine, NamesColumnsFromOneOn) {
    EXPECT_EQ(CellsOf(Parsed("a,b,c")), (Cells{{"", "a", "b", "c"}}));
    EXPECT_EQ(CellsOf(Parsed("a")), (Cells{{"", "a"}}));
    EXPECT_EQ(CellsOf(Parsed("a,,c")), (Cells{{"", "a", "", "c"}}));
    EXPECT_EQ(CellsOf(Parsed(",b")), (Cells{{"", "", "b"}}));
    EXPECT_EQ(CellsOf(Parsed("a,,,d")), (Cells{{"", "a", "", "", "d"}}));
}

struct FieldCase {
    const char* name;
    const char* line;
    testing_support::Row cells;
};
class ParsedFields : public testing::TestWithParam<FieldCase> {};

TEST_P(ParsedFields, GoIntoTheLastRow) {
    const SourceGrid grid = Parsed("f1,f2,f3", {GetParam().line});
    ASSERT_EQ(grid.Rows(), 2);
    EXPECT_EQ(CellsOf(grid)[1], GetParam().cells);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, ParsedFields,
    testing::Values(FieldCase{"Plain", "a,b,c", {"", "a", "b", "c"}},
                    FieldCase{"QuotedWithSeparator", "\"Smith, John\",12", {"", "Smith, John", "12", ""}},
                    FieldCase{"EmptyMiddle", "a,,c", {"", "a", "", "c"}},
                    FieldCase{"TwoEmptyInARow", "a,,", {"", "a", "", ""}},
                    FieldCase{"FirstEmpty", ",b,c", {"", "", "b", "c"}},
                    FieldCase{"QuotedEmpty", "\"\",b,c", {"", "", "b", "c"}},
                    FieldCase{"QuotedEmptyBetween", "\"a\",\"\",\"c\"", {"", "a", "", "c"}},
                    FieldCase{"LastQuotedWithSeparator", "a,b,\"c, d\"", {"", "a", "b", "c, d"}},
                    FieldCase{"LastQuoted", "a,b,\"c\"", {"", "a", "b", "c"}},
                    FieldCase{"LastOpenQuoteIsDropped", "a,b,\"c", {"", "a", "b", "c"}},
                    FieldCase{"LastClosingQuoteIsDropped", "a,b,c\"", {"", "a", "b", "c"}},
                    FieldCase{"LastOnlyAQuote", "a,b,\"", {"", "a", "b", ""}},
                    FieldCase{"QuoteAtTheEndOfAField", "a\",b", {"", "a", "b", ""}},
                    FieldCase{"QuotesInsideAFieldThatEndsInOne", "a \"b\",c", {"", "a \"b", "c", ""}},
                    FieldCase{"QuotedIsNotTrimmed", "\" a \",b", {"", " a ", "b", ""}},
                    FieldCase{"DoubledQuoteIsNoEscape", "\"a\"\"b\",c", {"", "a", "b", "c"}},
                    FieldCase{"CharacterBehindAQuotedFieldIsEaten", "\"a\"x,b", {"", "a", "", "b"}},
                    FieldCase{"FewerFieldsThanNames", "a", {"", "a", "", ""}},
                    FieldCase{"EmptyLine", "", {"", "", "", ""}}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(ParseDelimitedLine, EatsAWholeCharacterBehindAQuotedField) {
    const SourceGrid grid = Parsed("f1,f2,f3", {"\"a\"\xC3\xA9,b"});
    EXPECT_EQ(CellsOf(grid)[1], (testing_support::Row{"", "a", "", "b"}));
}

TEST(ParseDelimitedLine, FaultsAtMoreFieldsThanNames) {
    const Fault fault = FaultOf([] { Parsed("a,b", {"1,2,3"}); });
    EXPECT_EQ(fault.number, fault::kSubscript);
    EXPECT_NE(fault.description.find("which names 2"), std::string::npos) << fault.description;
    EXPECT_EQ(FaultOf([] { Parsed("a,b", {"1,2,,9"}); }).number, fault::kSubscript);
    EXPECT_EQ(FaultOf([] { Parsed("a,b", {"1,2,,,9"}); }).number, fault::kSubscript);
}

TEST(ParseDelimitedLine, WidensTheGridForEmptyFieldsBehindTheLastName) {
    const SourceGrid grid = Parsed("a,b", {"1,2,,"});
    EXPECT_EQ(CellsOf(grid), (Cells{{"", "a", "b", ""}, {"", "1", "2", ""}}));
    // The wider grid then takes a third field from a later line.
    EXPECT_EQ(CellsOf(Parsed("a,b", {"1,2,,", "3,4,5"}))[2], (testing_support::Row{"", "3", "4", "5"}));
}

TEST(ParseDelimitedLine, FaultsAtAQuoteLeftOpen) {
    const Fault fault = FaultOf([] { Parsed("a,b", {"\"x,y"}); });
    EXPECT_EQ(fault.number, fault::kSourceFormat);
}

TEST(ParseDelimitedLine, Takes32767RowsAndNotOneMore) {
    SourceGrid grid = Parsed("a");
    for (int row = 1; row <= 32767; ++row)
        ParseDelimitedLine("x", ',', false, grid);
    EXPECT_EQ(grid.Rows(), 32768);
    EXPECT_EQ(FaultOf([&] { ParseDelimitedLine("", ',', false, grid); }).number, fault::kOverflow);
}

}  // namespace
}  // namespace zenvora::importing
