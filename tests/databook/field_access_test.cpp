#include "databook/field_access.h"

#include "databook_fixture.h"

namespace zenvora::databook {
namespace {

constexpr Date kDayZero = 2;

class FieldAccess : public DatabookTest {
  protected:
    FieldAccess() {
        Run("INSERT INTO COMPS (CENTRALKEY,CITY,SELLINGPR,SALEDATE,ORIGLISTDATE,ContrKDate) VALUES ('12 OAK "
            "ST', "
            "'  Troy ',250000.5,#3/1/2009#,Null,'abc')");
        SelectAll();
    }

    std::string Get(std::string_view name) { return adogetfield(control_, name); }
    Date GetDate(std::string_view name) { return adogetfieldDate(control_, name); }
    double GetDouble(std::string_view name) { return adogetfieldDouble(control_, name); }
    void SetAndUpdate(std::string_view name, std::string_view value) {
        AdoSetField(session_, control_, value, name);
        control_.Recordset().Update();
    }
    /// The value as a fresh view reads it from the file.
    std::string Stored(std::string_view name) {
        ado::Adodc fresh(pool_, clock_);
        fresh.Connectionstring = OneShotConnectionString(Path().string());
        AdoSelect(fresh, "COMPS", name, kKeyOrder);
        return fresh.Recordset().IsNull(0) ? "<Null>" : fresh.Recordset().Text(0);
    }
};

// ---- reading texts ----

TEST_F(FieldAccess, ReadsTrimmedText) {
    EXPECT_EQ(Get("CITY"), "Troy");
    EXPECT_EQ(Get("city"), "Troy");
    EXPECT_EQ(Get("SELLINGPR"), "250000.5");
    EXPECT_EQ(Get("SALEDATE"), "3/1/2009");
}

TEST_F(FieldAccess, ReadsNullAndFailuresAsTheEmptyText) {
    EXPECT_EQ(Get("ADDRESS"), "");
    EXPECT_EQ(Get("NOSUCHFIELD"), "");
    control_.Recordset().MoveNext();
    EXPECT_EQ(Get("CITY"), "");
    ado::Adodc unopened(pool_, clock_);
    EXPECT_EQ(adogetfield(unopened, "CITY"), "");
    EXPECT_TRUE(desktop_.messages.empty());
}

TEST_F(FieldAccess, PassesTheFileNumberThroughItsOwnRule) {
    Run("ALTER TABLE COMPS ADD FILENUMBER TEXT(20)");
    Run("INSERT INTO COMPS (CENTRALKEY,FILENUMBER) VALUES ('1 A ST',' ab12345678 9 ')");
    SelectAll();
    EXPECT_EQ(Get("FILENUMBER"), "AB12345678");
    EXPECT_EQ(Get("filenumber"), "ab12345678 9");  // only the name as it is spelled
}

TEST(Filenumber, IsTenCharactersInUpperCase) {
    EXPECT_EQ(MakeFilenumber("  abc-1 "), "ABC-1");
    EXPECT_EQ(MakeFilenumber("123456789 123"), "123456789");
    EXPECT_EQ(MakeFilenumber("12345678901"), "1234567890");
    EXPECT_EQ(MakeFilenumber(""), "");
}

// ---- reading dates and prices ----

TEST_F(FieldAccess, ReadsAMissingDateAsDayZero) {
    EXPECT_EQ(GetDate("ORIGLISTDATE"), kDayZero);  // Null
    EXPECT_EQ(GetDate("LASTLISTDATE"), kDayZero);  // the column's default
    EXPECT_EQ(GetDate("ContrKDate"), kDayZero);    // the text "abc"
    EXPECT_EQ(GetDate("SELLINGPR"), kDayZero);     // a number is no date
    EXPECT_EQ(GetDate("SALEDATE"), 39873);         // 3/1/2009
    control_.Recordset().MoveNext();
    EXPECT_EQ(GetDate("SALEDATE"), kDayZero);
}

TEST_F(FieldAccess, ReadsADateFromATextColumn) {
    AdoSetField(session_, control_, "3/1/2009", "ContrKDate");
    EXPECT_EQ(GetDate("ContrKDate"), 39873);
    AdoSetField(session_, control_, "1/5", "ContrKDate");  // too short for a date
    EXPECT_EQ(GetDate("ContrKDate"), kDayZero);
}

TEST_F(FieldAccess, ReadsDatesFarFromToday) {
    const auto stored = [this](Date date) {
        control_.Recordset().SetValue("SALEDATE", jet::DateTime{date});
        return GetDate("SALEDATE");
    };
    EXPECT_EQ(stored(401768), 401768);  // 12/31/2999: later than the clock, a date all the same
    EXPECT_EQ(stored(0), 0);            // 12/30/1899, which the validity run looks for
    EXPECT_EQ(stored(39873.5), 39873.5);
    EXPECT_EQ(stored(2958465), 2958465);
    EXPECT_EQ(stored(2), kDayZero);
}

TEST_F(FieldAccess, ReadsAPriceInWholeDollars) {
    EXPECT_EQ(GetDouble("SELLINGPR"), 250001);  // half away from zero
    EXPECT_EQ(GetDouble("PRICEFLD"), 0);        // Null
    EXPECT_EQ(GetDouble("ORIGLISTPRICE"), 0);   // the default
    control_.Recordset().SetValue("SELLINGPR", 123456.7);
    EXPECT_EQ(GetDouble("SELLINGPR"), 123457);
    control_.Recordset().SetValue("SELLINGPR", -2.5);
    EXPECT_EQ(GetDouble("SELLINGPR"), -3);
    control_.Recordset().SetValue("SELLINGPR", 0.4);
    EXPECT_EQ(GetDouble("SELLINGPR"), 0);
    control_.Recordset().MoveNext();
    EXPECT_EQ(GetDouble("SELLINGPR"), 0);
}

TEST_F(FieldAccess, ReadsAPriceFromATextColumn) {
    AdoSetField(session_, control_, "$1,234.50", "OtherArea1");
    EXPECT_EQ(GetDouble("OtherArea1"), 1235);
    EXPECT_EQ(GetDouble("ERCFinal"), 0);
    EXPECT_EQ(FaultOf([&] { static_cast<void>(GetDouble("ContrKDate")); }), fault::kTypeMismatch);
}

TEST_F(FieldAccess, RaisesAFieldThatThereIsNot) {
    EXPECT_EQ(FaultOf([&] { static_cast<void>(GetDate("NOSUCHFIELD")); }), fault::kItemNotFound);
    EXPECT_EQ(FaultOf([&] { static_cast<void>(GetDouble("NOSUCHFIELD")); }), fault::kItemNotFound);
}

TEST_F(FieldAccess, ReadsByPositionAsByName) {
    const ado::Recordset& records = control_.Recordset();
    EXPECT_EQ(FieldDate(records, records.FieldIndex("SALEDATE"), clock_), 39873);
    EXPECT_EQ(FieldDate(records, records.FieldIndex("ORIGLISTDATE"), clock_), kDayZero);
    EXPECT_EQ(FieldDouble(records, records.FieldIndex("SELLINGPR")), 250001);
    EXPECT_EQ(FieldDate(records, -1, clock_), kDayZero);
    EXPECT_EQ(FieldDouble(records, -1), 0);
}

// ---- writing ----

TEST_F(FieldAccess, StoresTrimmedTextCutToItsColumn) {
    SetAndUpdate("ADDRESS", "  12 Oak St  ");
    EXPECT_EQ(Stored("ADDRESS"), "12 Oak St");
    // 60 characters into a column of 50; the cut ends behind a blank.
    std::string sixty(60, 'x');
    sixty[49] = ' ';
    SetAndUpdate("ADDRESS", sixty);
    EXPECT_EQ(Stored("ADDRESS"), std::string(49, 'x'));
    SetAndUpdate("ST", "MIX");
    EXPECT_EQ(Stored("ST"), "MI");
}

TEST_F(FieldAccess, CutsCharactersNotBytes) {
    SetAndUpdate("ST", "\xC3\xA9\xC3\xA8\xC3\xA0");
    EXPECT_EQ(Stored("ST"), "\xC3\xA9\xC3\xA8");
}

TEST_F(FieldAccess, KnowsTheWidthOfAColumn) {
    EXPECT_EQ(AdoGetSize(session_, control_, "CENTRALKEY"), 50);
    EXPECT_EQ(AdoGetSize(session_, control_, "selected"), 1);
    EXPECT_EQ(AdoTrim(session_, control_, " Ann Arbor ", "ST"), "An");
    EXPECT_EQ(FaultOf([&] { static_cast<void>(AdoGetSize(session_, control_, "NOSUCHFIELD")); }),
              fault::kItemNotFound);
}

TEST_F(FieldAccess, DoesNotCutAMemo) {
    Run("ALTER TABLE COMPS ADD REMARKS MEMO");
    SelectAll();
    SetAndUpdate("REMARKS", std::string(3000, 'x'));
    EXPECT_EQ(Stored("REMARKS"), std::string(3000, 'x'));
}

TEST_F(FieldAccess, StoresAPriceInWholeDollars) {
    AdoSetFieldDouble(session_, control_, 123456.5, "SELLINGPR");
    control_.Recordset().Update();
    EXPECT_EQ(Stored("SELLINGPR"), "123457");
    EXPECT_EQ(GetDouble("SELLINGPR"), 123457);
    AdoSetFieldDouble(session_, control_, 0, "ORIGLISTPRICE");
    control_.Recordset().Update();
    EXPECT_EQ(Stored("ORIGLISTPRICE"), "0");
}

TEST_F(FieldAccess, StoresAPriceAtSinglePrecision) {
    AdoSetFieldDouble(session_, control_, 16777217, "SELLINGPR");
    EXPECT_EQ(GetDouble("SELLINGPR"), 16777216);
    AdoSetFieldDouble(session_, control_, 16777216, "SELLINGPR");
    EXPECT_EQ(GetDouble("SELLINGPR"), 16777216);
}

TEST_F(FieldAccess, StoresAPriceInATextColumnAsItReads) {
    AdoSetFieldDouble(session_, control_, 123456.7, "OtherArea1");
    EXPECT_EQ(Get("OtherArea1"), "123,457");
}

TEST_F(FieldAccess, StoresTheDayOfADate) {
    AdoSetFieldDate(session_, control_, "03/15/2009 9:30:00 AM", "SALEDATE");
    EXPECT_EQ(GetDate("SALEDATE"), 39887);
    AdoSetFieldDate(session_, control_, Date{39887.75}, "SALEDATE");
    EXPECT_EQ(GetDate("SALEDATE"), 39887);
    AdoSetFieldDate(session_, control_, "01/01/1900", "SALEDATE");
    EXPECT_EQ(GetDate("SALEDATE"), kDayZero);
}

TEST_F(FieldAccess, StoresATextThatIsNoDateAsDayZero) {
    for (const char* const text : {"", "abc", "13/45/2001", "39887"}) {
        AdoSetFieldDate(session_, control_, "3/15/2009", "SALEDATE");
        AdoSetFieldDate(session_, control_, text, "SALEDATE");
        EXPECT_EQ(GetDate("SALEDATE"), kDayZero) << text;
    }
    control_.Recordset().Update();
    EXPECT_EQ(Stored("SALEDATE"), "1/1/1900");
}

TEST_F(FieldAccess, NeverUpdatesByItself) {
    AdoSetField(session_, control_, "Flint", "CITY");
    AdoSetFieldDouble(session_, control_, 5, "SELLINGPR");
    AdoSetFieldDate(session_, control_, "1/2/2009", "SALEDATE");
    EXPECT_EQ(control_.Recordset().Edit(), ado::EditMode::InProgress);
    EXPECT_EQ(Stored("CITY"), "  Troy ");
}

TEST_F(FieldAccess, FaultsOnAColumnThatThereIsNot) {
    EXPECT_EQ(FaultOf([&] { AdoSetFieldDate(session_, control_, "01/01/1900", "CURRLISTDATE"); }),
              fault::kItemNotFound);
    EXPECT_EQ(FaultOf([&] { AdoSetField(session_, control_, "x", "NOSUCHFIELD"); }), fault::kItemNotFound);
    EXPECT_EQ(FaultOf([&] { AdoSetFieldDouble(session_, control_, 1, "NOSUCHFIELD"); }),
              fault::kItemNotFound);
    EXPECT_EQ(control_.Recordset().Edit(), ado::EditMode::None);
}

TEST_F(FieldAccess, HandsTheFailuresOfWritesToTheCaller) {
    EXPECT_EQ(FaultOf([&] { AdoSetField(session_, control_, "much", "SELLINGPR"); }), fault::kTypeMismatch);
    EXPECT_EQ(session_.lastProcedure, "AdoGetSize");  // entered last, from within AdoSetField
    control_.Recordset().MoveNext();
    EXPECT_EQ(FaultOf([&] { AdoSetField(session_, control_, "Troy", "CITY"); }), fault::kNoCurrentRecord);
}

// ---- existence ----

TEST_F(FieldAccess, KnowsWhichColumnsThereAre) {
    EXPECT_TRUE(AdoFieldexists(session_, control_, " origlistprice "));
    EXPECT_TRUE(AdoFieldexists(session_, control_, "ADDRESS"));  // Null in the record
    EXPECT_FALSE(AdoFieldexists(session_, control_, "CANCELDATE"));
    EXPECT_TRUE(AdoFieldexists2(control_, " contrkdate"));
    EXPECT_FALSE(AdoFieldexists2(control_, "CANCELDATE"));
    EXPECT_TRUE(AdodbFExists(control_.Recordset(), "Address "));
    EXPECT_FALSE(AdodbFExists(control_.Recordset(), "CANCELDATE"));
}

TEST_F(FieldAccess, KnowsThemWithoutRecordsToo) {
    AdoSelect(control_, "COMPS", "CENTRALKEY", "WHERE CENTRALKEY ='none'");
    EXPECT_TRUE(AdoFieldexists(session_, control_, "centralkey"));
    EXPECT_FALSE(AdoFieldexists(session_, control_, "CITY"));
    EXPECT_TRUE(AdodbFExists(control_.Recordset(), "CENTRALKEY"));
}

}  // namespace
}  // namespace zenvora::databook
