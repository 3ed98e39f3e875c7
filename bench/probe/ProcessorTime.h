#pragma once

#include <cstdint>

/// What the processors have done for a process, in seconds since its start.
struct ProcessorTime {
    double mainThread = 0;
    double others = 0;  ///< all other threads
    double waiting = 0; ///< that the main thread could have gone on, but had no processor

    /// Nothing but zeros when there is no such process.
    [[nodiscard]] static ProcessorTime of(std::uint32_t processId);
};

/// How long a pause would have been on a machine with nothing else to do: what the main thread has
/// worked, and waited for the work of the others.
[[nodiscard]] double ownPause(double pause, const ProcessorTime &before,
                              const ProcessorTime &after);
