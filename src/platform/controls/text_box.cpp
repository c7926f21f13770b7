#include "platform/controls/text_box.h"

#include <utility>

namespace zenvora::controls {

void TextBox::SetText(std::string text) {
    if (text_ == text) return;
    text_ = std::move(text);
    TellViews(Property::Text);
    if (changeRule_) changeRule_();
}

void TextBox::Click() {
    if (Enabled() && Visible() && clickRule_) clickRule_();
}

void TextBox::SetLocked(bool locked) {
    if (locked_ == locked) return;
    locked_ = locked;
    TellViews(Property::Locked);
}

}  // namespace zenvora::controls
