#pragma once

#include <string_view>

#include "platform/controls/text_box.h"
#include "records/application.h"

namespace zenvora::records {

/// Shows the calendar frmPickDate, with `title` as its caption, on the date of the field (today, when it
/// holds none), and writes the chosen date into the field as M/D/YYYY. After Cancel the field's old date
/// comes back in that form; an empty field stays empty, and a text that is no date stays as it is. The field
/// takes the focus. A disabled field opens nothing. Faults: none of its own.
void GetCalandarDate(const Application& application, controls::TextBox& field, std::string_view title);

}  // namespace zenvora::records
