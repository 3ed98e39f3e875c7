#pragma once

/// Says "watching", and then of the first new window on the screen when it was there and when a
/// caret was drawn in it, in seconds of the monotonic clock. Whether both came.
[[nodiscard]] bool watchForCaret();
