#include "databook/selection.h"

#include "databook_fixture.h"

namespace zenvora::databook {
namespace {

class Selection : public DatabookTest {};

TEST_F(Selection, ConnectsWithTheTextOfADataControl) {
    AdoConnect(control_, "C:\\DATA", "COMPS.MDB");
    EXPECT_EQ(control_.Connectionstring,
              "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=C:\\DATA\\COMPS.MDB;Mode=ReadWrite|Share Deny "
              "None;Persist Security Info=False;");
    AdoConnect(control_, " C:\\\\DATA\\ ", "COMPS.MDB");
    EXPECT_NE(control_.Connectionstring.find("=C:\\\\DATA\\COMPS.MDB;"), std::string::npos);
    EXPECT_FALSE(control_.HasRecordset());
}

TEST_F(Selection, ConnectsOnceWithoutSharingAndClosingSemicolon) {
    EXPECT_EQ(
        OneShotConnectionString("  C:\\DATA\\COMPS.MDB "),
        "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=C:\\DATA\\COMPS.MDB;Mode=ReadWrite;Persist Security "
        "Info=False");
}

TEST_F(Selection, BuildsTheSelectText) {
    control_.Connectionstring = OneShotConnectionString(Path().string());
    AdoSelect(control_, "COMPS", " centralkey, city ", "ORDER BY CENTRALKEY");
    EXPECT_EQ(control_.RecordSource, "SELECT CENTRALKEY, CITY FROM COMPS ORDER BY CENTRALKEY");
    EXPECT_EQ(control_.Recordset().Fields().size(), 2U);
    AdoSelect(control_, "COMPS", "  ", "");
    EXPECT_EQ(control_.RecordSource, "SELECT * FROM COMPS");
    EXPECT_EQ(control_.Recordset().Fields().size(), 24U);
    AdoSelect(control_, "COMPS", kMainFieldList, kKeyOrder);
    EXPECT_EQ(control_.Recordset().Fields().size(), 18U);
    EXPECT_EQ(control_.Recordset().Fields().back().name, "OTHERAREA2");
}

TEST_F(Selection, ConnectsAndSelectsInOne) {
    const auto path = Path();
    ado::Adodc control(pool_, clock_, [path](std::string_view source) {
        EXPECT_EQ(source, "C:\\DATA\\DATA.mdb");
        return path;
    });
    AdoConnectSelect(control, "C:\\DATA", "DATA.mdb", "COMPS", "", "");
    EXPECT_EQ(control.Recordset().RecordCount(), 0);
}

TEST_F(Selection, HandsAFailedSelectToTheCaller) {
    control_.Connectionstring = OneShotConnectionString(Path().string());
    EXPECT_EQ(FaultOf([&] { AdoSelect(control_, "NOTABLE", "*", ""); }), fault::kNoSuchTable);
    EXPECT_EQ(FaultOf([&] { AdoSelect(control_, "COMPS", "COLOUR", ""); }), fault::kItemNotFound);
}

TEST(SqlQuoting, DoublesQuotesAndAsterisks) {
    EXPECT_EQ(SqlDoubleUp("O'Brien's *"), "O''Brien''s **");
    EXPECT_EQ(SqlDoubleUp("MAIN ST"), "MAIN ST");
    EXPECT_EQ(SqlDoubleUp(""), "");
    EXPECT_EQ(SqlDoubleUp("\"A\" [1]"), "\"A\" [1]");
    EXPECT_EQ(DoubleUp("a*b*", '*'), "a**b**");
    EXPECT_EQ(DoubleUp("ab", '*'), "ab");
}

TEST(SqlQuoting, KnowsTheCharactersInQuestion) {
    EXPECT_TRUE(DoIllegalSqlCharsExist("O'Brien"));
    EXPECT_TRUE(DoIllegalSqlCharsExist("*"));
    EXPECT_FALSE(DoIllegalSqlCharsExist("12 \"Oak\" St"));
    EXPECT_FALSE(DoIllegalSqlCharsExist(""));
}

TEST_F(Selection, FindsEveryKeyByItsCriterion) {
    EXPECT_EQ(KeyCriterion("O'BRIEN'S *"), "CENTRALKEY='O''BRIEN''S **'");
    for (const std::string key : {"O'BRIEN'S *", "12 OAK ST", "'", "**", "A;B [C] #1"}) {
        Run("INSERT INTO COMPS (CENTRALKEY) VALUES (\"" + key + "\")");
        SelectAll();
        control_.Recordset().Find(KeyCriterion(key));
        ASSERT_FALSE(control_.Recordset().Eof()) << key;
        EXPECT_EQ(control_.Recordset().Text(0), key);
    }
}

}  // namespace
}  // namespace zenvora::databook
