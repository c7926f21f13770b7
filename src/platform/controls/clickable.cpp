#include "platform/controls/clickable.h"

namespace zenvora::controls {

void Clickable::Click() {
    if (!Enabled() || !Visible() || !clickRule_) return;
    // A copy, because the press may end the form that holds the rule.
    const std::function<void()> rule = clickRule_;
    rule();
}

}  // namespace zenvora::controls
