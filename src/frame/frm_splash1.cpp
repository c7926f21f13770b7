#include "frame/frm_splash1.h"

#include "common/placement.h"
#include "common/shell_open.h"
#include "common/tags.h"

namespace zenvora::frame {

frmSplash1::frmSplash1(common::Session& session, OpenState& open)
    : Form(session.forms, "frmSplash1", "Select File to Calculate"), session_(session), open_(open) {
    SetPlacement({.width = 7425, .height = 3465});
    aicAlphaImage1.SetPicture("splash");
    aicAlphaImage1.SetCaption("Zenvora");
    cbShowDetailedMapping.SetCaption("Create Map");
    cbShowDetailedMapping.SetToolTipText(
        "Shows which field of a source file goes where, so that you can build and save a map");
    cmdOK.SetCaption("Go!");
    cmdOK.SetDefault(true);
    Label1.SetCaption("Get Help");
    lblHelpLink.SetCaption("Open Help file");
    chkDontShow.SetCaption("Don't show again");
    chkDontShow.SetTag("<IniDir>Zvr.ini[CONFIG]SPLASH1|0");
    cmdOpenType[0].SetCaption("Use &Default/Last Opened");
    cmdOpenType[1].SetCaption("&Choose File");
    cmdOpenType[2].SetCaption("&Blank Datafile");

    Add(aicAlphaImage1);
    Add(cmdOK);
    Add(cbShowDetailedMapping);
    Add(Label1);
    Add(lblHelpLink);
    Add(chkDontShow);
    Add(cmdOpenType);

    cmdOK.OnClick([this] {
        open_.OpenChoice = "C";
        open_.DatabookChosen = true;
        open_.DetailedView = cbShowDetailedMapping.Value() == controls::CheckBox::kChecked;
        Unload();
    });
    for (controls::CommandButton& button : cmdOpenType) {
        button.OnClick([this, index = button.Index()] {
            constexpr const char* kChoices[] = {"D", "C", "N"};
            open_.OpenChoice = kChoices[index];
            Unload();
        });
    }
    Label1.OnClick([this] { OnHelp(); });
    lblHelpLink.OnClick([this] { OnHelp(); });
}

bool frmSplash1::EndsForAnotherInstance() {
    if (!session_.machine.EarlierInstance() || !session_.machine.FindWindow(Caption())) return false;
    session_.desktop.Show(
        {.text = "The current application is already running in memory.  If the application is not visible, "
                 "please end the existing process in the Windows Task Manager.",
         .title = "Program Already Running in Memory",
         .icon = controls::Icon::Exclamation,
         .buttons = controls::Buttons::Ok});
    Unload();
    Program().UnloadAllForms();
    return true;
}

void frmSplash1::OnLoad() {
    if (EndsForAnotherInstance()) return;
    notice_ = session_.machine.AnnounceWindow(Caption());
    open_.OpenChoice = "D";
}

void frmSplash1::OnUnload() {
    common::TagWriteAll(session_, *this);
    common::SaveWindowPlacement(session_, *this);
    notice_.reset();
}

void frmSplash1::OnHelp() {
    common::OpenHelpIfThere(session_);
}

}  // namespace zenvora::frame
