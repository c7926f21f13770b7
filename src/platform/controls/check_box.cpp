#include "platform/controls/check_box.h"

#include <string>

#include "platform/fault.h"

namespace zenvora::controls {

void CheckBox::SetValue(int value) {
    if (value < kUnchecked || value > kGrayed) {
        throw Fault{fault::kInvalidProperty,
                    std::to_string(value) + " is no state of the check box " + Name() + "."};
    }
    if (value_ == value) return;
    value_ = value;
    TellViews(Property::Value);
    if (clickRule_) clickRule_();
}

void CheckBox::Toggle() {
    if (Enabled() && Visible()) SetValue(value_ == kUnchecked ? kChecked : kUnchecked);
}

}  // namespace zenvora::controls
