#pragma once

#include <QRect>
#include <QRegion>

/// The rectangle with round corners: every unit square whose centre lies within them. A radius
/// that is too large for the rectangle is as large as it can be.
[[nodiscard]] QRegion roundedRegion(const QRect &rect, int radius);
