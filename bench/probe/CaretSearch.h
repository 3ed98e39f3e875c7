#pragma once

#include <cstdint>
#include <optional>
#include <vector>

/// What a window looked like.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels; ///< row by row, 0x00RRGGBB

    [[nodiscard]] bool operator==(const Picture &) const = default;
};

/// A new look of the window and when it was seen first.
struct Frame {
    double seconds = 0;
    Picture picture;
};

/// When the caret was drawn for the first time: a thin upright box that blinks from `settled` on,
/// when nothing else moves any more. nullopt when nothing of the kind blinks.
[[nodiscard]] std::optional<double> caretAppearance(const std::vector<Frame> &frames,
                                                    double settled);
