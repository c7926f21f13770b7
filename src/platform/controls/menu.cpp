#include "platform/controls/menu.h"

namespace zenvora::controls {

void MenuItem::SetChecked(bool checked) {
    if (checked_ == checked) return;
    checked_ = checked;
    TellViews(Property::Value);
}

}  // namespace zenvora::controls
