#pragma once

#include <deque>
#include <string>
#include <vector>

#include "platform/controls/desktop.h"

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
    /// Nothing expected is left over.
    [[nodiscard]] bool Done() const { return answers_.empty() && files_.empty(); }

    controls::Answer Show(const controls::MessageBox& message) override;
    std::string Choose(const controls::FileDialog& dialog) override;
    void SetHourglass(bool on) override;
    void Progress(long done, long total) override;

    std::vector<controls::MessageBox> messages;  ///< every message shown, in order
    std::vector<controls::FileDialog> dialogs;   ///< every file dialog shown, in order
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
    std::deque<Step> answers_;
    std::deque<std::string> files_;
};

}  // namespace zenvora::testing_support
