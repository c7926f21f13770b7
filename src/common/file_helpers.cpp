#include "common/file_helpers.h"

#include "common/error_rule.h"
#include "common/text_helpers.h"
#include "platform/files/host_path.h"
#include "platform/text/utf8.h"

namespace zenvora::common {
namespace {

bool IsAbsence(const Fault& fault) {
    return fault.number == fault::kFileNotFound || fault.number == fault::kPathNotFound;
}

}  // namespace

bool FileExists(Session& session, const files::DriveMap& drives, std::string_view path) {
    bool exists = false;
    WithErrorRule(session, "FileExists", [&] {
        try {
            exists = files::FileExists(drives.HostPath(path));
        } catch (const Fault& fault) {
            if (!IsAbsence(fault)) throw;
        }
    });
    return exists;
}

bool FileExists(Session& session, const std::filesystem::path& hostPath) {
    bool exists = false;
    WithErrorRule(session, "FileExists", [&] { exists = files::FileExists(hostPath); });
    return exists;
}

void MakeDirectory(Session& session, const files::DriveMap& drives, std::string_view path) {
    std::string directory(path);
    StripRChar(directory);
    if (text::Length(directory) == 2) directory.push_back('\\');
    std::filesystem::path host;
    bool absent = false;
    WithErrorRule(session, "MakeDirectory", [&] {
        host = drives.HostPath(directory);
        absent = !files::PathExists(host);
    });
    if (!absent) return;
    const controls::MessageBox message{"Creating directory " + directory + ".", "Creating Directory",
                                       controls::Icon::None, controls::Buttons::Ok};
    if (session.desktop.Show(message) != controls::Answer::Ok) return;
    // On its own, so that a retry does not ask again.
    WithErrorRule(session, "MakeDirectory", [&] { files::MakeHostDirectory(host); });
}

std::string ChooseFile(controls::Desktop& desktop, std::string_view title, std::string_view initDir,
                       std::string_view file, std::string_view filter) {
    controls::FileDialog dialog;
    dialog.title = title;
    dialog.filter = filter;
    dialog.directory = initDir;
    dialog.fileName = file;
    try {
        return desktop.Choose(dialog);
    } catch (const Fault&) {
        return {};
    }
}

void ParseFileName(std::string_view path, std::string& drive, std::string& dir, std::string& name,
                   std::string& ext) {
    drive.clear();
    dir.clear();
    name.clear();
    if (text::TrimView(path).empty()) {
        ext.clear();
        return;
    }
    std::string work = text::Upper(path);
    if (work.size() > 1 && work[1] == ':') {
        drive = work.substr(0, 2);
        work.erase(0, 2);
    }
    if (const std::size_t bracket = work.find(']'); bracket != std::string::npos) work.erase(0, bracket + 1);
    if (const std::size_t point = work.rfind('.'); point != std::string::npos) {
        ext = work.substr(point + 1);
        work.erase(point);
    }
    const std::size_t slash = work.rfind('\\');
    const std::size_t split = slash == std::string::npos ? 0 : slash + 1;
    dir = work.substr(0, split);
    name = work.substr(split);
}

}  // namespace zenvora::common
