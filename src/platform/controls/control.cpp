#include "platform/controls/control.h"

#include <utility>

#include "platform/controls/form.h"

namespace zenvora::controls {

Control::Control(std::string name, int index) : name_(std::move(name)), index_(index) {}

Control::~Control() = default;

void Control::SetEnabled(bool enabled) {
    if (enabled_ == enabled) return;
    enabled_ = enabled;
    TellViews(Property::Enabled);
}

void Control::SetVisible(bool visible) {
    if (visible_ == visible) return;
    visible_ = visible;
    TellViews(Property::Visible);
}

void Control::SetBackColor(Color color) {
    if (backColor_ == color) return;
    backColor_ = color;
    TellViews(Property::BackColor);
}

void Control::SetToolTipText(std::string text) {
    if (toolTipText_ == text) return;
    toolTipText_ = std::move(text);
    TellViews(Property::ToolTipText);
}

void Control::SetFocus() {
    if (form_ != nullptr) form_->SetFocus(*this);
}

bool Control::HasFocus() const noexcept {
    return form_ != nullptr && form_->ActiveControl() == this;
}

Observation Control::Observe(std::function<void(Property)> view) {
    std::erase_if(views_, [](const auto& entry) { return entry.expired(); });
    Observation observation = std::make_shared<const std::function<void(Property)>>(std::move(view));
    views_.push_back(observation);
    return observation;
}

void Control::TellViews(Property property) {
    if (views_.empty()) return;
    // A copy, because a view may begin or end an observation while it is told.
    const auto views = views_;
    for (const auto& entry : views) {
        if (const Observation view = entry.lock()) (*view)(property);
    }
}

}  // namespace zenvora::controls
