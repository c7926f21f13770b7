#include "platform/controls/form.h"

#include <utility>

#include "platform/controls/forms.h"

namespace zenvora::controls {

Form::Form(Forms& forms, std::string name, std::string caption)
    : forms_(forms), name_(std::move(name)), caption_(std::move(caption)) {}

Form::~Form() {
    if (visible_) forms_.Hidden(*this);
    if (loaded_) forms_.Forget(*this);
}

void Form::SetCaption(std::string caption) {
    if (caption_ == caption) return;
    caption_ = std::move(caption);
    TellViews(Change::Caption);
}

void Form::SetPlacement(const controls::Placement& placement) {
    placement_ = placement;
    TellViews(Change::Placement);
}

Control* Form::Find(std::string_view name, int index) const noexcept {
    const auto matches = [&](const Control* control) {
        return control != nullptr && control->Name() == name && control->Index() == index;
    };
    for (Control* control : controls_) {
        if (matches(control)) return control;
    }
    for (const Menu& menu : menus_) {
        if (matches(menu.title)) return menu.title;
        for (const Menu::Entry& entry : menu.entries) {
            if (matches(entry.item)) return entry.item;
            for (MenuItem* child : entry.children) {
                if (matches(child)) return child;
            }
        }
    }
    return nullptr;
}

void Form::Load() {
    if (loaded_) return;
    loaded_ = true;
    forms_.Entered(*this);
    OnLoad();
}

void Form::Show(Modality modality) {
    Load();
    if (!loaded_) return;
    visible_ = true;
    forms_.Shown(*this, modality);
}

void Form::Hide() {
    if (!visible_) return;
    visible_ = false;
    forms_.Hidden(*this);
}

void Form::Unload() {
    if (!loaded_) return;
    OnUnload();
    // OnUnload may have unloaded the form itself, by closing all forms.
    if (!loaded_) return;
    loaded_ = false;
    active_ = nullptr;
    Hide();
    forms_.Unloaded(*this);
}

void Form::Close() {
    if (!loaded_) return;
    bool cancel = false;
    OnQueryUnload(cancel);
    if (!cancel) Unload();
}

void Form::Activate() {
    if (loaded_ && visible_) OnActivate();
}

void Form::SetFocus(Control& control) {
    if (active_ == &control || !control.Enabled() || !control.Visible()) return;
    Control* const before = std::exchange(active_, &control);
    control.TellViews(Property::Focus);
    if (before != nullptr && before->lostFocus_) before->lostFocus_();
    // The rule of leaving may have sent the focus elsewhere.
    if (active_ == &control && control.gotFocus_) control.gotFocus_();
}

void Form::Add(Control& control) {
    control.form_ = this;
    controls_.push_back(&control);
}

void Form::AddMenu(Menu menu) {
    menus_.push_back(std::move(menu));
}

Form::FormObservation Form::Observe(std::function<void(Change)> view) {
    std::erase_if(views_, [](const auto& entry) { return entry.expired(); });
    FormObservation observation = std::make_shared<const std::function<void(Change)>>(std::move(view));
    views_.push_back(observation);
    return observation;
}

void Form::TellViews(Change change) {
    if (views_.empty()) return;
    const auto views = views_;
    for (const auto& entry : views) {
        if (const FormObservation view = entry.lock()) (*view)(change);
    }
}

}  // namespace zenvora::controls
