#include "sticky/StickyFrame.h"

#include <algorithm>
#include <cmath>

namespace
{
double distance(double value, double low, double high)
{
    return std::max({low - value, value - high, 0.0});
}

/// From the frame's middle to the area.
double distance(const StickyFrame &frame, const StickyFrame &area)
{
    return std::hypot(distance(frame.x + frame.width / 2, area.x, area.right()),
                      distance(frame.y + frame.height / 2, area.y, area.top()));
}

bool isPossible(double length)
{
    return length > 0 && length <= StickyFrame::largest; // false of what is no number, too
}

// Positions may be as far away as numbers go; a conversion of those has no defined result.
int wholePoints(double value)
{
    constexpr double limit = 2 * StickyFrame::largest;
    return std::isfinite(value) ? int(std::lround(std::clamp(value, -limit, limit))) : 0;
}
} // namespace

StickyFrame StickyFrame::resizedKeepingTop(double newWidth, double newHeight) const
{
    // Not top() - newHeight: what keeps its height stays where it is, to the last digit.
    return {x, y + (height - newHeight), newWidth, newHeight};
}

StickyFrame StickyFrame::withPossibleSize() const
{
    if (!isPossible(width) || !isPossible(height))
        return {x, y, initialWidth, expandedHeight};
    return resizedKeepingTop(std::max(width, minimumWidth), std::max(height, minimumHeight));
}

bool StickyFrame::isInView(std::span<const StickyFrame> visibleAreas) const
{
    return std::ranges::any_of(visibleAreas, [this](const StickyFrame &area) {
        return std::min(right(), area.right()) - std::max(x, area.x) >= graspablePart &&
               std::min(top(), area.top()) - std::max(y, area.y) >= graspablePart;
    });
}

StickyFrame StickyFrame::broughtIntoView(std::span<const StickyFrame> visibleAreas) const
{
    const StickyFrame sized = withPossibleSize();
    if (visibleAreas.empty() || sized.isInView(visibleAreas))
        return sized;
    if (!std::isfinite(x) || !std::isfinite(y))
        return centeredIn(visibleAreas.front(), sized.width, sized.height);
    const StickyFrame &area = *std::ranges::min_element(
        visibleAreas, {}, [&sized](const StickyFrame &each) { return distance(sized, each); });
    StickyFrame moved = sized;
    moved.width = std::min(sized.width, std::max(area.width, minimumWidth));
    moved.height = std::min(sized.height, std::max(area.height, minimumHeight));
    moved.x = std::clamp(sized.x, area.x, std::max(area.x, area.right() - moved.width));
    moved.y = std::clamp(sized.y, area.y, std::max(area.y, area.top() - moved.height));
    return moved;
}

StickyFrame StickyFrame::centeredIn(const StickyFrame &area, double width, double height)
{
    return {area.x + (area.width - width) / 2, area.y + (area.height - height) / 2, width, height};
}

StickyFrame StickyFrame::fromScreen(const QRect &frame, const QRect &primaryScreen)
{
    return {double(frame.x()) - primaryScreen.x(),
            double(primaryScreen.y()) + primaryScreen.height() - frame.y() - frame.height(),
            double(frame.width()), double(frame.height())};
}

QRect StickyFrame::toScreen(const QRect &primaryScreen) const
{
    const int pointsWide = wholePoints(width);
    const int pointsHigh = wholePoints(height);
    return {primaryScreen.x() + wholePoints(x),
            primaryScreen.y() + primaryScreen.height() - wholePoints(top()), pointsWide,
            pointsHigh};
}
