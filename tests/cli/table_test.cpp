#include "cli/table.h"

#include <gtest/gtest.h>
#include <sstream>

namespace zenvora::cli {
namespace {

std::string Text(const std::vector<Column>& columns, std::vector<std::vector<std::string>> rows) {
    std::ostringstream out;
    WriteText(out, columns, Rows(std::move(rows)));
    return out.str();
}

std::string Csv(const std::vector<Column>& columns, std::vector<std::vector<std::string>> rows) {
    std::ostringstream out;
    WriteCsv(out, columns, Rows(std::move(rows)));
    return out.str();
}

TEST(TextTable, AlignsByTheWidestTextAndLeavesNoBlanksAtTheEnd) {
    EXPECT_EQ(
        Text({{"Key"}, {"Price", true}, {"City"}}, {{"12 OAK ST", "250000", "Troy"}, {"9 ELM", "5", ""}}),
        "Key         Price  City\n"
        "12 OAK ST  250000  Troy\n"
        "9 ELM           5\n");
}

TEST(TextTable, WithoutRowsHasItsHeadings) {
    EXPECT_EQ(Text({{"Key"}, {"City"}}, {}), "Key  City\n");
}

TEST(TextTable, CountsCharactersNotBytes) {
    EXPECT_EQ(Text({{"City"}, {"ST"}}, {{"Montr\xC3\xA9"
                                         "al",
                                         "QC"},
                                        {"Troy", "MI"}}),
              "City      ST\n"
              "Montr\xC3\xA9"
              "al  QC\n"
              "Troy      MI\n");
}

TEST(TextTable, LetsNoTextBreakTheLineOrSpeakToTheTerminal) {
    EXPECT_EQ(Text({{"A"}}, {{"x\ny\x1B[31mz\tw"}}), "A\nx y [31mz w\n");
}

TEST(CsvTable, EndsLinesInCarriageReturnAndLineFeed) {
    EXPECT_EQ(Csv({{"a"}, {"b"}}, {{"1", "2"}, {"", "3"}}), "a,b\r\n1,2\r\n,3\r\n");
}

struct FieldCase {
    const char* name;
    const char* text;
    const char* field;
};
class CsvFields : public testing::TestWithParam<FieldCase> {};

TEST_P(CsvFields, AreQuotedOnlyWhereTheyMustBe) {
    EXPECT_EQ(CsvField(GetParam().text), GetParam().field);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, CsvFields,
    testing::Values(FieldCase{"Plain", "12 Oak St", "12 Oak St"}, FieldCase{"Empty", "", ""},
                    FieldCase{"Comma", "Smith, John", "\"Smith, John\""},
                    FieldCase{"Quote", "12\" TV", "\"12\"\" TV\""}, FieldCase{"LineFeed", "a\nb", "\"a\nb\""},
                    FieldCase{"CarriageReturn", "a\rb", "\"a\rb\""}, FieldCase{"Blank", " a ", " a "}),
    [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace zenvora::cli
