#include "records/editor_message.h"

#include <string>

#include "common/fault_text.h"

namespace zenvora::records {

void TellFault(common::Session& session, std::string_view what, std::string_view field, const Fault& fault,
               std::string_view advice) {
    controls::MessageBox message;
    message.title = "Edit";
    message.icon = controls::Icon::Exclamation;
    message.text = std::string(what) + "\n\n";
    if (!field.empty()) message.text += std::string(field) + ": ";
    message.text += common::FaultLine(fault);
    if (!advice.empty()) message.text += "\n\n" + std::string(advice);
    session.desktop.Show(message);
}

}  // namespace zenvora::records
