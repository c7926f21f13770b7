#pragma once

#include <string>

#include "common/dates.h"
#include "platform/ado/adodc.h"
#include "platform/controls/combo_box.h"
#include "platform/controls/text_box.h"

namespace zenvora::records {

/// What the record dialogs share with the main form: its controls and the values that it keeps for the whole
/// program. All of it lives as long as the main form.
struct SharedParts {
    ado::Adodc& adoDatabook;  ///< the grid's records, the main field list in key order
    controls::TextBox& txtCentralKey;
    controls::TextBox& txtBaseDate;
    controls::ComboBox& cboBaseDate;
    std::string& CurrentKey;      ///< key of the selected record, upper case and trimmed
    common::Date& EffectiveDate;  ///< the Effective Appraisal Date
};

/// The main form, as the record dialogs see it.
class MainForm {
  public:
    MainForm() = default;
    virtual ~MainForm() = default;
    MainForm(const MainForm&) = delete;
    MainForm& operator=(const MainForm&) = delete;

    [[nodiscard]] virtual SharedParts Shared() = 0;
    /// Selects the record views anew and finds CurrentKey in them, unless that is empty.
    virtual void ReopenRecordViews() = 0;
    /// Binds the grid to the records anew.
    virtual void RebindGrid() = 0;
    /// Puts the counts of valid and of all records into the caption of the first page.
    virtual void ShowRecordCounts() = 0;
    /// Makes the buttons available that fit CurrentKey.
    virtual void RefreshKeyButtons() = 0;
    /// Works out the figures of the second page.
    virtual void DoCalculations() = 0;
};

}  // namespace zenvora::records
