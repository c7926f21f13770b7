#pragma once

#include "platform/text/date.h"

/// The clock. Nothing else reads the machine's date.
namespace zenvora::shell {

class Clock {
  public:
    virtual ~Clock() = default;
    /// Date and time of day now, local time, as a date number.
    [[nodiscard]] virtual text::Date Now() const = 0;
    /// Today without a time of day.
    [[nodiscard]] text::Date Today() const { return text::DayPart(Now()); }
    /// The current calendar year.
    [[nodiscard]] int Year() const { return text::CalendarDayOf(Now()).year; }
};

/// The machine's own clock, local time.
class SystemClock final : public Clock {
  public:
    [[nodiscard]] text::Date Now() const override;
};

/// A clock that stands still: for repeatable runs and for tests.
class FixedClock final : public Clock {
  public:
    explicit FixedClock(text::Date now) : now_(now) {}
    [[nodiscard]] text::Date Now() const override { return now_; }
    void Set(text::Date now) { now_ = now; }

  private:
    text::Date now_;
};

}  // namespace zenvora::shell
