#pragma once

#include <exception>

#include "common/session.h"
#include "platform/controls/check_box.h"
#include "platform/controls/command_button.h"
#include "platform/controls/control_array.h"
#include "platform/controls/form.h"
#include "platform/controls/frame.h"
#include "platform/controls/label.h"
#include "platform/controls/option_button.h"
#include "platform/controls/tab_pages.h"
#include "platform/controls/text_box.h"

namespace zenvora::frame {

/// "Configuration", the settings dialog: its fields are bound to ZVR.INI by their Tags. Whichever way it is
/// closed, all of them are stored; only the running program's rule about zeroes waits for OK.
class frmConfig final : public controls::Form {
  public:
    explicit frmConfig(common::Session& session);

    controls::TabPages tdgConfig{"tdgConfig", {"General", "Directories"}};

    // Page 0.
    controls::CheckBox chkOpeningScreen{"chkOpeningScreen"};
    controls::Frame Frame4{"Frame4"};  ///< "Editing"
    controls::CheckBox chkAddZeroes{"chkAddZeroes"};
    controls::Frame Frame3{"Frame3"};  ///< "On Program Load"
    controls::CheckBox Check1{"Check1"};
    controls::Frame Frame2{"Frame2"};  ///< "When program first opens, default to"
    /// 0 "Default Data Directory", 1 "Last opened Data Directory", which stands above it.
    controls::ControlArray<controls::OptionButton> optDirToUse{"optDirToUse", 2};
    controls::CommandButton cmdOK{"cmdOK"};
    controls::CommandButton cmdCancel{"cmdCancel"};

    // Page 1.
    controls::Frame Frame1{"Frame1"};  ///< no caption
    controls::Label Label1{"Label1"};  ///< "Data Directory"
    controls::TextBox txtDataDir{"txtDataDir"};
    controls::CommandButton cmdChooseDataDir{"cmdChooseDataDir"};
    controls::Label lblUserDir{"lblUserDir"};
    controls::TextBox txtUserDir{"txtUserDir"};
    controls::CommandButton cmdChooseUserDir{"cmdChooseUserDir"};
    controls::Label lblProgramDir{"lblProgramDir"};
    controls::TextBox txtProgramDir{"txtProgramDir"};
    controls::CommandButton cmdChooseProgDir{"cmdChooseProgDir"};
    controls::CommandButton cmdOk2{"cmdOk2"};
    controls::CommandButton PushButton1{"PushButton1"};  ///< "Cancel"

    /// Raises the fault that a directory met which could not be made while the dialog closed, if one did.
    void RaiseFailure() const;

  protected:
    void OnLoad() override;
    void OnUnload() override;
    void OnHelp() override;

  private:
    void Ok();
    void ChooseInto(controls::TextBox& box);
    void MakeDirectories();

    common::Session& session_;
    std::exception_ptr failure_;
};

/// Setup, Configuration: shows the dialog modally and closes it. Fault 75, 76 and others of the disk: one of
/// its directories could not be made; the settings are stored all the same.
void ShowConfiguration(common::Session& session);

}  // namespace zenvora::frame
