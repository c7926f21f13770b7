#include "frame/frm_overwrite.h"

namespace zenvora::frame {

frmOverwrite::frmOverwrite(common::Session& session, OpenState& open)
    : Form(session.forms, "frmOverwrite", "Database Already Exists"), open_(open) {
    SetPlacement({.width = 5600, .height = 3000});
    cmdExit[0].SetCaption("&Overwrite");
    cmdOverwrite[1].SetCaption("&Open");
    cmdExit[2].SetCaption("&Cancel");
    cmdExit[3].SetCaption("E&xit");
    txtFileName.SetLocked(true);
    Add(lblOverwrite);
    Add(txtFileName);
    Add(cmdExit[0]);
    Add(cmdOverwrite[1]);
    Add(cmdExit[2]);
    Add(cmdExit[3]);
    Add(lblmsg);
    for (controls::CommandButton& button : cmdExit) {
        button.OnClick([this, index = button.Index()] {
            open_.OverwriteChoice = index;
            Unload();
        });
    }
}

void frmOverwrite::OnLoad() {
    open_.OverwriteChoice = OpenState::kNotAnswered;
    lblOverwrite.SetCaption("If you choose Overwrite, All the \ndata in the database will be lost!");
    lblmsg.SetCaption("");
}

void frmOverwrite::OnQueryUnload(bool& cancel) {
    if (open_.OverwriteChoice != OpenState::kNotAnswered) return;
    lblmsg.SetCaption("Please select an option");
    cancel = true;
}

}  // namespace zenvora::frame
