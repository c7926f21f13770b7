#include "frame/provisioning.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

#include "common/fault_text.h"
#include "platform/fault.h"
#include "platform/files/host_path.h"
#include "platform/files/whole_file.h"
#include "platform/text/utf8.h"

namespace zenvora::frame {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kSettingsFile = "C:\\Appraise\\ZVR.INI";
constexpr std::string_view kProgramFolder = "C:\\ZVR";
constexpr std::string_view kDataFolder = "C:\\ZVR\\DATA";

/// Keeps what went wrong first: the later failures mostly follow from it.
class Trouble {
  public:
    /// Runs a step and goes on whatever becomes of it.
    template <class Step>
    void Try(Step&& step) {
        try {
            step();
        } catch (const Fault& fault) {
            if (!first_) first_ = common::FaultLine(fault);
        }
    }
    [[nodiscard]] const std::optional<std::string>& First() const noexcept { return first_; }

  private:
    std::optional<std::string> first_;
};

void MakeFolders(const files::DriveMap& drives, std::string_view path) {
    const fs::path host = drives.HostPath(path);
    fs::path made;
    for (const fs::path& part : host) {
        made /= part;
        if (!files::PathExists(made)) files::MakeHostDirectory(made);
    }
}

void ProvideSettings(common::Session& session) {
    const fs::path file = session.drives.HostPath(kSettingsFile);
    const bool stored = session.profiles.Change(file, [](ini::Document& document) {
        // Without the name no statement of the program names a table.
        if (document.Find("DIRECTORIES", "TABLE")) return false;
        document.Set("DIRECTORIES", "TABLE", "COMPS");
        // The configuration dialog stores what it shows, and by itself it shows a folder that is not there.
        if (!document.Find("DIRECTORIES", "DATADIR")) document.Set("DIRECTORIES", "DATADIR", kDataFolder);
        return true;
    });
    if (stored && ::access(file.c_str(), W_OK) == 0 && ::access(file.parent_path().c_str(), W_OK) == 0)
        return;
    Place place;
    place.file = file.string();
    throw Fault(
        fault::kPathAccess,
        "The settings cannot be stored. Make the file and its folder writable; until then the settings "
        "of the last time are used and changes are lost at the end.",
        std::move(place));
}

/// The help belongs to the program and follows it; all else may have been changed by the user.
bool IsHelp(const fs::path& name) {
    return text::EqualsNoCase(name.begin()->string(), "HELP") || text::EqualsNoCase(name.string(), "ZVR.CHM");
}

bool SameBytes(const fs::path& a, const fs::path& b) {
    std::error_code error;
    if (fs::file_size(a, error) != fs::file_size(b, error) || error) return false;
    return files::ReadWholeFile(a) == files::ReadWholeFile(b);
}

void ProvideFile(const files::DriveMap& drives, const fs::path& share, const fs::path& name) {
    const std::string path = std::string(kProgramFolder) + "\\" + text::ReplaceAll(name.string(), "/", "\\");
    const fs::path target = drives.HostPath(path);
    if (files::FileExists(target)) {
        if (IsHelp(name) && !SameBytes(share / name, target))
            files::CopyWholeFile(share / name, target, files::Replaced::KeptAsBak);
        return;
    }
    if (name.has_parent_path()) MakeFolders(drives, path.substr(0, path.rfind('\\')));
    files::CopyWholeFile(share / name, target);
}

/// Every file below the folder, relative to it.
std::vector<fs::path> FilesBelow(const fs::path& folder) {
    std::vector<fs::path> names;
    std::error_code error;
    fs::recursive_directory_iterator entry(folder, error);
    for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        std::error_code ignored;
        if (entry->is_regular_file(ignored)) names.push_back(entry->path().lexically_relative(folder));
    }
    std::sort(names.begin(), names.end());
    return names;
}

void DemandTemplate(const files::DriveMap& drives, const fs::path& share) {
    if (files::FileExists(drives.HostPath(std::string(kProgramFolder) + "\\NEWDATA.MDB"))) return;
    Place place;
    place.file = share.string();
    throw Fault(fault::kFileNotFound,
                "The template of new Databooks, NEWDATA.MDB, is not among the files of the program. Install "
                "the program again; without it no Databook can be made.",
                std::move(place));
}

}  // namespace

void ProvisionDriveC(common::Session& session, const fs::path& share) {
    const files::DriveMap& drives = session.drives;
    Trouble trouble;
    for (const std::string_view folder :
         {std::string_view("C:\\Appraise"), std::string_view("C:\\WINDOWS"), kDataFolder})
        trouble.Try([&] { MakeFolders(drives, folder); });
    trouble.Try([&] { ProvideSettings(session); });
    for (const fs::path& name : FilesBelow(share))
        trouble.Try([&] { ProvideFile(drives, share, name); });
    trouble.Try([&] { DemandTemplate(drives, share); });
    if (!trouble.First()) return;
    session.desktop.Show({"Zenvora could not set up its folder " + common::Shown(drives.DriveC()) + ".\n\n" +
                              *trouble.First() + "\n\nThe program goes on with what is there.",
                          "Zenvora", controls::Icon::Exclamation, controls::Buttons::Ok});
}

fs::path ShareFolder() {
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    return program.parent_path().parent_path() / "share" / "zenvora";
}

}  // namespace zenvora::frame
