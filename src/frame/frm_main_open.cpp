// Opening Databooks: the open flow of the start, the File menu, files that are dropped on the window.

#include <algorithm>
#include <filesystem>

#include "common/error_rule.h"
#include "common/fault_text.h"
#include "common/file_helpers.h"
#include "common/hourglass.h"
#include "common/placement.h"
#include "common/primitives.h"
#include "common/text_helpers.h"
#include "databook/schema_upgrade.h"
#include "databook/selection.h"
#include "databook/template.h"
#include "frame/fault_messages.h"
#include "frame/frm_main.h"
#include "frame/frm_overwrite.h"
#include "frame/import_source.h"
#include "import/frm_merge_dbs.h"
#include "platform/text/number.h"
#include "platform/text/utf8.h"

namespace zenvora::frame {
namespace {

constexpr std::string_view kSourceFilter =
    "CSV & TXT (*.csv; *.txt)|*.csv;*.txt|XML (*.xml)|*.xml|Access Files (*.mdb)|*.mdb";
constexpr std::string_view kDatabookFilter = "Databooks (*.mdb)|*.mdb";
constexpr long kMostRecordsCheckedAtOnce = 500;

/// The check of the Databook has told the user that it is none.
struct NoDatabook {};

/// A path taken apart: drive "Z:", dir with its backslashes, name, ext without its point.
struct PathParts {
    std::string drive;
    std::string dir;
    std::string name;
    std::string ext;

