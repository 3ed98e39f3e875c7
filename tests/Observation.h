#pragma once

/// Whether the observation succeeds, at the first try or at one of those that follow. For what has
/// to be seen within a moment, which a machine that stands still at that moment lets pass: a
/// program that is broken fails at every try.
template <typename Observe>
[[nodiscard]] bool isSeenOnce(Observe observe, int tries = 10)
{
    for (int i = 0; i < tries; ++i) {
        if (observe())
            return true;
    }
    return false;
}
