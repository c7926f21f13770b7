#pragma once

#include <string>
#include <string_view>

#include "common/dates.h"
#include "common/session.h"
#include "platform/ado/adodc.h"
#include "platform/controls/command_button.h"
#include "platform/controls/control_array.h"
#include "platform/controls/form.h"
#include "platform/controls/frame.h"
#include "platform/controls/option_button.h"
#include "platform/controls/text_box.h"
#include "platform/link/endpoint.h"
#include "transfer/transfer_outcome.h"

namespace zenvora::transfer {

/// "Transfer Audit Report": the user picks one of the five text addenda of the report that is open in KRN,
/// and the audit trail goes into it. Modal, and made anew for each showing.
///
/// Each option says what its addendum holds. One with somebody's text cannot be chosen, one with an earlier
/// audit report can.
class frmText final : public controls::Form {
  public:
    static constexpr int kAddenda = 5;

    /// `adoDatabook` is the record view of the main window, `effectiveDate` the Effective Appraisal Date.
    frmText(common::Session& session, link::Carrier& carrier, ado::Adodc& adoDatabook,
            common::Date effectiveDate);

    controls::Frame fraText{"fraText"};  ///< holds the options
    controls::ControlArray<controls::OptionButton> optText{"optText", kAddenda};
    controls::CommandButton cmdTransfer{"cmdTransfer"};
    controls::CommandButton cmdExit{"cmdExit"};

    // Parked, which no view shows.
    controls::TextBox txtReportname{"txtReportname"};
    controls::TextBox txtKrnFormList{"txtKrnFormList"};  ///< upper case
    link::Endpoint TxtDde;

    /// Title and body of an addendum, empty when the report does not give them.
    [[nodiscard]] std::string GetAddendumTitle(int index);
    [[nodiscard]] std::string GetAddendumBody(int index);
    /// The lowest option that is set, 0 when none is.
    [[nodiscard]] int SelectedAddendum() const;

    /// What became of the transfer; also after a fault. Stays when the dialog has closed.
    [[nodiscard]] const TransferOutcome& Outcome() const noexcept { return outcome_; }

  protected:
    void OnLoad() override;

  private:
    void DescribeAddenda();
    void EnableAddenda();
    void Transfer();
    void SendAuditText(const std::string& text, int part);
    void Send(const std::string& item, std::string_view value);

    common::Session& session_;
    ado::Adodc& adoDatabook_;
    common::Date effectiveDate_;
    TransferOutcome outcome_;
};

}  // namespace zenvora::transfer
