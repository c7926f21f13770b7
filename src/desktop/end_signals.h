#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

namespace zenvora::desktop {

/// While it lives, the signals by which a machine asks programs to end (terminate, hang up, interrupt) run a
/// rule in the toolkit's loop. There is one at a time.
class EndSignals final {
  public:
    explicit EndSignals(std::function<void()> rule);
    ~EndSignals();
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;

  private:
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace zenvora::desktop
