#pragma once

#include <string>
#include <string_view>

#include "common/session.h"

/// Where the settings and the program's files lie, and the directory tokens of Tags. All paths are text
/// paths. What is derived from the Windows directory uses the one that ReadGlobals has taken. Faults: none,
/// unless stated.
namespace zenvora::common {

/// The Windows directory with its backslash, as the machine tells it; empty when it does not.
[[nodiscard]] std::string ORVGETWinDir(Session& session);
/// The drive of the Windows directory, "C:"; empty when it has none.
[[nodiscard]] std::string DriveOf(const Session& session);
/// "\Appraise": has no drive.
[[nodiscard]] std::string GetAppraiseDir();

/// Directory of the appraisal program's settings file, for the token KRNINIDIR: the Appraise directory on
/// Windows Vista; else the Windows directory with "Krn.ini" behind it when the file is there; else the
/// Appraise directory when it is there; else empty. Faults: as FileExists.
[[nodiscard]] std::string KrnIniDir(Session& session);

/// The path of the file part of a Tag, "<TOKEN>file" and possibly "|rest"; empty for an unknown token.
///
/// WINDIR, WINSYSDIR, WINSYS and KRNINIDIR give their directory with the file in capitals, "|" and the rest.
/// So do INIDIR, APPRAISEDIR, APPRAISE and INIFILE with the Windows directory (under the Vista flag: the
/// drive's root), unless the file is in the Appraise directory and not empty: then the plain path, the only
/// one of them that names a usable file. QUINDARINIFILE gives its one path. Faults: as FileExists.
[[nodiscard]] std::string TagSubstituteDirectory(Session& session, std::string_view text);

}  // namespace zenvora::common
