#pragma once

#include <exception>
#include <functional>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/controls/desktop.h"
#include "platform/controls/form.h"

namespace zenvora::controls {

/// The loaded forms of a program, and the way of an event from the screen into the rules.
class Forms {
  public:
    explicit Forms(Desktop& desktop) : desktop_(desktop) {}
    Forms(const Forms&) = delete;
    Forms& operator=(const Forms&) = delete;

    /// In the order of their loading.
    [[nodiscard]] const std::vector<Form*>& Loaded() const noexcept { return loaded_; }

    /// Unloads the loaded form of that name, upper case and outer blanks aside. None: nothing happens.
    void UnloadFormByName(std::string_view name);
    /// Unloads every form, one by one; a form that is unloaded by another's rules is passed over.
    void UnloadAllForms();

    /// What becomes of a fault that no rule handles. The handler tells the user; true lets the program go on,
    /// false ends it. Without a handler the program ends.
    using FaultHandler = std::function<bool(std::exception_ptr)>;
    void SetFaultHandler(FaultHandler handler) { faultHandler_ = std::move(handler); }
    /// Runs what an event of the screen does. Nothing is thrown: a fault goes to the handler, and one that
    /// ends the program comes out of the Show of the modal forms, the topmost first, and then out of Result.
    void Event(const std::function<void()>& rule) noexcept;
    /// Raises what has ended the program, if anything has.
    void Result() const;
    [[nodiscard]] bool Ending() const noexcept { return static_cast<bool>(ending_); }

  private:
    friend class Form;
    void Entered(Form& form);
    void Shown(Form& form, Modality modality);
    void Hidden(Form& form);
    void Unloaded(Form& form);
    /// Returns the form below a modal one.
    Form* Forget(Form& form) noexcept;

    struct ModalForm {
        Form* form;
        Form* below;  ///< activated again when the modal one is unloaded
    };
    Desktop& desktop_;
    std::vector<Form*> loaded_;
    std::vector<ModalForm> modal_;  ///< modal forms that are not unloaded yet, the topmost last
    Form* front_ = nullptr;
    FaultHandler faultHandler_;
    std::exception_ptr ending_;
};

}  // namespace zenvora::controls
