#pragma once

#include <chrono>

/// Seconds of the system's monotonic clock, which other processes read alike.
[[nodiscard]] inline double secondsNow()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}
