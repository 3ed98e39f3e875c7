#pragma once

#include <QRegion>

/// What the region covers on the screen. Edges that meet still meet at every scale.
[[nodiscard]] QRegion nativePixels(const QRegion &points, qreal scale);
