#include "common/globals.h"

#include "common/directories.h"
#include "common/error_rule.h"
#include "common/ini.h"
#include "common/primitives.h"
#include "platform/text/utf8.h"

namespace zenvora::common {
namespace {

void Read(Session& session) {
    Settings& settings = session.settings;
    settings.windowsDirectory = ORVGETWinDir(session);
    settings.systemDirectory = session.machine.SystemDirectory();
    settings.drive = DriveOf(session);
    settings.appraiseDirectory = GetAppraiseDir();
    settings.settingsFile =
        settings.drive + CkRSlash(std::string_view(settings.appraiseDirectory)) + "ZVR.INI";

    const auto read = [&](std::string_view section, std::string_view key, std::string_view defaultValue) {
        return ReadIni(session, settings.settingsFile, section, key, defaultValue);
    };
    constexpr std::string_view kDirectories = "DIRECTORIES";
    constexpr std::string_view kConfig = "CONFIG";
    settings.applicationDirectory = CkRSlash(std::string_view(read(kDirectories, "APPDIR", "C:\\ZVR")));
    settings.dataDirectory = CkRSlash(std::string_view(read(kDirectories, "DATADIR", "C:\\ZVR\\DATA")));
    settings.dataFile = read(kDirectories, "DATAFILE", "ZVR.MDB");
    session.table = read(kDirectories, "TABLE", "");

    settings.filePathChoice = read(kConfig, "MDBFILEPATH", "0");
    if (UpTrim(settings.filePathChoice) == "1") {
        settings.currentDirectory = settings.dataDirectory;
        settings.currentFile = settings.dataFile;
    } else {
        settings.currentDirectory = read(kDirectories, "CURRDATADIR", settings.dataDirectory);
        settings.currentFile = read(kDirectories, "CURRDATABOOK", settings.dataFile);
    }
    settings.splash1 = UpTrim(read(kConfig, "SPLASH1", "0"));
    settings.splash2 = UpTrim(read(kConfig, "SPLASH2", "0"));
    settings.launchChoice = UpTrim(read(kConfig, "LAUNCHKRN", "0"));
    settings.addZeroes = IniBool(read(kConfig, "ADDZEROES", "1"));
    settings.notice500 = IniBool(read(kConfig, "500REC", "1"));
    settings.companyName = text::Trim(read("PRODUCT INFO", "COMPANY NAME", "Orvane, Inc."));
    settings.programAlias = text::Trim(read("PROGRAM ALIAS", "ZENVORA", "Zenvora"));
}

}  // namespace

void ReadGlobals(Session& session) {
    WithErrorRule(session, "ReadGlobals", [&] { Read(session); });
}

}  // namespace zenvora::common
