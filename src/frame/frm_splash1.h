#pragma once

#include "common/session.h"
#include "frame/open_state.h"
#include "platform/controls/check_box.h"
#include "platform/controls/command_button.h"
#include "platform/controls/control_array.h"
#include "platform/controls/form.h"
#include "platform/controls/image.h"
#include "platform/controls/label.h"

namespace zenvora::frame {

/// "Select File to Calculate", the start dialog. A second copy of the program that is started while the first
/// one shows it ends here, with a message.
///
/// Parked, which no view shows: chkDontShow and cmdOpenType.
class frmSplash1 final : public controls::Form {
  public:
    frmSplash1(common::Session& session, OpenState& open);

    controls::Image aicAlphaImage1{"aicAlphaImage1"};
    controls::CheckBox cbShowDetailedMapping{"cbShowDetailedMapping"};
    controls::CommandButton cmdOK{"cmdOK"};
    controls::Label Label1{"Label1"};            ///< "Get Help", pressed like the link
    controls::Label lblHelpLink{"lblHelpLink"};  ///< "Open Help file"

    controls::CheckBox chkDontShow{"chkDontShow"};
    controls::ControlArray<controls::CommandButton> cmdOpenType{"cmdOpenType", 3};

  protected:
    void OnLoad() override;
    void OnUnload() override;
    void OnHelp() override;

  private:
    [[nodiscard]] bool EndsForAnotherInstance();

    common::Session& session_;
    OpenState& open_;
    shell::WindowNotice notice_;  ///< tells other copies of the program that this dialog is on the screen
};

}  // namespace zenvora::frame
