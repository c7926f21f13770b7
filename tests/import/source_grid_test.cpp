#include "import/source_grid.h"

#include <gtest/gtest.h>

#include "grid_text.h"

namespace zenvora::importing {
namespace {

using testing_support::CellsOf;
using testing_support::FaultOf;
using Cells = std::vector<testing_support::Row>;

TEST(SourceGrid, StartsWithOneEmptyCell) {
    const SourceGrid grid;
    EXPECT_EQ(CellsOf(grid), (Cells{{""}}));
}

TEST(SourceGrid, KeepsTextsSetInAnyOrder) {
    SourceGrid grid;
    grid.SetRows(3);
    grid.SetCols(3);
    grid.SetTextMatrix(2, 1, "last");
    grid.SetTextMatrix(0, 2, "first");
    grid.SetTextMatrix(1, 0, "middle");
    grid.SetTextMatrix(0, 0, "again");
    grid.SetTextMatrix(2, 2, "end");
    grid.SetTextMatrix(2, 1, "changed");
    EXPECT_EQ(CellsOf(grid), (Cells{{"again", "", "first"}, {"middle", "", ""}, {"", "changed", "end"}}));
}

TEST(SourceGrid, EmptiesACell) {
    SourceGrid grid;
    grid.SetTextMatrix(0, 0, "x");
    grid.SetTextMatrix(0, 0, "");
    EXPECT_EQ(grid.TextMatrix(0, 0), "");
}

TEST(SourceGrid, LosesWhatIsCutOff) {
    SourceGrid grid;
    grid.SetCols(2);
    grid.SetRows(2);
    grid.SetTextMatrix(1, 1, "gone");
    grid.SetCols(1);
    grid.SetCols(2);
    EXPECT_EQ(grid.TextMatrix(1, 1), "");
    grid.SetTextMatrix(1, 0, "gone too");
    grid.SetRows(1);
    grid.SetRows(2);
    EXPECT_EQ(grid.TextMatrix(1, 0), "");
}

TEST(SourceGrid, ClearKeepsRowsAndColumns) {
    SourceGrid grid;
    grid.SetCols(2);
    grid.SetRows(2);
    grid.SetTextMatrix(1, 1, "x");
    grid.Clear();
    EXPECT_EQ(CellsOf(grid), (Cells{{"", ""}, {"", ""}}));
    grid.SetTextMatrix(1, 1, "y");
    EXPECT_EQ(grid.TextMatrix(1, 1), "y");
}

TEST(SourceGrid, FaultsOutsideOfItsCells) {
    SourceGrid grid;
    EXPECT_EQ(FaultOf([&] { static_cast<void>(grid.TextMatrix(1, 0)); }).number, fault::kSubscript);
    EXPECT_EQ(FaultOf([&] { static_cast<void>(grid.TextMatrix(0, 1)); }).number, fault::kSubscript);
    EXPECT_EQ(FaultOf([&] { grid.SetTextMatrix(-1, 0, "x"); }).number, fault::kSubscript);
    EXPECT_EQ(FaultOf([&] { grid.SetTextMatrix(0, 1, ""); }).number, fault::kSubscript);
    EXPECT_EQ(FaultOf([&] { grid.SetRows(-1); }).number, fault::kInvalidProperty);
    EXPECT_EQ(FaultOf([&] { grid.SetCols(-1); }).number, fault::kInvalidProperty);
}

}  // namespace
}  // namespace zenvora::importing
