#include "analysis/frm_data_viewer.h"

#include <gtest/gtest.h>

#include "analysis/calculation.h"
#include "support/scripted_desktop.h"

namespace zenvora::analysis {
namespace {

class DataViewer : public testing::Test {
  protected:
    testing_support::ScriptedDesktop desktop;
    shell::FixedClock clock{40359};
    ado::DatabasePool databooks;
    common::Session session{desktop, clock, databooks, {}};
    Results1004MC results;
    frmDataViewer viewer{session, results};

    void Fill(int index, std::initializer_list<const char*> entries) {
        for (const char* entry : entries)
            AddToSortedList(viewer.lstData[index], entry);
    }
    void Publish(int index) { viewer.FillListStatistics(viewer.lstData[index], index); }
};

TEST_F(DataViewer, FillsTheFiveCellsOfAList) {
    Fill(13, {"100", "200", "300", "401"});
    Publish(13);
    EXPECT_EQ(viewer.txtMedian[13].Text(), "250");
    EXPECT_EQ(viewer.txtAverage[13].Text(), "250");  // 250.25 is 250.3
    EXPECT_EQ(viewer.txtTotal[13].Text(), "1001");
    EXPECT_EQ(viewer.txtLowest[13].Text(), "100");
    EXPECT_EQ(viewer.txtHighest[13].Text(), "401");
}

TEST_F(DataViewer, OfASingleEntryAllFiguresAreThatEntry) {
    Fill(13, {"5"});
    Publish(13);
    for (const auto* cells :
         {&viewer.txtMedian, &viewer.txtAverage, &viewer.txtTotal, &viewer.txtLowest, &viewer.txtHighest}) {
        EXPECT_EQ((*cells)[13].Text(), "5") << cells->Name();
    }
}

TEST_F(DataViewer, EmptiesTheCellsOfAnEmptyList) {
    Fill(13, {"5"});
    Publish(13);
    viewer.lstData[13].Clear();
    std::vector<std::string> order;
    for (auto* cells : {&viewer.txtAverage, &viewer.txtTotal, &viewer.txtLowest, &viewer.txtHighest}) {
        (*cells)[13].OnChange([&order, cells] { order.push_back(cells->Name()); });
    }
    Publish(13);
    EXPECT_EQ(order, (std::vector<std::string>{"txtAverage", "txtLowest", "txtHighest", "txtTotal"}));
    EXPECT_EQ(viewer.txtMedian[13].Text(), "");
}

TEST_F(DataViewer, TellsOfEntriesThatAreNoNumbersForAverageAndTotal) {
    Fill(13, {"5", "abc"});
    desktop.Expect("List contains non numeric data.");
    desktop.Expect("List contains non numeric data.");
    Publish(13);
    EXPECT_EQ(viewer.txtTotal[13].Text(), "5");
}

struct MedianTarget {
    int index;
    const char* row;
    int column;
    const char* text;
};

class MedianRule : public DataViewer, public testing::WithParamInterface<MedianTarget> {};

TEST_P(MedianRule, CarriesTheMedianIntoItsCellAlone) {
    const MedianTarget& target = GetParam();
    viewer.txtMedian[target.index].SetText("250000");
    for (const ResultRow& row : kResultRows) {
        for (int column = 0; column < 3; ++column) {
            const bool isTarget = row.name == target.row && column == target.column;
            EXPECT_EQ(results.Row(row.name)[column].Text(), isTarget ? target.text : "")
                << row.name << "(" << column << ")";
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Lists, MedianRule,
    testing::Values(
        MedianTarget{0, "txtMedianCPrice", 0, "250,000"}, MedianTarget{1, "txtMedianCPrice", 1, "250,000"},
        MedianTarget{2, "txtMedianCPrice", 2, "250,000"}, MedianTarget{3, "txtMedianCDOM", 0, "250000"},
        MedianTarget{4, "txtMedianCDOM", 1, "250000"}, MedianTarget{5, "txtMedianCDOM", 2, "250000"},
        MedianTarget{6, "txtMedianLPrice", 2, "250,000"}, MedianTarget{7, "txtMedianLPrice", 2, "250,000"},
        MedianTarget{8, "txtMedianLPrice", 2, "250,000"}, MedianTarget{9, "txtMedianLDOM", 0, "250000"},
        MedianTarget{10, "txtMedianLDOM", 1, "250000"}, MedianTarget{11, "txtMedianLDOM", 2, "250000"},
        MedianTarget{12, "", 0, ""}, MedianTarget{15, "", 0, ""}, MedianTarget{17, "", 0, ""}),
    [](const auto& info) { return "List" + std::to_string(info.param.index); });

TEST_F(DataViewer, AnEmptyMedianCountsAsZero) {
    for (const int index : {0, 3, 6, 9}) {
        viewer.txtMedian[index].SetText("7");
        viewer.txtMedian[index].SetText("");
    }
    // The price cells write "0" with commas, which leaves nothing of it.
    EXPECT_EQ(results.txtMedianCPrice[0].Text(), "");
    EXPECT_EQ(results.txtMedianCDOM[0].Text(), "0");
    EXPECT_EQ(results.txtMedianLPrice[2].Text(), "");
    EXPECT_EQ(results.txtMedianLDOM[0].Text(), "0");
}

TEST_F(DataViewer, TheSameMedianAgainCarriesNothing) {
    viewer.txtMedian[3].SetText("60");
    results.txtMedianCDOM[0].SetText("overwritten");
    viewer.txtMedian[3].SetText("60");
    EXPECT_EQ(results.txtMedianCDOM[0].Text(), "overwritten");
}

struct CountTarget {
    int index;
    int partner;
    const char* row;
    int column;
};

class TotalRule : public DataViewer, public testing::WithParamInterface<CountTarget> {};

TEST_P(TotalRule, CarriesTheNumberOfEntriesOnceListAndPartnerAgree) {
    const CountTarget& target = GetParam();
    controls::TextBox& cell = results.Row(target.row)[target.column];
    Fill(target.index, {"100", "200"});
    viewer.txtTotal[target.index].SetText("300");
    EXPECT_EQ(cell.Text(), "") << "the partner is empty still";
    Fill(target.partner, {"10", "20"});
    viewer.txtTotal[target.index].SetText("300");
    EXPECT_EQ(cell.Text(), "") << "the total did not change";
    viewer.txtTotal[target.index].SetText("301");
    EXPECT_EQ(cell.Text(), "2");
    for (const char* row : {"txtTotalC", "txtTotalL"}) {
        for (int column = 0; column < 3; ++column) {
            if (row == std::string(target.row) && column == target.column) continue;
            EXPECT_EQ(results.Row(row)[column].Text(), "");
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Lists, TotalRule,
    testing::Values(CountTarget{0, 3, "txtTotalC", 0}, CountTarget{1, 4, "txtTotalC", 1},
                    CountTarget{2, 5, "txtTotalC", 2}, CountTarget{3, 0, "txtTotalC", 0},
                    CountTarget{4, 1, "txtTotalC", 1}, CountTarget{5, 2, "txtTotalC", 2},
                    CountTarget{6, 9, "txtTotalL", 0}, CountTarget{7, 10, "txtTotalL", 1},
                    CountTarget{8, 11, "txtTotalL", 2}, CountTarget{9, 6, "txtTotalL", 0},
                    CountTarget{10, 7, "txtTotalL", 1}, CountTarget{11, 8, "txtTotalL", 2}),
    [](const auto& info) { return "List" + std::to_string(info.param.index); });

TEST_F(DataViewer, TotalsFromList12OnCarryNothingAndLeaveTheGroup) {
    viewer.GetListGroup(7);
    for (int index = 12; index < kStatisticsLists; ++index)
        viewer.txtTotal[index].SetText("1");
    EXPECT_EQ(viewer.Group(), 2);
    for (int column = 0; column < 3; ++column) {
        EXPECT_EQ(results.txtTotalC[column].Text(), "");
        EXPECT_EQ(results.txtTotalL[column].Text(), "");
    }
}

TEST_F(DataViewer, KnowsTheGroupOfEachList) {
    const int groups[] = {0, 0, 0, 1, 1, 1, 2, 2, 2, 3, 3, 3, 4, 4, 4, 4, 4, 4};
    for (int index = 0; index < kStatisticsLists; ++index) {
        viewer.GetListGroup(index);
        EXPECT_EQ(viewer.Group(), groups[index]) << "list " << index;
    }
    viewer.txtMedian[4].SetText("60");
    EXPECT_EQ(viewer.Group(), 1) << "a change rule sets it too";
}

TEST_F(DataViewer, ClearStatisticsEmptiesListsAndCellsInOrder) {
    for (int index = 0; index < kStatisticsLists; ++index) {
        Fill(index, {"100"});
        Publish(index);
    }
    EXPECT_EQ(results.txtTotalC[0].Text(), "1");
    std::vector<std::string> order;
    for (auto* cells : {&viewer.txtAverage, &viewer.txtLowest, &viewer.txtHighest}) {
        cells->OnChange(
            [&order, cells](int index) { order.push_back(cells->Name() + std::to_string(index)); });
    }
    ClearStatistics(viewer);
    ASSERT_EQ(order.size(), 54U);
    EXPECT_EQ(order[0], "txtAverage0");
    EXPECT_EQ(order[1], "txtLowest0");
    EXPECT_EQ(order[2], "txtHighest0");
    EXPECT_EQ(order[3], "txtAverage1");
    EXPECT_EQ(order[53], "txtHighest17");
    for (int index = 0; index < kStatisticsLists; ++index) {
        EXPECT_EQ(viewer.lstData[index].ListCount(), 0);
        EXPECT_EQ(viewer.txtMedian[index].Text(), "");
        EXPECT_EQ(viewer.txtTotal[index].Text(), "");
    }
    // List 0 and its partner 3 agree again when list 3 is empty too, and then there are no sales.
    EXPECT_EQ(results.txtTotalC[0].Text(), "0");
    EXPECT_EQ(results.txtAveCPrice[0].Text(), "0.00");
}

TEST_F(DataViewer, HasTheColoursAndCaptionsOfItsWindow) {
    EXPECT_EQ(frmDataViewer::kCaption, "Data Results Viewer");
    EXPECT_EQ(kListGroupCaptions[4], "Comps: Sale Price / List Price");
    for (int index = 0; index < kStatisticsLists; ++index) {
        const bool listing = index >= 6 && index <= 11;
        EXPECT_EQ(viewer.lstData[index].BackColor(), listing ? 0xC0FFC0U : 0xFFFFC0U) << index;
        EXPECT_EQ(viewer.txtMedian[index].BackColor(), 0xE0E0E0U) << index;
    }
}

TEST_F(DataViewer, IsAWindowWithItsFramesListsAndCells) {
    EXPECT_EQ(viewer.Name(), "frmDataViewer");
    EXPECT_EQ(viewer.Caption(), "Data Results Viewer");
    const char* const captions[] = {"Sale: Price",
                                    "Sale: DOM",
                                    "Listing: Price",
                                    "Listing: DOM",
                                    "Comps: Sale Price / List Price",
                                    "List Prices of Sales Only"};
    for (int group = 0; group < 6; ++group) {
        const auto* const frame =
            dynamic_cast<controls::Frame*>(viewer.Find("Frame" + std::to_string(group + 1)));
        ASSERT_NE(frame, nullptr);
        EXPECT_EQ(frame->Caption(), captions[group]);
    }
    for (const char* name : {"lstData", "txtAverage", "txtMedian", "txtTotal", "txtLowest", "txtHighest"}) {
        for (int index = 0; index < kStatisticsLists; ++index)
            EXPECT_NE(viewer.Find(name, index), nullptr) << name << index;
    }
    EXPECT_TRUE(viewer.txtMedian[0].Locked());
}

TEST_F(DataViewer, ItsWidthAtLoadLeavesRoomBehindTheFourthFrame) {
    viewer.Load();
    // The left edge of the fourth frame, its width, and 3500 twips.
    EXPECT_EQ(viewer.Placement().width, 6300 + 1640 + 3500);
}

TEST_F(DataViewer, KeepsItsDataWhenItsWindowIsClosed) {
    desktop.ExpectForm("frmDataViewer");
    Fill(13, {"5"});
    viewer.Show(controls::Modality::Modeless);
    viewer.Close();
    EXPECT_EQ(viewer.lstData[13].ListCount(), 1);
}

}  // namespace
}  // namespace zenvora::analysis
