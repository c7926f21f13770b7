#pragma once

#include "platform/controls/desktop.h"

namespace zenvora::common {

/// The hourglass, for the length of a piece of work, whichever way it ends.
class Hourglass {
  public:
    explicit Hourglass(controls::Desktop& desktop) : desktop_(desktop) { desktop_.SetHourglass(true); }
    ~Hourglass() { desktop_.SetHourglass(false); }
    Hourglass(const Hourglass&) = delete;
    Hourglass& operator=(const Hourglass&) = delete;

  private:
    controls::Desktop& desktop_;
};

}  // namespace zenvora::common
