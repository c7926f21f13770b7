// The end of the main window, and what it stores.

#include "common/error_rule.h"
#include "common/ini.h"
#include "common/placement.h"
#include "frame/frm_main.h"
#include "platform/text/utf8.h"

namespace zenvora::frame {

void frmMain::OnQueryUnload(bool& cancel) {
    static_cast<void>(cancel);
    Program().UnloadAllForms();
}

void frmMain::CloseMainWindow() {
    Unload();
    Program().UnloadAllForms();
}

void frmMain::OnUnload() {
    constexpr std::string_view kProcedure = "Form_Unload";
    common::WithErrorRule(session_, kProcedure, [this] { StoreCurrentDatabook(); });
    common::WithErrorRule(session_, kProcedure, [this] {
        common::SaveWindowPlacement(session_, viewer);
        viewer.Unload();
    });
    common::WithErrorRule(session_, kProcedure, [this] { common::SaveWindowPlacement(session_, *this); });
    adoDatabook.Close();
    adoSQL.Close();
}

void frmMain::StoreCurrentDatabook() {
    const common::Settings& settings = session_.settings;
    common::WriteIni(session_, settings.settingsFile, "DIRECTORIES",
                     {{"CURRDATADIR", settings.currentDirectory}, {"CURRDATABOOK", settings.currentFile}});
    const auto isStored = [&](std::string_view key, const std::string& value) {
        return common::ReadIni(session_, settings.settingsFile, "DIRECTORIES", key) == text::Trim(value);
    };
    if (isStored("CURRDATADIR", settings.currentDirectory) && isStored("CURRDATABOOK", settings.currentFile))
        return;
    session_.desktop.Show({.text = "The settings could not be stored in " + HostText(settings.settingsFile) +
                                   ".\nIts folder may be write-protected, or the disk full. The Databook "
                                   "itself is stored whole; only the next start will not offer it by itself.",
                           .title = "Zenvora",
                           .icon = controls::Icon::Exclamation,
                           .buttons = controls::Buttons::Ok});
}

}  // namespace zenvora::frame
