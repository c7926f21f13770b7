#include "import/joined_fields.h"

#include <gtest/gtest.h>

#include "import/delimited_line.h"

namespace zenvora::importing {
namespace {

SourceGrid GridOf(std::initializer_list<const char*> lines) {
    SourceGrid grid;
    bool isHeader = true;
    for (const char* line : lines) {
        ParseDelimitedLine(line, ';', isHeader, grid);
        isHeader = false;
    }
    return grid;
}

std::vector<std::string> ColumnTexts(const SourceGrid& grid, int col) {
    std::vector<std::string> texts;
    for (int row = 0; row < grid.Rows(); ++row)
        texts.emplace_back(grid.TextMatrix(row, col));
    return texts;
}

using Texts = std::vector<std::string>;

TEST(JoinedFields, AreTheirValuesWithABlankBetweenAndEmptyOnesLeftOut) {
    SourceGrid grid = GridOf({"No;Street;Unit;City", "12;Oak St;;Troy", " 14 ;Elm St;#3;Novi", ";;;"});
    ASSERT_EQ(AddJoinedColumn(grid, "No + Street + Unit"), 1);
    EXPECT_EQ(ColumnTexts(grid, 1), (Texts{"No + Street + Unit", "12 Oak St", "14 Elm St #3", ""}));
}

TEST(JoinedFields, StandInFrontOfTheirFirstPartAndMoveNoValue) {
    SourceGrid grid = GridOf({"City;Street;No;Zip", "Troy;Oak St;12;48083", "Novi"});
    ASSERT_EQ(AddJoinedColumn(grid, "No + Street"), 3);
    EXPECT_EQ(grid.Cols(), 6);
    EXPECT_EQ(ColumnTexts(grid, 0), (Texts{"", "", ""}));
    EXPECT_EQ(ColumnTexts(grid, 1), (Texts{"City", "Troy", "Novi"}));
    EXPECT_EQ(ColumnTexts(grid, 2), (Texts{"Street", "Oak St", ""}));
    EXPECT_EQ(ColumnTexts(grid, 3), (Texts{"No + Street", "12 Oak St", ""}));
    EXPECT_EQ(ColumnTexts(grid, 4), (Texts{"No", "12", ""}));
    EXPECT_EQ(ColumnTexts(grid, 5), (Texts{"Zip", "48083", ""}));
}

TEST(JoinedFields, AreNoneWhenAFieldBearsTheWholeName) {
    SourceGrid grid = GridOf({"No;Street;No + Street", "1;2;3"});
    EXPECT_EQ(AddJoinedColumn(grid, "No + Street"), -1);
    EXPECT_EQ(grid.Cols(), 4);
}

TEST(JoinedFields, AreNoneWhenAPartIsMissing) {
    SourceGrid grid = GridOf({"No;Street", "1;2"});
    for (const char* name : {"No + Lane", "No", "No +Street", "No+Street", " + Street", "No + ", "", " + "})
        EXPECT_EQ(AddJoinedColumn(grid, name), -1) << name;
    EXPECT_EQ(grid.Cols(), 3);
}

TEST(JoinedFields, MayHaveAPartWhoseOwnNameHoldsThePlus) {
    SourceGrid grid = GridOf({"A + B;C;A;B", "1;2;3;4"});
    EXPECT_EQ(JoinedColumns(grid, "A + B + C"), (std::vector<int>{1, 2}));
    EXPECT_EQ(JoinedColumns(grid, "A + B + A"), (std::vector<int>{1, 3}));
    EXPECT_EQ(JoinedColumns(grid, "C + A + B"), (std::vector<int>{2, 1}));
    EXPECT_EQ(JoinedColumns(grid, "B + A"), (std::vector<int>{4, 3}));
    EXPECT_EQ(JoinedColumns(GridOf({"Lot +;No", "1;2"}), "Lot + + No"), (std::vector<int>{1, 2}));
}

// A map file may hold anything: what could be read in very many ways, and what has no end.
TEST(JoinedFields, AreFoundOrNotAtOnceHoweverTheNameCanBeRead) {
    SourceGrid grid = GridOf({"A;A + A;B", "1;2;3"});
    std::string name = "A";
    for (int i = 1; i < 60; ++i)
        name += " + A";
    EXPECT_EQ(JoinedColumns(grid, name + " + nothing"), std::nullopt);
    EXPECT_EQ(JoinedColumns(grid, name + " + B").value_or(std::vector<int>{}).size(), 31U);
    for (int i = 0; i < 200000; ++i)
        name += " + A";
    EXPECT_EQ(JoinedColumns(grid, name), std::nullopt);
}

TEST(JoinedFields, OfAnXmlSourceMayStartInItsFirstColumn) {
    SourceGrid grid;
    grid.SetCols(2);
    grid.SetRows(2);
    for (const auto& [row, col, text] :
         {std::tuple{0, 0, "No"}, {0, 1, "Street"}, {1, 0, "12"}, {1, 1, "Oak"}})
        grid.SetTextMatrix(row, col, text);
    ASSERT_EQ(AddJoinedColumn(grid, "No + Street"), 0);
    EXPECT_EQ(ColumnTexts(grid, 0), (Texts{"No + Street", "12 Oak"}));
    EXPECT_EQ(ColumnTexts(grid, 1), (Texts{"No", "12"}));
}

TEST(JoinedFields, HaveTheNamesOfTheirParts) {
    EXPECT_EQ(JoinedName({"No", "Street", "Unit #"}), "No + Street + Unit #");
    EXPECT_EQ(JoinedName({"No"}), "No");
    EXPECT_EQ(JoinedName({}), "");
}

}  // namespace
}  // namespace zenvora::importing
