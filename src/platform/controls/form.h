#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/controls/control.h"
#include "platform/controls/control_array.h"
#include "platform/controls/menu.h"

namespace zenvora::controls {

class Forms;

/// Where a form stands, in twips of the screen (1440 an inch).
struct Placement {
    float left = 0;
    float top = 0;
    float width = 0;
    float height = 0;
};

enum class Modality : int { Modeless, Modal };

/// A window without a toolkit: its controls in the order of the keyboard, the focus, and the events of its
/// life. A dialog derives from it, adds its controls and overrides the events.
///
/// Life: Load (by the first Show, or alone) - Activate - Hide or Unload. Closing by the window's close box
/// asks OnQueryUnload first. A form that goes out of existence leaves the program without any event.
class Form {
  public:
    Form(Forms& forms, std::string name, std::string caption = {});
    virtual ~Form();
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    [[nodiscard]] const std::string& Name() const noexcept { return name_; }
    [[nodiscard]] const std::string& Caption() const noexcept { return caption_; }
    void SetCaption(std::string caption);

    /// Designed size and place, followed by its view while one is there.
    [[nodiscard]] const controls::Placement& Placement() const noexcept { return placement_; }
    /// Moves or sizes the form; views follow.
    void SetPlacement(const controls::Placement& placement);
    /// The view tells where its window stands; no view is told.
    void PlacementIs(const controls::Placement& placement) noexcept { placement_ = placement; }

    /// In the order of the keyboard.
    [[nodiscard]] const std::vector<Control*>& Controls() const noexcept { return controls_; }
    [[nodiscard]] const std::vector<Menu>& Menus() const noexcept { return menus_; }
    /// A control, by its exact name, and in a control array by its index; also an entry of a menu. Null:
    /// there is none.
    [[nodiscard]] Control* Find(std::string_view name, int index = Control::kNoIndex) const noexcept;

    [[nodiscard]] bool Loaded() const noexcept { return loaded_; }
    [[nodiscard]] bool Visible() const noexcept { return visible_; }
    /// Runs OnLoad, unless it is loaded already.
    void Load();
    /// Loads the form and shows it. Modal: returns when it is hidden or unloaded; a fault that ends the
    /// program meanwhile comes out of here. A form that its own OnLoad unloads is not shown. One that is
    /// shown already comes to the front.
    void Show(Modality modality);
    void Hide();
    /// Runs OnUnload, and hides the form. Nothing when it is not loaded.
    void Unload();
    /// The user's close box: Unload, unless OnQueryUnload refuses.
    void Close();

    /// The form has come to the front of the program's own windows: runs OnActivate. Called by the view once
    /// the window is on the screen, and when the modal form above is unloaded.
    void Activate();

    /// The control that has the focus, null before the first one gets it.
    [[nodiscard]] Control* ActiveControl() const noexcept { return active_; }
    /// Moves the focus, for the user and for the program alike: runs the rule of the control that loses it
    /// and then the rule of the one that gets it. A control that has it, that is disabled or hidden: nothing
    /// happens.
    void SetFocus(Control& control);

    /// F1 anywhere on the form: runs OnHelp.
    void Help() { OnHelp(); }
    /// A file that the user dropped on the window; host path.
    void DropFile(const std::string& hostPath) { OnDropFile(hostPath); }
    [[nodiscard]] virtual bool TakesFiles() const noexcept { return false; }

    enum class Change { Caption, Placement };
    using FormObservation = std::shared_ptr<const std::function<void(Change)>>;
    /// As Control::Observe.
    [[nodiscard]] FormObservation Observe(std::function<void(Change)> view);

    [[nodiscard]] Forms& Program() const noexcept { return forms_; }

  protected:
    /// Adds a control behind the others. It must live as long as the form.
    void Add(Control& control);
    template <class T>
    void Add(ControlArray<T>& elements) {
        for (T& element : elements)
            Add(element);
    }
    void AddMenu(Menu menu);

    virtual void OnLoad() {}
    virtual void OnActivate() {}
    /// Sets `cancel` to keep the form open.
    virtual void OnQueryUnload(bool& cancel) { static_cast<void>(cancel); }
    virtual void OnUnload() {}
    virtual void OnHelp() {}
    virtual void OnDropFile(const std::string& hostPath) { static_cast<void>(hostPath); }

  private:
    void TellViews(Change change);

    Forms& forms_;
    std::string name_;
    std::string caption_;
    controls::Placement placement_;
    std::vector<Control*> controls_;
    std::vector<Menu> menus_;
    bool loaded_ = false;
    bool visible_ = false;
    Control* active_ = nullptr;
    std::vector<std::weak_ptr<const std::function<void(Change)>>> views_;
};

}  // namespace zenvora::controls
