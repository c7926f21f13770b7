#include "platform/ado/recordset.h"

#include "store_fixture.h"

namespace zenvora::ado {
namespace {

using Texts = std::vector<std::string>;

/// Four records: B, D, a, C in the order of the file.
class RecordsetTest : public StoreTest {
  protected:
    RecordsetTest() {
        Connection connection(pool_, clock_);
        connection.Open(ConnectionText());
        connection.Execute("INSERT INTO STOCK VALUES ('B','Troy',200,#2/1/2009#,'1','second')");
        connection.Execute("INSERT INTO STOCK VALUES ('D','Flint',400,#4/1/2009#,'2',Null)");
        connection.Execute("INSERT INTO STOCK VALUES ('a','troy',Null,#1/1/2009#,'0','first')");
        connection.Execute("INSERT INTO STOCK VALUES ('C',Null,300,Null,Null,'third')");
        control_ = Select("SELECT * FROM STOCK ORDER BY KEYNAME");
    }

    Recordset& Records() { return control_->Recordset(); }
    /// The key of the current record, "BOF" or "EOF".
    std::string Here() { return Records().Bof() ? "BOF" : Records().Eof() ? "EOF" : Records().Text(0); }
    Texts Keys() { return Column("SELECT KEYNAME FROM STOCK ORDER BY KEYNAME"); }

