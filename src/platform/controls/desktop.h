#pragma once

#include <string>

/// What the logic asks of the screen. Tests answer from a list (tests/support/scripted_desktop.h); the
/// command line prints and takes the default answer.
namespace zenvora::controls {

enum class Icon { None, Information, Question, Exclamation, Critical };
enum class Buttons { Ok, OkCancel, AbortRetryIgnore, YesNoCancel, YesNo, RetryCancel };
enum class Answer { Ok, Cancel, Abort, Retry, Ignore, Yes, No };

struct MessageBox {
    std::string text;
    std::string title;
    Icon icon = Icon::None;
    Buttons buttons = Buttons::Ok;
};

/// An open or save dialog. `directory` and the answer are host paths.
struct FileDialog {
    std::string title;
    std::string filter;  ///< "Map Files (*.map)|*.map": pairs of caption and patterns, separated by "|"
    std::string directory;
    std::string fileName;
    std::string defaultExtension;
    bool forSaving = false;
};

class Form;
enum class Modality : int;

/// A desktop without windows, as that of the command line, leaves the calls about forms as they are: a modal
/// form then returns at once.
class Desktop {
  public:
    virtual ~Desktop() = default;
    /// Shows a modal message and returns the button pressed.
    virtual Answer Show(const MessageBox& message) = 0;
    /// Shows a file dialog; empty when the user cancelled.
    virtual std::string Choose(const FileDialog& dialog) = 0;
    /// Brings a form to the screen and calls its Activate. Modal: returns when the form is hidden.
    virtual void ShowForm(Form& form, Modality modality) {
        static_cast<void>(form), static_cast<void>(modality);
    }
    /// Takes a form off the screen.
    virtual void HideForm(Form& form) { static_cast<void>(form); }
    /// The program ends: the loop of the screen returns.
    virtual void Quit() {}
    /// The hourglass, on or off.
    virtual void SetHourglass(bool on) = 0;
    /// Long work says how far it is; `total` 0 means unknown. Called often: must be cheap.
    virtual void Progress(long done, long total) { static_cast<void>(done), static_cast<void>(total); }
};

}  // namespace zenvora::controls
