#include "common/directories.h"

#include "common/file_helpers.h"
#include "common/os_version.h"
#include "common/primitives.h"
#include "common/text_helpers.h"

namespace zenvora::common {

std::string ORVGETWinDir(Session& session) {
    return CkRSlash(std::string_view(session.machine.WindowsDirectory()));
}

std::string DriveOf(const Session& session) {
    const std::string drive = SplitFirst(session.settings.windowsDirectory, "L", ":");
    return drive.empty() ? drive : drive + ":";
}

std::string GetAppraiseDir() {
    return "\\Appraise";
}

std::string KrnIniDir(Session& session) {
    std::string appraise = CkRSlash(std::string_view(GetAppraiseDir()));
    if (IsVista(session)) return appraise;
    std::string inWindows = session.settings.windowsDirectory + "Krn.ini";
    if (FileExists(session, session.drives, inWindows)) return inWindows;
    if (FileExists(session, session.drives, appraise + "Krn.ini")) return appraise;
    return {};
}

std::string TagSubstituteDirectory(Session& session, std::string_view text) {
    std::string tag(text);
    CkRPipe(tag);
    const std::string file = UpTrim(SplitFirst(SplitFirst(tag, "R", ">"), "L", "|"));
    const std::string token = UpTrim(TextBetween(tag, "<", ">"));
    const std::string behind = file + "|" + SplitFirst(tag, "R", "|");

    const std::string windows = CkRSlash(std::string_view(session.settings.windowsDirectory));
    if (token == "WINDIR") return windows + behind;
    if (token == "INIDIR" || token == "APPRAISEDIR" || token == "APPRAISE" || token == "INIFILE") {
        const std::string drive = DriveOf(session);
        if (session.vistaFlag) return CkRSlash(std::string_view(drive)) + behind;
        std::string path = drive + "\\APPRAISE\\" + file;
        if (FileExists(session, session.drives, path)) return path;
        return windows + behind;
    }
    if (token == "WINSYSDIR" || token == "WINSYS")
        return CkRSlash(std::string_view(session.settings.systemDirectory)) + behind;
    if (token == "KRNINIDIR") return CkRSlash(std::string_view(KrnIniDir(session))) + behind;
    if (token == "QUINDARINIFILE") return DriveOf(session) + "\\APPRAISE\\QUINDAR.INI";
    return {};
}

}  // namespace zenvora::common
