#pragma once

#include <functional>

#include "frame/open_state.h"
#include "platform/controls/check_box.h"
#include "platform/controls/command_button.h"
#include "platform/controls/control_array.h"
#include "platform/controls/form.h"
#include "platform/controls/image.h"
#include "platform/controls/label.h"

namespace zenvora::frame {

/// "Select File to Calculate", the start dialog.
///
/// Parked, which no view shows: chkDontShow and cmdOpenType.
class frmSplash1 final : public controls::Form {
  public:
    /// What the dialog needs of the program.
    struct Hooks {
        /// True when another copy of the program shows this dialog, which the user has then been told; all
        /// forms are closed by it.
        std::function<bool()> endsForAnotherInstance;
        std::function<void()> openHelp;
        /// Stores settings and placement; the dialog is about to close.
        std::function<void(frmSplash1&)> store;
    };
    frmSplash1(controls::Forms& forms, OpenState& open, Hooks hooks);

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
    OpenState& open_;
    Hooks hooks_;
};

}  // namespace zenvora::frame
