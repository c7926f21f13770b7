#include "analysis/validity.h"

#include "analysis/databook_fixture.h"
#include "analysis/explanation.h"
#include "platform/fault.h"

namespace zenvora::analysis {
namespace {

constexpr const char* kLongLine =
    "If there is a Sale Price, then there must be either a Sale Date or a Contract Date";
constexpr const char* kLongLineAndSaleDate =
    "If there is a Sale Price, then there must be either a Sale Date or a Contract Date"
    "Sale Date after Effective Appraisal Date; ";

/// A listing that is sound by its original date and price alone.
Fields With(const Fields& changes) {
    Fields fields = {{"ORIGLISTDATE", DaysBack(100)}, {"ORIGLISTPRICE", 259900.0}};
    fields.insert(fields.end(), changes.begin(), changes.end());
    return fields;
}

class Validity : public DatabookTest {
  protected:
    void Run(std::string_view mode = "M", bool allRecords = true) {
        CheckRecordValidity(session, adoDatabook, Effective(), mode, allRecords);
    }
    std::string Explain(std::string_view key) {
        Find(key);
        return BuildInvalidExplanation(adoDatabook, Effective());
    }
};

struct Case {
    const char* name;
    Fields fields;
    const char* verdict;
    const char* explanation;  // after the run
};

class Verdict : public Validity, public testing::WithParamInterface<Case> {};

TEST_P(Verdict, AndExplanationOfARecord) {
    Add("12 OAK ST", GetParam().fields);
    Run();
    EXPECT_EQ(Text("12 OAK ST", "SELECTED"), GetParam().verdict);
    EXPECT_EQ(Explain("12 OAK ST"), GetParam().explanation);
    EXPECT_EQ(session.validRecords, std::string(GetParam().verdict) == "0" ? 0 : 1);
}

const jet::Value kNone = jet::DateTime{common::kDayZero};

INSTANTIATE_TEST_SUITE_P(
    Listing, Verdict,
    testing::Values(
        // The column's default is "3", which a run leaves alone on a sound record.
        Case{"OriginalValuesAlone", With({}), "3", ""},
        Case{"OriginalValuesAloneWithoutAFlag", With({{"SELECTED", jet::Null{}}}), "1", ""},
        Case{"NothingAtAll",
             {},
             "0",
             "Original List Date not valid; Original List Price not valid; Curr List Date not valid; "
             "Curr List Price not valid; "},
        Case{"AllNull",
             {{"ORIGLISTDATE", jet::Null{}},
              {"ORIGLISTPRICE", jet::Null{}},
              {"LASTLISTDATE", jet::Null{}},
              {"LASTLISTPRICE", jet::Null{}}},
             "0",
             "Original List Date missing; Original List Price missing; Curr List Date missing; "
             "Curr List Price missing; "},
        Case{"OriginalDateNull", With({{"ORIGLISTDATE", jet::Null{}}}), "0",
             "Original List Date missing; Curr List Date not valid; "},
        Case{"OriginalDateDayZero", With({{"ORIGLISTDATE", kNone}}), "0",
             "Original List Date not valid; Curr List Date not valid; "},
        Case{"OriginalDateOnTheEffectiveDate", With({{"ORIGLISTDATE", DaysBack(0)}}), "3", ""},
        Case{"OriginalDateAfterTheEffectiveDate", With({{"ORIGLISTDATE", DaysBack(-1)}}), "0",
             "Original List Date after Eff App Dt; Curr List Date not valid; "},
        Case{"BothDatesAfterTheEffectiveDate",
             With({{"ORIGLISTDATE", DaysBack(-1)}, {"LASTLISTDATE", DaysBack(-1)}}), "0",
             "Original List Date after Eff App Dt; Curr List Date after Effective Appraisal Date; "},
        Case{"OriginalPriceZero", With({{"ORIGLISTPRICE", 0.0}}), "0",
             "Original List Price not valid; Curr List Price not valid; "},
        Case{"OriginalPriceNull", With({{"ORIGLISTPRICE", jet::Null{}}}), "0",
             "Original List Price missing; Curr List Price not valid; "},
        Case{"OriginalPriceNegative", With({{"ORIGLISTPRICE", -5.0}, {"LASTLISTPRICE", 5.0}}), "0",
             "Original List Price not valid; "},
        Case{"CurrentDateBeforeOriginal", With({{"LASTLISTDATE", DaysBack(101)}}), "0",
             "Curr List Date before Original List Date; "},
        Case{"CurrentDateOnOriginal", With({{"LASTLISTDATE", DaysBack(100)}}), "3", ""},
        Case{"CurrentDateOnTheEffectiveDate", With({{"LASTLISTDATE", DaysBack(0)}}), "3", ""},
        Case{"CurrentDateAfterTheEffectiveDate", With({{"LASTLISTDATE", DaysBack(-1)}}), "0",
             "Curr List Date after Effective Appraisal Date; "},
        Case{"CurrentPriceNegative", With({{"LASTLISTPRICE", -5.0}}), "0", "Curr List Price not valid; "},
        // Half a dollar rounds to one, less rounds to nothing; the explanation sees the cents.
        Case{"OriginalPriceOfHalfADollar", With({{"ORIGLISTPRICE", 0.5}}), "3", ""},
        Case{"OriginalPriceOfCents", With({{"ORIGLISTPRICE", 0.4}}), "0", "Curr List Price not valid; "},
        Case{"InvalidWithNothingToExplain", With({{"ORIGLISTPRICE", 0.4}, {"LASTLISTPRICE", 100.0}}), "0",
             ""}),
    [](const auto& info) { return info.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Sale, Verdict,
    testing::Values(
        Case{"WithDateAndPrice", With({{"SALEDATE", DaysBack(10)}, {"SELLINGPR", 240000.0}}), "3", ""},
        Case{"AYearAgo",
             With({{"ORIGLISTDATE", DaysBack(400)}, {"SALEDATE", DaysBack(365)}, {"SELLINGPR", 240000.0}}),
             "3", ""},
        Case{"OverAYearAgo",
             With({{"ORIGLISTDATE", DaysBack(400)}, {"SALEDATE", DaysBack(366)}, {"SELLINGPR", 240000.0}}),
             "0", "Comp Sale Date is over a year ago; "},
        Case{"OnTheDayOfListing", With({{"SALEDATE", DaysBack(100)}, {"SELLINGPR", 240000.0}}), "3", ""},
        Case{"OnTheDayOfContract",
             With({{"CONTRACTDATE", DaysBack(30)}, {"SALEDATE", DaysBack(30)}, {"SELLINGPR", 240000.0}}), "3",
             ""},
        Case{"PriceZero", With({{"SALEDATE", DaysBack(10)}, {"SELLINGPR", 0.0}}), "0",
             "Sale Price invalid; "},
        Case{"PriceOfCents", With({{"SALEDATE", DaysBack(10)}, {"SELLINGPR", 0.4}}), "0",
             "Sale Price invalid; "},
        Case{"PriceNull", With({{"SALEDATE", DaysBack(10)}, {"SELLINGPR", jet::Null{}}}), "0",
             "Sale Price missing; "},
        Case{"OverAYearAgoAndNoPrice", With({{"ORIGLISTDATE", DaysBack(400)}, {"SALEDATE", DaysBack(366)}}),
             "0", "Sale Price missing; Comp Sale Date is over a year ago; "},
        Case{"PriceWithoutADate", With({{"SELLINGPR", 240000.0}}), "0", kLongLine},
        Case{"PriceWithoutADateHidesAllElse", With({{"SELLINGPR", 240000.0}, {"LASTLISTPRICE", -5.0}}), "0",
             kLongLine},
        Case{"PriceWithAContractDate", With({{"SELLINGPR", 240000.0}, {"CONTRACTDATE", DaysBack(10)}}), "3",
             ""},
        Case{"PriceWithAContractDateToCome", With({{"SELLINGPR", 240000.0}, {"CONTRACTDATE", DaysBack(-10)}}),
             "0", kLongLine},
        Case{"DateAfterTheEffectiveDate", With({{"SALEDATE", DaysBack(-1)}}), "0",
             "Sale Date after Effective Appraisal Date; "},
        Case{"DateAfterTheEffectiveDateUnderContract",
             With({{"SALEDATE", DaysBack(-1)}, {"SELLINGPR", 240000.0}, {"CONTRACTDATE", DaysBack(10)}}), "0",
             "Sale Date after Effective Appraisal Date; "},
        Case{"DateAfterTheEffectiveDateWithAPrice",
             With({{"SALEDATE", DaysBack(-1)}, {"SELLINGPR", 240000.0}}), "0", kLongLineAndSaleDate},
        Case{"BeforeAllOthers",
             With({{"SALEDATE", DaysBack(120)}, {"SELLINGPR", 240000.0}, {"CONTRACTDATE", DaysBack(90)}}),
             "0",
             "Sale Date before Original List Date; Sale Date before Current List Date; "
             "Sale Date before Contract Date; "},
        Case{"BeforeItsListing", With({{"SALEDATE", DaysBack(120)}}), "0",
             "Sale Date before Original List Date; Sale Date before Current List Date; "},
        Case{"BeforeTheCurrentListDate", With({{"SALEDATE", DaysBack(60)}, {"LASTLISTDATE", DaysBack(50)}}),
             "0", "Sale Date before Current List Date; "},
        Case{"BeforeItsContract",
             With({{"SALEDATE", DaysBack(60)}, {"SELLINGPR", 240000.0}, {"CONTRACTDATE", DaysBack(50)}}), "0",
             "Sale Date before Contract Date; "}),
    [](const auto& info) { return info.param.name; });

INSTANTIATE_TEST_SUITE_P(
    OffTheMarket, Verdict,
    testing::Values(
        Case{"Contract", With({{"CONTRACTDATE", DaysBack(10)}}), "3", ""},
        Case{"ContractToCome", With({{"CONTRACTDATE", DaysBack(-10)}}), "3", ""},
        Case{"ContractBeforeListing", With({{"CONTRACTDATE", DaysBack(110)}}), "3", ""},
        Case{"Cancelled", With({{"LISTCANCELDATE", DaysBack(10)}}), "3", ""},
        Case{"CancelledWithAContract",
             With({{"LISTCANCELDATE", DaysBack(10)}, {"CONTRACTDATE", DaysBack(20)}}), "0",
             "Contract Dt should not exist when there's a Cancel Date; "},
        Case{"CancelledWithASale",
             With({{"LISTCANCELDATE", DaysBack(10)}, {"SALEDATE", DaysBack(20)}, {"SELLINGPR", 240000.0}}),
             "0", ", Sale Dt should not exist when there's a Cancel Date; "},
        Case{"CancelledWithContractAndSaleNamesOneOnly",
             With({{"LISTCANCELDATE", DaysBack(10)},
                   {"CONTRACTDATE", DaysBack(30)},
                   {"SALEDATE", DaysBack(20)},
                   {"SELLINGPR", 240000.0}}),
             "0", "Contract Dt should not exist when there's a Cancel Date; "},
        Case{"CancelledWithASaleWithoutAPrice",
             With({{"LISTCANCELDATE", DaysBack(10)}, {"SALEDATE", DaysBack(20)}}), "0",
             ", Sale Dt should not exist when there's a Cancel Date; Sale Price missing; "},
        // The line of the sale price without a date takes the place of the one of the cancel date.
        Case{"CancelledWithASalePrice", With({{"LISTCANCELDATE", DaysBack(10)}, {"SELLINGPR", 240000.0}}),
             "0", kLongLine},
        Case{"CancelToComeWithASale",
             With({{"LISTCANCELDATE", DaysBack(-10)}, {"SALEDATE", DaysBack(20)}, {"SELLINGPR", 240000.0}}),
             "3", ""}),
    [](const auto& info) { return info.param.name; });

INSTANTIATE_TEST_SUITE_P(
    DateWithoutADay, Verdict,
    testing::Values(
        Case{"Original", With({{"ORIGLISTDATE", Dated(0)}}), "0",
             "Original List Date not valid; Curr List Date not valid; "},
        Case{"Others",
             With({{"CONTRACTDATE", Dated(0)}, {"LISTCANCELDATE", Dated(0)}, {"SALEDATE", Dated(0)}}), "3",
             ""},
        Case{"CurrentReadsAsADateBeforeTheOriginal", With({{"LASTLISTDATE", Dated(0)}}), "0",
             "Curr List Date before Original List Date; "},
        Case{"CurrentWithoutAnOriginal", With({{"ORIGLISTDATE", kNone}, {"LASTLISTDATE", Dated(0)}}), "0",
             "Original List Date not valid; "}),
    [](const auto& info) { return info.param.name; });

TEST_F(Validity, FillsMissingCurrentValuesFromTheOriginals) {
    Add("A", With({}));
    Add("B", With({{"LASTLISTDATE", jet::Null{}}, {"LASTLISTPRICE", jet::Null{}}}));
    Add("C", With({{"LASTLISTPRICE", 0.4}}));
    Add("D", With({{"LASTLISTDATE", DaysBack(50)}}));
    Add("E", With({{"LASTLISTPRICE", 249900.0}}));
    Run();
    for (const char* key : {"A", "B", "C", "E"}) {
        EXPECT_EQ(Text(key, "LASTLISTDATE"), "3/22/2010") << key;  // 100 days before 06/30/2010
    }
    for (const char* key : {"A", "B", "C", "D"})
        EXPECT_EQ(Text(key, "LASTLISTPRICE"), "259900") << key;
    EXPECT_EQ(Text("D", "LASTLISTDATE"), "5/11/2010");
    EXPECT_EQ(Text("E", "LASTLISTPRICE"), "249900");
    EXPECT_EQ(session.validRecords, 5);
}

TEST_F(Validity, FillsEachCurrentValueByItself) {
    Add("NO DATE", {{"ORIGLISTPRICE", 259900.0}});
    Add("NO PRICE", {{"ORIGLISTDATE", DaysBack(100)}});
    Run();
    EXPECT_EQ(Text("NO DATE", "LASTLISTPRICE"), "259900");
    EXPECT_EQ(Text("NO DATE", "LASTLISTDATE"), "1/1/1900");
    EXPECT_EQ(Text("NO PRICE", "LASTLISTPRICE"), "0");
    EXPECT_EQ(Text("NO PRICE", "LASTLISTDATE"), "3/22/2010");
    EXPECT_EQ(session.validRecords, 0);
}

TEST_F(Validity, FilledPricesGoThroughSinglePrecision) {
    Add("A", With({{"ORIGLISTPRICE", 20000001.0}}));
    Run();
    EXPECT_EQ(Text("A", "LASTLISTPRICE"), "20000000");
    EXPECT_EQ(Text("A", "ORIGLISTPRICE"), "20000001");
}

TEST_F(Validity, KeepsWhatItWroteInTheFile) {
    Add("A", {{"ORIGLISTDATE", Dated(0)}});
    Add("B", With({{"SELECTED", Flag("0")}}));
    Run();
    Run("M", true);
    adoDatabook.Refresh();
    EXPECT_EQ(Text("A", "ORIGLISTDATE"), "1/1/1900");
    EXPECT_EQ(Text("A", "SELECTED"), "0");
    EXPECT_EQ(Text("B", "SELECTED"), "1");
    EXPECT_EQ(Text("B", "LASTLISTDATE"), "3/22/2010");
}

TEST_F(Validity, RepairsDatesWithoutADayButNotTheCurrentListDateAndGoesOn) {
    const Fields bare = {{"ORIGLISTDATE", Dated(0)},   {"LASTLISTDATE", Dated(0)}, {"CONTRACTDATE", Dated(0)},
                         {"LISTCANCELDATE", Dated(0)}, {"SALEDATE", Dated(0)},     {"SELECTED", Flag("3")}};
    Add("A", bare);
    Add("B", With({{"LASTLISTDATE", Dated(0)}, {"SELECTED", Flag("1")}}));
    Add("C", With({{"SELECTED", Flag("0")}}));
    Run();
    for (const char* column : {"ORIGLISTDATE", "CONTRACTDATE", "LISTCANCELDATE", "SALEDATE"}) {
        EXPECT_EQ(Text("A", column), "1/1/1900") << column;
    }
    for (const char* key : {"A", "B"}) {
        EXPECT_EQ(Text(key, "LASTLISTDATE"), "12/30/1899") << key;
        EXPECT_EQ(Text(key, "SELECTED"), "0") << key;
    }
    EXPECT_EQ(Text("C", "SELECTED"), "1");
    EXPECT_EQ(session.validRecords, 1);
}

TEST_F(Validity, DoesNotRepairATimeOfDay) {
    Add("A", With({{"CONTRACTDATE", Dated(0.25)}}));
    Run();
    EXPECT_EQ(Value("A", "CONTRACTDATE"), Dated(0.25));
}

TEST_F(Validity, ADateInALaterYearThanTheClocksIsValid) {
    Add("A", With({{"ORIGLISTDATE", Dated(Day(2011, 1, 5))}, {"SELECTED", jet::Null{}}}));
    CheckRecordValidity(session, adoDatabook, Day(2011, 6, 30), "M", true);
    EXPECT_EQ(Text("A", "SELECTED"), "1");
}

struct FlagCase {
    const char* name;
    const char* mode;
    bool allRecords;
    bool sound;
    const char* before;  // nullptr is Null
    const char* after;
};

class FlagRule : public Validity, public testing::WithParamInterface<FlagCase> {};

TEST_P(FlagRule, WritesTheVerdict) {
    const FlagCase& of = GetParam();
    const jet::Value before = of.before ? Flag(of.before) : jet::Value{jet::Null{}};
    Add("A", With({{"LASTLISTPRICE", of.sound ? 100.0 : -1.0}, {"SELECTED", before}}));
    Find("A");
    Run(of.mode, of.allRecords);
    EXPECT_EQ(Text("A", "SELECTED"), of.after);
    EXPECT_EQ(session.validRecords, of.sound ? 1 : 0);
    EXPECT_EQ(adoDatabook.Recordset().Edit(), ado::EditMode::None);
}

INSTANTIATE_TEST_SUITE_P(Flags, FlagRule,
                         testing::Values(FlagCase{"SoundAndInvalidBefore", "M", true, true, "0", "1"},
                                         FlagCase{"SoundAndValidBefore", "M", true, true, "1", "1"},
                                         FlagCase{"SoundAndExcluded", "M", true, true, "2", "2"},
                                         FlagCase{"SoundAndIncluded", "M", true, true, "3", "3"},
                                         FlagCase{"SoundAndOutOfRange", "M", true, true, "9", "9"},
                                         FlagCase{"SoundAndNull", "M", true, true, nullptr, "1"},
                                         FlagCase{"SoundAndNoNumber", "M", true, true, "Y", "1"},
                                         FlagCase{"UnsoundAndInvalidBefore", "M", true, false, "0", "0"},
                                         FlagCase{"UnsoundAndExcluded", "M", true, false, "2", "0"},
                                         FlagCase{"UnsoundAndIncluded", "M", true, false, "3", "0"},
                                         FlagCase{"UnsoundAndNull", "M", true, false, nullptr, "0"},
                                         FlagCase{"OneRecordLosesItsExclusion", "M", false, true, "2", "1"},
                                         FlagCase{"OneRecordLosesItsInclusion", "M", false, true, "3", "1"},
                                         FlagCase{"OneUnsoundRecord", "M", false, false, "3", "0"},
                                         FlagCase{"ModeRWritesOne", "R", true, true, "2", "1"},
                                         FlagCase{"ModeUWritesTwo", "U", true, true, "1", "2"},
                                         FlagCase{"ModeSWritesThree", "S", true, true, "0", "3"},
                                         FlagCase{"ModeUOnUnsound", "U", true, false, "1", "0"},
                                         FlagCase{"ModeIsTrimmedAndUpperCased", " s ", true, true, "0", "3"}),
                         [](const auto& info) { return info.param.name; });

TEST_F(Validity, FaultsOnAnotherMode) {
    Add("A", With({}));
    try {
        Run("X");
        FAIL() << "no fault";
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.number, fault::kInvalidCall);
    }
}

TEST_F(Validity, LosesAnExclusionOnceTheRecordWasInvalid) {
    Add("A", With({{"SELECTED", Flag("2")}}));
    Run();
    EXPECT_EQ(Text("A", "SELECTED"), "2");
    Set("A", {{"LASTLISTPRICE", -1.0}});
    Run();
    EXPECT_EQ(Text("A", "SELECTED"), "0");
    Set("A", {{"LASTLISTPRICE", 100.0}});
    Run();
    EXPECT_EQ(Text("A", "SELECTED"), "1");
}

TEST_F(Validity, ChecksTheCurrentRecordAlone) {
    Add("A", With({{"SELECTED", Flag("0")}}));
    Add("B", With({{"SELECTED", Flag("0")}}));
    Add("C", With({{"SELECTED", Flag("0")}, {"LASTLISTPRICE", -1.0}}));
    Find("B");
    Run("M", false);
    EXPECT_EQ(session.validRecords, 1);
    EXPECT_EQ(Text("A", "SELECTED"), "0");
    EXPECT_EQ(Text("B", "SELECTED"), "1");
    Find("C");
    Run("M", false);
    EXPECT_EQ(session.validRecords, 0);
}

TEST_F(Validity, ComesBackToTheCurrentRecord) {
    for (const char* key : {"A", "B", "C"})
        Add(key, With({}));
    Find("B");
    Run();
    EXPECT_EQ(adoDatabook.Recordset().Text(adoDatabook.Recordset().FieldIndex("CENTRALKEY")), "B");
}

TEST_F(Validity, OfNoRecordsResetsTheCount) {
    session.validRecords = 7;
    Run();
    EXPECT_EQ(session.validRecords, 0);
    EXPECT_EQ(BuildInvalidExplanation(adoDatabook, Effective()), "");
}

TEST_F(Validity, CountsExcludedRecordsAsValid) {
    Add("A", With({{"SELECTED", Flag("2")}}));
    Add("B", With({}));
    Add("C", {});
    session.validRecords = 7;
    Run();
    EXPECT_EQ(session.validRecords, 2);
}

TEST_F(Validity, CountsBeyondSixteenBits) {
    adoDatabook.Recordset().BeginBatch();
    for (int i = 0; i < 32769; ++i)
        Add("KEY " + std::to_string(i), With({}));
    adoDatabook.Recordset().EndBatch();
    Run();
    EXPECT_EQ(session.validRecords, 32769);
    EXPECT_EQ(desktop.lastDone, 32769);
    EXPECT_EQ(desktop.lastTotal, 32769);
}

TEST_F(Validity, ExplainsByTheValuesAsTheyStandNow) {
    Add("A", With({{"LASTLISTDATE", jet::Null{}}, {"LASTLISTPRICE", jet::Null{}}}));
    EXPECT_EQ(Explain("A"), "Curr List Date missing; Curr List Price missing; ");
    Run();
    EXPECT_EQ(Explain("A"), "");
    // The flag says valid, and as of an earlier date the record is not.
    EXPECT_EQ(BuildInvalidExplanation(adoDatabook, Effective() - 101),
              "Original List Date after Eff App Dt; Curr List Date after Effective Appraisal Date; ");
}

TEST_F(Validity, ExplanationStepsBackFromBeforeTheFirstAndBehindTheLast) {
    Add("A", With({{"SELLINGPR", 240000.0}, {"LASTLISTDATE", DaysBack(0)}, {"LASTLISTPRICE", 1.0}}));
    Add("B", With({{"LASTLISTDATE", DaysBack(101)}, {"LASTLISTPRICE", 1.0}}));
    ado::Recordset& records = adoDatabook.Recordset();
    records.MoveFirst();
    records.MovePrevious();
    ASSERT_TRUE(records.Bof());
    EXPECT_EQ(BuildInvalidExplanation(adoDatabook, Effective()), kLongLine);
    records.MoveLast();
    records.MoveNext();
    ASSERT_TRUE(records.Eof());
    EXPECT_EQ(BuildInvalidExplanation(adoDatabook, Effective()),
              "Curr List Date before Original List Date; ");
}

jet::NewColumn Column(const char* name, jet::ColumnType type, int characters = 0) {
    jet::NewColumn column;
    column.name = name;
    column.type = type;
    column.characters = characters;
    return column;
}

TEST_F(Validity, ReadsAndRepairsDatesInTextColumns) {
    OpenOwnTable(
        {Column("CENTRALKEY", jet::ColumnType::Text, 50), Column("ORIGLISTDATE", jet::ColumnType::Text, 20),
         Column("ORIGLISTPRICE", jet::ColumnType::Double), Column("LASTLISTDATE", jet::ColumnType::Text, 20),
         Column("LASTLISTPRICE", jet::ColumnType::Double), Column("SALEDATE", jet::ColumnType::Text, 20),
         Column("SELLINGPR", jet::ColumnType::Double), Column("SELECTED", jet::ColumnType::Text, 1)});
    const auto text = [](const char* value) { return jet::Value{std::string(value)}; };
    Add("A", {{"ORIGLISTDATE", text("3/22/2010")},
              {"ORIGLISTPRICE", 259900.0},
              {"SALEDATE", text("6/20/2010")},
              {"SELLINGPR", 240000.0}});
    Add("B", {{"ORIGLISTDATE", text("abc")}, {"ORIGLISTPRICE", 259900.0}});
    Run();
    EXPECT_EQ(Text("A", "SELECTED"), "1");
    EXPECT_EQ(Text("B", "SELECTED"), "0");
    Find("A");
    EXPECT_EQ(BuildInvalidExplanation(adoDatabook, Effective()), "");
    EXPECT_EQ(Explain("B"), "Original List Date not valid; Curr List Date missing; ");
}

TEST_F(Validity, TakesAMissingColumnForNull) {
    OpenOwnTable(
        {Column("CENTRALKEY", jet::ColumnType::Text, 50), Column("ORIGLISTDATE", jet::ColumnType::DateTime),
         Column("ORIGLISTPRICE", jet::ColumnType::Double), Column("LASTLISTDATE", jet::ColumnType::DateTime),
         Column("LASTLISTPRICE", jet::ColumnType::Double), Column("SELECTED", jet::ColumnType::Text, 1)});
    Add("A", With({}));
    Run();
    EXPECT_EQ(Text("A", "SELECTED"), "1");
    EXPECT_EQ(Explain("A"), "");
}

TEST_F(Validity, FaultsWithoutAColumnForItsVerdict) {
    OpenOwnTable({Column("CENTRALKEY", jet::ColumnType::Text, 50)});
    Add("A", {});
    try {
        Run();
        FAIL() << "no fault";
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.number, fault::kItemNotFound);
    }
}

TEST_F(Validity, LeavesARecordThatCannotBeRepairedAndGoesOn) {
    // No LASTLISTDATE: the repair of it faults on every record, and the verdicts are written all the same.
    OpenOwnTable(
        {Column("CENTRALKEY", jet::ColumnType::Text, 50), Column("ORIGLISTDATE", jet::ColumnType::DateTime),
         Column("ORIGLISTPRICE", jet::ColumnType::Double), Column("LASTLISTPRICE", jet::ColumnType::Double),
         Column("SELECTED", jet::ColumnType::Text, 1)});
    Add("A", With({}));
    Add("B", With({}));
    Run();
    for (const char* key : {"A", "B"}) {
        EXPECT_EQ(Text(key, "SELECTED"), "0");
        EXPECT_EQ(Text(key, "LASTLISTPRICE"), "259900");
    }
}

}  // namespace
}  // namespace zenvora::analysis
