#include "analysis/unique_list.h"

#include <string>

#include "common/primitives.h"
#include "platform/text/utf8.h"

namespace zenvora::analysis {

bool ListHolds(const controls::ListControl& list, std::string_view text) {
    const std::string wanted = common::UpTrim(text);
    for (int index = 0; index < list.ListCount(); ++index) {
        if (common::UpTrim(list.List(index)) == wanted) return true;
    }
    return false;
}

void AddItemUnique(controls::ListBox& list, std::string_view text) {
    const std::string trimmed = text::Trim(text);
    if (!trimmed.empty() && !ListHolds(list, trimmed)) list.AddItem(trimmed);
}

}  // namespace zenvora::analysis
