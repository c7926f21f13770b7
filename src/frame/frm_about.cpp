#include "frame/frm_about.h"

#include "common/placement.h"
#include "common/shell_open.h"
#include "platform/text/utf8.h"

namespace zenvora::frame {

frmAbout::frmAbout(common::Session& session, const std::string& version)
    : Form(session.forms, "frmAbout", "About "), session_(session) {
    SetPlacement({.width = 5600, .height = 3600});
    aicAlphaImage1.SetPicture("zenvora");
    aicAlphaImage1.SetCaption("Zenvora");
    lblVersion.SetCaption("Version " + version);
    lblPurpose.SetCaption("Market conditions of an appraisal, for Form 1004MC.");
    cmdOK.SetCaption("OK");
    cmdOK.SetDefault(true);
    cmdOK.SetCancel(true);
    cmdOK.OnClick([this] { Unload(); });
    Add(aicAlphaImage1);
    Add(lblProgram);
    Add(lblVersion);
    Add(lblPurpose);
    Add(lblSystem);
    Add(lblFolder);
    Add(cmdOK);
}

void frmAbout::OnLoad() {
    // "&" is no mnemonic in what comes from outside.
    const auto plain = [](std::string_view text) { return text::ReplaceAll(text, "&", "&&"); };
    const std::string& alias = session_.settings.programAlias;
    lblProgram.SetCaption(plain(alias.empty() ? "Zenvora" : alias));
    lblSystem.SetCaption(plain(session_.machine.SystemName()));
    lblFolder.SetCaption("C: is the folder " + plain(session_.drives.DriveC().string()));
}

void frmAbout::OnUnload() {
    common::SaveWindowPlacement(session_, *this);
}

void frmAbout::OnHelp() {
    common::OpenHelp(session_, "about");
}

}  // namespace zenvora::frame
