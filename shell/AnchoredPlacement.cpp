#include "shell/AnchoredPlacement.h"

#include <QCursor>
#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QScreen>

#include <algorithm>

namespace
{
constexpr int distance = 6;       // points
constexpr int pointerHeight = 24; // points
} // namespace

QPoint AnchoredPlacement::below(QQuickItem *item, QSizeF size) const
{
    if (!item || !item->window() || !item->window()->screen())
        return {};
    const QPoint corner = item->mapToGlobal(QPointF(0, 0)).toPoint();
    return below(QRect(corner, item->size().toSize()), size.toSize(),
                 item->window()->screen()->availableGeometry());
}

void AnchoredPlacement::putBelow(QWindow *window, QQuickItem *item, QSizeF size) const
{
    if (window)
        window->setGeometry(QRect(below(item, size), size.toSize()));
}

QPoint AnchoredPlacement::belowPointer(QSizeF size) const
{
    const QPoint pointer = QCursor::pos();
    const QScreen *screen = QGuiApplication::screenAt(pointer);
    if (!screen)
        return pointer;
    return below(QRect(pointer - QPoint(0, pointerHeight / 2), QSize(1, pointerHeight)),
                 size.toSize(), screen->availableGeometry());
}

QPoint AnchoredPlacement::below(const QRect &anchor, QSize size, const QRect &screen)
{
    const int rightmost = screen.right() + 1 - size.width();
    const int x =
        std::max(screen.left(), std::min(anchor.center().x() - size.width() / 2, rightmost));
    int y = anchor.bottom() + 1 + distance;
    if (y + size.height() > screen.bottom() + 1)
        y = anchor.top() - distance - size.height();
    return {x, std::max(y, screen.top())};
}
