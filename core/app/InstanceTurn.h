#pragma once

#include "core/DataLock.h"
#include "core/app/Invocation.h"

#include <chrono>

/// How long a start waits for the Plim that runs already.
struct InstancePatience {
    std::chrono::milliseconds reach{10'000};  ///< until there is one that listens
    std::chrono::milliseconds answer{20'000}; ///< of one that listens; it may still be starting
};

enum class InstanceTurn {
    First,         ///< nobody else has the notes: this is the Plim that goes on
    Answered,      ///< the one that runs does what was asked for
    NotUnderstood, ///< the one that runs does not know what that is
    Elsewhere      ///< somebody has the notes, and cannot be reached
};

/// Takes the lock, or has the one that holds it carry the invocation out. Of several starts in the
/// same moment one is the first. Without a lock the first is who finds nobody listening. Wants an
/// application, and may run before any window.
[[nodiscard]] InstanceTurn takeTurn(DataLock &lock, const Invocation &invocation,
                                    const InstancePatience &patience = {});
