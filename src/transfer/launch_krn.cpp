#include "transfer/launch_krn.h"

#include <string>

#include "common/directories.h"
#include "common/file_helpers.h"
#include "common/ini.h"
#include "common/primitives.h"
#include "common/shell_open.h"

namespace zenvora::transfer {

void LaunchKrn(common::Session& session) {
    session.lastProcedure = "LaunchKrn";
    const std::string settings =
        common::DriveOf(session) + common::CkRSlash(std::string_view(common::GetAppraiseDir())) + "krn.ini";
    std::string directory = common::ReadIni(session, settings, "DIRECTORIES", "APPDIR");
    common::CkRSlash(directory);
    for (const char* program : {"krn32\\krn.exe", "krn.exe"}) {
        if (!common::FileExists(session, session.drives, directory + program)) continue;
        common::ShellOpen(session, directory + program, 1, {}, {}, "OPEN");
        return;
    }
}

}  // namespace zenvora::transfer
