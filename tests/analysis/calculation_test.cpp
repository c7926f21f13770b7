#include "analysis/calculation.h"

#include "analysis/databook_fixture.h"
#include "platform/fault.h"

namespace zenvora::analysis {
namespace {

using Row = std::array<std::string, 3>;

class Calculation : public DatabookTest {
  protected:
    void Calculate() { DoCalculations({session, adoDatabook, "06/30/2010", Effective()}, viewer); }

    Row Cells(std::string_view name) {
        const Results1004MC::Cells& cells = results.Row(name);
        return {cells[0].Text(), cells[1].Text(), cells[2].Text()};
    }
    std::vector<std::string> Entries(int index) {
        std::vector<std::string> entries;
        for (int i = 0; i < viewer.lstData[index].ListCount(); ++i)
            entries.push_back(viewer.lstData[index].List(i));
        return entries;
    }

    /// A listing of that many days before the effective date at 250,000, never changed.
    static Fields Listing(int daysBack, const char* flag = "1") {
        return {{"ORIGLISTDATE", DaysBack(daysBack)},
                {"ORIGLISTPRICE", 250000.0},
                {"LASTLISTDATE", DaysBack(daysBack)},
                {"LASTLISTPRICE", 250000.0},
                {"SELECTED", Flag(flag)}};
    }
    static Fields Sale(int listedDaysBack, int soldDaysBack, double price, const char* flag = "1") {
        Fields fields = Listing(listedDaysBack, flag);
        fields.insert(fields.end(), {{"SALEDATE", DaysBack(soldDaysBack)}, {"SELLINGPR", price}});
        return fields;
    }

