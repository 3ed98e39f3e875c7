#pragma once

#include <QElapsedTimer>

#include <algorithm>

/// The best of three runs in nanoseconds: the least disturbed one.
template <typename Work>
double bestDuration(Work work)
{
    double best = 1e18;
    for (int run = 0; run < 3; ++run) {
        QElapsedTimer timer;
        timer.start();
        work();
        best = std::min(best, double(timer.nsecsElapsed()));
    }
    return best;
}

/// Four times the input may take four times as long; sixteen times is quadratic. The bound lies
/// between, and a floor of half a millisecond keeps the clock's noise out.
constexpr double linearGrowthBound = 10;

template <typename Work>
double growth(Work work, qsizetype size)
{
    constexpr double floor = 5e5;
    const double small = std::max(floor, bestDuration([&] { work(size); }));
    return bestDuration([&] { work(4 * size); }) / small;
}
