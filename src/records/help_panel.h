#pragma once

#include <string_view>

#include "common/session.h"
#include "platform/controls/rich_text.h"

namespace zenvora::records {

/// Shows a help text of the application directory ("OLD.rtf") in the panel. A file that is missing, empty or
/// cannot be read empties the panel without a message, and so does one of more than a megabyte, which is no
/// help text. Faults: none.
void ShowHelpText(common::Session& session, controls::RichText& panel, std::string_view fileName);

}  // namespace zenvora::records
