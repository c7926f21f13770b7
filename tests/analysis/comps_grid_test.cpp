#include "analysis/comps_grid.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "analysis/databook_fixture.h"
#include "databook/selection.h"

namespace zenvora::analysis {
namespace {

using Texts = std::vector<std::string>;

struct CompsGridTest : DatabookTest {
    CompsGridTest() {
        Add("1 ELM ST", {{"SELECTED", Flag("1")},
                         {"ORIGLISTDATE", Dated(Day(2010, 3, 1))},
                         {"ORIGLISTPRICE", 250000.0},
                         {"SALEDATE", Dated(Day(1900, 1, 1))},
                         {"SELLINGPR", 0.0}});
        Add("2 OAK ST", {{"SELECTED", jet::Null{}}, {"SALEDATE", jet::Null{}}, {"SELLINGPR", 199999.5}});
        databook::AdoSelect(adoDatabook, "COMPS", databook::kMainFieldList, databook::kKeyOrder);
        grid.SetColumns(CompsGridColumns());
        grid.SetRows(&rows);
    }

    [[nodiscard]] Texts Row(int row) const {
        Texts cells;
        for (int column = 0; column < 10; ++column)
            cells.push_back(grid.Shown(row, column));
        return cells;
    }

    CompsGridRows rows{adoDatabook};
    controls::Grid grid{"tdbgData"};
};

TEST_F(CompsGridTest, ShowsEachColumnInItsForm) {
    EXPECT_EQ(Row(0), (Texts{"check", "1 ELM ST", "3/1/2010", "250000", "", "", "", "", "", ""}));
    // A Null is nothing, and a price is shown as it is stored.
    EXPECT_EQ(Row(1), (Texts{"", "2 OAK ST", "", "", "", "", "", "", "", "199999.5"}));
    EXPECT_EQ(rows.Value(1, kGridFlag), std::nullopt);
}

TEST_F(CompsGridTest, ShowsAFlagAsItsPicture) {
    const auto columns = CompsGridColumns();
    const auto shown = [&](const std::string& value) {
        for (const auto& item : columns[0].valueItems) {
            if (item.value == value) return item.shown;
        }
        return std::string("(none)");
    };
    EXPECT_EQ(shown("0"), "cross");
    EXPECT_EQ(shown("1"), "check");
    EXPECT_EQ(shown("2"), "");
    EXPECT_EQ(shown("3"), "check");
}

TEST_F(CompsGridTest, EachDateColumnBlanksItsOwnSpellingsOfDayZero) {
    const auto columns = CompsGridColumns();
    const auto blanks = [&](int column) {
        Texts values;
        for (const auto& item : columns[static_cast<std::size_t>(column)].valueItems) {
            EXPECT_EQ(item.shown, "");
            values.push_back(item.value);
        }
        return values;
    };
    const Texts few{"01/01/1900", "1/1/1900"};
    const Texts many{"1900-01-01", "1900-1-1", "01-01-1900", "1-1-1900",
                     "1900/01/01", "1900/1/1", "01/01/1900", "1/1/1900"};
    EXPECT_EQ(blanks(2), few);   // original list date
    EXPECT_EQ(blanks(7), few);   // list cancel date
    EXPECT_EQ(blanks(4), many);  // current list date
    EXPECT_EQ(blanks(6), many);  // contract date
    EXPECT_EQ(blanks(8), many);  // sale date
    for (const int price : {3, 5, 9})
        EXPECT_EQ(blanks(price), Texts{"0"});
    EXPECT_TRUE(blanks(1).empty());
}

TEST_F(CompsGridTest, ReadingCellsMovesNoRecord) {
    adoDatabook.Recordset().MoveTo(1);
    static_cast<void>(Row(0));
    EXPECT_EQ(adoDatabook.Recordset().Position(), 1);
}

TEST_F(CompsGridTest, HasNothingBeyondItsRowsAndColumns) {
    EXPECT_EQ(rows.RowCount(), 2);
    for (const auto& [row, column] : {std::pair{-1, 0}, {2, 0}, {0, -1}, {0, 10}})
        EXPECT_EQ(rows.Value(row, column), std::nullopt) << row << "," << column;
    adoDatabook.Close();
    EXPECT_EQ(rows.RowCount(), 0);
}

TEST_F(CompsGridTest, AColumnThatTheRecordsLackIsEmpty) {
    databook::AdoSelect(adoDatabook, "COMPS", "CENTRALKEY, SELECTED", databook::kKeyOrder);
    EXPECT_EQ(Row(0), (Texts{"check", "1 ELM ST", "", "", "", "", "", "", "", ""}));
}

}  // namespace
}  // namespace zenvora::analysis
