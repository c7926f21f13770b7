#include "cli/console_desktop.h"

#include <algorithm>

#include "platform/text/number.h"

namespace zenvora::cli {

using controls::Answer;
using controls::Buttons;
using controls::Icon;

ConsoleDesktop::ConsoleDesktop(std::ostream& err, Options options, Stopwatch stopwatch)
    : err_(err), options_(options), stopwatch_(std::move(stopwatch)) {}

ConsoleDesktop::~ConsoleDesktop() {
    EndProgress();
}

Answer ConsoleDesktop::Show(const controls::MessageBox& message) {
    const bool trouble = message.icon == Icon::Critical || message.icon == Icon::Exclamation;
    if (trouble || !options_.quiet) {
        EndProgress();
        err_ << (message.title.empty() ? "" : message.title + ": ") << message.text << '\n';
    }
    switch (message.buttons) {
        case Buttons::YesNo:
        case Buttons::YesNoCancel:
            return Answer::Yes;
        case Buttons::AbortRetryIgnore:
            return Answer::Abort;
        case Buttons::RetryCancel:
            return Answer::Cancel;
        case Buttons::Ok:
        case Buttons::OkCancel:
            break;
    }
    return Answer::Ok;
}

std::string ConsoleDesktop::Choose(const controls::FileDialog& /*dialog*/) {
    return "";
}

void ConsoleDesktop::SetHourglass(bool on) {
    if (!on) EndProgress();
}

void ConsoleDesktop::Progress(long done, long total) {
    using std::chrono::milliseconds;
    constexpr milliseconds kPatience{500};
    constexpr milliseconds kBetweenFrames{100};
    constexpr long kBarLength = 40;

    if (!options_.drawProgress || options_.quiet || total <= 0) return;
    if (done >= total) {
        EndProgress();  // results may follow on the same terminal
        return;
    }
    const auto now = stopwatch_();
    if (start_.count() < 0) start_ = now;
    if (now - start_ < kPatience || (lineLength_ > 0 && now - drawn_ < kBetweenFrames)) return;
    drawn_ = now;
    const double share = static_cast<double>(std::max(done, 0L)) / static_cast<double>(total);
    const auto filled = static_cast<std::size_t>(share * kBarLength);
    std::string line = "[" + std::string(filled, '#') + std::string(kBarLength - filled, ' ') + "] " +
                       text::IntegerText(done) + " of " + text::IntegerText(total);
    const std::size_t length = line.size();
    if (lineLength_ > length) line += std::string(lineLength_ - length, ' ');
    lineLength_ = length;
    err_ << '\r' << line << std::flush;
}

void ConsoleDesktop::EndProgress() {
    if (lineLength_ > 0) err_ << '\r' << std::string(lineLength_, ' ') << '\r' << std::flush;
    start_ = std::chrono::milliseconds{-1};
    lineLength_ = 0;
}

std::chrono::milliseconds ConsoleDesktop::SteadyTime() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now().time_since_epoch());
}

}  // namespace zenvora::cli
