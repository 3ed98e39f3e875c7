// Goes between a program and the system (LD_PRELOAD) and sets its clock wrong, but not that which
// only counts. CLOCK_SHIM_FILE names a file that holds by how many seconds, as a 64-bit number; it
// may change while the program runs.

#include <cstdint>
#include <cstdlib>
#include <ctime>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

namespace
{
// Mapped at the start: a process in a sandbox may open no file.
const volatile std::int64_t *const offset = [] {
    // No other thread runs yet.
    const char *name = getenv("CLOCK_SHIM_FILE"); // NOLINT(concurrency-mt-unsafe)
    const int descriptor =
        name ? int(syscall(SYS_openat, AT_FDCWD, name, O_RDONLY | O_CLOEXEC)) : -1;
    void *memory = descriptor < 0
                       ? MAP_FAILED
                       : mmap(nullptr, sizeof(std::int64_t), PROT_READ, MAP_SHARED, descriptor, 0);
    if (descriptor >= 0)
        syscall(SYS_close, descriptor);
    return memory == MAP_FAILED ? nullptr : static_cast<const volatile std::int64_t *>(memory);
}();

// Others may ask for the time before this is ready.
std::int64_t wrongBy()
{
    return offset ? *offset : 0;
}
} // namespace

#define CLOCK_EXPORT extern "C" __attribute__((visibility("default")))

CLOCK_EXPORT int clock_gettime(clockid_t clock, timespec *time) noexcept
{
    const int result = int(syscall(SYS_clock_gettime, clock, time));
    if (result == 0 && (clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE))
        time->tv_sec += wrongBy();
    return result;
}

CLOCK_EXPORT int gettimeofday(timeval *time, void *zone) noexcept
{
    const int result = int(syscall(SYS_gettimeofday, time, zone));
    if (result == 0)
        time->tv_sec += wrongBy();
    return result;
}

CLOCK_EXPORT time_t time(time_t *result) noexcept
{
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    if (result)
        *result = now.tv_sec;
    return now.tv_sec;
}
