#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "platform/controls/desktop.h"
#include "platform/controls/form.h"

namespace zenvora::testing_support {

/// A desktop that answers from a list. A question that was not expected fails the test and gets the quiet
/// answer of its buttons; a question that was expected and never came fails it too, when the desktop goes.
class ScriptedDesktop final : public controls::Desktop {
  public:
    ScriptedDesktop() = default;
    ~ScriptedDesktop() override;
    ScriptedDesktop(const ScriptedDesktop&) = delete;
    ScriptedDesktop& operator=(const ScriptedDesktop&) = delete;

    /// The next message box must have this text and gets this answer.
    void Expect(std::string text, controls::Answer answer = controls::Answer::Ok);
    /// The next message box gets this answer, whatever it says; look at messages afterwards.
    void ExpectAny(controls::Answer answer = controls::Answer::Ok);
    /// The next file dialog is answered with this path; empty means cancelled.
    void ExpectFile(std::string path);
    /// The next form shown must have this name; the user then does this with it. A modal form that the user
    /// leaves open is closed by its close box, and hidden when it refuses that.
    void ExpectForm(std::string name, std::function<void(controls::Form&)> user = {});
    /// Nothing expected is left over.
    [[nodiscard]] bool Done() const { return answers_.empty() && files_.empty() && forms_.empty(); }

    controls::Answer Show(const controls::MessageBox& message) override;
    std::string Choose(const controls::FileDialog& dialog) override;
    void ShowForm(controls::Form& form, controls::Modality modality) override;
    void HideForm(controls::Form& form) override;
    void Quit() override { ended = true; }
    void SetHourglass(bool on) override;
    void Progress(long done, long total) override;

    std::vector<controls::MessageBox> messages;  ///< every message shown, in order
    std::vector<controls::FileDialog> dialogs;   ///< every file dialog shown, in order
    std::vector<std::string> shown;              ///< name of every form shown, in order
    bool ended = false;                          ///< the program has ended its loop
    bool hourglass = false;
    int hourglassChanges = 0;
    long progressCalls = 0;
    long lastDone = 0;
    long lastTotal = 0;

  private:
    struct Step {
        bool anyText = false;
        std::string text;
        controls::Answer answer = controls::Answer::Ok;
    };
    struct FormStep {
        std::string name;
        std::function<void(controls::Form&)> user;
    };
    std::deque<FormStep> forms_;
    std::deque<Step> answers_;
    std::deque<std::string> files_;
};

}  // namespace zenvora::testing_support
