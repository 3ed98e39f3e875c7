#include "core/Timestamp.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace
{
constexpr double referenceDateInUnixSeconds = 978'307'200;
constexpr double lastCalendarMillisecond = 8.64e15; // some 270,000 years either way
} // namespace

Timestamp Timestamp::now()
{
    const std::chrono::duration<double> sinceUnixEpoch =
        std::chrono::system_clock::now().time_since_epoch();
    return {sinceUnixEpoch.count() - referenceDateInUnixSeconds};
}

QDateTime Timestamp::toDateTime() const
{
    if (!std::isfinite(secondsSinceReferenceDate))
        return {};
    const double milliseconds = (secondsSinceReferenceDate + referenceDateInUnixSeconds) * 1000;
    return QDateTime::fromMSecsSinceEpoch(
        std::llround(std::clamp(milliseconds, -lastCalendarMillisecond, lastCalendarMillisecond)));
}
