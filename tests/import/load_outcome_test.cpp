#include "import/load_outcome.h"

#include <gtest/gtest.h>

#include "grid_text.h"

namespace zenvora::importing {
namespace {

using testing_support::Row;

Fault Refusal(int number, const std::string& column = "") {
    Fault fault{number, "the store's own words"};
    fault.place.column = column;
    return fault;
}

RefusedRow Explained(const Row& captions, const Row& cells, const Fault& fault) {
    SourceGrid grid;
    LoadPlan plan{.columns = {}, .fileDate = 2, .currentYear = 2026};
    grid.SetRows(2);
    grid.SetCols(static_cast<int>(captions.size()));
    for (std::size_t col = 0; col < captions.size(); ++col) {
        grid.SetTextMatrix(1, static_cast<int>(col), cells[col]);
        for (const DestinationField& field : DestinationFields()) {
            if (field.caption == captions[col]) plan.columns.push_back({static_cast<int>(col), field});
        }
    }
    InsertStatement statement(plan);
    statement.CatchFaults();
    statement.Build(grid, 1, nullptr);
    return ExplainRefusal(fault, statement, grid, 1);
}

TEST(Refusal, OfARowWithBlankCellsIsABlankRow) {
    const RefusedRow row =
        Explained({"Address", "City", "unmapped"}, {"", "  ", ""}, Refusal(fault::kSyntax));
    EXPECT_EQ(row.reason, "blank row");
    EXPECT_TRUE(row.isBlank);
    EXPECT_FALSE(
        Explained({"Address", "City", "unmapped"}, {"", "", "x"}, Refusal(fault::kEmptyText)).isBlank);
}

struct ReasonCase {
    const char* name;
    Row captions;
    Row cells;
    int number;
    const char* reason;
    const char* field;
};
class RefusalReasons : public testing::TestWithParam<ReasonCase> {};

TEST_P(RefusalReasons, NameFieldAndValue) {
    const RefusedRow row = Explained(GetParam().captions, GetParam().cells, Refusal(GetParam().number));
    EXPECT_EQ(row.reason, GetParam().reason);
    EXPECT_EQ(row.field, GetParam().field);
    EXPECT_FALSE(row.isBlank);
}

INSTANTIATE_TEST_SUITE_P(
    Causes, RefusalReasons,
    testing::Values(
        ReasonCase{"Duplicate",
                   {"Address", "City"},
                   {"12 Oak St", "Troy"},
                   fault::kDuplicateKey,
                   "duplicate key: 12 Oak St",
                   "Address"},
        ReasonCase{"EmptyKey", {"Address", "City"}, {"", "Troy"}, fault::kEmptyText, "no address", "Address"},
        ReasonCase{"KeyNotMapped", {"City"}, {"Troy"}, fault::kNullKey, "no address", "Address"},
        ReasonCase{"PriceWithoutDigit",
                   {"Selling Price", "City"},
                   {"N/A", "Troy"},
                   fault::kSyntax,
                   "no number in \"Selling Price\": N/A",
                   "Selling Price"},
        ReasonCase{"PriceWithTwoPoints",
                   {"Selling Price", "City"},
                   {"1.2.3", "Troy"},
                   fault::kSyntax,
                   "no number in \"Selling Price\": 1.2.3",
                   "Selling Price"},
        ReasonCase{"QuoteInside",
                   {"Address", "City"},
                   {"12 Oak \"B", "Troy"},
                   fault::kSyntax,
                   "a double quote in \"Address\": 12 Oak \"B",
                   "Address"},
        ReasonCase{"LastEmpty",
                   {"Address", "City"},
                   {"12 Oak St", ""},
                   fault::kSyntax,
                   "the last mapped column of the source is empty: \"City\"",
                   "City"},
        ReasonCase{"NoDate",
                   {"Address", "Sale Date"},
                   {"12 Oak St", "20090315"},
                   fault::kTypeMismatch,
                   "no date in \"Sale Date\": 20090315 (sent as 20/09/0315)",
                   "Sale Date"},
        ReasonCase{"DatesFilledTwice",
                   {"Days On Market", "Original Listing Date"},
                   {"5", "3/1/2009"},
                   fault::kSyntax,
                   "two values for the column ORIGLISTDATE: map either the original listing date or the days "
                   "on market",
                   ""},
        ReasonCase{"ColumnNamedTwice",
                   {"City", "City"},
                   {"Troy", "Novi"},
                   fault::kSyntax,
                   "two values for the column CITY",
                   ""},
        ReasonCase{"AnyOther",
                   {"Address", "City"},
                   {"12 Oak St", "Troy"},
                   fault::kDeviceIo,
                   "the store's own words",
                   ""},
        ReasonCase{"SyntaxOfNoKnownCause",
                   {"Address", "City"},
                   {"12 Oak St", "Troy"},
                   fault::kSyntax,
                   "the store's own words",
                   ""}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(Refusal, BlamesTheColumnThatTheStoreNamed) {
    EXPECT_EQ(
        Explained({"Address", "State"}, {"12 Oak St", "Michigan"}, Refusal(fault::kTooLong, "st")).reason,
        "too long for \"State\": Michigan");
    EXPECT_EQ(Explained({"Address", "Sale Date"}, {"12 Oak St", "3/1/2009"},
                        Refusal(fault::kTypeMismatch, "SALEDATE"))
                  .reason,
              "no date in \"Sale Date\": 3/1/2009");
}

TEST(LoadOutcome, HasErrorsWhenMoreThanBlankRowsWereRefused) {
    LoadOutcome outcome;
    EXPECT_FALSE(outcome.HasErrors());
    outcome.refused.push_back({.row = 1, .isBlank = true});
    EXPECT_FALSE(outcome.HasErrors());
    outcome.refused.push_back({.row = 2, .reason = "no address"});
    EXPECT_TRUE(outcome.HasErrors());
}

}  // namespace
}  // namespace zenvora::importing
