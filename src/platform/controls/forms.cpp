#include "platform/controls/forms.h"

#include <algorithm>
#include <string>

#include "platform/text/utf8.h"

namespace zenvora::controls {
namespace {

std::string Folded(std::string_view name) {
    return text::Upper(text::Trim(name));
}

}  // namespace

void Forms::UnloadFormByName(std::string_view name) {
    for (Form* form : loaded_) {
        if (Folded(form->Name()) == Folded(name)) return form->Unload();
    }
}

void Forms::UnloadAllForms() {
    const std::vector<Form*> all = loaded_;
    for (Form* form : all) {
        if (std::find(loaded_.begin(), loaded_.end(), form) != loaded_.end()) form->Unload();
    }
}

void Forms::Event(const std::function<void()>& rule) noexcept {
    if (ending_) return;
    try {
        rule();
    } catch (...) {
        try {
            if (!ending_ && faultHandler_ && faultHandler_(std::current_exception())) return;
            if (!ending_) ending_ = std::current_exception();
        } catch (...) {
            ending_ = std::current_exception();
        }
        // The loop of the topmost modal form ends first; its Show raises the fault again in the rule below.
        for (auto entry = modal_.rbegin(); entry != modal_.rend(); ++entry) {
            if (entry->form->Visible()) return entry->form->Hide();
        }
        desktop_.Quit();
    }
}

void Forms::Result() const {
    if (ending_) std::rethrow_exception(ending_);
}

void Forms::Entered(Form& form) {
    loaded_.push_back(&form);
}

void Forms::Shown(Form& form, Modality modality) {
    const bool known = std::any_of(modal_.begin(), modal_.end(),
                                   [&](const ModalForm& modal) { return modal.form == &form; });
    if (modality == Modality::Modal && !known) modal_.push_back({&form, front_});
    front_ = &form;
    desktop_.ShowForm(form, modality);
    if (modality == Modality::Modal) Result();
}

void Forms::Hidden(Form& form) {
    desktop_.HideForm(form);
}

Form* Forms::Forget(Form& form) noexcept {
    std::erase(loaded_, &form);
    if (front_ == &form) front_ = nullptr;
    Form* below = nullptr;
    const auto entry = std::find_if(modal_.begin(), modal_.end(),
                                    [&](const ModalForm& modal) { return modal.form == &form; });
    if (entry != modal_.end()) {
        below = entry->below;
        modal_.erase(entry);
    }
    const bool there = std::find(loaded_.begin(), loaded_.end(), below) != loaded_.end();
    return there ? below : nullptr;
}

void Forms::Unloaded(Form& form) {
    Form* const below = Forget(form);
    if (loaded_.empty()) return desktop_.Quit();
    if (below != nullptr && !ending_) {
        front_ = below;
        below->Activate();
    }
}

}  // namespace zenvora::controls
