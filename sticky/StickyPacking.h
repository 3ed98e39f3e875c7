#pragma once

#include "sticky/StickyFrame.h"

#include <QList>
#include <QSizeF>

#include <optional>

/// Arranges windows in columns, from the upper left corner of the screen down.
namespace StickyPacking
{
inline constexpr double screenMargin = 10;
inline constexpr double columnGap = 12;
inline constexpr double rowGap = 8;
inline constexpr double narrowestColumn = StickyFrame::initialWidth;
inline constexpr double collapsedBelow = 100; ///< a lower window counts as collapsed

[[nodiscard]] bool isCollapsed(double height, std::optional<bool> forced);
/// The frames of windows of these sizes, in their order; whether they count as collapsed is forced,
/// or told by their heights.
[[nodiscard]] QList<StickyFrame> pack(const StickyFrame &visibleArea, const QList<QSizeF> &sizes,
                                      std::optional<bool> forced = std::nullopt);
} // namespace StickyPacking
