#include "frame/fault_messages.h"

#include <new>

#include "common/error_rule.h"
#include "common/fault_text.h"

namespace zenvora::frame {
namespace {

void Tell(common::Session& session, const std::string& whatFailed, const std::string& reason) {
    session.desktop.Show({.text = whatFailed + "\n\n" + reason,
                          .title = "Zenvora",
                          .icon = controls::Icon::Critical,
                          .buttons = controls::Buttons::Ok});
}

}  // namespace

void TellFault(common::Session& session, const std::string& whatFailed, const Fault& fault,
               const std::string& file) {
    Tell(session, whatFailed, common::FaultLine(fault, file));
}

bool TellWhatFailed(common::Session& session, const std::string& whatFailed,
                    const std::exception_ptr& failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const common::ProgramEnds&) {
        return false;
    } catch (const Fault& fault) {
        TellFault(session, whatFailed, fault);
        return true;
    } catch (const std::bad_alloc&) {
        Tell(session, whatFailed,
             "There is not enough memory. The Databook is as it was stored last. Close other programs and "
             "start Zenvora again.");
    } catch (const std::exception& error) {
        Tell(session, whatFailed,
             std::string(error.what()) +
                 ". The Databook is as it was stored last. Start Zenvora again, and tell your software "
                 "provider if this comes back.");
    }
    return false;
}

}  // namespace zenvora::frame
