#include "analysis/frm_data_viewer.h"

#include <string>

#include "analysis/list_statistics.h"
#include "platform/text/number.h"

namespace zenvora::analysis {
namespace {

// The layout in twips: captions of the rows at the left, then the frames side by side.
constexpr float kFrameWidth = 1640;
constexpr float kLeftOfFrame4 = 1200 + 3 * 1700;
constexpr float kHeight = 6200;

/// From this list on nothing is carried into the results.
constexpr int kFirstListWithoutResult = 12;

/// The list that must agree in its count: days beside prices of the same family and period.
int PartnerOf(int index) {
    const bool isPriceList = index < 3 || (index >= 6 && index < 9);
    return isPriceList ? index + 3 : index - 3;
}

}  // namespace

frmDataViewer::frmDataViewer(common::Session& session, Results1004MC& results)
    : Form(session.forms, "frmDataViewer", std::string(kCaption)), session_(session), results_(results) {
    std::size_t group = 0;
    for (controls::Frame* frame : {&Frame1, &Frame2, &Frame3, &Frame4, &Frame5, &Frame6}) {
        frame->SetCaption(std::string(kListGroupCaptions[group++]));
        Add(*frame);
    }
    for (SortedList& list : lstData) {
        const bool isListing =
            list.Index() >= ListIndex(kListingPrices, 0) && list.Index() <= ListIndex(kListingDays, 2);
        list.SetBackColor(isListing ? controls::kLightGreen : controls::kLightYellow);
    }
    Add(lstData);
    for (Cells* cells : {&txtAverage, &txtMedian, &txtTotal, &txtLowest, &txtHighest}) {
        for (controls::TextBox& cell : *cells) {
            cell.SetBackColor(controls::kGrey);
            cell.SetLocked(true);
        }
        Add(*cells);
    }
    SetPlacement({.width = kLeftOfFrame4 + kFrameWidth + 3500, .height = kHeight});
    txtMedian.OnChange([this](int index) { MedianChanged(index); });
    txtTotal.OnChange([this](int index) { TotalChanged(index); });
}

void frmDataViewer::FillListStatistics(const SortedList& list, int index) {
    if (list.ListCount() == 0) {
        for (Cells* cells : {&txtMedian, &txtAverage, &txtLowest, &txtHighest, &txtTotal})
            (*cells)[index].SetText("");
        return;
    }
    txtMedian[index].SetText(GetListMedian(list));
    txtAverage[index].SetText(text::DoubleText(GetListAverage(list, session_.desktop)));
    txtTotal[index].SetText(text::DoubleText(GetListTotal(list, session_.desktop)));
    txtLowest[index].SetText(list.List(0));
    txtHighest[index].SetText(list.List(list.ListCount() - 1));
}

void frmDataViewer::GetListGroup(int index) noexcept {
    group_ = index < kFirstListWithoutResult ? index / 3 : 4;
}

void frmDataViewer::MedianChanged(int index) {
    GetListGroup(index);
    if (index >= kFirstListWithoutResult) return;
    const int column = index - group_ * 3;
    const std::string& text = txtMedian[index].Text();
    const std::string median = text.empty() ? "0" : text;
    switch (group_) {
        case kSalePrices:
            results_.txtMedianCPrice[column].SetText(FormatWithCommas(median));
            break;
        case kSaleDays:
            results_.txtMedianCDOM[column].SetText(median);
            break;
        case kListingPrices:
            // All three periods write the cell of the current one; AdjustMedianComparableList sets all of
            // them anew at the end of a calculation.
            results_.txtMedianLPrice[group_].SetText(FormatWithCommas(median));
            break;
        case kListingDays:
            results_.txtMedianLDOM[column].SetText(median);
            break;
        default:
            break;
    }
}

void frmDataViewer::TotalChanged(int index) {
    if (index >= kFirstListWithoutResult) return;
    GetListGroup(index);
    const int entries = lstData[index].ListCount();
    if (entries != lstData[PartnerOf(index)].ListCount()) return;
    const bool isSale = group_ == kSalePrices || group_ == kSaleDays;
    Results1004MC::Cells& counts = isSale ? results_.txtTotalC : results_.txtTotalL;
    counts[index - group_ * 3].SetText(text::IntegerText(entries));
}

}  // namespace zenvora::analysis
