#include "core/ThreadJob.h"

#include <QThreadPool>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

// Programs that are wrong, for the sanitizers to find; each takes its numbers from main, so that no
// compiler sees how it ends.
namespace
{
int readFreedMemory(int count)
{
    auto numbers = std::make_unique<std::vector<int>>(count, 1);
    const int &first = numbers->front();
    numbers.reset();
    return first;
}

int readBeyondTheEnd(int count)
{
    const std::vector<int> numbers(count, 1);
    return numbers.data()[count];
}

int overflow(int count)
{
    return std::numeric_limits<int>::max() + count;
}

int shiftTooFar(int count)
{
    return 1 << (31 + count);
}

int race(int count)
{
    int sum = 0;
    std::thread other([&] { sum += count; });
    sum += count;
    other.join();
    return sum;
}

/// As the program itself hands work over; its results are to be waited for.
int raceWithAJob(int count)
{
    int sum = 0;
    QThreadPool pool;
    startJob(pool, [&] { sum += count; });
    sum += count;
    pool.waitForDone();
    return sum;
}

int doWhatIsRight(int count)
{
    std::vector<int> numbers(count, 1);
    QThreadPool pool;
    startJob(pool, [number = numbers.front()] { std::printf("%d\n", number); });
    pool.waitForDone();
    std::thread other([&] { ++numbers.front(); });
    other.join();
    return numbers.front();
}

int leak(int count)
{
    return std::make_unique<std::vector<int>>(count, 1).release()->front();
}

struct Fault {
    std::string_view name;
    int (*commit)(int);
};
constexpr Fault faults[] = {{"freed", readFreedMemory},
                            {"end", readBeyondTheEnd},
                            {"overflow", overflow},
                            {"shift", shiftTooFar},
                            {"leak", leak},
                            {"race", race},
                            {"job", raceWithAJob},
                            {"none", doWhatIsRight}};
} // namespace

/// planted_fault FAULT: does what is wrong and succeeds, if nobody stops it.
int main(int count, char **arguments)
{
    const std::string_view wanted = count == 2 ? arguments[1] : "";
    const auto *fault = std::ranges::find(faults, wanted, &Fault::name);
    if (fault == std::end(faults))
        return EXIT_FAILURE;
    std::printf("%d\n", fault->commit(count - 1));
    return EXIT_SUCCESS;
}
