#pragma once

#include <string_view>

#include "platform/controls/list_box.h"

/// Lists in which no text stands twice, such as the towns of a combo box.
namespace zenvora::analysis {

/// True when the list holds the text, compared trimmed and without regard to case. Faults: none.
[[nodiscard]] bool ListHolds(const controls::ListControl& list, std::string_view text);

/// Adds the trimmed text at the end unless it is empty or the list holds it. Faults: none.
void AddItemUnique(controls::ListBox& list, std::string_view text);

}  // namespace zenvora::analysis
