#include "bench/probe/ProcessorTime.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>

ProcessorTime ProcessorTime::of(std::uint32_t processId)
{
    constexpr double nanosecond = 1e-9;
    ProcessorTime time;
    const std::string main = std::to_string(processId);
    std::error_code error;
    for (std::filesystem::directory_iterator task("/proc/" + main + "/task", error), end;
         !error && task != end; task.increment(error)) {
        double worked = 0;
        double waited = 0;
        std::ifstream(task->path() / "schedstat") >> worked >> waited; // a thread may end meanwhile
        if (task->path().filename() == main) {
            time.mainThread = worked * nanosecond;
            time.waiting = waited * nanosecond;
        } else {
            time.others += worked * nanosecond;
        }
    }
    return time;
}

double ownPause(double pause, const ProcessorTime &before, const ProcessorTime &after)
{
    const double worked = after.mainThread - before.mainThread;
    const double slept = std::max(0.0, pause - worked - (after.waiting - before.waiting));
    // Threads that have ended are no longer counted.
    return worked + std::min(slept, std::max(0.0, after.others - before.others));
}
