#include "platform/controls/progress_bar.h"

namespace zenvora::controls {

void ProgressBar::SetRange(int minimum, int maximum) {
    if (minimum_ == minimum && maximum_ == maximum) return;
    minimum_ = minimum;
    maximum_ = maximum;
    TellViews(Property::Value);
}

void ProgressBar::SetValue(int value) {
    if (value_ == value) return;
    value_ = value;
    TellViews(Property::Value);
}

}  // namespace zenvora::controls
