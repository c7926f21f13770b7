#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "analysis/comps_grid.h"
#include "analysis/frm_data_viewer.h"
#include "analysis/results_1004mc.h"
#include "common/dates.h"
#include "common/session.h"
#include "frame/frm_about.h"
#include "frame/open_state.h"
#include "frame/recent_databooks.h"
#include "platform/ado/adodc.h"
#include "platform/controls/combo_box.h"
#include "platform/controls/command_button.h"
#include "platform/controls/control_array.h"
#include "platform/controls/form.h"
#include "platform/controls/frame.h"
#include "platform/controls/grid.h"
#include "platform/controls/image.h"
#include "platform/controls/label.h"
#include "platform/controls/list_box.h"
#include "platform/controls/menu.h"
#include "platform/controls/tab_pages.h"
#include "platform/controls/text_box.h"
#include "platform/link/endpoint.h"
#include "platform/page/form_print.h"
#include "platform/page/pdf.h"
#include "platform/page/printer.h"
#include "printing/audit_report.h"
#include "printing/print_defaults.h"
#include "records/application.h"
#include "records/main_form.h"
#include "transfer/field_transfer.h"

namespace zenvora::frame {

/// What the main window is given besides the session. What is null is not there.
struct MainServices {
    std::string commandLine;           ///< as the user gave it, without the program's name
    link::Carrier* link = nullptr;     ///< the way to KRN; without one nobody answers
    page::Printer* printer = nullptr;  ///< the surface of the default printer
    page::PdfMaker makePdf = {};
    /// The main window as it stands on the screen, made anew for each print.
    std::function<std::unique_ptr<page::FormPrint>()> mainWindow = {};
};

/// The main window: page 0 "Comps and Listings", page 1 "Calculations", and the menus. It is the start object
/// of the program: its Load runs the whole start, so that the window appears with a Databook open, or not at
/// all.
///
/// Faults in a file that the user chose are told in a message and lead back to the start dialog or to the
/// Databook that was open. All others pass out of the events.
///
/// Parked, which no view shows: Frame4 with txtKrnFormList, txtKrnReportName and Command2, and lstProcesses.
class frmMain final : public controls::Form, public records::MainForm {
  public:
    static constexpr int kCompsPage = 0;
    static constexpr int kCalculationsPage = 1;
    static constexpr int kRecentItems = 10;

    explicit frmMain(common::Session& session, MainServices services = {});

    OpenState open;
    bool PendingValidityNotice = false;  ///< the notice about a large Databook is still to be shown
    common::Date EffectiveDate = 0;      ///< the Effective Appraisal Date
    std::string CurrentKey;              ///< key of the selected record, upper case and trimmed

    controls::TabPages tdgViewer{"tdgViewer", {"Comps and Listings", "Calculations"}};

    // ---- page 0 ----
    controls::Frame GroupBox2{"GroupBox2"};  ///< "Address": txtCentralKey, cmdAdd
    controls::TextBox txtCentralKey{"txtCentralKey"};
    controls::CommandButton cmdAdd{"cmdAdd"};
    controls::CommandButton cmdEdit{"cmdEdit"};
    controls::CommandButton cmdDelete{"cmdDelete"};
    controls::Frame GroupBox1{"GroupBox1"};  ///< no caption: Label1, txtBaseDate, cboBaseDate, imaBaseDateCal
    controls::Label Label1{"Label1"};        ///< "Effective Appraisal Date"
    controls::TextBox txtBaseDate{"txtBaseDate"};
    controls::ComboBox cboBaseDate{"cboBaseDate"};
    controls::Image imaBaseDateCal{"imaBaseDateCal"};
    controls::Grid tdbgData{"tdbgData"};
    controls::Label lblExplanation{"lblExplanation"};
    controls::CommandButton cmdChkValidity{"cmdChkValidity"};
    controls::CommandButton txtCalculate{"txtCalculate"};  ///< a button, whatever its name says
    controls::CommandButton cmdPrintAudit{"cmdPrintAudit"};
    controls::CommandButton cmdExit2{"cmdExit2"};

