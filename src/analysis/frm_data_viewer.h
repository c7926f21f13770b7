#pragma once

#include <array>
#include <string_view>

#include "analysis/results_1004mc.h"
#include "analysis/sorted_list.h"
#include "common/session.h"
#include "platform/controls/control_array.h"
#include "platform/controls/form.h"
#include "platform/controls/frame.h"
#include "platform/controls/text_box.h"

namespace zenvora::analysis {

inline constexpr int kStatisticsLists = 18;

/// The groups of three lists; the index of a list is group * 3 + column of the period.
enum ListGroup : int {
    kSalePrices = 0,
    kSaleDays = 1,
    kListingPrices = 2,
    kListingDays = 3,
    kSaleToListPrices = 4,  ///< never fed
    kListPricesOfSales = 5,
};

inline constexpr std::array<std::string_view, 6> kListGroupCaptions{
    "Sale: Price",
    "Sale: DOM",
    "Listing: Price",
    "Listing: DOM",
    "Comps: Sale Price / List Price",
    "List Prices of Sales Only",
};

/// Index of a list by its group and the column of its period, 0 to 2.
[[nodiscard]] constexpr int ListIndex(ListGroup group, int column) noexcept {
    return group * 3 + column;
}

/// The five figures of a list from top to bottom: the name of their cells and the caption at the left of the
/// window.
struct StatisticRow {
    std::string_view name;
    std::string_view caption;
};
inline constexpr std::array<StatisticRow, 5> kStatisticRows{{
    {"txtAverage", "Average"},
    {"txtMedian", "Median"},
    {"txtTotal", "Total"},
    {"txtLowest", "Lowest"},
    {"txtHighest", "Highest"},
}};
/// Headings of the three lists of a group.
inline constexpr std::array<std::string_view, 3> kStatisticColumns{"7 - 12", "4 - 6", "C - 3"};

/// The statistics container "Data Results Viewer": the eighteen lists of a calculation and the five figures
/// of each. It is a data holder first: the window is shown on request alone, and the data outlive it.
///
/// On the screen each group is a frame, Frame1 to Frame6, with its three lists side by side and the figures
/// below them in the order of kStatisticRows; rows are captioned once at the left, columns by
/// kStatisticColumns.
///
/// Its change rules carry medians and counts into the results: a new text in txtMedian(i) goes to the median
/// cell of its group, and a new text in txtTotal(i) sends the number of entries once list and partner list
/// agree. The results must live as long as this.
class frmDataViewer final : public controls::Form {
  public:
    using Cells = controls::ControlArray<controls::TextBox>;
    static constexpr std::string_view kCaption = "Data Results Viewer";

    frmDataViewer(common::Session& session, Results1004MC& results);

    controls::Frame Frame1{"Frame1"};
    controls::Frame Frame2{"Frame2"};
    controls::Frame Frame3{"Frame3"};
    controls::Frame Frame4{"Frame4"};
    controls::Frame Frame5{"Frame5"};
    controls::Frame Frame6{"Frame6"};
    controls::ControlArray<SortedList> lstData{"lstData", kStatisticsLists};
    Cells txtAverage{"txtAverage", kStatisticsLists};
    Cells txtMedian{"txtMedian", kStatisticsLists};
    Cells txtTotal{"txtTotal", kStatisticsLists};
    Cells txtLowest{"txtLowest", kStatisticsLists};
    Cells txtHighest{"txtHighest", kStatisticsLists};

    /// Writes the five cells of a list, empty ones for an empty list. Entries that are not numeric are told
    /// to the user. Fault 9: no such list.
    void FillListStatistics(const SortedList& list, int index);

    /// Sets the group that the change rules go by: 0 to 3 for three lists each, 4 from list 12 on. It stays
    /// set.
    void GetListGroup(int index) noexcept;
    [[nodiscard]] int Group() const noexcept { return group_; }

    [[nodiscard]] Results1004MC& Results() noexcept { return results_; }

  private:
    void MedianChanged(int index);
    void TotalChanged(int index);

    common::Session& session_;
    Results1004MC& results_;
    int group_ = 0;
};

}  // namespace zenvora::analysis