    std::unique_ptr<Adodc> control_;
};

// ---- values at a position ----

TEST_F(RecordsetTest, TellsTheValueAtAPositionWithoutMoving) {
    Records().MoveTo(2);
    EXPECT_EQ(Records().ValueAt(0, 0), jet::Value{std::string("a")});
    EXPECT_EQ(Records().ValueAt(3, 2), jet::Value{400.0});
    EXPECT_EQ(Records().ValueAt(2, 1), jet::Value{jet::Null{}});
    EXPECT_EQ(Records().ValueAt(0, 5), jet::Value{std::string("first")});  // a memo is read from the file
    EXPECT_EQ(Here(), "C");
    EXPECT_EQ(FaultOf([&] { static_cast<void>(Records().ValueAt(4, 0)); }), fault::kNoCurrentRecord);
    EXPECT_EQ(FaultOf([&] { static_cast<void>(Records().ValueAt(-1, 0)); }), fault::kNoCurrentRecord);
    EXPECT_EQ(FaultOf([&] { static_cast<void>(Records().ValueAt(0, 99)); }), fault::kItemNotFound);
}

TEST_F(RecordsetTest, AChangeThatIsPendingShowsAtItsPositionAndStaysPending) {
    Records().MoveTo(1);
    Records().SetValue(1, std::string("Novi"));
    EXPECT_EQ(Records().ValueAt(1, 1), jet::Value{std::string("Novi")});
    EXPECT_EQ(Records().ValueAt(3, 1), jet::Value{std::string("Flint")});
    EXPECT_EQ(Records().Edit(), EditMode::InProgress);
    EXPECT_EQ(Column("SELECT CITY FROM STOCK ORDER BY KEYNAME")[1], "Troy");
}

TEST_F(RecordsetTest, PositionsCountTheRecordsThatAreLeft) {
    Records().MoveTo(1);
    Records().Delete();
    EXPECT_EQ(Records().ValueAt(1, 0), jet::Value{std::string("C")});
    EXPECT_EQ(FaultOf([&] { static_cast<void>(Records().ValueAt(3, 0)); }), fault::kNoCurrentRecord);
}

// ---- selection ----

TEST_F(RecordsetTest, OrdersByTheKeyWithoutRegardToCase) {
    EXPECT_EQ(Keys(), (Texts{"a", "B", "C", "D"}));
}

TEST_F(RecordsetTest, OrdersDownwards) {
    EXPECT_EQ(Column("SELECT KEYNAME FROM STOCK ORDER BY KEYNAME DESC"), (Texts{"D", "C", "B", "a"}));
}

TEST_F(RecordsetTest, KeepsTheOrderOfTheFileWithoutOrderBy) {
    EXPECT_EQ(Column("SELECT KEYNAME FROM STOCK"), (Texts{"B", "D", "a", "C"}));
}

TEST_F(RecordsetTest, OrdersByOtherColumnsNullFirst) {
    EXPECT_EQ(Column("SELECT KEYNAME FROM STOCK ORDER BY CITY"), (Texts{"C", "D", "B", "a"}));
    EXPECT_EQ(Column("SELECT KEYNAME FROM STOCK ORDER BY PRICE"), (Texts{"a", "B", "C", "D"}));
    EXPECT_EQ(Column("SELECT KEYNAME, LISTED FROM STOCK ORDER BY LISTED DESC"), (Texts{"D", "B", "a", "C"}));
    EXPECT_EQ(FaultOf([&] { static_cast<void>(Select("SELECT * FROM STOCK ORDER BY NOTES")); }),
              fault::kUnsupported);
    EXPECT_EQ(FaultOf([&] { static_cast<void>(Select("SELECT * FROM STOCK ORDER BY COLOUR")); }),
              fault::kItemNotFound);
}

TEST_F(RecordsetTest, SelectsByAText) {
    EXPECT_EQ(Column("SELECT KEYNAME FROM STOCK WHERE CITY = \"TROY\" ORDER BY KEYNAME"), (Texts{"a", "B"}));
    EXPECT_EQ(Column("SELECT KEYNAME FROM STOCK WHERE FLAG ='9'"), Texts{});
    EXPECT_EQ(Column("SELECT KEYNAME FROM STOCK WHERE FLAG = 2"), Texts{"D"});
    EXPECT_EQ(Column("SELECT KEYNAME FROM STOCK WHERE CITY = 'a text longer than its column'"), Texts{});
    EXPECT_EQ(Column("SELECT KEYNAME FROM STOCK WHERE NOTES = 'Third'"), Texts{"C"});
}

TEST_F(RecordsetTest, SelectsByANumberADateAndNeverByNull) {
    EXPECT_EQ(Column("SELECT KEYNAME FROM STOCK WHERE PRICE = 300"), Texts{"C"});
    EXPECT_EQ(Column("SELECT KEYNAME FROM STOCK WHERE PRICE = '300.0'"), Texts{"C"});
    EXPECT_EQ(Column("SELECT KEYNAME FROM STOCK WHERE LISTED = #4/1/2009#"), Texts{"D"});
    EXPECT_EQ(Column("SELECT KEYNAME FROM STOCK WHERE LISTED = '2009-04-01'"), Texts{"D"});
    EXPECT_EQ(Column("SELECT KEYNAME FROM STOCK WHERE CITY = Null"), Texts{});
    EXPECT_EQ(FaultOf([&] { static_cast<void>(Select("SELECT * FROM STOCK WHERE PRICE = 'much'")); }),
              fault::kTypeMismatch);
}

TEST_F(RecordsetTest, NamesItsFieldsAsTheTableDoes) {
    const auto control = Select("SELECT flag, KeyName, price, NOTES FROM stock");
    const std::vector<FieldInfo>& fields = control->Recordset().Fields();
    ASSERT_EQ(fields.size(), 4U);
    EXPECT_EQ(fields[0].name, "FLAG");
    EXPECT_EQ(fields[0].definedSize, 2);
    EXPECT_EQ(fields[1].definedSize, 20);
    EXPECT_EQ(fields[2].type, jet::ColumnType::Double);
    EXPECT_EQ(fields[2].definedSize, 8);
    EXPECT_EQ(fields[3].definedSize, 0);
    EXPECT_EQ(control->Recordset().FieldIndex("keyname"), 1);
    EXPECT_EQ(control->Recordset().FieldIndex("CITY"), -1);
    EXPECT_EQ(control->Recordset().FieldIndex("COLOUR"), -1);
}

TEST_F(RecordsetTest, LeavesTheSortColumnOutOfTheFields) {
    const auto control = Select("SELECT CITY FROM STOCK ORDER BY KEYNAME");
    EXPECT_EQ(control->Recordset().Fields().size(), 1U);
    EXPECT_EQ(control->Recordset().FieldIndex("KEYNAME"), -1);
    EXPECT_EQ(FaultOf([&] { static_cast<void>(control->Recordset().Value(1)); }), fault::kItemNotFound);
}

// ---- values ----

TEST_F(RecordsetTest, ReadsValuesByPositionAndByName) {
    Records().MoveTo(1);
    EXPECT_TRUE(Records().Value("price") == jet::Value{200.0});
    EXPECT_TRUE(Records().Value(3) == jet::Value{jet::DateTime{39845}});  // 2/1/2009
    EXPECT_EQ(Records().Number(2), 200);
    EXPECT_EQ(Records().Number(3), 39845);
    EXPECT_EQ(Records().TextView(1), "Troy");
    EXPECT_EQ(Records().Text(3), "2/1/2009");
    EXPECT_EQ(Records().Text(5), "second");
    EXPECT_EQ(Records().TextView(5), "second");
}

TEST_F(RecordsetTest, ReadsNullAsNothing) {
    Records().MoveTo(2);
    EXPECT_TRUE(Records().IsNull(1));
    EXPECT_TRUE(jet::IsNull(Records().Value("LISTED")));
    EXPECT_EQ(Records().Number(3), 0);
    EXPECT_EQ(Records().TextView(1), "");
    EXPECT_EQ(Records().Text(4), "");
    EXPECT_FALSE(Records().IsNull(2));
    Records().MoveTo(3);
    EXPECT_TRUE(Records().IsNull(5));
    EXPECT_EQ(Records().TextView(5), "");
}

TEST_F(RecordsetTest, GivesNoNumberOfATextAndNoTextOfANumber) {
    EXPECT_EQ(Records().Number(0), 0);
    EXPECT_EQ(Records().TextView(2), "");
}

TEST_F(RecordsetTest, FaultsWithoutACurrentRecordOrField) {
    EXPECT_EQ(FaultOf([&] { static_cast<void>(Records().Value("COLOUR")); }), fault::kItemNotFound);
    EXPECT_EQ(FaultOf([&] { static_cast<void>(Records().Number(6)); }), fault::kItemNotFound);
    EXPECT_EQ(FaultOf([&] { static_cast<void>(Records().TextView(-1)); }), fault::kItemNotFound);
    EXPECT_EQ(FaultOf([&] { static_cast<void>(Records().IsNull(99)); }), fault::kItemNotFound);
    Records().Find("KEYNAME='none'");
    EXPECT_EQ(FaultOf([&] { static_cast<void>(Records().Number(2)); }), fault::kNoCurrentRecord);
    EXPECT_EQ(FaultOf([&] { static_cast<void>(Records().TextView(0)); }), fault::kNoCurrentRecord);
    EXPECT_EQ(FaultOf([&] { static_cast<void>(Records().IsNull(0)); }), fault::kNoCurrentRecord);
    EXPECT_EQ(FaultOf([&] { static_cast<void>(Records().Value("CITY")); }), fault::kNoCurrentRecord);
    EXPECT_EQ(FaultOf([&] { static_cast<void>(Records().Value("COLOUR")); }), fault::kItemNotFound);
    EXPECT_EQ(FaultOf([&] { Records().SetValue("CITY", std::string("x")); }), fault::kNoCurrentRecord);
    EXPECT_EQ(FaultOf([&] { Records().Delete(); }), fault::kNoCurrentRecord);
}

TEST_F(RecordsetTest, ReadsEveryType) {
    Run("ALTER TABLE STOCK ADD YES BIT");
    Run("ALTER TABLE STOCK ADD SMALL BYTE");
    Run("ALTER TABLE STOCK ADD MIDDLE SHORT");
    Run("ALTER TABLE STOCK ADD WHOLE LONG");
    Run("ALTER TABLE STOCK ADD AMOUNT CURRENCY");
    Run("ALTER TABLE STOCK ADD HALF SINGLE");
    Run("INSERT INTO STOCK (KEYNAME,YES,SMALL,MIDDLE,WHOLE,AMOUNT,HALF) VALUES "
        "('E',1,255,-2,70000,12.3456,0.5)");
    const auto control =
        Select("SELECT YES, SMALL, MIDDLE, WHOLE, AMOUNT, HALF FROM STOCK WHERE KEYNAME = 'E'");
    const Recordset& records = control->Recordset();
    EXPECT_TRUE(records.Value(0) == jet::Value{true});
    EXPECT_EQ(records.Number(0), -1);
    EXPECT_TRUE(records.Value(1) == jet::Value{std::int32_t{255}});
    EXPECT_TRUE(records.Value(2) == jet::Value{std::int32_t{-2}});
    EXPECT_TRUE(records.Value(3) == jet::Value{std::int32_t{70000}});
    EXPECT_TRUE(records.Value(4) == jet::Value{jet::Currency{123456}});
    EXPECT_EQ(records.Number(4), 12.3456);
    EXPECT_TRUE(records.Value(5) == jet::Value{0.5F});
    EXPECT_EQ(Column("SELECT KEYNAME FROM STOCK WHERE YES = 1"), Texts{"E"});
    EXPECT_EQ(Column("SELECT KEYNAME FROM STOCK ORDER BY AMOUNT").back(), "E");
}

// ---- moving ----

TEST_F(RecordsetTest, WalksFromFirstToEnd) {
    EXPECT_EQ(Here(), "a");
    Texts seen;
    for (; !Records().Eof(); Records().MoveNext())
        seen.push_back(Here());
    EXPECT_EQ(seen, (Texts{"a", "B", "C", "D"}));
    EXPECT_EQ(Here(), "EOF");
    EXPECT_EQ(FaultOf([&] { Records().MoveNext(); }), fault::kNoCurrentRecord);
    Records().MovePrevious();
    EXPECT_EQ(Here(), "D");
    Records().MoveFirst();
    Records().MovePrevious();
    EXPECT_EQ(Here(), "BOF");
    EXPECT_EQ(FaultOf([&] { Records().MovePrevious(); }), fault::kNoCurrentRecord);
    Records().MoveNext();
    EXPECT_EQ(Here(), "a");
    Records().MoveLast();
    EXPECT_EQ(Here(), "D");
}

TEST_F(RecordsetTest, IsAtBothEndsWhenEmpty) {
    const auto control = Select("SELECT * FROM STOCK WHERE FLAG='9'");
    Recordset& records = control->Recordset();
    EXPECT_EQ(records.RecordCount(), 0);
    EXPECT_TRUE(records.Bof() && records.Eof());
    records.MoveFirst();
    records.MoveLast();
    EXPECT_TRUE(records.Bof() && records.Eof());
    EXPECT_EQ(FaultOf([&] { records.MoveNext(); }), fault::kNoCurrentRecord);
    EXPECT_EQ(FaultOf([&] { records.MovePrevious(); }), fault::kNoCurrentRecord);
    records.Find("KEYNAME='a'");
    EXPECT_TRUE(records.Eof());
    EXPECT_EQ(records.Position(), -1);
    EXPECT_EQ(records.Fields().size(), 6U);
}

TEST_F(RecordsetTest, GoesToAPosition) {
    Records().MoveTo(2);
    EXPECT_EQ(Here(), "C");
    EXPECT_EQ(Records().Position(), 2);
    EXPECT_EQ(FaultOf([&] { Records().MoveTo(4); }), fault::kNoCurrentRecord);
    EXPECT_EQ(FaultOf([&] { Records().MoveTo(-1); }), fault::kNoCurrentRecord);
    EXPECT_EQ(Here(), "C");
}

TEST_F(RecordsetTest, ComesBackToABookmark) {
    Records().MoveTo(1);
    const Bookmark bookmark = Records().GetBookmark();
    Records().MoveLast();
    Records().SetBookmark(bookmark);
    EXPECT_EQ(Here(), "B");
    EXPECT_EQ(Records().GetBookmark(), bookmark);
    EXPECT_EQ(FaultOf([&] { Records().SetBookmark(Bookmark{4}); }), fault::kNoCurrentRecord);
}

TEST_F(RecordsetTest, KeepsAPlaceWithoutRecordInABookmark) {
    Records().Find("KEYNAME='none'");
    const Bookmark nowhere = Records().GetBookmark();
    Records().MoveFirst();
    Records().SetBookmark(nowhere);
    EXPECT_EQ(Here(), "EOF");
}

// ---- finding ----

TEST_F(RecordsetTest, FindsByAKeyInAnyCase) {
    Records().MoveLast();
    Records().Find("KEYNAME='A'");
    EXPECT_EQ(Here(), "a");
    Records().Find("keyname = 'c '");
    EXPECT_EQ(Here(), "C");
    Records().Find("KEYNAME='none'");
    EXPECT_EQ(Here(), "EOF");
}

TEST_F(RecordsetTest, FindsTheFirstOfSeveral) {
    for (int i = 0; i < 4; ++i) {  // by walking first, then by an index of its own
        Records().Find("CITY='TROY'");
        EXPECT_EQ(Here(), "a") << i;
        Records().MoveLast();
    }
}

TEST_F(RecordsetTest, FindsKeysWithQuotesAndAsterisks) {
    Run("INSERT INTO STOCK (KEYNAME) VALUES (\"O'BRIEN'S *\")");
    control_->Refresh();
    for (int i = 0; i < 4; ++i) {
        Records().MoveFirst();
        Records().Find("KEYNAME='O''BRIEN''S **'");
        EXPECT_EQ(Here(), "O'BRIEN'S *");
    }
}

TEST_F(RecordsetTest, FindsInNumberDateAndMemoFields) {
    Records().Find("PRICE='300'");
    EXPECT_EQ(Here(), "C");
    Records().Find("LISTED='4/1/2009'");
    EXPECT_EQ(Here(), "D");
    Records().Find("NOTES='SECOND'");
    EXPECT_EQ(Here(), "B");
    Records().Find("PRICE='much'");
    EXPECT_EQ(Here(), "EOF");
}

TEST_F(RecordsetTest, RefusesOtherCriteria) {
    EXPECT_EQ(FaultOf([&] { Records().Find("KEYNAME='O'BRIEN'"); }), fault::kSyntax);
    EXPECT_EQ(FaultOf([&] { Records().Find("COLOUR='red'"); }), fault::kItemNotFound);
    EXPECT_EQ(Here(), "a");
}

TEST_F(RecordsetTest, FindsAmongItsOwnChanges) {
    for (int i = 0; i < 3; ++i)
        Records().Find("KEYNAME='D'");
    Records().AddNew();
    Records().SetValue("KEYNAME", std::string("AA"));
    Records().Update();
    Records().Find("KEYNAME='C'");
    Records().SetValue("KEYNAME", std::string("Z"));
    Records().Update();
    Records().Find("KEYNAME='B'");
    Records().Delete();
    Records().Find("KEYNAME='aa'");
    EXPECT_EQ(Here(), "AA");
    Records().Find("KEYNAME='z'");
    EXPECT_EQ(Here(), "Z");
    for (const char* const gone : {"KEYNAME='C'", "KEYNAME='B'"}) {
        Records().Find(gone);
        EXPECT_EQ(Here(), "EOF");
    }
}

// ---- editing ----

TEST_F(RecordsetTest, SeesAPendingChangeAndWritesItAtUpdate) {
    EXPECT_EQ(Records().Edit(), EditMode::None);
    Records().SetValue("PRICE", std::string("$1,234.50"));
    EXPECT_EQ(Records().Edit(), EditMode::InProgress);
    EXPECT_EQ(Records().Number(2), 1234.5);
    EXPECT_FALSE(Records().IsNull(2));
    EXPECT_EQ(Records().TextView(1), "troy");
    EXPECT_EQ(Column("SELECT PRICE FROM STOCK WHERE KEYNAME='a'"), Texts{"<Null>"});
    Records().Update();
    EXPECT_EQ(Records().Edit(), EditMode::None);
    EXPECT_EQ(Records().Number(2), 1234.5);
    EXPECT_EQ(Column("SELECT PRICE FROM STOCK WHERE KEYNAME='a'"), Texts{"1234.5"});
}

TEST_F(RecordsetTest, WritesEveryKindOfField) {
    Records().SetValue(1, std::string("Ann Arbor"));
    Records().SetValue(3, std::string("3/15/2009"));
    Records().SetValue(4, std::string("1"));
    Records().SetValue(5, std::string("a new memo"));
    Records().SetValue(2, jet::Null{});
    Records().Update();
    EXPECT_EQ(Records().Text(5), "a new memo");
    const std::string where = " FROM STOCK WHERE KEYNAME='a'";
    EXPECT_EQ(Column("SELECT CITY" + where), Texts{"Ann Arbor"});
    EXPECT_EQ(Column("SELECT LISTED" + where), Texts{"3/15/2009"});
    EXPECT_EQ(Column("SELECT FLAG" + where), Texts{"1"});
    EXPECT_EQ(Column("SELECT NOTES" + where), Texts{"a new memo"});
    EXPECT_EQ(Column("SELECT PRICE" + where), Texts{"<Null>"});
}

TEST_F(RecordsetTest, TakesBackAPendingChange) {
    Records().SetValue("CITY", std::string("Flint"));
    Records().CancelUpdate();
    EXPECT_EQ(Records().Edit(), EditMode::None);
    EXPECT_EQ(Records().TextView(1), "troy");
    Records().Update();
    EXPECT_EQ(Column("SELECT CITY FROM STOCK WHERE KEYNAME='a'"), Texts{"troy"});
}

TEST_F(RecordsetTest, WritesAPendingChangeOnTheWayToAnotherRecord) {
    Records().SetValue("CITY", std::string("Flint"));
    Records().MoveNext();
    EXPECT_EQ(Here(), "B");
    EXPECT_EQ(Column("SELECT CITY FROM STOCK WHERE KEYNAME='a'"), Texts{"Flint"});
    Records().SetValue("CITY", std::string("Lansing"));
    Records().Find("KEYNAME='D'");
    EXPECT_EQ(Column("SELECT CITY FROM STOCK WHERE KEYNAME='B'"), Texts{"Lansing"});
}

TEST_F(RecordsetTest, RefusesAtOnceWhatDoesNotConvert) {
    EXPECT_EQ(FaultOf([&] { Records().SetValue("LISTED", std::string("13/45/2001")); }),
              fault::kTypeMismatch);
    EXPECT_EQ(FaultOf([&] { Records().SetValue("PRICE", std::string()); }), fault::kTypeMismatch);
    EXPECT_EQ(FaultOf([&] { Records().SetValue("CITY", std::string("12345678901")); }), fault::kTooLong);
    EXPECT_EQ(FaultOf([&] { Records().SetValue("COLOUR", std::string("red")); }), fault::kItemNotFound);
    EXPECT_EQ(Records().Edit(), EditMode::None);
}

TEST_F(RecordsetTest, KeepsARefusedChangePending) {
    Records().SetValue("KEYNAME", std::string("b"));
    EXPECT_EQ(FaultOf([&] { Records().Update(); }), fault::kDuplicateKey);
    EXPECT_EQ(Records().Edit(), EditMode::InProgress);
    EXPECT_EQ(Records().TextView(0), "b");
    EXPECT_EQ(FaultOf([&] { Records().MoveNext(); }), fault::kDuplicateKey);
    Records().SetValue("KEYNAME", std::string("E"));
    Records().Update();
    EXPECT_EQ(Keys(), (Texts{"B", "C", "D", "E"}));
}

TEST_F(RecordsetTest, LeavesARecordOfAChangedKeyInItsPlaceUntilRefresh) {
    Records().SetValue("KEYNAME", std::string("Z"));
    Records().Update();
    EXPECT_EQ(Records().Position(), 0);
    Records().MoveNext();
    EXPECT_EQ(Here(), "B");
    control_->Refresh();
    Records().MoveLast();
    EXPECT_EQ(Here(), "Z");
}

TEST_F(RecordsetTest, AddsARecordWithTheColumnDefaults) {
    Records().MoveTo(1);
    Records().AddNew();
    EXPECT_EQ(Records().Edit(), EditMode::Add);
    EXPECT_FALSE(Records().Bof() || Records().Eof());
    EXPECT_EQ(Records().Text(4), "3");
    EXPECT_EQ(Records().Text(3), "1/1/1900");
    EXPECT_EQ(Records().Number(2), 0);
    EXPECT_TRUE(Records().IsNull(1));
    EXPECT_EQ(Records().RecordCount(), 4);
    Records().SetValue("KEYNAME", std::string("AA"));
    Records().Update();
    EXPECT_EQ(Records().RecordCount(), 5);
    EXPECT_EQ(Here(), "AA");
    EXPECT_EQ(Records().Position(), 4);
    Records().MoveNext();
    EXPECT_EQ(Here(), "EOF");
    EXPECT_EQ(Keys(), (Texts{"a", "AA", "B", "C", "D"}));
    EXPECT_EQ(Column("SELECT LISTED FROM STOCK WHERE KEYNAME='AA'"), Texts{"1/1/1900"});
}

TEST_F(RecordsetTest, AddsWithAllDefaultsToAProjection) {
    const auto control = Select("SELECT KEYNAME FROM STOCK");
    control->Recordset().AddNew();
    control->Recordset().SetValue(0, std::string("E"));
    control->Recordset().Update();
    EXPECT_EQ(Column("SELECT FLAG FROM STOCK WHERE KEYNAME='E'"), Texts{"3"});
}

TEST_F(RecordsetTest, GoesBackToItsPlaceWhenAnAddIsTakenBack) {
    Records().MoveTo(1);
    Records().AddNew();
    Records().SetValue("KEYNAME", std::string("E"));
    Records().CancelUpdate();
    EXPECT_EQ(Here(), "B");
    EXPECT_EQ(Records().RecordCount(), 4);
    Records().Update();
    EXPECT_EQ(Keys().size(), 4U);
}

TEST_F(RecordsetTest, KeepsARefusedAddPending) {
    Records().AddNew();
    EXPECT_EQ(FaultOf([&] { Records().Update(); }), fault::kNullKey);
    Records().SetValue("KEYNAME", std::string("A"));
    EXPECT_EQ(FaultOf([&] { Records().Update(); }), fault::kDuplicateKey);
    EXPECT_EQ(Records().Edit(), EditMode::Add);
    Records().SetValue("KEYNAME", std::string("E"));
    Records().Update();
    EXPECT_EQ(Keys(), (Texts{"a", "B", "C", "D", "E"}));
}

TEST_F(RecordsetTest, AddsToAnEmptySet) {
    const auto control = Select("SELECT * FROM STOCK WHERE FLAG='9'");
    Recordset& records = control->Recordset();
    records.AddNew();
    records.SetValue("KEYNAME", std::string("E"));
    records.Update();
    EXPECT_EQ(records.RecordCount(), 1);
    EXPECT_FALSE(records.Bof() || records.Eof());
    EXPECT_EQ(records.TextView(0), "E");
}

TEST_F(RecordsetTest, AddsWithTheDefaultOfAColumnThatCameLater) {
    Records().AddNew();
    Records().SetValue("KEYNAME", std::string("E"));
    Run("ALTER TABLE STOCK ADD COLOUR TEXT(5)");
    Run("ALTER TABLE STOCK ALTER COLUMN COLOUR SET DEFAULT 'red'");
    Records().Update();
    EXPECT_EQ(Column("SELECT COLOUR FROM STOCK WHERE KEYNAME='E'"), Texts{"red"});
}

// ---- deleting ----

TEST_F(RecordsetTest, StaysOnThePlaceOfADeletedRecord) {
    Records().MoveTo(1);
    Records().Delete();
    EXPECT_EQ(Records().RecordCount(), 3);
    EXPECT_FALSE(Records().Bof() || Records().Eof());
    EXPECT_EQ(FaultOf([&] { static_cast<void>(Records().TextView(0)); }), fault::kNoCurrentRecord);
    EXPECT_EQ(Records().Position(), -1);
    Records().MoveNext();
    EXPECT_EQ(Here(), "C");
    EXPECT_EQ(Records().Position(), 1);
    EXPECT_EQ(Keys(), (Texts{"a", "C", "D"}));
}

TEST_F(RecordsetTest, GoesBackFromADeletedRecord) {
    Records().MoveTo(1);
    Records().Delete();
    Records().MovePrevious();
    EXPECT_EQ(Here(), "a");
}

TEST_F(RecordsetTest, ComesToTheLastRecordWhenTheLastWasDeleted) {
    Records().MoveLast();
    Records().Delete();
    Records().MoveNext();
    EXPECT_EQ(Here(), "EOF");
    Records().MovePrevious();
    EXPECT_EQ(Here(), "C");
}

TEST_F(RecordsetTest, IsAtBothEndsWhenTheOnlyRecordWasDeleted) {
    while (Records().RecordCount() > 0) {
        Records().MoveFirst();
        Records().Delete();
    }
    EXPECT_TRUE(Records().Bof() && Records().Eof());
    EXPECT_EQ(Keys(), Texts{});
}

TEST_F(RecordsetTest, KeepsBookmarksOfTheOthersAcrossADelete) {
    Records().MoveTo(3);
    const Bookmark last = Records().GetBookmark();
    Records().MoveTo(1);
    const Bookmark gone = Records().GetBookmark();
    Records().Delete();
    Records().SetBookmark(last);
    EXPECT_EQ(Here(), "D");
    EXPECT_EQ(Records().Position(), 2);
    EXPECT_EQ(FaultOf([&] { Records().SetBookmark(gone); }), fault::kNoCurrentRecord);
    Records().AddNew();
    Records().SetValue("KEYNAME", std::string("E"));
    Records().Update();
    EXPECT_EQ(Records().Position(), 3);
    Records().MovePrevious();
    EXPECT_EQ(Here(), "D");
}

TEST_F(RecordsetTest, DropsWhatIsPendingWithADelete) {
    Records().SetValue("CITY", std::string("Flint"));
    Records().Delete();
    EXPECT_EQ(Records().Edit(), EditMode::None);
    Records().MoveFirst();
    Records().AddNew();
    Records().Delete();
    EXPECT_EQ(Keys(), (Texts{"B", "C", "D"}));
}

// ---- others ----

TEST_F(RecordsetTest, DoesNotSeeLaterChangesOfOthers) {
    Run("INSERT INTO STOCK (KEYNAME) VALUES ('E')");
    const auto other = Select("SELECT * FROM STOCK ORDER BY KEYNAME");
    other->Recordset().SetValue("CITY", std::string("Flint"));
    other->Recordset().Update();
    EXPECT_EQ(Records().RecordCount(), 4);
    EXPECT_EQ(Records().TextView(1), "troy");
    control_->Refresh();
    EXPECT_EQ(Records().RecordCount(), 5);
    EXPECT_EQ(Records().TextView(1), "Flint");
}

TEST_F(RecordsetTest, OverwritesWhatOthersChangedWithWhatItReadBefore) {
    const auto other = Select("SELECT * FROM STOCK ORDER BY KEYNAME");
    other->Recordset().SetValue("FLAG", std::string("2"));
    other->Recordset().Update();
    Records().SetValue("FLAG", std::string("0"));  // what this view has read
    Records().Update();
    EXPECT_EQ(Column("SELECT FLAG FROM STOCK WHERE KEYNAME='a'"), Texts{"0"});
}

TEST_F(RecordsetTest, LeavesOutAWriteThatChangesNothing) {
    const auto database = pool_.Open(Path(), jet::Database::Access::ReadWrite);
    const std::uint64_t before = database->ChangeCount();
    Records().SetValue("FLAG", std::string("0"));
    Records().SetValue("CITY", std::string("troy"));
    Records().SetValue("PRICE", jet::Null{});
    Records().Update();
    EXPECT_EQ(database->ChangeCount(), before);
    Records().SetValue("CITY", std::string("Troy"));
    Records().Update();
    EXPECT_EQ(database->ChangeCount(), before + 1);
}

TEST_F(RecordsetTest, FaultsOnARecordThatAnotherDeleted) {
    const auto other = Select("SELECT * FROM STOCK ORDER BY KEYNAME");
    other->Recordset().Delete();
    Records().SetValue("CITY", std::string("Flint"));
    EXPECT_EQ(FaultOf([&] { Records().Update(); }), fault::kNoCurrentRecord);
}

TEST_F(RecordsetTest, CommitsABatchAtItsEnd) {
    const auto database = pool_.Open(Path(), jet::Database::Access::ReadWrite);
    Records().BeginBatch();
    for (; !Records().Eof(); Records().MoveNext())
        Records().SetValue("CITY", std::string("Flint"));
    EXPECT_TRUE(database->InTransaction());
    Records().EndBatch();
    EXPECT_FALSE(database->InTransaction());
    EXPECT_EQ(FaultOf([&] { Records().EndBatch(); }), fault::kInvalidCall);
    const auto reopened = jet::Database::Open(Path(), jet::Database::Access::ReadOnly);
    int flints = 0;
    reopened->OpenTable("STOCK").Scan([&](const jet::RowView& row) {
        if (row.Get(1) == jet::Value{std::string("Flint")}) ++flints;
        return true;
    });
    EXPECT_EQ(flints, 4);
}

TEST_F(RecordsetTest, EndsABatchWhenItGoesAway) {
    const auto database = pool_.Open(Path(), jet::Database::Access::ReadWrite);
    Records().BeginBatch();
    Records().SetValue("CITY", std::string("Flint"));
    Records().Update();
    control_->Close();
    EXPECT_FALSE(database->InTransaction());
    EXPECT_EQ(Column("SELECT CITY FROM STOCK WHERE KEYNAME='a'"), Texts{"Flint"});
}

TEST_F(RecordsetTest, KeepsWhatItReadWhenItsFileWasReplaced) {
    Records().MoveTo(1);
    Records().SetValue("CITY", std::string("Flint"));
    pool_.Forget(Path());
    EXPECT_EQ(FaultOf([&] { Records().Update(); }), fault::kObjectNotSet);
    Records().CancelUpdate();
    EXPECT_EQ(Records().TextView(1), "Troy");
    EXPECT_EQ(Records().Number(2), 200);
    EXPECT_EQ(Records().FieldIndex("PRICE"), 2);
    Records().Find("KEYNAME='d'");
    EXPECT_EQ(Here(), "D");
    EXPECT_EQ(FaultOf([&] { Records().SetValue("CITY", std::string("x")); }), fault::kObjectNotSet);
    EXPECT_EQ(FaultOf([&] { Records().AddNew(); }), fault::kObjectNotSet);
    EXPECT_EQ(FaultOf([&] { Records().Delete(); }), fault::kObjectNotSet);
    EXPECT_EQ(Records().Edit(), EditMode::None);
    Records().MoveFirst();
    EXPECT_EQ(FaultOf([&] { static_cast<void>(Records().Text(5)); }), fault::kObjectNotSet);  // a Memo
    control_->Refresh();
    Records().SetValue("CITY", std::string("Flint"));
    Records().Update();
    EXPECT_EQ(Records().TextView(1), "Flint");
}

TEST(RecordsetReadOnly, RefusesEveryChange) {
    const testing_support::TempFolder folder;
    {
        const auto database = jet::Database::Create(folder / "a.mdb", 40359);
        jet::NewTable table;
        table.name = "T";
        table.columns = {NewColumn("A", jet::ColumnType::Text, 5)};
        database->CreateTable(table, 40359).Insert(std::vector<jet::Value>{std::string("x")});
    }
    DatabasePool pool;
    const shell::FixedClock clock{40359};
    Adodc control(pool, clock);
    control.Connectionstring = "Data Source=" + (folder / "a.mdb").string() + ";Mode=Read";
    control.RecordSource = "SELECT * FROM T";
    control.Refresh();
    EXPECT_EQ(control.Recordset().TextView(0), "x");
    EXPECT_EQ(FaultOf([&] { control.Recordset().SetValue(0, std::string("y")); }), fault::kReadOnly);
    EXPECT_EQ(FaultOf([&] { control.Recordset().AddNew(); }), fault::kReadOnly);
    EXPECT_EQ(FaultOf([&] { control.Recordset().Delete(); }), fault::kReadOnly);
    EXPECT_EQ(control.Recordset().RecordCount(), 1);
}

}  // namespace
}  // namespace zenvora::ado