    [[nodiscard]] std::string Folder() const { return drive + dir; }
    [[nodiscard]] std::string File() const { return ext.empty() ? name : name + "." + ext; }
};

/// True when both paths lead to the same place, or the drive of the one that is meant does not exist.
bool LeadsThere(const files::DriveMap& drives, const std::string& path, const std::string& meant) {
    try {
        const std::filesystem::path place = drives.HostPath(meant);
        return drives.HostPath(path) == place;
    } catch (const Fault&) {
        return true;
    }
}

/// ParseFileName, whose parts are in capitals. On a host that tells case apart, and where a folder's name
/// holds a "]", these may lead to another file than the one meant: then the parts are those of the path as it
/// stands.
PathParts PartsOf(const files::DriveMap& drives, const std::string& path) {
    PathParts parts;
    common::ParseFileName(path, parts.drive, parts.dir, parts.name, parts.ext);
    if (parts.name.empty() || LeadsThere(drives, parts.Folder() + parts.File(), path)) return parts;
    const std::size_t colon = path.size() > 1 && path[1] == ':' ? 2 : 0;
    const std::size_t slash = path.rfind('\\');
    const std::size_t nameAt = slash == std::string::npos ? colon : slash + 1;
    const std::size_t point = path.rfind('.');
    const bool hasPoint = point != std::string::npos && point >= nameAt;
    parts.drive = path.substr(0, colon);
    parts.dir = path.substr(colon, nameAt - colon);
    parts.name = path.substr(nameAt, hasPoint ? point - nameAt : std::string::npos);
    parts.ext = hasPoint ? path.substr(point + 1) : "";
    return parts;
}

bool IsSource(const std::string& extension) {
    const std::string upper = text::Upper(extension);
    return upper == "TXT" || upper == "CSV" || upper == "XML";
}

}  // namespace

// ---- what is open ----

std::string frmMain::CurrentPath() const {
    return common::CkRSlash(session_.settings.currentDirectory) + session_.settings.currentFile;
}

std::string frmMain::HostText(const std::string& path) const {
    try {
        return common::Shown(session_.drives.HostPath(path));
    } catch (const Fault&) {
        return path;  // a drive that does not exist leads nowhere
    }
}

void frmMain::ShowTitle(std::string_view name) {
    SetCaption(std::string(name) +
               " - Version " ZENVORA_VERSION "   [Data Source: " + DataSourceOfConnection() + "]");
}

std::string frmMain::DataSourceOfConnection() const {
    const std::string connection = common::UpTrim(adoDatabook.Connectionstring);
    std::string source = common::SplitFirst(common::SplitFirst(connection, "R", "DATA SOURCE="), "L", ";");
    const std::size_t pair = source.find("\\\\");
    if (pair != std::string::npos) source.erase(pair, 1);
    return source;
}

struct frmMain::OpenBefore {
    std::string directory;
    std::string file;
    std::string connection;
    std::string recordSource;
    std::string caption;
    std::string tabCaption;
    std::string key;
    long validRecords = 0;
    bool calculationsAvailable = false;
    bool checkVisible = false;
    bool noticePending = false;
    bool hadRecords = false;
};

bool frmMain::Guarded(const std::function<void()>& work) {
    const OpenBefore before{session_.settings.currentDirectory,
                            session_.settings.currentFile,
                            adoDatabook.Connectionstring,
                            adoDatabook.RecordSource,
                            Caption(),
                            tdgViewer.TabCaption(kCompsPage),
                            txtCentralKey.Text(),
                            session_.validRecords,
                            tdgViewer.TabEnabled(kCalculationsPage),
                            cmdChkValidity.Visible(),
                            PendingValidityNotice,
                            adoDatabook.HasRecordset()};
    try {
        work();
        return true;
    } catch (const NoDatabook&) {
        GoBackTo(before);
    } catch (const Fault& fault) {
        // Without the template there are no new Databooks at all: no matter of the file that was chosen.
        const bool isTemplate =
            fault.place.file ==
            HostText(common::CkRSlash(session_.settings.applicationDirectory) + std::string(kTemplateName));
        if (isTemplate && !before.hadRecords) throw;
        TellFault(session_, "The file could not be opened.", fault);
        GoBackTo(before);
    }
    return false;
}

void frmMain::GoBackTo(const OpenBefore& before) {
    session_.settings.currentDirectory = before.directory;
    session_.settings.currentFile = before.file;
    adoDatabook.Connectionstring = before.connection;
    adoDatabook.RecordSource = before.recordSource;
    adoSQL.Connectionstring = before.connection;
    adoSQL.RecordSource = before.recordSource;
    SetCaption(before.caption);
    tdgViewer.SetTabCaption(kCompsPage, before.tabCaption);
    tdgViewer.SetTabEnabled(kCalculationsPage, before.calculationsAvailable);
    cmdChkValidity.SetVisible(before.checkVisible);
    PendingValidityNotice = before.noticePending;
    session_.validRecords = before.validRecords;
    if (before.hadRecords) {
        txtCentralKey.SetText(before.key);
        try {
            ReopenRecordViews();
            RefreshKeyButtons();
            return;
        } catch (const Fault& fault) {
            TellFault(session_, "The Databook that was open could not be opened again.", fault);
        }
    }
    adoDatabook.Close();
    adoSQL.Close();
    RebindGrid();
}

void frmMain::FirstConnectSelect() {
    const common::Hourglass hourglass(session_.desktop);
    const common::Settings& settings = session_.settings;
    databook::AdoConnect(adoDatabook, settings.currentDirectory, settings.currentFile);
    try {
        databook::Check4NewListingFieldsMain(session_, adoDatabook, CurrentPath());
    } catch (const common::ProgramEnds& ends) {
        if (ends.faultNumber != 0) throw;
        throw NoDatabook{};
    }
    databook::AdoSelect(adoDatabook, session_.table, databook::kMainFieldList, databook::kKeyOrder);
    ConnectSql();
    ShowTitle("Zenvora");
    tdbgData.SetColumns(analysis::CompsGridColumns());
    RebindGrid();
    CheckWhatCame();
    recent_.Opened(text::ReplaceAll(CurrentPath(), "\\\\", "\\"));
    ShowRecent();
}

void frmMain::CheckWhatCame() {
    const bool isLarge = adoDatabook.Recordset().RecordCount() > kMostRecordsCheckedAtOnce;
    tdgViewer.SetTabEnabled(kCalculationsPage, !isLarge);
    cmdChkValidity.SetVisible(isLarge);
    if (isLarge) {
        // The counts of what was there before say nothing about these records.
        tdgViewer.SetTabCaption(kCompsPage, "Comps and Listings");
        MovedInRecords();
    } else {
        CheckAllRecords("M");
    }
    PendingValidityNotice = isLarge;
}

void frmMain::ConnectSql() {
    // No logic reads through it, so its records, as many as the grid's, are left in the file.
    adoSQL.Connectionstring = adoDatabook.Connectionstring;
    adoSQL.RecordSource = adoDatabook.RecordSource;
}

// ---- the dialogs ----

std::string frmMain::ShowOpenDialog() {
    const std::string host = session_.desktop.Choose(cdlMain);
    if (host.empty()) return {};
    std::string path = files::DriveMap::TextPath(host);
    // A name typed without an extension means a Databook.
    const std::string name = common::SplitLast(path, "R", "\\");
    if (name.find('.') == std::string::npos && !common::FileExists(session_, session_.drives, path))
        path += ".mdb";
    cdlMain.fileName = path;
    return path;
}

std::string frmMain::OpenMdbDialog(std::string_view title, const std::string& defaultPath) {
    const std::string name = PartsOf(session_.drives, defaultPath).name;
    if (text::Trim(name).empty()) return cdlMain.fileName;
    cdlMain = {.title = std::string(title),
               .filter = std::string(kSourceFilter),
               .directory = HostText(session_.settings.applicationDirectory),
               .fileName = name,
               .defaultExtension = {}};
    return ShowOpenDialog();
}

std::string frmMain::FindDestination() {
    try {
        cdlMain = {.title = "Create a file",
                   .filter = std::string(kDatabookFilter),
                   .directory = common::Shown(
                       session_.drives.HostPath(common::CkRSlash(session_.settings.currentDirectory))),
                   .fileName = ActiveReportName(),
                   .defaultExtension = {}};
        return ShowOpenDialog();
    } catch (const Fault&) {
        return {};
    }
}

// ---- the start ----

void frmMain::ChooseDatabook() {
    std::string offered = CurrentPath();
    bool mayAskToLaunch = false;
    if (ReadReport(mayAskToLaunch)) offered = txtKrnReportName.Text();
    std::string chosen = OpenMdbDialog("Open Database", offered);
    if (!chosen.empty() && IsSource(PartsOf(session_.drives, chosen).ext)) chosen = ImportSource(chosen);
    if (chosen.empty()) chosen = CurrentPath();

    if (common::FileExists(session_, session_.drives, chosen)) {
        if (open.OpenMode == 2) {
            AskAboutOverwriting(chosen);
        } else {
            open.OverwriteChoice = OpenState::kGoOn;
        }
        if (open.OverwriteChoice == 0) {
            CopyNewData(chosen);
            open.OverwriteChoice = OpenState::kGoOn;
        } else if (open.OverwriteChoice == OpenState::kAskAgain) {
            return;
        }
    } else {
        CopyNewData(chosen);
        open.OverwriteChoice = OpenState::kGoOn;
    }
    const PathParts parts = PartsOf(session_.drives, chosen);
    session_.settings.currentDirectory = parts.Folder();
    session_.settings.currentFile = parts.File();
}

std::string frmMain::ImportSource(const std::string& source) {
    const PathParts parts = PartsOf(session_.drives, source);
    std::string target = common::CkRSlash(session_.settings.currentDirectory) + parts.name + ".mdb";
    std::string map = parts.Folder() + parts.name + ".map";
    if (!common::FileExists(session_, session_.drives, map)) map.clear();
    const SourceImport import{.source = source, .map = map, .target = target};
    const importing::LoadOutcome outcome = [&] {
        if (open.DetailedView) return ImportShown(session_, import);
        const common::Hourglass hourglass(session_.desktop);
        return ImportUnattended(session_, import);
    }();
    TellRefusedRows(session_, common::Shown(session_.drives.HostPath(source).filename()), outcome);
    return target;
}

void frmMain::AskAboutOverwriting(const std::string& path) {
    frmOverwrite question(session_, open);
    question.txtFileName.SetText(path);
    question.txtFileName.SetToolTipText(HostText(path));
    question.Show(controls::Modality::Modal);
    Program().UnloadFormByName("frmOverwrite");
}

void frmMain::CopyNewData(const std::string& destination) {
    databook::CopyNewData(session_, TemplatePath(session_), session_.drives.HostPath(destination));
}

// ---- the File menu ----

bool frmMain::MayOverwrite(const std::string& path) {
    if (!common::FileExists(session_, session_.drives, path)) return true;
    const controls::Answer answer = session_.desktop.Show({.text = "Overwrite " + path,
                                                           .title = "Zenvora",
                                                           .icon = controls::Icon::Question,
                                                           .buttons = controls::Buttons::YesNo});
    return answer == controls::Answer::Yes;
}

void frmMain::NewDatabook() {
    const std::string path = FindDestination();
    if (path.empty() || !MayOverwrite(path)) return;
    const bool opened = Guarded([&] {
        CopyNewData(path);
        ConnectDestination(path);
    });
    if (!opened) return;
    ShowTitle("Zenvora");
    RebindGrid();
    ShowPendingNotice();
}

void frmMain::OpenDatabook() {
    const std::string path = FindDestination();
    if (path.empty()) {
        RebindGrid();
        return;
    }
    OpenPath(path);
}

bool frmMain::OpenPath(const std::string& path) {
    if (!common::FileExists(session_, session_.drives, path)) {
        session_.desktop.Show({.text = "File not found.", .title = "Zenvora"});
        return false;
    }
    const bool opened = Guarded([&] { ConnectDestination(path); });
    RebindGrid();
    if (opened) ShowPendingNotice();
    return true;
}

void frmMain::ConnectDestination(const std::string& path) {
    const PathParts parts = PartsOf(session_.drives, path);
    session_.settings.currentFile = parts.File();
    session_.settings.currentDirectory = common::CkRSlash(parts.drive) + parts.dir;
    FirstConnectSelect();
    if (adoDatabook.Recordset().RecordCount() == 0) {
        txtCentralKey.SetText("");
        CurrentKey.clear();
    }
    RefreshKeyButtons();
    tdgViewer.SetTab(kCompsPage);
}

void frmMain::OnDropFile(const std::string& hostPath) {
    std::string path;
    std::string extension;
    const bool known = Guarded([&] {
        path = files::DriveMap::TextPath(hostPath);
        extension = PartsOf(session_.drives, path).ext;
    });
    if (!known) return;
    if (!IsSource(extension)) {
        OpenPath(path);
        return;
    }
    const std::string name = PartsOf(session_.drives, path).name;
    if (!MayOverwrite(common::CkRSlash(session_.settings.currentDirectory) + name + ".mdb")) return;
    const bool opened = Guarded([&] { ConnectDestination(ImportSource(path)); });
    RebindGrid();
    if (opened) ShowPendingNotice();
}

// ---- merging ----

void frmMain::MergeDatabooks() {
    importing::frmMergeDBs dialog(session_, adoDatabook, TemplatePath(session_));
    dialog.Show(controls::Modality::Modal);
    Program().UnloadFormByName("frmMergeDBs");
    const auto isOpen = [this](const std::string& path) {
        std::error_code ignored;
        return std::filesystem::equivalent(session_.drives.HostPath(path),
                                           session_.drives.HostPath(CurrentPath()), ignored);
    };
    if (!adoDatabook.HasRecordset() || std::ranges::none_of(dialog.MergedInto(), isOpen)) return;
    // Records that come from elsewhere bring verdicts of another day, or none, and those would count.
    tdgViewer.SetTab(kCompsPage);
    ReopenRecordViews();
    RefreshKeyButtons();
    CheckWhatCame();
    ShowPendingNotice();
}

// ---- Open Recent ----

void frmMain::ShowRecent() {
    const std::vector<std::string>& paths = recent_.Paths();
    mnuRecent.SetEnabled(!paths.empty());
    for (controls::MenuItem& item : mnuRecentItem) {
        const auto at = static_cast<std::size_t>(item.Index());
        item.SetVisible(at < paths.size());
        if (at >= paths.size()) continue;
        const std::string mark = at < 9 ? "&" + text::IntegerText(item.Index() + 1) + "  " : "1&0  ";
        item.SetCaption(mark + text::ReplaceAll(paths[at], "&", "&&"));
        item.SetToolTipText(HostText(paths[at]));
    }
}

void frmMain::OpenRecent(int index) {
    const std::string path = recent_.Paths().at(static_cast<std::size_t>(index));
    if (OpenPath(path)) return;
    recent_.Gone(path);
    ShowRecent();
}

}  // namespace zenvora::frame