    Results1004MC results;
    frmDataViewer viewer{session, results};
};

TEST_F(Calculation, OfNoRecordsShowsTheZeroForms) {
    Calculate();
    EXPECT_EQ(Cells("txtTotalC"), (Row{"0", "0", "0"}));
    EXPECT_EQ(Cells("txtAveCPrice"), (Row{"0.00", "0.00", "0.00"}));
    EXPECT_EQ(Cells("txtTotalL"), (Row{"0", "0", "0"}));
    EXPECT_EQ(Cells("txtTotalPerAveCPrice"), (Row{"0.00", "0.00", "0.00"}));
    EXPECT_EQ(Cells("txtMedianCPrice"), (Row{"0", "0", "0"}));
    EXPECT_EQ(Cells("txtMedianCDOM"), (Row{"0", "0", "0"}));
    EXPECT_EQ(Cells("txtMedianLPrice"), (Row{"", "", ""}));
    EXPECT_EQ(Cells("txtMedianLDOM"), (Row{"0", "0", "0"}));
    EXPECT_EQ(Cells("txtMedianLPDivSP"), (Row{"0", "0", "0"}));
    for (int index = 0; index < kStatisticsLists; ++index) {
        EXPECT_EQ(viewer.lstData[index].ListCount(), 0);
        EXPECT_EQ(viewer.txtTotal[index].Text(), "");
    }
}

TEST_F(Calculation, WorksOutTheFormByHand) {
    // Listed 11/01/2009, sold 02/15/2010: a listing of 59 days in Prior 7-12, a sale of 107 days in Prior
    // 4-6.
    Add("A", {{"ORIGLISTDATE", Dated(Day(2009, 11, 1))},
              {"ORIGLISTPRICE", 259900.0},
              {"LASTLISTDATE", Dated(Day(2009, 11, 1))},
              {"LASTLISTPRICE", 249900.0},
              {"SALEDATE", Dated(Day(2010, 2, 15))},
              {"SELLINGPR", 240000.0},
              {"SELECTED", Flag("1")}});
    Add("B", Sale(100, 10, 300000, "3"));  // a listing of 9 days in Prior 4-6, a sale of 91 days
    Add("C", Sale(60, 20, 300001));        // a sale of 41 days
    Add("D", Listing(400));                // 218, 309 and 400 days
    Add("E", Sale(100, 10, 1, "2"));
    Add("F", Sale(100, 10, 1, "0"));
    Calculate();
    using Texts = std::vector<std::string>;
    const Texts expected[kStatisticsLists] = {
        {},
        {"240000"},
        {"300000", "300001"},  // sale prices
        {},
        {"107"},
        {"41", "91"},  // days of sales
        {"249900", "250000"},
        {"250000", "250000"},
        {"250000"},  // list prices
        {"59", "218"},
        {"9", "309"},
        {"400"},  // days of listings
        {},
        {},
        {},
        {},
        {"249900"},
        {"250000", "250000"},  // list prices of the sales
    };
    for (int index = 0; index < kStatisticsLists; ++index)
        EXPECT_EQ(Entries(index), expected[index]) << index;
    EXPECT_EQ(Cells("txtTotalC"), (Row{"0", "1", "2"}));
    EXPECT_EQ(Cells("txtAveCPrice"), (Row{"0.00", "0.33", "0.67"}));
    EXPECT_EQ(Cells("txtTotalL"), (Row{"2", "2", "1"}));
    EXPECT_EQ(Cells("txtTotalPerAveCPrice"), (Row{"0.00", "6.06", "1.49"}));  // 2 / 0.33 and 1 / 0.67
    EXPECT_EQ(Cells("txtMedianCPrice"), (Row{"0", "240,000", "300,000"}));
    EXPECT_EQ(Cells("txtMedianCDOM"), (Row{"0", "107", "66"}));
    EXPECT_EQ(Cells("txtMedianLPrice"), (Row{"", "249900", "250000"}));
    EXPECT_EQ(Cells("txtMedianLDOM"), (Row{"138", "159", "400"}));
    EXPECT_EQ(Cells("txtMedianLPDivSP"), (Row{"0", ".96", "1.20"}));  // 240000 / 249900 and 300000 / 250000
    EXPECT_EQ(viewer.txtAverage[2].Text(), "300001");                 // 300000.5
    EXPECT_EQ(viewer.txtTotal[2].Text(), "600001");
    EXPECT_EQ(viewer.txtLowest[9].Text(), "59");
    EXPECT_EQ(viewer.txtHighest[9].Text(), "218");
}

TEST_F(Calculation, TakesTheRecordsOfOddFlagsAlone) {
    for (const char* flag : {"0", "1", "2", "3", "4", "5", "9", "Y"}) {
        Add(std::string("FLAG ") + flag, Sale(60, 20, 100000 + 1000.0 * (flag[0] - '0'), flag));
    }
    Add("EMPTY", Sale(60, 20, 1, ""));
    Fields none = Sale(60, 20, 2);
    none.emplace_back("SELECTED", jet::Null{});
    Add("NULL", none);
    Calculate();
    EXPECT_EQ(Entries(2), (std::vector<std::string>{"101000", "103000"}));
}

TEST_F(Calculation, AListPriceOfZeroCountsAndGivesNoRatio) {
    Fields sale = Sale(60, 20, 240000);
    sale.emplace_back("LASTLISTPRICE", 0.0);
    Add("A", sale);
    Calculate();
    EXPECT_EQ(Entries(17), (std::vector<std::string>{"0"}));
    EXPECT_EQ(Cells("txtMedianLPrice")[2], "0");
    EXPECT_EQ(Cells("txtMedianLPDivSP")[2], "0");
    EXPECT_EQ(Cells("txtTotalC")[2], "1");
}

TEST_F(Calculation, RatioIsAFraction) {
    for (const auto& [key, soldBack, price] :
         {std::tuple{"A", 20, 242500.0}, std::tuple{"B", 100, 250000.0}, std::tuple{"C", 200, 300000.0}}) {
        Add(key, Sale(300, soldBack, price));
    }
    Calculate();
    EXPECT_EQ(Cells("txtMedianLPDivSP"), (Row{"1.20", "1.00", ".97"}));
}

TEST_F(Calculation, AlternatesBetweenZeroAndEmptyWhenAPeriodHasEmptied) {
    Add("A", Sale(60, 20, 240000));
    Add("B", Listing(400));
    Calculate();
    EXPECT_EQ(Cells("txtMedianCPrice"), (Row{"0", "0", "240,000"}));
    Set("A", {{"SELECTED", Flag("2")}});
    Calculate();
    EXPECT_EQ(Cells("txtMedianCPrice"), (Row{"0", "0", ""}));
    EXPECT_EQ(Cells("txtMedianCDOM"), (Row{"0", "0", "0"}));
    EXPECT_EQ(Cells("txtMedianLPrice"), (Row{"", "", ""}));
    EXPECT_EQ(Cells("txtTotalC"), (Row{"0", "0", "0"}));
    EXPECT_EQ(Cells("txtAveCPrice"), (Row{"0.00", "0.00", "0.00"}));
    Calculate();
    EXPECT_EQ(Cells("txtMedianCPrice"), (Row{"0", "0", "0"}));
    Calculate();
    EXPECT_EQ(Cells("txtMedianCPrice"), (Row{"0", "0", "0"}));
}

TEST_F(Calculation, GivesTheSameFiguresAgain) {
    Add("A", Sale(60, 20, 240000));
    Add("B", Listing(400));
    Calculate();
    std::vector<Row> first;
    for (const ResultRow& row : kResultRows)
        first.push_back(Cells(row.name));
    Calculate();
    for (std::size_t i = 0; i < first.size(); ++i)
        EXPECT_EQ(Cells(kResultRows[i].name), first[i]);
}

TEST_F(Calculation, AnInvalidTextCountsFromDayZero) {
    Add("A", Sale(60, 20, 240000));
    DoCalculations({session, adoDatabook, "06/31", Effective()}, viewer);
    // 01/01/1900 is the effective date then: no record of 2010 was listed before it.
    EXPECT_EQ(Cells("txtTotalC"), (Row{"0", "0", "0"}));
    EXPECT_EQ(Cells("txtTotalL"), (Row{"0", "0", "0"}));
}

TEST_F(Calculation, ComesBackToTheCurrentRecord) {
    for (const char* key : {"A", "B", "C"})
        Add(key, Listing(60));
    Find("B");
    Calculate();
    EXPECT_EQ(adoDatabook.Recordset().Text(adoDatabook.Recordset().FieldIndex("CENTRALKEY")), "B");
}

TEST_F(Calculation, ChangesNothingInTheDatabook) {
    Add("A", {{"ORIGLISTDATE", Dated(0)}, {"SELECTED", Flag("1")}});
    Calculate();
    EXPECT_EQ(Text("A", "ORIGLISTDATE"), "12/30/1899");
    EXPECT_EQ(Text("A", "SELECTED"), "1");
}

TEST_F(Calculation, TellsHowFarItIs) {
    for (int i = 0; i < 10; ++i)
        Add("KEY " + std::to_string(i), Listing(60));
    Calculate();
    EXPECT_GT(desktop.progressCalls, 0);
    EXPECT_EQ(desktop.lastDone, 10);
    EXPECT_EQ(desktop.lastTotal, 10);
}

TEST_F(Calculation, FaultsWithoutFlags) {
    jet::NewColumn key;
    key.name = "CENTRALKEY";
    key.characters = 50;
    OpenOwnTable({key});
    Add("A", {});
    try {
        Calculate();
        FAIL() << "no fault";
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.number, fault::kItemNotFound);
    }
}

TEST(FillWithZeroes, SetsEmptyCellsOnlyAndNoRatio) {
    Results1004MC results;
    results.txtMedianCDOM[1].SetText("60");
    FillWithZeroes(results);
    for (const ResultRow& row : kResultRows) {
        for (int column = 0; column < 3; ++column) {
            // A count that becomes "0" works out rate and supply, before their own turn comes.
            const bool isRate = row.name == "txtAveCPrice" || row.name == "txtTotalPerAveCPrice";
            const bool isRatio = row.name == "txtMedianLPDivSP";
            const bool isSet = row.name == "txtMedianCDOM" && column == 1;
            EXPECT_EQ(results.Row(row.name)[column].Text(), isRatio  ? ""
                                                            : isRate ? "0.00"
                                                            : isSet  ? "60"
                                                                     : "0")
                << row.name << "(" << column << ")";
        }
    }
}

TEST_F(Calculation, AMedianThatIsNoNumberStopsTheRatio) {
    viewer.txtMedian[15].SetText("abc");
    // The pass empties the cell; this rule stands in for whatever might fill it with something else.
    viewer.txtMedian[15].OnChange([this] {
        if (viewer.txtMedian[15].Text().empty()) viewer.txtMedian[15].SetText("abc");
    });
    try {
        Calculate();
        FAIL() << "no fault";
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.number, fault::kTypeMismatch);
    }
}

}  // namespace
}  // namespace zenvora::analysis
