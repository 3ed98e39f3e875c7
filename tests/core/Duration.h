#pragma once

#include <algorithm>
#include <ctime>
#include <limits>

#ifdef __GLIBC__
#include <malloc.h>
#endif

/// Nanoseconds of the processor that this thread has had. Unlike the clock on the wall it stands
/// still while other programs run, or the whole machine does not.
inline double processorTime(clockid_t clock = CLOCK_THREAD_CPUTIME_ID)
{
    timespec time{};
    ::clock_gettime(clock, &time);
    return 1e9 * double(time.tv_sec) + double(time.tv_nsec);
}

/// How many times as long the same work may take here: a sanitizer looks at every step of it.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr double slowness = 20;
#else
constexpr double slowness = 1;
#endif

/// What the work takes of the processor, in nanoseconds.
template <typename Work>
double duration(Work work)
{
    const double start = processorTime();
    work();
    return processorTime() - start;
}

/// The best of some runs: whatever disturbs one only ever adds to it.
template <typename Work>
double bestDuration(Work work)
{
    constexpr int runs = 5;
    double best = duration(work);
    for (int run = 1; run < runs; ++run)
        best = std::min(best, duration(work));
    return best;
}

/// Memory that the system gives for the first time has to be cleared, page by page, and large
/// blocks come from it each time: what they cost has nothing to do with the work. Kept, they are
/// given once.
inline void keepFreedMemory()
{
#ifdef __GLIBC__
    static constexpr int never = 0;
    // NOLINTBEGIN(concurrency-mt-unsafe): nobody else sets it
    ::mallopt(M_MMAP_MAX, never);
    ::mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
    // NOLINTEND(concurrency-mt-unsafe)
#endif
}

/// Sixteen times the input may take sixteen times as long; two hundred and fifty-six times is
/// quadratic. The bound lies between: what fits into the caches is several times as fast.
constexpr double linearGrowthBound = 80;

/// How many times as long the work takes for an input that is sixteen times as large: from a
/// quarter of the size to four times as much. Small and large runs alternate, and the best of each
/// are compared; it is tried again while they say that the work is not linear, for only work that
/// really is not says so each time.
template <typename Work>
double growth(Work work, qsizetype size)
{
    constexpr int attempts = 10;
    constexpr double budget = 10e9; // of what is far from linear one run is enough
    constexpr double floor = 2e4;   // or the clock's own noise would count
    const auto small = [&] { return std::max(floor, duration([&] { work(size / 4); })); };
    const auto large = [&] { return duration([&] { work(size * 4); }); };
    keepFreedMemory();
    double bestLarge = large(); // what it needs, the small one has
    double bestSmall = std::min(small(), small());
    double spent = bestLarge;
    for (int attempt = 1;; ++attempt) {
        bestSmall = std::min({bestSmall, small(), small()});
        if (bestLarge < linearGrowthBound * bestSmall || attempt == attempts || spent > budget)
            return bestLarge / bestSmall;
        const double again = large();
        bestLarge = std::min(bestLarge, again);
        spent += again;
    }
}
