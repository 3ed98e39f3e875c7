#pragma once

#include "bench/probe/CaretSearch.h"

#include <optional>

/// Says "watching", and then of the first new window on the screen when it was there and when a
/// caret was drawn in it, in seconds of the monotonic clock, and where the caret stands. Whether
/// all came. Only an area of the window is looked at when one is given, which is far less work.
[[nodiscard]] bool watchForCaret(const std::optional<Area> &area);
