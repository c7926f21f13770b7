#pragma once

#include <chrono>
#include <functional>
#include <ostream>
#include <string>

#include "platform/controls/desktop.h"

namespace zenvora::cli {

/// A screen without a user: messages are printed, questions get the answer that goes on (the first button;
/// Abort and Cancel where the other way is to try again without end), file dialogs are cancelled.
class ConsoleDesktop final : public controls::Desktop {
  public:
    struct Options {
        bool drawProgress = false;  ///< a bar may be drawn: `err` is a terminal
        bool quiet = false;         ///< only messages that report trouble are printed
    };
    /// Time since some fixed moment; handed in by tests.
    using Stopwatch = std::function<std::chrono::milliseconds()>;

    ConsoleDesktop(std::ostream& err, Options options, Stopwatch stopwatch = SteadyTime);
    ~ConsoleDesktop() override;

    controls::Answer Show(const controls::MessageBox& message) override;
    std::string Choose(const controls::FileDialog& dialog) override;
    void SetHourglass(bool on) override;
    /// Draws a bar once the work has lasted half a second, and wipes it off when all is done.
    void Progress(long done, long total) override;

    /// Wipes the bar off the line; to be called before anything else is printed.
    void EndProgress();

    static std::chrono::milliseconds SteadyTime();

  private:
    std::ostream& err_;
    Options options_;
    Stopwatch stopwatch_;
    std::chrono::milliseconds start_{-1};
    std::chrono::milliseconds drawn_{0};
    std::size_t lineLength_ = 0;
};

}  // namespace zenvora::cli
