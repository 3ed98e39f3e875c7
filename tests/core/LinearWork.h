#pragma once

#include "tests/core/Duration.h"

#include <QByteArray>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>

constexpr qsizetype megabyte = 1 << 20;

/// So many repetitions of the pattern as have about that size, and one at least.
template <typename Text>
Text filled(const Text &pattern, qsizetype size)
{
    return pattern.repeated(std::max<qsizetype>(1, size / pattern.size()));
}

/// The durations of some work for inputs each twice as large as the one before.
using Durations = std::array<double, 4>;

/// To what power of its size the work's duration grows: the slope of the line that lies nearest to
/// the logarithms. 1 is linear, 2 quadratic.
inline double exponentOf(const Durations &durations)
{
    const double middle = double(durations.size() - 1) / 2;
    double covariance = 0;
    double variance = 0;
    for (std::size_t i = 0; i < durations.size(); ++i) {
        covariance += (double(i) - middle) * std::log2(durations[i]);
        variance += (double(i) - middle) * (double(i) - middle);
    }
    return covariance / variance;
}

/// The power that is allowed, half way to a quadratic one. What no longer fits into the caches may
/// take twice as long for each byte, and that alone makes a third.
constexpr double nearlyLinear = 1.5;

/// What says against the work being linear in its size, from one megabyte (or the size given) over
/// two and four to eight times as much; empty when nothing does. The best of some runs counts, for
/// whatever disturbs one only ever adds to it; once they say that it is linear, they are enough.
inline QByteArray againstLinearWork(const std::function<void(qsizetype)> &work,
                                    qsizetype smallest = megabyte)
{
    constexpr double second = 1e9;
    constexpr double millisecond = 1e6;
    constexpr double nobodysMatter = 0.5; // for a byte: as long as it takes to copy some
    constexpr int rounds = 8;
    if constexpr (slowness > 1)
        smallest /= 8; // a sanitizer looks for other faults, and writes down each piece of memory
    const auto durationFor = [&work](qsizetype size) { return duration([&] { work(size); }); };
    // What is far from it would take hours for the rest.
    if (const double tiny = durationFor(smallest / 8); tiny > slowness * second)
        return QByteArray::number(smallest / 8) + " bytes in " + QByteArray::number(tiny / second) +
               " s";
    keepFreedMemory();
    Durations best;
    best.fill(1e18);
    for (int round = 0; round < rounds; ++round) {
        for (std::size_t i = best.size(); i-- > 0;) // what the largest needs, the others have
            best[i] = std::max(std::min(best[i], durationFor(smallest << i)),
                               nobodysMatter * double(smallest << i));
        if (exponentOf(best) <= nearlyLinear)
            return {};
    }
    QByteArray fault = "grows with the power " + QByteArray::number(exponentOf(best)) + ':';
    for (const double one : best)
        fault += ' ' + QByteArray::number(one / millisecond) + " ms";
    return fault;
}
