// The start of the main window: settings, printer, template, the open loop, the date.

#include <algorithm>
#include <filesystem>

#include "common/error_rule.h"
#include "common/file_helpers.h"
#include "common/globals.h"
#include "common/placement.h"
#include "common/primitives.h"
#include "common/shell_open.h"
#include "databook/schema_upgrade.h"
#include "frame/fault_messages.h"
#include "frame/frm_main.h"
#include "frame/frm_splash1.h"
#include "platform/text/utf8.h"

namespace zenvora::frame {
namespace {

bool IsFile(const files::DriveMap& drives, std::string_view path) {
    try {
        std::error_code ignored;
        return std::filesystem::is_regular_file(drives.HostPath(path), ignored);
    } catch (const Fault&) {
        return false;  // a drive that does not exist holds no file
    }
}

}  // namespace

void frmMain::OnLoad() {
    common::ResetFormPosition(*this);
    if (text::Upper(services_.commandLine).starts_with("/V")) viewer.Show(controls::Modality::Modeless);
    common::ReadGlobals(session_);
    ProbePrinter();
    tdgViewer.SetTab(kCompsPage);
    InsertMissingFields();
    recent_.Read();
    ShowRecent();

    bool hasFile = false;
    BypassOpenFile(services_.commandLine, hasFile);
    do {
        open = {};
        if (hasFile) {
            open.OpenChoice = "C";
        } else {
            ShowStartDialog();
            if (!Loaded()) return;
        }
        // A fault in the file that was chosen leads back to the start dialog; without one the program ends as
        // it does without a fault.
    } while (!OpenChosenDatabook() && !hasFile);
}

bool frmMain::OpenChosenDatabook() {
    const bool opened = Guarded([this] {
        RunOpenLoop();
        if (open.OverwriteChoice == OpenState::kEndProgram) throw common::ProgramEnds{};
        if (!open.DatabookChosen) return;
        SetUpDate(txtBaseDate, cboBaseDate);
        FirstConnectSelect();
    });
    if (!opened) return false;
    if (open.DatabookChosen) {
        RefreshKeyButtons();
        askKrnAtStart_ = session_.settings.launchChoice == "0" && IsDirPresent();
        RefreshKrnLink();
    }
    return true;
}

void frmMain::OnHelp() {
    common::OpenHelp(session_);
}

void frmMain::RunOpenLoop() {
    do {
        open.OpenMode = open.OpenChoice == "C" ? 1 : open.OpenChoice == "N" ? 2 : 0;
        if (open.OpenMode > 0) ChooseDatabook();
    } while (open.OverwriteChoice == OpenState::kAskAgain);
}

void frmMain::InsertMissingFields() {
    const common::Settings& settings = session_.settings;
    for (const std::string& path : {common::CkRSlash(settings.dataDirectory) + "COMMENTS.MDB",
                                    common::CkRSlash(settings.applicationDirectory) + "NEWDATA.MDB"}) {
        // Settings may name a drive that is not there.
        if (common::FileExists(session_, session_.drives, path))
            databook::InsertMissingCompsFields(session_, path, mapper_);
    }
}

void frmMain::ShowStartDialog() {
    frmSplash1 splash(session_, open);
    splash.Show(controls::Modality::Modal);
    Program().UnloadFormByName("frmSplash1");
}

bool frmMain::IsDirPresent() const {
    return IsFile(session_.drives, "C:\\KRN");
}

void frmMain::BypassOpenFile(std::string_view commandLine, bool& ok) {
    ok = false;
    const std::string line = common::UpTrim(commandLine);
    const std::size_t at = line.find("/F");
    if (at == std::string::npos || at + 2 == line.size()) return;
    std::string path = line.substr(at + 2);
    if (path.front() == ' ') path.erase(0, 1);
    path.resize(std::min(path.size(), path.find(' ')));
    std::replace(path.begin(), path.end(), '/', '\\');
    if (!IsFile(session_.drives, path)) {
        // A path of the host begins with a separator as well.
        if (path.front() != '\\') return;
        path.insert(0, "Z:");
        if (!IsFile(session_.drives, path)) return;
    }
    const std::size_t last = path.rfind('\\');
    session_.settings.currentDirectory = last == std::string::npos ? "" : path.substr(0, last);
    session_.settings.currentFile = last == std::string::npos ? path : path.substr(last + 1);
    ok = true;
}

void frmMain::SetUpDate(controls::TextBox& box, controls::ComboBox& combo) {
    const common::Date today = session_.clock.Today();
    combo.Clear();
    combo.AddItem(text::DateText(today));
    const std::string reported = ReportedDate();
    if (common::IsValidDateEntry(reported, session_.clock)) {
        const common::Date date = common::ConvDate(std::string_view(reported), session_.clock);
        const std::string shown = text::FormatDate(date, "mm/dd/yyyy");
        combo.AddItem(shown);
        box.SetText(shown);
        EffectiveDate = date;
        return;
    }
    box.SetText(text::DateText(today));
    EffectiveDate = today;
}

void frmMain::OnActivate() {
    if (!open.DatabookChosen) {
        Program().UnloadAllForms();
        return;
    }
    ShowPendingNotice();
}

void frmMain::ShowPendingNotice() {
    if (!session_.settings.notice500 || !PendingValidityNotice) return;
    // Before the message, because closing it activates the window again.
    PendingValidityNotice = false;
    TellToCheckFirst();
}

void frmMain::TellToCheckFirst() {
    session_.desktop.Show(
        {.text = "Please click the 'Check for Validity' button before doing your calculations.",
         .title = "Database has more than 500 property records",
         .icon = controls::Icon::Exclamation,
         .buttons = controls::Buttons::Ok});
}

}  // namespace zenvora::frame
