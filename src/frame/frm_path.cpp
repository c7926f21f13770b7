#include "frame/frm_path.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "common/file_helpers.h"
#include "common/placement.h"
#include "common/primitives.h"
#include "common/shell_open.h"
#include "platform/fault.h"
#include "platform/text/utf8.h"

namespace zenvora::frame {
namespace {

constexpr std::size_t kIndent = 3;

bool IsFolder(const files::DriveMap& drives, const std::string& path) {
    try {
        std::error_code ignored;
        return std::filesystem::is_directory(drives.HostPath(path), ignored);
    } catch (const Fault&) {
        return false;
    }
}

/// Names of the folders in a folder, without hidden ones and those that no text path can say.
std::vector<std::string> FoldersIn(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    std::error_code error;
    std::filesystem::directory_iterator entry(folder, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        std::error_code ignored;
        std::string name = entry->path().filename().string();
        if (name.front() == '.' || name.find('\\') != std::string::npos || !entry->is_directory(ignored))
            continue;
        names.push_back(std::move(name));
    }
    std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
        return std::pair(text::Upper(a), a) < std::pair(text::Upper(b), b);
    });
    return names;
}

/// The parts of a text path behind its drive.
std::vector<std::string> PartsOf(const std::string& path) {
    std::vector<std::string> parts;
    std::string_view rest = std::string_view(path).substr(std::min<std::size_t>(path.size(), 2));
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\\'), rest.size());
        if (end > 0) parts.emplace_back(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return parts;
}

}  // namespace

frmPath::frmPath(common::Session& session)
    : Form(session.forms, "frmPath", "Select A Path"), session_(session) {
    SetPlacement({.width = 5000, .height = 5400});
    Label1.SetCaption("Drives");
    Label2.SetCaption("Paths");
    drvDrive.SetPickOnly(true);
    drvDrive.SetToolTipText("C: is Zenvora's own folder, Z: is this computer");
    dirPath.SetToolTipText("Double-click a folder to open it");
    cmdOk.SetCaption("OK");
    cmdOk.SetDefault(true);
    cmdCancel.SetCaption("Cancel");
    cmdCancel.SetCancel(true);
    Add(Label1);
    Add(drvDrive);
    Add(Label2);
    Add(dirPath);
    Add(txtFilename);
    Add(cmdOk);
    Add(cmdCancel);

    drvDrive.OnChange([this] { DriveChanged(); });
    dirPath.OnDblClick([this] {
        // No line need be chosen: the one that is can be let go of.
        if (dirPath.ListIndex() >= 0) SetPath(places_.at(static_cast<std::size_t>(dirPath.ListIndex())));
    });
    cmdOk.OnClick([this] { Hide(); });
    cmdCancel.OnClick([this] {
        txtFilename.SetText("");
        Hide();
    });
}

void frmPath::OnLoad() {
    common::ResetFormPosition(*this);
    drvDrive.Clear();
    drvDrive.AddItems({"C:", "Z:"});
    drive_ = "C:";
    drvDrive.SetText(drive_);
    SetPath("C:\\");
}

void frmPath::OnUnload() {
    txtFilename.SetText("");  // the close box chooses nothing
    common::SaveWindowPlacement(session_, *this);
}

void frmPath::OnHelp() {
    common::OpenHelp(session_, "path");
}

void frmPath::StartFrom(const std::string& folder) {
    Load();
    std::string drive;
    std::string directory;
    std::string name;
    std::string extension;
    common::ParseFileName(folder, drive, directory, name, extension);
    drvDrive.SetText(common::UpTrim(drive));
    // The list opens where the user is now.
    if (!drive.empty() && IsFolder(session_.drives, text::Trim(folder))) SetPath(text::Trim(folder));
    txtFilename.SetText(folder);
}

void frmPath::DriveChanged() {
    const std::string drive = drvDrive.Text();
    if (drive == drive_) return;
    if (drive.empty() || !IsFolder(session_.drives, drive + "\\")) {
        session_.desktop.Show(
            {"Device unavailable (could be an empty floppy drive, unwritable cdrom, or "
             "unavailable network drive).  Correct and try again.",
             "Error", controls::Icon::Exclamation, controls::Buttons::Ok});
        drvDrive.SetText(drive_);
        return;
    }
    drive_ = drive;
    SetPath(drive + "\\");
}

void frmPath::SetPath(std::string path) {
    if (path_ == path) return;
    path_ = std::move(path);
    ListFolders();
    txtFilename.SetText(path_);
}

void frmPath::ListFolders() {
    std::vector<std::string> lines;
    places_.clear();
    std::string place = path_.substr(0, 2) + "\\";
    lines.push_back(place);
    places_.push_back(place);
    std::size_t depth = 1;
    const auto step = [&](const std::string& name, std::string to) {
        lines.emplace_back(depth * kIndent, ' ');
        lines.back() += name;
        places_.push_back(std::move(to));
    };
    for (const std::string& part : PartsOf(path_)) {
        place = common::CkRSlash(std::string_view(place));
        place += part;
        step(part, place);
        ++depth;
    }
    const int current = static_cast<int>(places_.size()) - 1;
    for (const std::string& name : FoldersIn(session_.drives.HostPath(path_)))
        step(name, common::CkRSlash(std::string_view(place)) + name);
    dirPath.Clear();
    dirPath.AddItems(std::move(lines));
    dirPath.SetListIndex(current);
}

}  // namespace zenvora::frame
