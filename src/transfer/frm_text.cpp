#include "transfer/frm_text.h"

#include <array>

#include "common/primitives.h"
#include "common/text_helpers.h"
#include "platform/text/utf8.h"
#include "transfer/audit_text.h"

namespace zenvora::transfer {
namespace {

struct Addendum {
    std::string_view caption;  ///< with the two blanks that a remark follows
    std::string_view form;
};
constexpr std::array<Addendum, frmText::kAddenda> kAddenda{{{"Text Addendum A  ", "Text"},
                                                            {"Text Addendum B  ", "TextB"},
                                                            {"Text Addendum C  ", "TextC"},
                                                            {"Text Addendum D  ", "TextD"},
                                                            {"Text Addendum E  ", "TextE"}}};

constexpr std::string_view kTitleField = "|5|1";
constexpr std::string_view kBodyField = "|10|1";
constexpr std::string_view kContinuationField = "|94|1";
constexpr std::string_view kAuditTitle = "MARKET CONDITIONS AUDIT TRAIL";
constexpr std::string_view kForeign = " Contains Other Information";

}  // namespace

frmText::frmText(common::Session& session, link::Carrier& carrier, ado::Adodc& adoDatabook,
                 common::Date effectiveDate)
    : Form(session.forms, "frmText", "Transfer Audit Report"),
      TxtDde(carrier),
      session_(session),
      adoDatabook_(adoDatabook),
      effectiveDate_(effectiveDate) {
    fraText.SetCaption("Select Addendum to transfer Audit to");
    for (int index = 0; index < kAddenda; ++index) {
        const Addendum& addendum = transfer::kAddenda[static_cast<std::size_t>(index)];
        optText[index].SetCaption(std::string(addendum.caption));
        optText[index].SetTag(std::string(addendum.form));
        optText[index].JoinGroupOf(optText[0]);
    }
    cmdTransfer.SetCaption("Transfer");
    cmdTransfer.SetDefault(true);
    cmdTransfer.OnClick([this] { Transfer(); });
    cmdExit.SetCaption("Exit");
    cmdExit.SetCancel(true);
    cmdExit.OnClick([this] { Unload(); });

    Add(fraText);
    Add(optText);
    Add(cmdTransfer);
    Add(cmdExit);
    Add(txtReportname);
    Add(txtKrnFormList);
    txtReportname.SetVisible(false);
    txtKrnFormList.SetVisible(false);
}

void frmText::OnLoad() {
    KrnQueryActiveReports(TxtDde, session_);
    if (TxtDde.Text().empty()) {
        for (controls::OptionButton& option : optText)
            option.SetEnabled(false);
        return;
    }
    const std::string report = FirstCommaField(TxtDde.Text());
    txtReportname.SetText(report);
    KrnOpenReport(TxtDde, session_, report);
    KrnListForms(TxtDde, session_, report);
    txtKrnFormList.SetText(text::Upper(TxtDde.Text()));
    DescribeAddenda();
    EnableAddenda();
}

std::string frmText::GetAddendumTitle(int index) {
    return KrnGetFieldInfo(TxtDde, session_, txtReportname.Text(),
                           optText[index].Tag() + std::string(kTitleField));
}

std::string frmText::GetAddendumBody(int index) {
    return KrnGetFieldInfo(TxtDde, session_, txtReportname.Text(),
                           optText[index].Tag() + std::string(kBodyField));
}

void frmText::DescribeAddenda() {
    for (int index = 0; index < kAddenda; ++index) {
        controls::OptionButton& option = optText[index];
        if (!option.Enabled()) continue;
        std::string_view remark = " Contains Audit Report";
        if (text::Upper(GetAddendumTitle(index)) != kAuditTitle)
            remark = text::Trim(GetAddendumBody(index)).empty() ? " Empty/Available" : kForeign;
        option.SetCaption(option.Caption() + std::string(remark));
    }
}

void frmText::EnableAddenda() {
    const std::string forms = txtKrnFormList.Text() + ",";
    const std::string foreign = text::Trim(text::Upper(kForeign));
    for (controls::OptionButton& option : optText) {
        option.SetEnabled(forms.find(text::Upper(option.Tag())) != std::string::npos &&
                          text::Upper(option.Caption()).find(foreign) == std::string::npos);
    }
}

int frmText::SelectedAddendum() const {
    for (int index = 0; index < kAddenda; ++index) {
        if (optText[index].Value()) return index;
    }
    return 0;
}

void frmText::Send(const std::string& item, std::string_view value) {
    SendCounted(TxtDde, session_, TopicOf(common::UpTrim(txtReportname.Text())), item, value, outcome_);
}

void frmText::SendAuditText(const std::string& text, int part) {
    const std::string tag = optText[SelectedAddendum()].Tag();
    if (part == 1) {
        Send(tag + std::string(kTitleField), kAuditTitle);
        Send(tag + std::string(kBodyField), text);
    } else {
        Send(tag + std::string(kContinuationField), text);
    }
}

void frmText::Transfer() {
    if (adoDatabook_.Recordset().RecordCount() < 1) return;
    // Made before anything is sent, so that a Databook that cannot be read changes no addendum.
    const AuditText audit = BuildAuditText(adoDatabook_, effectiveDate_);
    const int selected = SelectedAddendum();
    outcome_ = {};
    outcome_.end = TransferOutcome::End::Sent;
    outcome_.report = txtReportname.Text();
    outcome_.form = optText[selected].Tag();
    outcome_.leftOut = audit.leftOut;
    outcome_.values = audit.part2.empty() ? 3 : 4;
    // The first word of every caption is "Text", so that this goes to addendum A, whichever is chosen.
    Send(common::SplitFirst(optText[selected].Caption(), "L", " ") + std::string(kTitleField),
         "Market Conditions Audit Trail");
    SendAuditText(audit.part1, 1);
    if (!audit.part2.empty()) SendAuditText(audit.part2, 2);
    Unload();
}

}  // namespace zenvora::transfer
