#include "shell/SymbolIconEngine.h"

#include "shell/Symbol.h"

#include <QPainter>
#include <QPixmap>

#include <algorithm>

// What trays ask for, as they are and on a screen of twice the resolution.
QList<QSize> SymbolIconEngine::availableSizes(QIcon::Mode, QIcon::State)
{
    QList<QSize> sizes;
    for (const int side : {16, 22, 24, 32, 44, 48, 64})
        sizes << QSize(side, side);
    return sizes;
}

QSize SymbolIconEngine::actualSize(const QSize &size, QIcon::Mode, QIcon::State)
{
    const int side = std::min(size.width(), size.height());
    return {side, side};
}

void SymbolIconEngine::paint(QPainter *painter, const QRect &rect, QIcon::Mode mode,
                             QIcon::State state)
{
    const qreal ratio = painter->device()->devicePixelRatio();
    QPixmap picture = pixmap(rect.size() * ratio, mode, state);
    picture.setDevicePixelRatio(ratio);
    const QSize room = rect.size() - actualSize(rect.size(), mode, state);
    painter->drawPixmap(rect.topLeft() + QPoint(room.width(), room.height()) / 2, picture);
}

QPixmap SymbolIconEngine::pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state)
{
    const int side = actualSize(size, mode, state).width();
    return QPixmap::fromImage(Symbol::image(m_name, m_color, side));
}
