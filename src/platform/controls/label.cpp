#include "platform/controls/label.h"

#include <utility>

namespace zenvora::controls {

void Label::SetCaption(std::string caption) {
    if (caption_ == caption) return;
    caption_ = std::move(caption);
    TellViews(Property::Text);
}

}  // namespace zenvora::controls
