#include "platform/controls/text_box.h"

#include <utility>

namespace zenvora::controls {

void TextBox::SetText(std::string text) {
    if (text_ == text) return;
    text_ = std::move(text);
    TellViews(Property::Text);
    if (changeRule_) changeRule_();
}

}  // namespace zenvora::controls
