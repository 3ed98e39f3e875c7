#pragma once

#include "tests/core/Duration.h"

#include <QByteArray>

#include <algorithm>
#include <functional>

constexpr qsizetype megabyte = 1 << 20;

/// So many repetitions of the pattern as have about that size.
template <typename Text>
Text filled(const Text &pattern, qsizetype size)
{
    return pattern.repeated(size / pattern.size());
}

/// What says against the work being linear in its size, from one megabyte (or the size given) to
/// eight times as much; empty when nothing does. One measurement of each is enough where it says so
/// already; a disturbed one is repeated.
inline QByteArray againstLinearWork(const std::function<void(qsizetype)> &work,
                                    qsizetype smallest = megabyte)
{
    constexpr double second = 1e9;
    constexpr double bound = 20;            // sixty-four times is quadratic
    constexpr double floor = 0.01 * second; // what fits into the caches is faster
    const auto durationFor = [&work](qsizetype size) { return duration([&] { work(size); }); };
    // What is far from it would take hours for the rest.
    if (const double tiny = durationFor(smallest / 8); tiny > second)
        return QByteArray::number(smallest / 8) + " bytes in " + QByteArray::number(tiny / second) +
               " s";
    double small = 1e18;
    double large = 1e18;
    for (int attempt = 0; attempt < 4; ++attempt) {
        small = std::min(small, std::max(floor, durationFor(smallest)));
        large = std::min(large, durationFor(8 * smallest));
        if (large < bound * small)
            return {};
    }
    return "eight times as much takes " + QByteArray::number(large / small) + " times as long";
}