    // ---- page 1; rows and columns of the results as kResultRows and kPeriodColumns have them ----
    controls::Frame Frame1{"Frame1"};    ///< "Inventory Analysis"
    controls::Frame Frame2{"Frame2"};    ///< "Median Sale && List Price, DOM, Sale / List %"
    analysis::Results1004MC results;     ///< its cells are controls of this form, locked
    controls::Label Label19{"Label19"};  ///< "Effective Appraisal Date"
    controls::TextBox txtBaseDateT2{"txtBaseDateT2"};
    controls::Frame fraTransfer{"fraTransfer"};  ///< "1004MC: Transfer": the three buttons that follow
    controls::CommandButton cmdTransfer{"cmdTransfer"};
    controls::CommandButton cmdTransferAudit{"cmdTransferAudit"};
    controls::CommandButton cmdTransferCondoCoop{"cmdTransferCondoCoop"};
    controls::Image imgDataSentMsg{"imgDataSentMsg"};
    controls::Label lblDataSentMsg{"lblDataSentMsg"};
    /// What became of the last transfer: how many values arrived, were refused, or are unknown.
    controls::Label lblTransferStatus{"lblTransferStatus"};
    controls::CommandButton cmdBack{"cmdBack"};
    controls::CommandButton cmdPrintCalc{"cmdPrintCalc"};
    controls::CommandButton cmdExit{"cmdExit"};
    controls::CommandButton PushButton1{"PushButton1"};  ///< lies under cmdExit and does the same: not shown

    // ---- parked ----
    controls::Frame Frame4{"Frame4"};
    controls::TextBox txtKrnFormList{"txtKrnFormList"};
    controls::TextBox txtKrnReportName{"txtKrnReportName"};
    link::Endpoint TxtDde;  ///< the link to KRN
    controls::CommandButton Command2{"Command2"};
    controls::ListBox lstProcesses{"lstProcesses"};

    // ---- menus ----
    controls::MenuItem mnuFile{"mnuFile"};
    /// On the menu: 1 "New Databook", 2 "Open Databook", 3 "Merge Databooks".
    controls::ControlArray<controls::MenuItem> mnuFileItem{"mnuFileItem", 4};
    controls::MenuItem mnuRecent{"mnuRecent"};
    /// The Databooks opened last, the latest first; those that are missing are hidden.
    controls::ControlArray<controls::MenuItem> mnuRecentItem{"mnuRecentItem", kRecentItems};
    controls::MenuItem mnuPdfAudit{"mnuPdfAudit"};
    controls::MenuItem mnuPdfCalc{"mnuPdfCalc"};
    controls::MenuItem mnuPdfFit{"mnuPdfFit"};  ///< a check
    controls::MenuItem mnuSetup{"mnuSetup"};
    controls::MenuItem mnuSetupConfig{"mnuSetupConfig"};
    controls::MenuItem mnuRefresh{"mnuRefresh"};
    /// On the menu: 1 "Check for Appraisal Software". 2, a validity run, is on no menu.
    controls::ControlArray<controls::MenuItem> mnuRefreshItem{"mnuRefreshItem", 3};
    controls::MenuItem mnuHelp{"mnuHelp"};
    controls::MenuItem mnuAbout{"mnuAbout"};
    controls::MenuItem mnuHelp2{"mnuHelp2"};

    /// The statistics window, which holds the lists of the last calculation.
    analysis::frmDataViewer viewer;

    // ---- what the window works on ----
    ado::Adodc adoDatabook;  ///< the current-record cursor of the whole program
    ado::Adodc adoSQL;       ///< the same records, no logic reads through it

    // ---- what other dialogs ask of the window ----
    [[nodiscard]] records::SharedParts Shared() override;
    void ReopenRecordViews() override;
    void RebindGrid() override;
    void ShowRecordCounts() override;
    void RefreshKeyButtons() override;
    void DoCalculations() override;
    [[nodiscard]] bool TakesFiles() const noexcept override { return true; }

    /// Sets the title: name, version and the Databook that is open.
    void ShowTitle(std::string_view name);
    [[nodiscard]] std::string DataSourceOfConnection() const;
    /// True when the report that is open in KRN holds a form of a condominium or cooperative.
    [[nodiscard]] bool IsCondoForm() const;
    /// Brings the transfer controls up to date with KRN. A failed conversation reads as no report.
    void RefreshKrnLink();
    /// The same at the user's wish, and the report's date with it: a failed conversation is told.
    void CheckForAppraisal();
    /// A fault passed out of an event: no half-made change stays, and the grid shows what is stored. True
    /// when a Databook is open that the user can work on with.
    [[nodiscard]] bool RecoverFromFault();

