#include "analysis/results_1004mc.h"

#include <string>
#include <utility>

#include "analysis/period.h"
#include "platform/fault.h"
#include "platform/text/number.h"

namespace zenvora::analysis {
namespace {

constexpr std::string_view kTwoDecimals = "0.00";

}  // namespace

Results1004MC::Results1004MC() {
    for (const ResultRow& row : kResultRows) {
        for (controls::TextBox& cell : Row(row.name))
            cell.SetBackColor(controls::kLightYellow);
    }
    txtTotalC.OnChange([this](int column) { CountChanged(column); });
    txtTotalL.OnChange([this](int column) { CountChanged(column); });
}

void Results1004MC::CountChanged(int column) {
    controls::TextBox& rateCell = txtAveCPrice[column];
    controls::TextBox& supplyCell = txtTotalPerAveCPrice[column];

    const double sales = text::LeadingNumber(txtTotalC[column].Text());
    if (sales == 0) {
        rateCell.SetText("0.00");
        supplyCell.SetText("0.00");
        return;
    }
    const int months = kPeriodColumns[static_cast<std::size_t>(column)].months;
    rateCell.SetText(text::FormatNumber(sales / months, kTwoDecimals));
    const double displayedRate = text::LeadingNumber(rateCell.Text());
    if (displayedRate == 0) {
        supplyCell.SetText("0.00");
        return;
    }
    const double listings = text::LeadingNumber(txtTotalL[column].Text());
    supplyCell.SetText(text::FormatNumber(listings / displayedRate, kTwoDecimals));
}

const Results1004MC::Cells& Results1004MC::Row(std::string_view name) const {
    for (const Cells* cells : {&txtTotalC, &txtAveCPrice, &txtTotalL, &txtTotalPerAveCPrice, &txtMedianCPrice,
                               &txtMedianCDOM, &txtMedianLPrice, &txtMedianLDOM, &txtMedianLPDivSP}) {
        if (cells->Name() == name) return *cells;
    }
    throw Fault{fault::kItemNotFound, "The results have no row named " + std::string(name) + "."};
}

Results1004MC::Cells& Results1004MC::Row(std::string_view name) {
    return const_cast<Cells&>(std::as_const(*this).Row(name));
}

}  // namespace zenvora::analysis
