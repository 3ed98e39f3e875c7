#pragma once

#include <QRegion>
#include <QSize>

/// What of a window is there for the eye and for the pointer. Points, from its upper left corner.
struct WindowOutline {
    struct Wish {
        int radius = 0; ///< of the corners
        int shadow = 0; ///< on each side of the card
        int grip = 0;   ///< how far around the card the pointer still belongs to it
    };

    QRegion mask;   ///< nothing is drawn elsewhere; empty for the whole window
    QRegion input;  ///< the pointer belongs to others elsewhere; empty for the whole window
    int shadow = 0; ///< on each side

    [[nodiscard]] bool operator==(const WindowOutline &) const = default;

    /// Without compositing there is no shadow, and what would be see-through is cut off.
    [[nodiscard]] static WindowOutline of(QSize window, const Wish &wish, bool isCompositing);
};
