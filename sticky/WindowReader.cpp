#include "sticky/WindowReader.h"

void WindowReader::componentComplete()
{
    QQuickItem::componentComplete();
    if (window())
        readSoon();
}

void WindowReader::itemChange(ItemChange change, const ItemChangeData &data)
{
    QQuickItem::itemChange(change, data);
    if (change == ItemSceneChange && data.window && isComponentComplete())
        readSoon();
}

void WindowReader::readSoon()
{
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (window())
                Q_EMIT windowRead(window());
        },
        Qt::QueuedConnection);
}
