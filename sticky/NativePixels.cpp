#include "sticky/NativePixels.h"

#include <QtMath>

QRegion nativePixels(const QRegion &points, qreal scale)
{
    const auto native = [scale](int edge) { return qRound(edge * scale); };
    QRegion pixels;
    for (const QRect &rect : points) {
        const QPoint corner(native(rect.x()), native(rect.y()));
        const QPoint opposite(native(rect.x() + rect.width()), native(rect.y() + rect.height()));
        pixels += QRect(corner, opposite - QPoint(1, 1));
    }
    return pixels;
}
