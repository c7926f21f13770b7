#include "import/insert_statement.h"

#include <gtest/gtest.h>

#include "grid_text.h"

namespace zenvora::importing {
namespace {

using testing_support::FaultOf;
using testing_support::Row;

text::Date DayOf(int year, int month, int day) {
    return *text::DayNumber(year, month, day);
}

/// A source whose columns bear the captions of the fields that they are mapped to.
struct Load {
    explicit Load(const Row& captions) {
        grid.SetCols(static_cast<int>(captions.size()));
        LoadPlan plan{.columns = {}, .fileDate = DayOf(2009, 4, 1) + 0.75, .currentYear = 2026};
        for (std::size_t col = 0; col < captions.size(); ++col) {
            for (const DestinationField& field : DestinationFields()) {
                if (field.caption == captions[col]) plan.columns.push_back({static_cast<int>(col), field});
            }
        }
        statement = std::make_unique<InsertStatement>(plan);
    }
    std::string Send(const Row& cells) {
        const int row = grid.Rows();
        grid.SetRows(row + 1);
        for (std::size_t col = 0; col < cells.size(); ++col)
            grid.SetTextMatrix(row, static_cast<int>(col), cells[col]);
        statement->Build(grid, row, &log);
        return statement->Text();
    }
    [[nodiscard]] Row Log() const {
        Row lines;
        for (std::size_t at = 0; at < log.ListCount(); ++at)
            lines.emplace_back(log.List(at));
        return lines;
    }

