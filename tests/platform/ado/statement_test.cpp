#include "platform/ado/detail/statement.h"

#include "store_fixture.h"

namespace zenvora::ado::detail {
namespace {

TEST(SelectStatementForm, TakesAllColumnsOrAList) {
    EXPECT_TRUE(ParseSelect("SELECT * FROM COMPS").columns.empty());
    const SelectStatement listed = ParseSelect("select CITY ,[Old Name], _x1 from [My Table];");
    EXPECT_EQ(listed.columns, (std::vector<std::string>{"CITY", "Old Name", "_x1"}));
    EXPECT_EQ(listed.table, "My Table");
}

TEST(SelectStatementForm, TakesAConditionAndAnOrder) {
    const std::string text = "SELECT SELECTED FROM COMPS WHERE SELECTED ='9' ORDER BY CENTRALKEY";
    const SelectStatement statement = ParseSelect(text);
    ASSERT_TRUE(statement.where);
    EXPECT_EQ(statement.where->column, "SELECTED");
    EXPECT_EQ(statement.where->literal.kind, Literal::Kind::Text);
    EXPECT_EQ(statement.where->literal.text, "9");
    ASSERT_TRUE(statement.orderBy);
    EXPECT_EQ(statement.orderBy->column, "CENTRALKEY");
    EXPECT_FALSE(statement.orderBy->descending);
    EXPECT_TRUE(ParseSelect("SELECT * FROM T ORDER BY A DESC").orderBy->descending);
    EXPECT_FALSE(ParseSelect("SELECT * FROM T ORDER BY A ASC").orderBy->descending);
}

struct Refused {
    const char* name;
    const char* statement;
};
std::string NameOf(const testing::TestParamInfo<Refused>& info) {
    return info.param.name;
}

class RefusedSelect : public testing::TestWithParam<Refused> {};

TEST_P(RefusedSelect, IsASyntaxFault) {
    EXPECT_EQ(FaultOf([] { static_cast<void>(ParseSelect(GetParam().statement)); }), fault::kSyntax);
}
INSTANTIATE_TEST_SUITE_P(
    Forms, RefusedSelect,
    testing::Values(Refused{"Empty", ""}, Refused{"NoColumns", "SELECT FROM COMPS"},
                    Refused{"NoTable", "SELECT * FROM"}, Refused{"HangingComma", "SELECT A, FROM COMPS"},
                    Refused{"DoubledComma", "SELECT A,,B FROM COMPS"},
                    Refused{"StarAndColumn", "SELECT *, A FROM COMPS"},
                    Refused{"NoLiteral", "SELECT * FROM COMPS WHERE A ="},
                    Refused{"ColumnAsLiteral", "SELECT * FROM COMPS WHERE A = B"},
                    Refused{"OtherComparison", "SELECT * FROM COMPS WHERE A > 1"},
                    Refused{"TwoConditions", "SELECT * FROM COMPS WHERE A = 1 AND B = 2"},
                    Refused{"OrderWithoutColumn", "SELECT * FROM COMPS ORDER BY"},
                    Refused{"TwoOrders", "SELECT * FROM COMPS ORDER BY A, B"},
                    Refused{"Join", "SELECT * FROM COMPS, OTHER"},
                    Refused{"TwoStatements", "SELECT * FROM A; SELECT * FROM B"},
                    Refused{"TwoSemicolons", "SELECT * FROM A;;"},
                    Refused{"OpenBracket", "SELECT [A FROM COMPS"},
                    Refused{"EmptyBrackets", "SELECT [] FROM COMPS"}, Refused{"Delete", "DELETE FROM COMPS"}),
    NameOf);

TEST(InsertStatementForm, TakesTheStatementsOfALoad) {
    // The statement of a load with the columns Address, Sale Date, Selling Price, Days On Market and City.
    const std::string text =
        "INSERT INTO COMPS (CENTRALKEY,ADDRESS, SALEDATE,SELLINGPR,DAYSONMARKET,ORIGLISTDATE, CITY) VALUES "
        "(\"12 Oak St\",\"12 Oak St\", \"3/1/2009\",250000,30,\"01/30/2009\", \"Troy\")";
    const ChangeStatement change = ParseChange(text);
    const auto& insert = std::get<InsertStatement>(change);
    EXPECT_EQ(insert.table, "COMPS");
    EXPECT_EQ(insert.columns, (std::vector<std::string_view>{"CENTRALKEY", "ADDRESS", "SALEDATE", "SELLINGPR",
                                                             "DAYSONMARKET", "ORIGLISTDATE", "CITY"}));
    ASSERT_EQ(insert.values.size(), 7U);
    EXPECT_EQ(insert.values[0].text, "12 Oak St");
    EXPECT_EQ(insert.values[3].kind, Literal::Kind::Number);
    EXPECT_EQ(insert.values[3].number, 250000);
    EXPECT_EQ(text.substr(insert.valuesAt, 11), "\"12 Oak St\"");
}

std::vector<Literal> ValuesOf(std::string_view statement) {
    return std::get<InsertStatement>(ParseChange(statement)).values;
}

TEST(InsertStatementForm, TakesEveryLiteral) {
    const auto values =
        ValuesOf("insert into T values (\"a, b\", 'it''s', '', -1.5, +2, .5, 5., 1E3, null, #3/1/2009#)");
    ASSERT_EQ(values.size(), 10U);
    EXPECT_EQ(values[0].text, "a, b");
    EXPECT_EQ(values[1].text, "it''s");
    EXPECT_TRUE(values[1].quoteDoubled);
    EXPECT_EQ(values[2].kind, Literal::Kind::Text);
    EXPECT_EQ(values[2].text, "");
    EXPECT_EQ(values[3].number, -1.5);
    EXPECT_EQ(values[4].number, 2);
    EXPECT_EQ(values[5].number, 0.5);
    EXPECT_EQ(values[6].number, 5);
    EXPECT_EQ(values[7].number, 1000);
    EXPECT_EQ(values[8].kind, Literal::Kind::Null);
    EXPECT_EQ(values[9].kind, Literal::Kind::Date);
    EXPECT_EQ(values[9].text, "3/1/2009");
}

TEST(InsertStatementForm, KeepsWhatStandsBetweenDoubleQuotesAsItIs) {
    const auto values = ValuesOf("INSERT INTO T (A) VALUES (\"O'Brien [1] #2 \xC3\xA9\n; \")");
    EXPECT_EQ(values.at(0).text, "O'Brien [1] #2 \xC3\xA9\n; ");
    EXPECT_FALSE(values.at(0).quoteDoubled);
}

class RefusedChange : public testing::TestWithParam<Refused> {};

TEST_P(RefusedChange, IsASyntaxFault) {
    EXPECT_EQ(FaultOf([] { static_cast<void>(ParseChange(GetParam().statement)); }), fault::kSyntax);
}
INSTANTIATE_TEST_SUITE_P(
    Inserts, RefusedChange,
    testing::Values(Refused{"NothingMapped", "INSERT INTO COMPS () VALUES ()"},
                    Refused{"NoValues", "INSERT INTO COMPS (A) VALUES ()"},
                    Refused{"HangingComma", "INSERT INTO COMPS (A,B) VALUES (\"x\",)"},
                    Refused{"DoubledComma", "INSERT INTO COMPS (A,B,C) VALUES (\"x\",,1)"},
                    Refused{"LeadingComma", "INSERT INTO COMPS (A,B) VALUES (,1)"},
                    Refused{"HangingCommaInColumns", "INSERT INTO COMPS (A,) VALUES (1)"},
                    Refused{"QuoteInValue", "INSERT INTO COMPS (A) VALUES (\"12\" Pipe\")"},
                    Refused{"DoubledQuoteInValue", "INSERT INTO COMPS (A) VALUES (\"12\"\" Pipe\")"},
                    Refused{"QuoteAtStartOfValue", "INSERT INTO COMPS (A) VALUES (\"\"Oak\")"},
                    Refused{"QuoteAtEndOfValue", "INSERT INTO COMPS (A) VALUES (\"Oak\"\")"},
                    Refused{"ValueOfOneQuote", "INSERT INTO COMPS (A) VALUES (\"\"\")"},
                    Refused{"ValueOfTwoQuotes", "INSERT INTO COMPS (A) VALUES (\"\"\"\")"},
                    Refused{"OpenText", "INSERT INTO COMPS (A) VALUES (\"Oak)"},
                    Refused{"OpenSingleText", "INSERT INTO COMPS (A) VALUES ('Oak''s)"},
                    Refused{"OpenDate", "INSERT INTO COMPS (A) VALUES (#1/1/2009)"},
                    Refused{"TwoPoints", "INSERT INTO COMPS (A) VALUES (1.2.3)"},
                    Refused{"OnlyAPoint", "INSERT INTO COMPS (A) VALUES (.)"},
                    Refused{"LettersInNumber", "INSERT INTO COMPS (A) VALUES (12abc)"},
                    Refused{"NumberTooLarge", "INSERT INTO COMPS (A) VALUES (1E999)"},
                    Refused{"SignAlone", "INSERT INTO COMPS (A) VALUES (-)"},
                    Refused{"SignBeforeText", "INSERT INTO COMPS (A) VALUES (-\"1\")"},
                    Refused{"Division", "INSERT INTO COMPS (A) VALUES (1/1/1900)"},
                    Refused{"BareWord", "INSERT INTO COMPS (A) VALUES (Oak)"},
                    Refused{"NoClosingBracket", "INSERT INTO COMPS (A) VALUES (1"},
                    Refused{"RestBehind", "INSERT INTO COMPS (A) VALUES (1) WHERE B = 2"},
                    Refused{"NoInto", "INSERT COMPS (A) VALUES (1)"},
                    Refused{"FromSelect", "INSERT INTO COMPS SELECT * FROM OTHER"}),
    NameOf);
INSTANTIATE_TEST_SUITE_P(
    Others, RefusedChange,
    testing::Values(Refused{"Empty", ""}, Refused{"Select", "SELECT * FROM COMPS"},
                    Refused{"CreateTable", "CREATE TABLE T (A TEXT(5))"},
                    Refused{"DropTable", "DROP TABLE COMPS"}, Refused{"Update", "UPDATE COMPS SET A = 1"},
                    Refused{"Delete", "DELETE FROM COMPS"},
                    Refused{"DropColumn", "ALTER TABLE COMPS DROP COLUMN A"},
                    Refused{"ChangeType", "ALTER TABLE COMPS ALTER COLUMN A TEXT(5)"},
                    Refused{"EmptyDefault", "ALTER TABLE COMPS ALTER COLUMN LISTINGDOM SET DEFAULT "},
                    Refused{"BareWordDefault", "ALTER TABLE COMPS ALTER COLUMN A SET DEFAULT abc"},
                    Refused{"HalfADate", "ALTER TABLE COMPS ALTER COLUMN A SET DEFAULT 01/01"},
                    Refused{"DateAndMore", "ALTER TABLE COMPS ALTER COLUMN A SET DEFAULT 01/01/1900/5"},
                    Refused{"NoType", "ALTER TABLE COMPS ADD A"},
                    Refused{"UnknownType", "ALTER TABLE COMPS ADD A BLOB"},
                    Refused{"NotNull", "ALTER TABLE COMPS ADD A TEXT(5) NOT NULL"},
                    Refused{"TwoColumns", "ALTER TABLE COMPS ADD A TEXT(5), B TEXT(5)"}),
    NameOf);

TEST(AlterStatementForm, AddsAColumnWithAndWithoutTheWordColumn) {
    const ChangeStatement change = ParseChange("ALTER TABLE COMPS ADD SELECTED CHAR(1)");
    const auto& bare = std::get<AddColumnStatement>(change);
    EXPECT_EQ(bare.table, "COMPS");
    EXPECT_EQ(bare.column.name, "SELECTED");
    const ChangeStatement second = ParseChange("alter table COMPS add column [Old Price] double;");
    EXPECT_EQ(std::get<AddColumnStatement>(second).column.name, "Old Price");
}

TEST(AlterStatementForm, SetsABareDateAsADate) {
    const ChangeStatement change =
        ParseChange("ALTER TABLE COMPS ALTER COLUMN ORIGLISTDATE SET DEFAULT 01/01/1900");
    const auto& set = std::get<SetDefaultStatement>(change);
    EXPECT_EQ(set.table, "COMPS");
    EXPECT_EQ(set.column, "ORIGLISTDATE");
    EXPECT_EQ(set.literal.kind, Literal::Kind::Date);
    EXPECT_EQ(set.literal.text, "01/01/1900");
}

TEST(AlterStatementForm, SetsANumberATextAndNull) {
    const ChangeStatement number = ParseChange("ALTER TABLE COMPS ALTER ORIGLISTPRICE SET DEFAULT 0");
    EXPECT_EQ(std::get<SetDefaultStatement>(number).literal.kind, Literal::Kind::Number);
    const ChangeStatement text = ParseChange("ALTER TABLE COMPS ALTER COLUMN SELECTED SET DEFAULT \"3\"");
    EXPECT_EQ(std::get<SetDefaultStatement>(text).literal.text, "3");
    const ChangeStatement null = ParseChange("ALTER TABLE COMPS ALTER COLUMN SELECTED SET DEFAULT NULL;");
    EXPECT_EQ(std::get<SetDefaultStatement>(null).literal.kind, Literal::Kind::Null);
}

TEST(StatementFault, SaysWhatIsMissingAndWhere) {
    const Fault fault =
        CaughtFault([] { static_cast<void>(ParseChange("INSERT INTO T (A) VALUES (\"x\",)")); });
    EXPECT_NE(fault.description.find("a value"), std::string::npos) << fault.description;
    EXPECT_NE(fault.description.find("character 31"), std::string::npos) << fault.description;
}

}  // namespace
}  // namespace zenvora::ado::detail
