#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "common/session.h"
#include "platform/controls/desktop.h"
#include "platform/files/drive_map.h"

/// Files, directories and the open dialog. Text paths have drive letters and backslashes, see
/// files::DriveMap.
namespace zenvora::common {

/// True when the file has at least one byte, so that an empty file is absent. No such file, folder or drive
/// gives false; other faults take the error rule, and false when the user goes on or leaves.
[[nodiscard]] bool FileExists(Session& session, const files::DriveMap& drives, std::string_view path);
[[nodiscard]] bool FileExists(Session& session, const std::filesystem::path& hostPath);

/// Makes a directory that is not there, after the message "Creating directory PATH." that has only an OK
/// button. A trailing "\" is dropped, but for a bare drive ("C:" means "C:\"). Only the last part is made: a
/// parent that is not there is fault 76. Faults take the error rule.
void MakeDirectory(Session& session, const files::DriveMap& drives, std::string_view path);

/// Shows the open dialog. `initDir`, `file` and the answer are host paths. Empty when the user cancelled or
/// the dialog failed. Faults: none.
[[nodiscard]] std::string ChooseFile(controls::Desktop& desktop, std::string_view title,
                                     std::string_view initDir, std::string_view file,
                                     std::string_view filter);

/// Takes a text path apart, all parts in upper case: drive "C:", dir with its backslash at the end, name, ext
/// without its point. What is missing is empty, but `ext`, which stays as the caller gave it. All up to the
/// first "]" is dropped. The last point counts wherever it stands. A blank path empties all four. Faults:
/// none.
void ParseFileName(std::string_view path, std::string& drive, std::string& dir, std::string& name,
                   std::string& ext);

}  // namespace zenvora::common
