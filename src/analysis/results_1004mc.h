#pragma once

#include <array>
#include <string_view>

#include "platform/controls/control_array.h"
#include "platform/controls/text_box.h"

namespace zenvora::analysis {

/// A row of the form: the name of its cells and the captions beside and above it. A doubled "&" shows as one.
struct ResultRow {
    std::string_view name;
    std::string_view caption;
    std::string_view frame;
};

inline constexpr std::string_view kInventoryFrame = "Inventory Analysis";
inline constexpr std::string_view kMedianFrame = "Median Sale && List Price, DOM, Sale / List %";

/// The rows from top to bottom.
inline constexpr std::array<ResultRow, 9> kResultRows{{
    {"txtTotalC", "Total # of Comparable Sales (Settled)", kInventoryFrame},
    {"txtAveCPrice", "Absorption Rate", kInventoryFrame},
    {"txtTotalL", "Total # of Comparable Active Listings", kInventoryFrame},
    {"txtTotalPerAveCPrice", "Months of Housing Supply", kInventoryFrame},
    {"txtMedianCPrice", "Median Comparable Sale Price", kMedianFrame},
    {"txtMedianCDOM", "Median Comparable Sales Days on Market", kMedianFrame},
    {"txtMedianLPrice", "Median Comparable List Price", kMedianFrame},
    {"txtMedianLDOM", "Median Comparable Listings Days on Market", kMedianFrame},
    {"txtMedianLPDivSP", "Median Sale Price as % of List Price", kMedianFrame},
}};

/// The figures of Form 1004MC: nine rows of three text cells, index 0 to 2 = "Prior 7-12 Months", "Prior 4-6
/// Months", "Current-3 Months". The cells hold texts as the user sees them.
///
/// A change of a count (txtTotalC, txtTotalL) works out absorption rate and months of supply of its period at
/// once. The supply divides by the rate as displayed, with its two decimals, and not by the exact quotient:
/// 10 sales in three months are a rate of 3.33, and 20 listings then are 6.01 months.
class Results1004MC {
  public:
    using Cells = controls::ControlArray<controls::TextBox>;

    Results1004MC();
    Results1004MC(const Results1004MC&) = delete;
    Results1004MC& operator=(const Results1004MC&) = delete;

    Cells txtTotalC{"txtTotalC", 3};                        ///< number of sales
    Cells txtAveCPrice{"txtAveCPrice", 3};                  ///< absorption rate: sales a month
    Cells txtTotalL{"txtTotalL", 3};                        ///< number of listings
    Cells txtTotalPerAveCPrice{"txtTotalPerAveCPrice", 3};  ///< months of housing supply
    Cells txtMedianCPrice{"txtMedianCPrice", 3};            ///< median sale price, with commas
    Cells txtMedianCDOM{"txtMedianCDOM", 3};                ///< median days on market of the sales
    Cells txtMedianLPrice{"txtMedianLPrice", 3};    ///< median list price of the sales, without commas
    Cells txtMedianLDOM{"txtMedianLDOM", 3};        ///< median days on market of the listings
    Cells txtMedianLPDivSP{"txtMedianLPDivSP", 3};  ///< median sale price / median list price, a fraction

    /// The cells of a row by their name, as kResultRows gives it. Fault 3265: there is no such row.
    [[nodiscard]] Cells& Row(std::string_view name);
    [[nodiscard]] const Cells& Row(std::string_view name) const;

  private:
    void CountChanged(int column);
};

}  // namespace zenvora::analysis