  protected:
    void OnLoad() override;
    void OnActivate() override;
    void OnQueryUnload(bool& cancel) override;
    void OnUnload() override;
    void OnHelp() override;
    void OnDropFile(const std::string& hostPath) override;

  private:
    /// What an attempt to open another Databook may have to bring back.
    struct OpenBefore;

    void LayOutControls();
    void LayOutMenus();
    void BindControls();
    void BindMenus();
    [[nodiscard]] bool IsInDialog() const;
    [[nodiscard]] records::Application Application() const;

    // The start.
    void InsertMissingFields();
    void BypassOpenFile(std::string_view commandLine, bool& ok);
    void ShowStartDialog();
    [[nodiscard]] bool OpenChosenDatabook();
    void RunOpenLoop();
    void SetUpDate(controls::TextBox& box, controls::ComboBox& combo);
    [[nodiscard]] bool IsDirPresent() const;
    void ShowPendingNotice();
    void TellToCheckFirst();

    // Opening Databooks.
    [[nodiscard]] std::string CurrentPath() const;
    [[nodiscard]] std::string HostText(const std::string& path) const;
    /// Runs an attempt to open a Databook. False after a fault in the file: the user was told, and everything
    /// is as it was before.
    bool Guarded(const std::function<void()>& work);
    void GoBackTo(const OpenBefore& before);
    void FirstConnectSelect();
    /// Records came that this run has not checked: few are checked at once, of many the user decides.
    void CheckWhatCame();
    void ConnectSql();
    [[nodiscard]] std::string ShowOpenDialog();
    [[nodiscard]] std::string OpenMdbDialog(std::string_view title, const std::string& defaultPath);
    [[nodiscard]] std::string FindDestination();
    void ChooseDatabook();
    [[nodiscard]] std::string ImportSource(const std::string& source);
    void MergeDatabooks();
    void AskAboutOverwriting(const std::string& path);
    void CopyNewData(const std::string& destination);
    [[nodiscard]] bool MayOverwrite(const std::string& path);
    void NewDatabook();
    void OpenDatabook();
    /// False when there is no such file, of which the user was told.
    bool OpenPath(const std::string& path);
    void ConnectDestination(const std::string& path);
    void ShowRecent();
    void OpenRecent(int index);

    // Comps and Listings.
    /// The current record is another one, or has changed.
    void MovedInRecords();
    bool FindCurrentKey();
    void CheckAllRecords(std::string_view mode);
    void ConfirmValidityRun();
    void BaseDateChanged();
    void BaseDateLeft();
    void BaseDatePicked();
    void CentralKeyChanged();
    void GridRowChosen();
    void GridDblClick();

    // Calculations.
    void PageChanged(int previous);
    /// Takes over the report that is open in KRN; false when none is reachable.
    bool ReadReport(bool& mayAskToLaunch);
    /// The effective date of the report as it stands there, empty when it gives none.
    [[nodiscard]] std::string ReportedDate();
    [[nodiscard]] std::string ActiveReportName();
    void TransferFields(std::span<const transfer::FieldRow> fields);
    void TransferAuditTrail();
    void ShowTransferOutcome(const transfer::TransferOutcome& outcome);

    // Printing.
    class ReportInKrn;
    void ProbePrinter();
    [[nodiscard]] printing::AuditReport AuditReportOf(printing::OpenReport& openReport,
                                                      printing::LongText longText);
    void PrintAudit();
    void PrintCalculations();
    void SaveAuditPdf();
    void SaveCalculationsPdf();
    [[nodiscard]] std::string DatabookFolder() const;

    // The end.
    void CloseMainWindow();
    void StoreCurrentDatabook();

    common::Session& session_;
    MainServices services_;
    ado::PathMapper mapper_;
    analysis::CompsGridRows gridRows_{adoDatabook};
    RecentDatabooks recent_{session_};
    frmAbout about_;
    controls::FileDialog cdlMain;  ///< the one file dialog of the window; keeps the last file chosen
    std::optional<printing::PrintDefaults> printDefaults_;  ///< nothing: there is no printer
    bool askKrnAtStart_ = false;                            ///< the link check may offer to launch KRN
    std::optional<Fault> linkFault_;  ///< why the last look for KRN failed, when it did not just find nobody
};

}  // namespace zenvora::frame
