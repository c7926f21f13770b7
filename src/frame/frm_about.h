#pragma once

#include <string>

#include "common/session.h"
#include "platform/controls/command_button.h"
#include "platform/controls/form.h"
#include "platform/controls/image.h"
#include "platform/controls/label.h"

namespace zenvora::frame {

/// "About ", shown modelessly by the Help menu: which program this is and what it runs on.
class frmAbout final : public controls::Form {
  public:
    /// `version` as it is shown: "1.2.0".
    frmAbout(common::Session& session, const std::string& version);

    controls::Image aicAlphaImage1{"aicAlphaImage1"};  ///< the program's picture
    controls::Label lblProgram{"lblProgram"};          ///< "Zenvora"
    controls::Label lblVersion{"lblVersion"};          ///< "Version 1.2.0"
    controls::Label lblPurpose{"lblPurpose"};
    controls::Label lblSystem{"lblSystem"};  ///< the system's own name
    controls::Label lblFolder{"lblFolder"};  ///< where C: lies on this computer
    controls::CommandButton cmdOK{"cmdOK"};

  protected:
    void OnLoad() override;
    void OnUnload() override;
    void OnHelp() override;

  private:
    common::Session& session_;
};

}  // namespace zenvora::frame
