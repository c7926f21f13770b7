#include "analysis/calculation.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "analysis/comparable_facts.h"
#include "analysis/kept_position.h"
#include "analysis/period_classification.h"
#include "analysis/selected_flag.h"
#include "analysis/sorted_list.h"
#include "common/dates.h"
#include "platform/fault.h"
#include "platform/text/number.h"

namespace zenvora::analysis {
namespace {

constexpr long kRecordsPerProgress = 4096;

/// The entries of a pass, list by list, until they go into the lists sorted and all at once.
class PassEntries {
  public:
    void Add(const PeriodEntry& entry, int column) {
        switch (entry.family) {
            case PeriodEntry::Family::None:
                break;
            case PeriodEntry::Family::Sale:
                List(kSaleDays, column).push_back(entry.daysOnMarket);
                List(kSalePrices, column).push_back(entry.price);
                List(kListPricesOfSales, column).push_back(entry.saleListPrice);
                break;
            case PeriodEntry::Family::Listing:
                List(kListingDays, column).push_back(entry.daysOnMarket);
                List(kListingPrices, column).push_back(entry.price);
                break;
        }
    }

    void MoveInto(controls::ControlArray<SortedList>& lists) {
        for (SortedList& list : lists) {
            std::vector<double>& numbers = entries_[static_cast<std::size_t>(list.Index())];
            AddNumbersToSortedList(list, numbers);
            numbers = {};
        }
    }

  private:
    std::vector<double>& List(ListGroup group, int column) {
        return entries_[static_cast<std::size_t>(ListIndex(group, column))];
    }

    std::array<std::vector<double>, kStatisticsLists> entries_;
};

void ClassifyRecords(const CalculationInput& input, ado::Recordset& records, PassEntries& entries) {
    // The machine's clock is asked once: it is slow beside the work on a record, and the year must not change
    // midway.
    const shell::FixedClock clock{input.session.clock.Now()};
    const PresentDates present{clock};
    const Date baseDate = common::ConvDate(input.txtBaseDate, clock);
    const ComparableColumns columns{records};
    const int selected = SelectedColumn(records);
    const long total = records.RecordCount();

    long done = 0;
    std::string buffer;
    for (records.MoveFirst(); !records.Eof(); records.MoveNext(), ++done) {
        if (done % kRecordsPerProgress == 0) input.session.desktop.Progress(done, total);
        if (!IsSelectedCounted(SelectedText(records, selected, buffer))) continue;
        const ComparableFacts facts = ReadFacts(records, columns, clock);
        const RecordStatus status =
            GetRecordStatus(facts.contractDate, facts.cancelDate, facts.saleDate, present);
        for (const int periodOffset : {0, 91, 182}) {
            entries.Add(
                ClassifyRecordForPeriod(facts, status, periodOffset, baseDate, input.effectiveDate, present),
                ColumnOfOffset(periodOffset).column);
        }
    }
    input.session.desktop.Progress(total, total);
}

double MedianNumber(const controls::TextBox& cell) {
    const std::optional<double> number = text::NumericValue(cell.Text());
    if (!number) {
        throw Fault{fault::kTypeMismatch, "The median " + cell.Name() + "(" + std::to_string(cell.Index()) +
                                              ") is \"" + cell.Text() +
                                              "\", which is no number. "
                                              "Look for a price that is no number in the records."};
    }
    return *number;
}

std::string SaleToListRatio(const frmDataViewer& viewer, int column) {
    const controls::TextBox& listMedian = viewer.txtMedian[ListIndex(kListPricesOfSales, column)];
    if (listMedian.Text().empty()) return "0";
    const double salePrice = MedianNumber(viewer.txtMedian[ListIndex(kSalePrices, column)]);
    const double listPrice = MedianNumber(listMedian);
    if (listPrice == 0) return "0";
    return text::FormatNumber(salePrice / listPrice, "##,###,###.#0");
}

}  // namespace

void ClearStatistics(frmDataViewer& viewer) {
    for (int index = 0; index < kStatisticsLists; ++index) {
        viewer.lstData[index].Clear();
        viewer.txtAverage[index].SetText("");
        viewer.txtMedian[index].SetText("");
        viewer.txtTotal[index].SetText("");
        viewer.txtLowest[index].SetText("");
        viewer.txtHighest[index].SetText("");
    }
}

void PublishListStatistics(frmDataViewer& viewer) {
    for (int index = 0; index < kStatisticsLists; ++index)
        viewer.FillListStatistics(viewer.lstData[index], index);
}

void CalculateAllRecords(const CalculationInput& input, frmDataViewer& viewer) {
    ClearStatistics(viewer);
    ado::Recordset& records = input.adoDatabook.Recordset();
    if (records.RecordCount() < 1) return;

    PassEntries entries;
    {
        const KeptPosition position{records};
        try {
            ClassifyRecords(input, records, entries);
        } catch (...) {
            entries.MoveInto(viewer.lstData);
            throw;
        }
    }
    entries.MoveInto(viewer.lstData);
    PublishListStatistics(viewer);
}

void FillWithZeroes(Results1004MC& results) {
    for (int column = 0; column < 3; ++column) {
        for (Results1004MC::Cells* row :
             {&results.txtTotalC, &results.txtAveCPrice, &results.txtTotalL, &results.txtTotalPerAveCPrice,
              &results.txtMedianCPrice, &results.txtMedianCDOM, &results.txtMedianLPrice,
              &results.txtMedianLDOM}) {
            if ((*row)[column].Text().empty()) (*row)[column].SetText("0");
        }
    }
}

void AdjustMedianComparableList(frmDataViewer& viewer) {
    for (int column = 0; column < 3; ++column) {
        viewer.Results().txtMedianLPrice[column].SetText(
            viewer.txtMedian[ListIndex(kListPricesOfSales, column)].Text());
    }
}

void DoCalculations(const CalculationInput& input, frmDataViewer& viewer) {
    Results1004MC& results = viewer.Results();
    FillWithZeroes(results);
    CalculateAllRecords(input, viewer);
    AdjustMedianComparableList(viewer);
    for (int column = 0; column < 3; ++column) {
        results.txtMedianLPDivSP[column].SetText(SaleToListRatio(viewer, column));
    }
}

}  // namespace zenvora::analysis
