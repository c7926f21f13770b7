#include "desktop/end_signals.h"

#include <utility>

#ifndef _WIN32
#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#endif

namespace zenvora::desktop {

#ifdef _WIN32

EndSignals::EndSignals(std::function<void()>) {}
EndSignals::~EndSignals() = default;

#else

namespace {

int pipeEnds[2] = {-1, -1};

// Nothing but a write is allowed while a signal is handled; the loop reads it.
extern "C" void SignalCame(int /*signal*/) {
    const char mark = 1;
    [[maybe_unused]] const ssize_t written = write(pipeEnds[1], &mark, 1);
}

void Handle(void (*handler)(int)) {
    for (const int signal : {SIGTERM, SIGHUP, SIGINT})
        std::signal(signal, handler);
}

}  // namespace

EndSignals::EndSignals(std::function<void()> rule) {
    if (pipe2(pipeEnds, O_CLOEXEC | O_NONBLOCK) != 0) return;
    notifier_ = std::make_unique<QSocketNotifier>(pipeEnds[0], QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [rule = std::move(rule)] {
        char marks[16];
        while (read(pipeEnds[0], marks, sizeof marks) > 0) {
        }
        rule();
    });
    Handle(SignalCame);
}

EndSignals::~EndSignals() {
    if (notifier_ == nullptr) return;
    Handle(SIG_DFL);
    notifier_.reset();
    close(pipeEnds[0]);
    close(pipeEnds[1]);
}

#endif

}  // namespace zenvora::desktop
