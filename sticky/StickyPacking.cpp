#include "sticky/StickyPacking.h"

#include <algorithm>

bool StickyPacking::isCollapsed(double height, std::optional<bool> forced)
{
    return forced.value_or(height < collapsedBelow);
}

QList<StickyFrame> StickyPacking::pack(const StickyFrame &visibleArea, const QList<QSizeF> &sizes,
                                       std::optional<bool> forced)
{
    double columnWidth = narrowestColumn;
    for (const QSizeF &size : sizes)
        columnWidth = std::max(columnWidth, size.width());
    const double firstTop = visibleArea.top() - screenMargin;
    double columnLeft = visibleArea.x + screenMargin;
    double top = firstTop;
    QList<StickyFrame> frames;
    for (const QSizeF &size : sizes) {
        const double height =
            isCollapsed(size.height(), forced) ? StickyFrame::collapsedHeight : size.height();
        if (top - height < visibleArea.y + screenMargin) {
            columnLeft += columnWidth + columnGap;
            top = firstTop;
        }
        frames << StickyFrame{columnLeft + (columnWidth - size.width()) / 2, top - height,
                              size.width(), height};
        top -= height + rowGap;
    }
    return frames;
}
