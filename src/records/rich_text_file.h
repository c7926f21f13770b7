#pragma once

#include <string_view>
#include <vector>

#include "platform/controls/rich_text.h"

namespace zenvora::records {

/// The formatted text of a rich text file, as far as a help panel shows it: paragraphs with their alignment,
/// indents and distances; bold, italic and underlined text, sizes and colours; characters of Windows-1252 and
/// Unicode. Pictures, tables, styles, fields' instructions and what else such a file may hold are passed
/// over, their visible text is kept. Black is the panel's own text colour.
///
/// Any bytes will do. A file of another kind is shown as the plain text that it is; a broken one as far as it
/// makes sense. Time and memory grow with the bytes, and the text ends after 20,000 paragraphs. Faults: none.
[[nodiscard]] std::vector<controls::RichParagraph> ReadRichText(std::string_view bytes);

}  // namespace zenvora::records
