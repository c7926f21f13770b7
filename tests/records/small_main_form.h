#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/dates.h"
#include "common/primitives.h"
#include "databook/selection.h"
#include "platform/controls/form.h"
#include "platform/fault.h"
#include "records/main_form.h"

namespace zenvora::records {

/// A main form that keeps the rules which matter to the record dialogs, and writes down what is asked of it.
/// Its Databook is C:\DATA\LISTINGS.mdb.
class SmallMainForm final : public controls::Form, public MainForm {
  public:
    explicit SmallMainForm(common::Session& session)
        : Form(session.forms, "frmMain", "Zenvora"),
          adoDatabook(session.databooks, session.clock,
                      [&session](std::string_view path) { return session.drives.HostPath(path); }) {
        Add(txtCentralKey);
        Add(txtBaseDate);
        Add(cboBaseDate);
        txtCentralKey.OnChange([this] {
            CurrentKey = common::UpTrim(txtCentralKey.Text());
            asked.emplace_back("key box " + txtCentralKey.Text());
        });
        txtBaseDate.OnChange([this, &session] {
            if (common::IsValidDateEntry(txtBaseDate.Text(), session.clock))
                EffectiveDate = common::ConvDate(std::string_view{txtBaseDate.Text()}, session.clock);
        });
        cboBaseDate.OnChange([this, &session] {
            if (common::IsDate(cboBaseDate.Text(), session.clock)) txtBaseDate.SetText(cboBaseDate.Text());
        });
    }

    [[nodiscard]] SharedParts Shared() override {
        return {adoDatabook, txtCentralKey, txtBaseDate, cboBaseDate, CurrentKey, EffectiveDate};
    }
    void ReopenRecordViews() override {
        if (refusesToReopen) throw Fault{fault::kDamaged, "The Databook is damaged."};
        asked.emplace_back("reopen");
        databook::AdoConnectSelect(adoDatabook, "C:\\DATA", "LISTINGS.mdb", "COMPS", databook::kMainFieldList,
                                   databook::kKeyOrder);
        if (!CurrentKey.empty()) adoDatabook.Recordset().Find(databook::KeyCriterion(CurrentKey));
    }
    void RebindGrid() override { asked.emplace_back("rebind"); }
    void ShowRecordCounts() override { asked.emplace_back("counts"); }
    void RefreshKeyButtons() override { asked.emplace_back("buttons"); }
    void DoCalculations() override { asked.emplace_back("calculate"); }

    controls::TextBox txtCentralKey{"txtCentralKey"};
    controls::TextBox txtBaseDate{"txtBaseDate"};
    controls::ComboBox cboBaseDate{"cboBaseDate"};
    ado::Adodc adoDatabook;
    std::string CurrentKey;
    common::Date EffectiveDate = 0;

    std::vector<std::string> asked;
    bool refusesToReopen = false;
};

}  // namespace zenvora::records
