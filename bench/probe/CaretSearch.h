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

/// A part of a window.
struct Area {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;

    [[nodiscard]] bool operator==(const Area &) const = default;
};

struct Caret {
    double seconds = 0; ///< when it was drawn for the first time
    Area area;
};

/// The caret, a thin upright box that blinks from `settled` on, when nothing else moves any more.
/// nullopt when nothing of the kind blinks.
[[nodiscard]] std::optional<Caret> caretAppearance(const std::vector<Frame> &frames,
                                                   double settled);