    SourceGrid grid;
    LoadLog log;
    std::unique_ptr<InsertStatement> statement;
};

std::string Statement(const Row& captions, const Row& cells) {
    return Load(captions).Send(cells);
}

TEST(InsertStatement, ReadsLikeTheExample) {
    EXPECT_EQ(
        Statement({"Address", "Sale Date", "Selling Price", "Days On Market", "City"},
                  {"12 Oak St", "3/1/2009", "250000", "30", "Troy"}),
        "INSERT INTO COMPS (CENTRALKEY,ADDRESS, SALEDATE,SELLINGPR,DAYSONMARKET,ORIGLISTDATE, CITY) VALUES "
        "(\"12 Oak St\",\"12 Oak St\", \"3/1/2009\",250000,30,\"01/30/2009\", \"Troy\")");
}

TEST(InsertStatement, KeepsTheOrderOfTheSource) {
    EXPECT_EQ(Statement({"City", "Address", "Zip"}, {"Troy", "12 Oak St", "48083"}),
              "INSERT INTO COMPS (CITY,CENTRALKEY,ADDRESS, ZIP) VALUES (\"Troy\",\"12 Oak St\",\"12 Oak "
              "St\", \"48083\")");
}

TEST(InsertStatement, LeavesAddressOutWhenTheAddressIsLast) {
    EXPECT_EQ(Statement({"City", "Address"}, {"Troy", "12 Oak St"}),
              "INSERT INTO COMPS (CITY,CENTRALKEY) VALUES (\"Troy\",\"12 Oak St\")");
}

TEST(InsertStatement, KeepsTheCaseOfTheAddress) {
    EXPECT_EQ(Statement({"Address"}, {"  12 oak St "}),
              "INSERT INTO COMPS (CENTRALKEY) VALUES (\"12 oak St\")");
}

TEST(InsertStatement, WithoutMappingsIsEmpty) {
    EXPECT_EQ(Statement({"x", "y"}, {"1", "2"}), "INSERT INTO COMPS () VALUES ()");
}

struct ValueCase {
    const char* name;
    const char* caption;
    const char* cell;
    const char* value;
};
class FirstValue : public testing::TestWithParam<ValueCase> {};

TEST_P(FirstValue, GoesIntoTheStatement) {
    const std::string statement = Statement({GetParam().caption, "Zip"}, {GetParam().cell, "9"});
    const std::size_t start = statement.find("VALUES (") + 8;
    EXPECT_EQ(statement.substr(start), std::string(GetParam().value) + ",\"9\")");
}

INSTANTIATE_TEST_SUITE_P(
    Values, FirstValue,
    testing::Values(ValueCase{"PriceWithSignAndCommas", "Selling Price", "$1,250,000", "1250000"},
                    ValueCase{"MinusIsDropped", "Selling Price", "-5", "5"},
                    ValueCase{"PointStays", "Selling Price", "169500.00", "169500.00"},
                    ValueCase{"NoDigitsLeaveNothing", "Selling Price", "N/A", ""},
                    ValueCase{"EmptyNumberIsZero", "Selling Price", "  ", "0"},
                    ValueCase{"EmptyDateIsDayZero", "Sale Date", "", "\"1/1/1900\""},
                    ValueCase{"EmptyTextStaysEmpty", "City", "", "\"\""},
                    ValueCase{"IsoDatePasses", "Sale Date", "2009-03-15", "\"2009-03-15\""},
                    ValueCase{"ShortDatePasses", "Sale Date", "3/15/09", "\"3/15/09\""},
                    ValueCase{"EightDigits", "Sale Date", "03152009", "\"03/15/2009\""},
                    ValueCase{"SixDigits", "Sale Date", "031509", "\"03/15/09\""},
                    ValueCase{"YearFirstDigits", "Sale Date", "20090315", "\"20/09/0315\""},
                    ValueCase{"FewDigits", "Sale Date", "5", "\"5//\""},
                    ValueCase{"DateCutByCharacters", "Sale Date", "\xC3\xA9\xC3\xA9x\xC3\xA9y",
                              "\"\xC3\xA9\xC3\xA9/x\xC3\xA9/y\""},
                    ValueCase{"TextIsNoDate", "City", "03152009", "\"03152009\""},
                    ValueCase{"CommaIsHarmless", "City", "Troy, MI", "\"Troy, MI\""},
                    ValueCase{"ApostropheIsHarmless", "City", "O'Brien", "\"O'Brien\""},
                    ValueCase{"QuoteStands", "City", "the \"Hill", "\"the \"Hill\""},
                    ValueCase{"DoubledQuoteStands", "City", "the \"\"Hill", "\"the \"\"Hill\""},
                    ValueCase{"TabIsNoBlank", "City", "\tTroy", "\"\tTroy\""}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(InsertStatement, HangsACommaBeforeAnEmptyLastValue) {
    EXPECT_EQ(Statement({"Zip", "City"}, {"48083", ""}), "INSERT INTO COMPS (ZIP,CITY) VALUES (\"48083\",)");
    EXPECT_EQ(Statement({"Zip", "Selling Price"}, {"48083", "N/A"}),
              "INSERT INTO COMPS (ZIP,SELLINGPR) VALUES (\"48083\",)");
    EXPECT_EQ(Statement({"City", "Days On Market"}, {"Troy", "N/A"}),
              "INSERT INTO COMPS (CITY,ORIGLISTDATE, DAYSONMARKET) VALUES (\"Troy\",)");
    EXPECT_EQ(Statement({"Address"}, {""}), "INSERT INTO COMPS (CENTRALKEY) VALUES ()");
}

TEST(InsertStatement, SendsABlankRowWithItsMissingValues) {
    EXPECT_EQ(Statement({"Sale Date", "Selling Price", "City", "Address"}, {"", "", "", ""}),
              "INSERT INTO COMPS (SALEDATE,SELLINGPR,CITY,CENTRALKEY) VALUES (\"1/1/1900\",0,\"\",)");
}

TEST(CancelDate, IsClearedByASale) {
    EXPECT_EQ(Statement({"Listing Cancel Date", "Sale Date"}, {"2/1/2009", "3/1/2009"}),
              "INSERT INTO COMPS (LISTCANCELDATE,SALEDATE) VALUES (\"1/1/1900 00:00:00\", \"3/1/2009\")");
    EXPECT_EQ(Statement({"Sale Date", "Listing Cancel Date"}, {"3/1/2009", "2/1/2009"}),
              "INSERT INTO COMPS (SALEDATE,LISTCANCELDATE) VALUES (\"3/1/2009\",\"1/1/1900 00:00:00\")");
}

TEST(CancelDate, IsClearedByAContractUnlessItStandsLast) {
    EXPECT_EQ(Statement({"Listing Cancel Date", "Contract Date"}, {"2/1/2009", "3/1/2009"}),
              "INSERT INTO COMPS (LISTCANCELDATE,CONTRACTDATE) VALUES (\"1/1/1900 00:00:00\", \"3/1/2009\")");
    EXPECT_EQ(Statement({"Contract Date", "Listing Cancel Date"}, {"3/1/2009", "2/1/2009"}),
              "INSERT INTO COMPS (CONTRACTDATE,LISTCANCELDATE) VALUES (\"3/1/2009\",\"2/1/2009\")");
}

TEST(CancelDate, StaysWithoutSaleAndContract) {
    EXPECT_EQ(Statement({"Listing Cancel Date", "Sale Date", "Contract Date"}, {"2/1/2009", "", "1/1/1900"}),
              "INSERT INTO COMPS (LISTCANCELDATE,SALEDATE,CONTRACTDATE) VALUES "
              "(\"2/1/2009\",\"1/1/1900\",\"1/1/1900\")");
    EXPECT_EQ(Statement({"Listing Cancel Date", "Zip"}, {"", "9"}),
              "INSERT INTO COMPS (LISTCANCELDATE,ZIP) VALUES (\"1/1/1900\",\"9\")");
}

std::string ListingDate(const Row& captions, const Row& cells) {
    const std::string statement = Statement(captions, cells);
    const std::size_t start = statement.find("VALUES (");
    return statement.substr(start + 8);
}

TEST(DaysOnMarket, StandBehindTheirDateWhenLast) {
    EXPECT_EQ(
        Statement({"Sale Date", "Days On Market"}, {"3/1/2009", "30"}),
        "INSERT INTO COMPS (SALEDATE,ORIGLISTDATE, DAYSONMARKET) VALUES (\"3/1/2009\",\"01/30/2009\", 30)");
}

TEST(DaysOnMarket, CountFromTheSaleDateWhereverItStands) {
    EXPECT_EQ(ListingDate({"Days On Market", "Sale Date"}, {"30", "3/1/2009"}),
              "30,\"01/30/2009\", \"3/1/2009\")");
}

TEST(DaysOnMarket, CountFromTheFileDateWithoutASale) {
    // The file is of 4/1/2009, its time of day does not matter.
    EXPECT_EQ(ListingDate({"Days On Market", "Sale Date"}, {"31", ""}), "31,\"03/01/2009\", \"1/1/1900\")");
    EXPECT_EQ(ListingDate({"Days On Market", "City"}, {"31", "Troy"}), "31,\"03/01/2009\", \"Troy\")");
}

TEST(DaysOnMarket, EmptyGiveSaleDateOrFileDate) {
    EXPECT_EQ(ListingDate({"Days On Market", "Sale Date"}, {"", "3/1/2009"}),
              "0,\"03/01/2009\", \"3/1/2009\")");
    EXPECT_EQ(ListingDate({"Days On Market", "Sale Date"}, {"", ""}), "0,\"04/01/2009\", \"1/1/1900\")");
}

TEST(DaysOnMarket, WithoutDigitsGiveTheDayOfNumberZero) {
    EXPECT_EQ(ListingDate({"Days On Market", "Sale Date"}, {"N/A", "3/1/2009"}),
              ",\"12/30/1899\", \"3/1/2009\")");
}

TEST(DaysOnMarket, CountFromADayZeroThatIsWrittenOut) {
    // Only the text 1/1/1900 is a missing sale date here.
    EXPECT_EQ(ListingDate({"Days On Market", "Sale Date"}, {"1", "01/01/1900"}),
              "1,\"12/31/1899\", \"01/01/1900\")");
}

TEST(DaysOnMarket, LoseTheirGroupingAndKeepTheirFraction) {
    EXPECT_EQ(ListingDate({"Days On Market", "Sale Date"}, {"1,000", "3/1/2009"}),
              "1000,\"06/05/2006\", \"3/1/2009\")");
}

TEST(DaysOnMarket, ABadSaleDateIsAFaultOnTheFirstRow) {
    Load load({"Days On Market", "Sale Date"});
    const Fault fault = FaultOf([&] { load.Send({"30", "never-ever"}); });
    EXPECT_EQ(fault.number, fault::kTypeMismatch);
    EXPECT_EQ(fault.place.column, "Sale Date");
}

TEST(DaysOnMarket, ABadSaleDateLaterKeepsTheDateOfTheRowBefore) {
    Load load({"Days On Market", "Sale Date"});
    load.Send({"30", "3/1/2009"});
    load.statement->CatchFaults();
    EXPECT_NE(load.Send({"5", "never-ever"}).find("(5,\"01/30/2009\", \"never-ever\")"), std::string::npos);
}

TEST(DaysOnMarket, BeyondTheCalendarAreAFaultOnTheFirstRowOnly) {
    Load load({"Days On Market", "Sale Date"});
    EXPECT_EQ(FaultOf([&] { load.Send({"99999999", "3/1/2009"}); }).number, fault::kOverflow);
    load.Send({"30", "3/1/2009"});
    load.statement->CatchFaults();
    EXPECT_NE(load.Send({"99999999", "3/2/2009"}).find("\"01/30/2009\""), std::string::npos);
}

TEST(InsertStatement, TakesNoMoreThan255Columns) {
    LoadPlan plan;
    plan.columns.resize(256);
    EXPECT_EQ(FaultOf([&] { const InsertStatement statement(plan); }).number, fault::kSubscript);
}

TEST(LoadLog, ShowsEachPieceInOrder) {
    Load load({"Address", "Sale Date", "Selling Price", "Days On Market", "City"});
    load.Send({" 12 Oak St", "3/1/2009", "$250,000", "30", "Troy"});
    EXPECT_EQ(load.Log(), (Row{"CENTRALKEY loaded with  12 Oak St",
                               "SALEDATE loaded with 3/1/2009",
                               "SELLINGPR loaded with $250,000",
                               "DAYSONMARKET loaded with 30",
                               "CITY loaded with Troy",
                               "",
                               "INSERT INTO COMPS",
                               "(",
                               "CENTRALKEY,",
                               "ADDRESS, ",
                               "SALEDATE,",
                               "SELLINGPR,",
                               "DAYSONMARKET,",
                               "ORIGLISTDATE, ",
                               "CITY",
                               ") ",
                               "VALUES",
                               "(",
                               "\"12 Oak St\",",
                               "\"12 Oak St\", ",
                               "\"3/1/2009\",",
                               "250000,",
                               "30,",
                               "\"01/30/2009\", ",
                               "\"Troy\"",
                               ")"}));
}

TEST(LoadLog, ShowsNoCancelDateAndAnEmptyLineForAnEmptyLastValue) {
    Load load({"Listing Cancel Date", "City"});
    load.Send({"2/1/2009", ""});
    EXPECT_EQ(load.Log(),
              (Row{"LISTCANCELDATE loaded with 2/1/2009", "CITY loaded with ", "", "INSERT INTO COMPS", "(",
                   "LISTCANCELDATE,", "CITY", ") ", "VALUES", "(", "", ")"}));
    Load last({"City", "Listing Cancel Date"});
    last.Send({"Troy", "2/1/2009"});
    EXPECT_EQ(last.Log(),
              (Row{"CITY loaded with Troy", "LISTCANCELDATE loaded with 2/1/2009", "", "INSERT INTO COMPS",
                   "(", "CITY,", "LISTCANCELDATE", ") ", "VALUES", "(", "\"Troy\",", ")"}));
}

TEST(LoadLog, ShowsTheDerivedDateBeforeLastDaysOnMarket) {
    Load load({"Sale Date", "Days On Market"});
    load.Send({"3/1/2009", "30"});
    EXPECT_EQ(load.Log(), (Row{"SALEDATE loaded with 3/1/2009", "DAYSONMARKET loaded with 30", "",
                               "INSERT INTO COMPS", "(", "SALEDATE,", "ORIGLISTDATE, ", "DAYSONMARKET", ") ",
                               "VALUES", "(", "\"3/1/2009\",", "\"01/30/2009\", ", "30", ")"}));
}

TEST(LoadLog, FaultsBeyondItsLines) {
    LoadLog log;
    log.AddItem("");
    EXPECT_EQ(log.List(0), "");
    EXPECT_EQ(FaultOf([&] { static_cast<void>(log.List(1)); }).number, fault::kSubscript);
    log.Clear();
    EXPECT_EQ(log.ListCount(), 0U);
}

}  // namespace
}  // namespace zenvora::importing
