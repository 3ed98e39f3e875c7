#pragma once

#include "tests/core/Duration.h"

#include <QByteArray>
#include <QtDebug>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>

constexpr qsizetype megabyte = 1 << 20;

/// So many repetitions of the pattern as have about that size.
template <typename Text>
Text filled(const Text &pattern, qsizetype size)
{
    return pattern.repeated(size / pattern.size());
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

/// What says against the work being linear in its size, from one megabyte (or the size given) over
/// two and four to eight times as much; empty when nothing does. The best of some runs counts, for
/// whatever disturbs one only ever adds to it; once they say that it is linear, they are enough.
inline QByteArray againstLinearWork(const std::function<void(qsizetype)> &work,
                                    qsizetype smallest = megabyte)
{
    constexpr double second = 1e9;
    constexpr double bound = 1.2;
    constexpr int rounds = 8;
    const auto durationFor = [&work](qsizetype size) { return duration([&] { work(size); }); };
    // What is far from it would take hours for the rest.
    if (const double tiny = durationFor(smallest / 8); tiny > second)
        return QByteArray::number(smallest / 8) + " bytes in " + QByteArray::number(tiny / second) +
               " s";
    Durations best;
    best.fill(1e18);
    double exponent = 0;
    for (int round = 0; round < rounds; ++round) {
        for (std::size_t i = 0; i < best.size(); ++i)
            best[i] = std::min(best[i], durationFor(smallest << i));
        exponent = exponentOf(best);
        qInfo("round %d exponent %.2f, %.1f ms and %.1f ms", round, exponent, best.front() / 1e6,
              best.back() / 1e6);
        if (exponent <= bound)
            return {};
    }
    return "the exponent is " + QByteArray::number(exponent) ;
}
