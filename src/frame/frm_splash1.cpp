#include "frame/frm_splash1.h"

#include <utility>

namespace zenvora::frame {

frmSplash1::frmSplash1(controls::Forms& forms, OpenState& open, Hooks hooks)
    : Form(forms, "frmSplash1", "Select File to Calculate"), open_(open), hooks_(std::move(hooks)) {
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
    Label1.OnClick([this] { hooks_.openHelp(); });
    lblHelpLink.OnClick([this] { hooks_.openHelp(); });
}

void frmSplash1::OnLoad() {
    if (hooks_.endsForAnotherInstance()) return;
    open_.OpenChoice = "D";
}

void frmSplash1::OnUnload() {
    hooks_.store(*this);
}

void frmSplash1::OnHelp() {
    hooks_.openHelp();
}

}  // namespace zenvora::frame
