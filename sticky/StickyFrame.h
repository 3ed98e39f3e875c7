#pragma once

#include <QRect>

#include <span>

/// Where a sticky window is, in points: y grows upwards from the bottom of the primary screen, x to
/// the right from its left edge. It is a type of its own so that nobody takes it for the QRect that
/// windows have, whose y grows downwards.
struct StickyFrame {
    static constexpr double initialWidth = 300;
    static constexpr double expandedHeight = 340;
    static constexpr double collapsedHeight = 56;
    static constexpr double minimumWidth = 260;
    static constexpr double minimumHeight = 52;
    static constexpr double graspablePart = 24; ///< less of it on a screen counts as out of view
    static constexpr double largest = 32767;    ///< no window system has windows beyond that

    double x = 0; ///< of the left edge
    double y = 0; ///< of the bottom edge
    double width = 0;
    double height = 0;

    [[nodiscard]] double right() const { return x + width; }
    [[nodiscard]] double top() const { return y + height; }
    [[nodiscard]] StickyFrame resizedKeepingTop(double newWidth, double newHeight) const;
    /// At least the minimum size; of the size of a new window when it has none or an impossible
    /// one.
    [[nodiscard]] StickyFrame withPossibleSize() const;
    [[nodiscard]] bool isInView(std::span<const StickyFrame> visibleAreas) const;
    /// Unchanged where enough of it lies in one of the areas, else moved into the nearest.
    [[nodiscard]] StickyFrame broughtIntoView(std::span<const StickyFrame> visibleAreas) const;

    [[nodiscard]] static StickyFrame centeredIn(const StickyFrame &area, double width,
                                                double height);
    /// Between this and a window's own coordinates, given those of the whole primary screen.
    [[nodiscard]] static StickyFrame fromScreen(const QRect &frame, const QRect &primaryScreen);
    [[nodiscard]] QRect toScreen(const QRect &primaryScreen) const; ///< in whole points

    [[nodiscard]] bool operator==(const StickyFrame &) const = default;
};
