#include "frame/frm_config.h"

#include "common/file_helpers.h"
#include "common/placement.h"
#include "common/shell_open.h"
#include "common/tags.h"
#include "frame/frm_path.h"
#include "platform/fault.h"

namespace zenvora::frame {
namespace {

constexpr int kDefaultDirectory = 0;
constexpr int kLastOpened = 1;

}  // namespace

frmConfig::frmConfig(common::Session& session)
    : Form(session.forms, "frmConfig", "Configuration"), session_(session) {
    SetPlacement({.width = 6600, .height = 5200});
    chkOpeningScreen.SetCaption("Don't show the opening screen");
    chkOpeningScreen.SetTag("<IniDir>Zvr.ini[CONFIG]SPLASH1|0");
    Frame4.SetCaption("Editing");
    chkAddZeroes.SetCaption("Add 3 zeroes to prices less than 1,000");
    chkAddZeroes.SetTag("<IniDir>Zvr.ini[CONFIG]ADDZEROES|1");
    Frame3.SetCaption("On Program Load");
    Check1.SetCaption("Don't ask to open the Appraisal software");
    Check1.SetTag("<IniDir>Zvr.ini[CONFIG]LAUNCHKRN|0");
    Frame2.SetCaption("When program first opens, default to");
    optDirToUse[kLastOpened].SetCaption("Last opened Data Directory");
    optDirToUse[kDefaultDirectory].SetCaption("Default Data Directory");
    optDirToUse[kDefaultDirectory].SetTag("<IniDir>Zvr.ini[CONFIG]MDBFILEPATH|0");
    optDirToUse[kLastOpened].JoinGroupOf(optDirToUse[kDefaultDirectory]);
    Label1.SetCaption("Data Directory");
    txtDataDir.SetTag("<IniDir>Zvr.ini[DIRECTORIES]DATADIR|C:\\DATABOOK\\export");
    lblUserDir.SetCaption("User Directory");
    txtUserDir.SetTag("<IniDir>Zvr.ini[DIRECTORIES]USERDIR|C:\\zvr");
    lblProgramDir.SetCaption("Program Directory");
    txtProgramDir.SetTag("<INIDIR>Zvr.ini[DIRECTORIES]APPDIR|C:\\zvr");
    for (controls::CommandButton* ok : {&cmdOK, &cmdOk2}) {
        ok->SetCaption("OK");
        ok->OnClick([this] { Ok(); });
    }
    cmdOK.SetDefault(true);
    for (controls::CommandButton* cancel : {&cmdCancel, &PushButton1}) {
        cancel->SetCaption("Cancel");
        cancel->OnClick([this] { Unload(); });
    }
    cmdCancel.SetCancel(true);
    const auto choice = [this](controls::CommandButton& button, controls::TextBox& box, const char* what) {
        button.SetCaption("...");
        button.SetToolTipText(what);
        button.OnClick([this, &box] { ChooseInto(box); });
    };
    choice(cmdChooseDataDir, txtDataDir, "Choose the data directory");
    choice(cmdChooseUserDir, txtUserDir, "Choose the user directory");
    choice(cmdChooseProgDir, txtProgramDir, "Choose the program directory");

    Add(tdgConfig);
    Add(chkOpeningScreen);
    Add(Frame4);
    Add(chkAddZeroes);
    Add(Frame3);
    Add(Check1);
    Add(Frame2);
    Add(optDirToUse[kLastOpened]);
    Add(optDirToUse[kDefaultDirectory]);
    Add(cmdOK);
    Add(cmdCancel);
    Add(Frame1);
    Add(Label1);
    Add(txtDataDir);
    Add(cmdChooseDataDir);
    Add(lblUserDir);
    Add(txtUserDir);
    Add(cmdChooseUserDir);
    Add(lblProgramDir);
    Add(txtProgramDir);
    Add(cmdChooseProgDir);
    Add(cmdOk2);
    Add(PushButton1);
}

void frmConfig::OnLoad() {
    failure_ = nullptr;
    common::ResetFormPosition(*this);
    // It has no setting of its own: it is the choice when the other one is not.
    optDirToUse[kLastOpened].SetValue(true);
    common::TagReadAll(session_, *this);
    tdgConfig.SetTab(0);
}

void frmConfig::Ok() {
    session_.settings.addZeroes = chkAddZeroes.Value() == controls::CheckBox::kChecked;
    Unload();
}

void frmConfig::OnUnload() {
    common::TagWriteAll(session_, *this);
    common::Settings& settings = session_.settings;
    settings.applicationDirectory = txtProgramDir.Text();
    settings.userDirectory = txtUserDir.Text();
    settings.dataDirectory = txtDataDir.Text();
    try {
        MakeDirectories();
    } catch (const Fault&) {
        // The dialog closes all the same: kept open it could not be left before the directory is right.
        failure_ = std::current_exception();
    }
    common::SaveWindowPlacement(session_, *this);
}

void frmConfig::MakeDirectories() {
    common::MakeDirectory(session_, session_.drives, txtProgramDir.Text());
    common::MakeDirectory(session_, session_.drives, txtUserDir.Text());
}

void frmConfig::ChooseInto(controls::TextBox& box) {
    frmPath path(session_);
    path.StartFrom(box.Text());
    path.Show(controls::Modality::Modal);
    if (!path.txtFilename.Text().empty()) box.SetText(path.txtFilename.Text());
    Program().UnloadFormByName("frmPath");
}

void frmConfig::OnHelp() {
    common::OpenHelp(session_, "config");
}

void frmConfig::RaiseFailure() const {
    if (failure_) std::rethrow_exception(failure_);
}

void ShowConfiguration(common::Session& session) {
    frmConfig form(session);
    form.Show(controls::Modality::Modal);
    session.forms.UnloadFormByName("frmConfig");
    form.RaiseFailure();
}

}  // namespace zenvora::frame
