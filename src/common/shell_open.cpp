#include "common/shell_open.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <optional>

#include "common/file_helpers.h"
#include "common/primitives.h"
#include "common/text_helpers.h"
#include "platform/fault.h"
#include "platform/files/host_path.h"
#include "platform/text/utf8.h"

namespace zenvora::common {
namespace {

constexpr int kNormalWindow = 1;
constexpr int kHiddenWindow = 0;
constexpr int kMaximizedWindow = 3;
constexpr int kLastFailure = 32;
constexpr int kOwnNumbers = -2147220456;  ///< the old platform's base for what it has no number for

std::filesystem::path HostPath(const Session& session, std::string_view path) {
    return path.empty() ? std::filesystem::path() : session.drives.HostPath(path);
}

int Open(Session& session, std::string_view file, int showCommand, std::string_view parameters,
         std::string_view directory, std::string_view verb) {
    if (text::Upper(file).find(".EXE") != std::string::npos) showCommand = kHiddenWindow;
    if (parameters.empty() && directory.empty()) showCommand = kNormalWindow;
    try {
        return session.machine.Open({.file = HostPath(session, file).string(),
                                     .verb = std::string(verb),
                                     .parameters = std::string(parameters),
                                     .directory = HostPath(session, directory).string(),
                                     .showCommand = showCommand});
    } catch (const Fault&) {
        return shell::opened::kPathNotFound;
    }
}

bool IsCompiledHelp(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::array<char, 4> mark{};
    return file.read(mark.data(), mark.size()) && std::string_view(mark.data(), mark.size()) == "ITSF";
}

bool IsThere(const Session& session, const std::string& path) {
    try {
        return files::FileExists(session.drives.HostPath(path));
    } catch (const Fault&) {
        return false;
    }
}

std::string HelpFile(const Session& session) {
    return CkRSlash(std::string_view(session.settings.applicationDirectory)) + "ZVR.CHM";
}

/// The page of the HTML edition to open in the place of the help file; nothing when the file can be read.
std::optional<std::string> PageInstead(Session& session, const std::string& helpFile,
                                       std::string_view topic) {
    if (!IsThere(session, helpFile)) return std::nullopt;
    const std::filesystem::path host = session.drives.HostPath(helpFile);
    if (IsCompiledHelp(host) && session.machine.HasReader(host.string())) return std::nullopt;
    const std::string folder = CkRSlash(std::string_view(session.settings.applicationDirectory)) + "HELP\\";
    for (const std::string& page : {std::string(topic) + ".html", std::string("ZVR.html")}) {
        if (IsThere(session, folder + page)) return folder + page;
    }
    return std::nullopt;
}

bool OpenHelpFile(Session& session, std::string_view topic, int showCommand) {
    const std::string file = HelpFile(session);
    const std::optional<std::string> page = PageInstead(session, file, topic);
    return ShellOpen(session, page ? *page : file, showCommand);
}

}  // namespace

ShellFailure ShellFailureOf(int answer) {
    using namespace shell;
    switch (answer) {
        case opened::kOutOfMemory:
        case 8:
            return {fault::kOutOfMemory, "Out of memory"};
        case opened::kFileNotFound:
            return {fault::kFileNotFound, "File not found"};
        case opened::kPathNotFound:
            return {fault::kPathNotFound, "Path not found"};
        case opened::kAccessDenied:
            return {fault::kPathAccess, "Path/file access error"};
        case opened::kBadFormat:
            return {answer + kOwnNumbers, "The executable file is invalid or corrupt"};
        case opened::kSharingViolation:
            return {fault::kPathAccess, "A sharing violation occurred."};
        case opened::kIncompleteAssociation:
            return {answer + kOwnNumbers, "This file type does not have a valid file association."};
        case opened::kTimedOut:
            return {286, "The file could not be opened due to time out. Please try again in a moment."};
        case opened::kExchangeFailed:
            return {fault::kLinkFailed,
                    "The file could not be opened because the DDE transaction failed. Please try again in a "
                    "moment."};
        case opened::kExchangeBusy:
            return {
                fault::kLinkFailed,
                "The file could not be opened because the target application is busy. Please try again in "
                "a moment."};
        case opened::kNoAssociation:
            return {answer + kOwnNumbers, "No application is associated with this file type."};
        case opened::kLibraryNotFound:
            return {48, "The specified dynamic-link library was not found."};
        default:
            return {answer + kOwnNumbers,
                    "An error occurred occurred whilst trying to open or print the selected file."};
    }
}

bool ShellOpen(Session& session, std::string_view file, int showCommand, std::string_view parameters,
               std::string_view directory, std::string_view verb) {
    const int answer = Open(session, file, showCommand, parameters, directory, verb);
    if (answer < 0 || answer > kLastFailure) return true;
    session.desktop.Show({std::string(ShellFailureOf(answer).text),
                          ReplaceText(session.settings.programAlias, "_", " "), controls::Icon::Information,
                          controls::Buttons::Ok});
    return false;
}

bool OpenHelp(Session& session, std::string_view topic) {
    return OpenHelpFile(session, topic, kMaximizedWindow);
}

void OpenHelpIfThere(Session& session) {
    if (FileExists(session, session.drives, HelpFile(session))) OpenHelpFile(session, "start", kHiddenWindow);
}

}  // namespace zenvora::common
