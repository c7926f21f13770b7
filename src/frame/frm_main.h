#pragma once

#include "analysis/comps_grid.h"
#include "analysis/frm_data_viewer.h"
#include "analysis/results_1004mc.h"
#include "common/session.h"
#include "frame/open_state.h"
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

namespace zenvora::frame {

/// The main window: page 0 "Comps and Listings", page 1 "Calculations", and the menus.
///
/// Parked, which no view shows: Frame4 with txtKrnFormList, txtKrnReportName, TxtDde and Command2, and
/// lstProcesses.
class frmMain final : public controls::Form {
  public:
    static constexpr int kCompsPage = 0;
    static constexpr int kCalculationsPage = 1;
    static constexpr int kRecentItems = 10;

    explicit frmMain(common::Session& session);

    OpenState open;

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
    controls::CommandButton cmdBack{"cmdBack"};
    controls::CommandButton cmdPrintCalc{"cmdPrintCalc"};
    controls::CommandButton cmdExit{"cmdExit"};
    controls::CommandButton PushButton1{"PushButton1"};  ///< lies under cmdExit and does the same: not shown

    // ---- parked ----
    controls::Frame Frame4{"Frame4"};
    controls::TextBox txtKrnFormList{"txtKrnFormList"};
    controls::TextBox txtKrnReportName{"txtKrnReportName"};
    controls::TextBox TxtDde{"TxtDde"};
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

  private:
    void LayOutControls();
    void LayOutMenus();

    common::Session& session_;
    analysis::CompsGridRows gridRows_{adoDatabook};
};

}  // namespace zenvora::frame
