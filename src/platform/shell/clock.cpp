#include "platform/shell/clock.h"

#include <chrono>
#include <ctime>

namespace zenvora::shell {
namespace {

/// Local time zones change their distance from UTC at whole quarters of an hour only.
constexpr std::int64_t kQuarter = 15 * 60;
constexpr std::int64_t kSecondsADay = 86400;
constexpr std::int64_t kUnixEpoch = 25569;  ///< the date number of 1/1/1970

std::int64_t FloorDivide(std::int64_t value, std::int64_t by) noexcept {
    const std::int64_t quotient = value / by;
    return value % by < 0 ? quotient - 1 : quotient;
}

/// Seconds to add to UTC at that instant.
std::int64_t LocalOffset(std::time_t instant) {
    std::tm local{};
#ifdef _WIN32
    localtime_s(&local, &instant);
#else
    localtime_r(&instant, &local);
#endif
    const auto day = text::DayNumber(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
    const std::int64_t days = static_cast<std::int64_t>(day.value_or(0)) - kUnixEpoch;
    const std::int64_t seconds =
        days * kSecondsADay + local.tm_hour * 3600 + local.tm_min * 60 + local.tm_sec;
    return seconds - static_cast<std::int64_t>(instant);
}

}  // namespace

text::Date SystemClock::Now() const {
    // The date rules ask for the year once a field, so the time zone is looked up once a quarter of an hour.
    thread_local std::int64_t knownQuarter = -1;
    thread_local std::int64_t offset = 0;
    const auto instant = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    const std::int64_t quarter = FloorDivide(static_cast<std::int64_t>(instant), kQuarter);
    if (quarter != knownQuarter) {
        offset = LocalOffset(instant);
        knownQuarter = quarter;
    }
    const std::int64_t local = static_cast<std::int64_t>(instant) + offset;
    const std::int64_t day = FloorDivide(local, kSecondsADay);
    return static_cast<text::Date>(day + kUnixEpoch) +
           static_cast<double>(local - day * kSecondsADay) / static_cast<double>(kSecondsADay);
}

}  // namespace zenvora::shell
