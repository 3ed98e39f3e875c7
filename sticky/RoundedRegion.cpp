#include "sticky/RoundedRegion.h"

#include <algorithm>

namespace
{
/// How many squares of a line the corner leaves out, for the line that far from the edge.
int inset(int line, int radius)
{
    // In half units, so that a centre is a whole number.
    const int y = 2 * (radius - line) - 1;
    int inset = 0;
    for (int x = 2 * radius - 1; x > 0 && x * x + y * y > 4 * radius * radius; x -= 2)
        ++inset;
    return inset;
}
} // namespace

QRegion roundedRegion(const QRect &rect, int radius)
{
    radius = std::min({radius, rect.width() / 2, rect.height() / 2});
    if (radius <= 0)
        return rect;
    QRegion region = rect.adjusted(0, radius, 0, -radius);
    for (int line = 0; line < radius; ++line) {
        const int left = inset(line, radius);
        const QRect upper(rect.x() + left, rect.y() + line, rect.width() - 2 * left, 1);
        region += upper;
        region += upper.translated(0, rect.height() - 1 - 2 * line);
    }
    return region;
}
