#include "platform/controls/option_button.h"

namespace zenvora::controls {

void OptionButton::SetValue(bool value) {
    if (value_ == value) return;
    if (value && group_) {
        for (OptionButton* other : *group_) {
            if (other != this && other->value_) {
                other->value_ = false;
                other->TellViews(Property::Value);
            }
        }
    }
    value_ = value;
    TellViews(Property::Value);
    if (value && clickRule_) clickRule_();
}

void OptionButton::Select() {
    if (Enabled() && Visible()) SetValue(true);
}

void OptionButton::JoinGroupOf(OptionButton& first) {
    if (!first.group_) first.group_ = std::make_shared<std::vector<OptionButton*>>(1, &first);
    group_ = first.group_;
    group_->push_back(this);
}

}  // namespace zenvora::controls
