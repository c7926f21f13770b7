#pragma once

#include <string_view>

#include "analysis/frm_data_viewer.h"
#include "analysis/results_1004mc.h"
#include "common/dates.h"
#include "common/session.h"
#include "platform/ado/adodc.h"

/// The calculation of Form 1004MC: one walk over the records, the statistics of the lists, the figures.
namespace zenvora::analysis {

/// What a calculation works on.
struct CalculationInput {
    common::Session& session;
    ado::Adodc& adoDatabook;
    std::string_view txtBaseDate;    ///< text of the date box; it sets the days of the periods
    common::Date effectiveDate = 0;  ///< the value EffectiveDate; list prices in force are chosen by it
};

/// Empties each list and then its five cells, in ascending order of the lists.
void ClearStatistics(frmDataViewer& viewer);

/// Fills the five cells of each list, in ascending order of the lists.
void PublishListStatistics(frmDataViewer& viewer);

/// The whole pass: empties the lists, classifies every usable record for the three periods, publishes the
/// statistics. Without records the cells stay empty. It checks no record: it trusts the flags that the last
/// validity run left. The Recordset comes back to its current record. Faults: those of the store while
/// reading, 91, 3265 (no column SELECTED); the lists then hold what was read until there, and no statistics
/// are published.
void CalculateAllRecords(const CalculationInput& input, frmDataViewer& viewer);

/// Sets each empty cell to "0", but for those of the sale to list ratio.
void FillWithZeroes(Results1004MC& results);

/// Copies the medians of the list prices of sales into txtMedianLPrice as they stand, without commas.
void AdjustMedianComparableList(frmDataViewer& viewer);

/// Works out all figures of the form in viewer.Results(). Faults: as CalculateAllRecords, and 13 for a median
/// that is no number.
void DoCalculations(const CalculationInput& input, frmDataViewer& viewer);

}  // namespace zenvora::analysis
