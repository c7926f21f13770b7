#include "frame/zenvora_program.h"

#include <string>
#include <utility>

#include "common/error_rule.h"
#include "common/fault_text.h"
#include "frame/fault_messages.h"
#include "frame/provisioning.h"

namespace zenvora::frame {

ZenvoraProgram::ZenvoraProgram(ProgramParts parts)
    : databooks_(parts.databooks),
      share_(std::move(parts.share)),
      session_{.desktop = parts.desktop,
               .clock = parts.clock,
               .databooks = parts.databooks,
               .drives = std::move(parts.drives),
               .machine = parts.machine},
      main_(session_, std::move(parts.services)) {
    session_.forms.SetFaultHandler([this](const std::exception_ptr& failure) { return OnFault(failure); });
    databooks_.SetListener([this](const std::filesystem::path& path, const std::string& notice) {
        session_.desktop.Show({.text = common::Shown(path) + ": " + notice + ".",
                               .title = "Zenvora",
                               .icon = controls::Icon::Information,
                               .buttons = controls::Buttons::Ok});
    });
}

ZenvoraProgram::~ZenvoraProgram() {
    databooks_.SetListener({});
}

bool ZenvoraProgram::Start() {
    session_.forms.Event([this] {
        if (!share_.empty()) ProvisionDriveC(session_, share_);
        main_.Show(controls::Modality::Modeless);
    });
    return !session_.forms.Ending() && main_.Loaded();
}

int ZenvoraProgram::ExitStatus() const {
    try {
        session_.forms.Result();
        return 0;
    } catch (const common::ProgramEnds& ends) {
        return ends.faultNumber == 0 ? 0 : 1;
    } catch (...) {
        return 1;
    }
}

bool ZenvoraProgram::OnFault(const std::exception_ptr& failure) {
    if (!TellWhatFailed(session_, "The last action could not be finished.", failure)) return false;
    // A fault while the program starts ends it; one in a later action leaves the Databook that is open.
    return main_.RecoverFromFault();
}

}  // namespace zenvora::frame
