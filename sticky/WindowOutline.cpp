#include "sticky/WindowOutline.h"

#include "sticky/RoundedRegion.h"

#include <algorithm>

WindowOutline WindowOutline::of(QSize window, const Wish &wish, bool isCompositing)
{
    const QRect whole(QPoint(0, 0), window);
    WindowOutline outline;
    if (isCompositing && wish.shadow > 0) {
        const int margin = std::max(0, wish.shadow - wish.grip);
        // Square: a hand takes hold of a corner where it would be if it were not round.
        outline.input = whole.adjusted(margin, margin, -margin, -margin);
        outline.shadow = wish.shadow;
    } else if (!isCompositing && wish.radius > 0) {
        outline.mask = roundedRegion(whole, wish.radius);
    }
    return outline;
}
