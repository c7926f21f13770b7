#include "frame/frm_main.h"

#include <algorithm>
#include <utility>

#include "common/shell_open.h"
#include "frame/frm_config.h"
#include "records/date_entry.h"
#include "records/edit_record.h"

namespace zenvora::frame {
namespace {

/// Where a text path leads by the drives that the session has at that moment.
ado::PathMapper MapperOf(const common::Session& session) {
    return [&session](std::string_view path) { return session.drives.HostPath(path); };
}

}  // namespace

frmMain::frmMain(common::Session& session, MainServices services)
    : Form(session.forms, "frmMain", "Zenvora"),
      TxtDde(services.link == nullptr ? link::NoCarrier() : *services.link),
      viewer(session, results),
      adoDatabook(session.databooks, session.clock, MapperOf(session)),
      adoSQL(session.databooks, session.clock, MapperOf(session)),
      session_(session),
      services_(std::move(services)),
      mapper_(MapperOf(session)),
      about_(session, ZENVORA_VERSION) {
    SetPlacement({.width = 12015, .height = 7005});
    LayOutControls();
    LayOutMenus();
    BindControls();
    BindMenus();
    tdbgData.SetColumns(analysis::CompsGridColumns());
    tdbgData.SetRows(&gridRows_);
}

void frmMain::LayOutControls() {
    GroupBox2.SetCaption("Address");
    cmdAdd.SetCaption("&Add");
    cmdEdit.SetCaption("&Edit");
    cmdDelete.SetCaption("&Delete");
    Label1.SetCaption("Effective Appraisal Date");
    imaBaseDateCal.SetPicture("calendar");
    imaBaseDateCal.SetCaption("Choose the date from a calendar");
    cmdChkValidity.SetCaption("C&heck for Validity");
    cmdChkValidity.SetVisible(false);
    txtCalculate.SetCaption("&Calculate");
    cmdPrintAudit.SetCaption("Print");
    cmdExit2.SetCaption("E&xit");

    Add(tdgViewer);
    Add(GroupBox2);
    Add(txtCentralKey);
    Add(cmdAdd);
    Add(cmdEdit);
    Add(cmdDelete);
    Add(GroupBox1);
    Add(Label1);
    Add(txtBaseDate);
    Add(cboBaseDate);
    Add(imaBaseDateCal);
    Add(tdbgData);
    Add(lblExplanation);
    Add(cmdChkValidity);
    Add(txtCalculate);
    Add(cmdPrintAudit);
    Add(cmdExit2);

    Frame1.SetCaption(std::string(analysis::kInventoryFrame));
    Frame2.SetCaption(std::string(analysis::kMedianFrame));
    Label19.SetCaption("Effective Appraisal Date");
    txtBaseDateT2.SetLocked(true);
    fraTransfer.SetCaption("1004MC: Transfer");
    cmdTransfer.SetCaption("&Mkt R && A");
    cmdTransferAudit.SetCaption("A&udit Trail");
    cmdTransferCondoCoop.SetCaption("C&ondo/Co Op");
    imgDataSentMsg.SetPicture("sent");
    imgDataSentMsg.SetVisible(false);
    lblDataSentMsg.SetCaption("Data sent to report");
    lblDataSentMsg.SetVisible(false);
    cmdBack.SetCaption("<<  Comps and Listings");
    cmdPrintCalc.SetCaption("Print");
    cmdExit.SetCaption("E&xit");
    PushButton1.SetCaption("E&xit");

    Add(Frame1);
    Add(Frame2);
    for (const analysis::ResultRow& row : analysis::kResultRows) {
        analysis::Results1004MC::Cells& cells = results.Row(row.name);
        for (controls::TextBox& cell : cells)
            cell.SetLocked(true);
        Add(cells);
    }
    Add(Label19);
    Add(txtBaseDateT2);
    Add(fraTransfer);
    Add(cmdTransfer);
    Add(cmdTransferAudit);
    Add(cmdTransferCondoCoop);
    Add(imgDataSentMsg);
    Add(lblDataSentMsg);
    Add(lblTransferStatus);
    Add(cmdBack);
    Add(cmdPrintCalc);
    Add(cmdExit);
    Add(PushButton1);

    Frame4.SetCaption("Krn Textboxes");
    Command2.SetCaption("Command2");
    Add(Frame4);
    Add(txtKrnFormList);
    Add(txtKrnReportName);
    Add(Command2);
    Add(lstProcesses);
}

void frmMain::LayOutMenus() {
    mnuFile.SetCaption("File");
    mnuFileItem[1].SetCaption("New Databook");
    mnuFileItem[1].SetShortcut("Ctrl+N");
    mnuFileItem[2].SetCaption("Open Databook");
    mnuFileItem[2].SetShortcut("Ctrl+O");
    mnuFileItem[3].SetCaption("Merge Databooks");
    mnuRecent.SetCaption("Open Recent");
    mnuPdfAudit.SetCaption("Audit Report as PDF...");
    mnuPdfCalc.SetCaption("Calculations as PDF...");
    mnuPdfFit.SetCaption("Shrink Long Addresses in the PDF");
    mnuSetup.SetCaption("Setup");
    mnuSetupConfig.SetCaption("Configuration");
    mnuRefresh.SetCaption("Refresh");
    mnuRefreshItem[1].SetCaption("Check for Appraisal Software");
    mnuHelp.SetCaption("Help");
    mnuAbout.SetCaption("About");
    mnuHelp2.SetCaption("Zenvora Help  F1");

    std::vector<controls::MenuItem*> recent;
    for (controls::MenuItem& item : mnuRecentItem) {
        item.SetVisible(false);
        recent.push_back(&item);
    }
    AddMenu({&mnuFile,
             {{&mnuFileItem[1]},
              {&mnuFileItem[2]},
              {&mnuFileItem[3]},
              {&mnuRecent, recent},
              {},
              {&mnuPdfAudit},
              {&mnuPdfCalc},
              {&mnuPdfFit}}});
    AddMenu({&mnuSetup, {{&mnuSetupConfig}}});
    AddMenu({&mnuRefresh, {{&mnuRefreshItem[1]}}});
    AddMenu({&mnuHelp, {{&mnuAbout}, {&mnuHelp2}}});
}

void frmMain::BindControls() {
    txtCentralKey.OnChange([this] { CentralKeyChanged(); });
    cmdAdd.OnClick([this] { records::EditRecord(Application(), *this, "ADD"); });
    cmdEdit.OnClick([this] { records::EditRecord(Application(), *this, "EDIT"); });
    cmdDelete.OnClick([this] { records::DeleteRecord(Application(), *this); });
    txtBaseDate.OnChange([this] { BaseDateChanged(); });
    txtBaseDate.OnLostFocus([this] { BaseDateLeft(); });
    cboBaseDate.OnChange([this] { BaseDatePicked(); });
    cboBaseDate.OnClick([this] { BaseDatePicked(); });
    imaBaseDateCal.OnClick([this] {
        records::GetCalandarDate(Application(), txtBaseDate, "Effective Appraisal Date:");
        txtBaseDate.SetFocus();
    });
    tdbgData.OnClick([this] { GridRowChosen(); });
    tdbgData.OnRowColChange([this] { GridRowChosen(); });
    tdbgData.OnDblClick([this] { GridDblClick(); });
    cmdChkValidity.OnClick([this] { ConfirmValidityRun(); });
    txtCalculate.OnClick([this] { tdgViewer.SetTab(kCalculationsPage); });
    cmdExit2.OnClick([this] { Program().UnloadAllForms(); });

    tdgViewer.OnTabChange([this](int previous) { PageChanged(previous); });
    cmdBack.OnClick([this] { tdgViewer.SetTab(kCompsPage); });
    cmdExit.OnClick([this] { CloseMainWindow(); });
    PushButton1.OnClick([this] { CloseMainWindow(); });

    cmdTransfer.OnClick([this] { TransferFields(transfer::MarketFields()); });
    cmdTransferCondoCoop.OnClick([this] { TransferFields(transfer::CondoFields()); });
    cmdTransferAudit.OnClick([this] { TransferAuditTrail(); });

    cmdPrintAudit.OnClick([this] { PrintAudit(); });
    cmdPrintCalc.OnClick([this] { PrintCalculations(); });

    Command2.OnClick([this] { txtBaseDate.SetText("12/31/2008"); });
}

void frmMain::BindMenus() {
    mnuFileItem[1].OnClick([this] {
        NewDatabook();
        open.OpenMode = 2;
    });
    mnuFileItem[2].OnClick([this] {
        OpenDatabook();
        open.OpenMode = 1;
    });
    mnuFileItem[3].OnClick([this] { MergeDatabooks(); });
    for (controls::MenuItem& item : mnuRecentItem)
        item.OnClick([this, index = item.Index()] { OpenRecent(index); });
    mnuPdfAudit.OnClick([this] { SaveAuditPdf(); });
    mnuPdfCalc.OnClick([this] { SaveCalculationsPdf(); });
    mnuPdfFit.OnClick([this] { mnuPdfFit.SetChecked(!mnuPdfFit.Checked()); });
    mnuRefreshItem[1].OnClick([this] {
        CheckForAppraisal();
        SetUpDate(txtBaseDate, cboBaseDate);
    });
    mnuRefreshItem[2].OnClick([this] { CheckAllRecords("R"); });
    mnuSetupConfig.OnClick([this] { ShowConfiguration(session_); });
    mnuAbout.OnClick([this] { about_.Show(controls::Modality::Modeless); });
    mnuHelp2.OnClick([this] { common::OpenHelp(session_); });
}

records::Application frmMain::Application() const {
    return {session_, services_.commandLine};
}

records::SharedParts frmMain::Shared() {
    return {adoDatabook, txtCentralKey, txtBaseDate, cboBaseDate, CurrentKey, EffectiveDate};
}

bool frmMain::IsInDialog() const {
    const std::vector<Form*>& forms = Program().Loaded();
    return std::any_of(forms.begin(), forms.end(), [this](const Form* form) {
        return form != this && form != &viewer && form->Visible();
    });
}

bool frmMain::RecoverFromFault() {
    if (!Loaded()) return false;
    // While the program starts, a dialog that is on the screen stays with all that was typed.
    if (!adoDatabook.HasRecordset()) return !Visible() && IsInDialog();
    adoDatabook.Recordset().CancelUpdate();
    RebindGrid();
    return true;
}

}  // namespace zenvora::frame
