#pragma once

#include <string>

#include "common/session.h"
#include "frame/open_state.h"
#include "platform/controls/command_button.h"
#include "platform/controls/control_array.h"
#include "platform/controls/form.h"
#include "platform/controls/label.h"
#include "platform/controls/text_box.h"

namespace zenvora::frame {

/// "Database Already Exists": what to do with a file that a new Databook would replace. The answer is the
/// index of the button pressed in cmdExit; without one the dialog does not close.
class frmOverwrite final : public controls::Form {
  public:
    frmOverwrite(common::Session& session, OpenState& open);

    controls::Label lblOverwrite{"lblOverwrite"};  ///< the warning, two lines
    controls::TextBox txtFileName{"txtFileName"};  ///< the file in question
    controls::Label lblmsg{"lblmsg"};              ///< "Please select an option"
    /// On the dialog: 0 "&Overwrite", 2 "&Cancel", 3 "E&xit".
    controls::ControlArray<controls::CommandButton> cmdExit{"cmdExit", 4};
    /// On the dialog: 1 "&Open", a button without any action.
    controls::ControlArray<controls::CommandButton> cmdOverwrite{"cmdOverwrite", 2};

  protected:
    void OnLoad() override;
    void OnQueryUnload(bool& cancel) override;

  private:
    OpenState& open_;
};

}  // namespace zenvora::frame
