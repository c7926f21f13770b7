#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>

#include "common/dates.h"
#include "platform/ado/adodc.h"
#include "platform/controls/combo_box.h"
#include "platform/controls/command_button.h"
#include "platform/controls/form.h"
#include "platform/controls/frame.h"
#include "platform/controls/image.h"
#include "platform/controls/label.h"
#include "platform/controls/rich_text.h"
#include "platform/controls/text_box.h"
#include "records/address_entry.h"
#include "records/application.h"
#include "records/bound_record.h"
#include "records/field_advice.h"
#include "records/main_form.h"

namespace zenvora::records {

/// The dialog "Edit": one record of the open Databook, its fields bound to its columns, with advice on each
/// field as it is typed. It lives for one call of EditRecord.
///
/// Colours and notes advise; nothing is refused. cmdOK stores what it can and turns the rest into the stored
/// forms of a missing value; the close box stores the texts as they are; cmdCancel stores nothing. A fault of
/// a rule is told in one message that names the field, and the dialog stays open with all that was typed.
class frmEdit final : public controls::Form {
  public:
    frmEdit(const Application& application, MainForm& mainForm);

    controls::Label Label3{"Label3"};  ///< "Effective Appraisal Date"
    controls::TextBox txtBaseDate{"txtBaseDate"};
    controls::ComboBox cboBaseDate{"cboBaseDate"};  ///< hidden; carries the date to the main form
    controls::Image imaBaseDateCal{"imaBaseDateCal"};

    controls::Frame Frame3{"Frame3"};  ///< "Address"
    controls::Label lblStreet{"lblStreet"};
    controls::TextBox txtStreet{"txtStreet"};
    controls::Label lblCity{"lblCity"};
    controls::TextBox txtCity{"txtCity"};
    controls::ComboBox cboCity{"cboCity"};  ///< the known places; shown with /V on the command line
    controls::Label lblState{"lblState"};
    controls::TextBox txtState{"txtState"};
    controls::Label lblZip{"lblZip"};
    controls::TextBox txtZip{"txtZip"};

    controls::RichText rtxtInfo{"rtxtInfo"};

    controls::Frame fraNonAddrFields1{"fraNonAddrFields1"};  ///< no caption: the four frames that follow
    controls::Frame Frame4{"Frame4"};                        ///< "Original List"
    controls::Label lblOrigListDate{"lblOrigListDate"};
    controls::TextBox txtOrigListDate{"txtOrigListDate"};
    controls::Image imaOrigListDate{"imaOrigListDate"};
    controls::Label lblOrigListPrice{"lblOrigListPrice"};
    controls::TextBox txtOrigListPrice{"txtOrigListPrice"};
    controls::Frame Frame5{"Frame5"};  ///< "Current List"
    controls::Label lblCurrentListDate{"lblCurrentListDate"};
    controls::TextBox txtCurrListDate{"txtCurrListDate"};
    controls::Image imaCurrListDate{"imaCurrListDate"};
    controls::Label lblCurrentListPrice{"lblCurrentListPrice"};
    controls::TextBox txtCurrListPrice{"txtCurrListPrice"};
    controls::Frame Frame6{"Frame6"};  ///< "Optional Dates"
    controls::Label lblContractDate{"lblContractDate"};
    controls::TextBox txtContractDate{"txtContractDate"};
    controls::Image imaContractDate{"imaContractDate"};
    controls::Label lblListCancelDate{"lblListCancelDate"};
    controls::TextBox txtListCancelDate{"txtListCancelDate"};
    controls::Image imaListCancelDate{"imaListCancelDate"};
    controls::Frame Frame2{"Frame2"};  ///< "Sale"
    controls::Label lblSaleDate{"lblSaleDate"};
    controls::TextBox txtSaleDate{"txtSaleDate"};
    controls::Image imaSaleDate{"imaSaleDate"};
    controls::Label lblSalePrice{"lblSalePrice"};
    controls::TextBox txtSellingPr{"txtSellingPr"};

    controls::CommandButton cmdUseOrig{"cmdUseOrig"};
    controls::CommandButton cmdCancel{"cmdCancel"};
    controls::CommandButton cmdOK{"cmdOK"};

    ado::Adodc adoDatabook;        ///< all columns in key order; the record that is edited is current
    ado::Adodc adoDatabookSearch;  ///< all columns in table order, for the search of a street

    /// The status of each field as it stands.
    [[nodiscard]] const FieldStatus& Status() const noexcept { return advice_.Status(); }

  protected:
    void OnLoad() override;
    void OnActivate() override;
    void OnQueryUnload(bool& cancel) override;
    void OnUnload() override;

  private:
    /// Counts the rules that run, so that only the outermost one tells of a fault.
    class Running {
      public:
        explicit Running(int& rules) : rules_(rules) { ++rules_; }
        ~Running() { --rules_; }
        Running(const Running&) = delete;
        Running& operator=(const Running&) = delete;

      private:
        int& rules_;
    };

    void LayOut();
    void SetRules();
    void SetFieldRules(controls::TextBox& field, void (FieldAdvice::*changed)(), std::string_view helpFile);
    void SetPicture(controls::Image& picture, controls::TextBox& field, controls::Control& next,
                    std::string_view title, bool boundIsTold);

    /// Runs the rule of an event: a fault of it, or of the rules that it sets off, is told once.
    void Run(std::string_view what, const std::function<void()>& rule);
    [[nodiscard]] std::function<void()> Rule(std::function<void()> rule);
    /// The field that a fault speaks of, null when it is none of them.
    [[nodiscard]] controls::TextBox* FieldOf(const Fault& fault);
    void TellOfSaving(const Fault& fault);

    void ConnectRecord();
    void HideDefaults();
    void Save();
    [[nodiscard]] bool SaveRecord();
    void Cancel();
    [[nodiscard]] bool HasRecords();
    /// After a save that did not come to its end: the record as it is stored, the fields as they were typed.
    void ComeBackFrom(const BoundRecord::Typed& typed);

    void BaseDateChanged();
    void SelectFieldText();
    void EnterField(controls::TextBox& field, std::string_view helpFile);
    void LeaveDate(controls::TextBox& field);
    void LeavePrice(controls::TextBox& field);
    void ClearPanel();

    [[nodiscard]] bool IsDateEntry(const std::string& text) const;
    [[nodiscard]] AdvisedFields Advised();

    Application application_;
    MainForm& main_;
    SharedParts shared_;
    int rulesRunning_ = 0;

    std::string mCurrentKey;
    std::string mOrigListDate;
    std::string mOrigListPrice;
    std::string mPreviousText;
    controls::Control* mNextFocus = &txtOrigListDate;

    BoundRecord record_;
    FieldAdvice advice_;
    AddressEntry address_;
};

}  // namespace zenvora::records
