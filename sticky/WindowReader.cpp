#include "sticky/WindowReader.h"

void WindowReader::componentComplete()
{
    QQuickItem::componentComplete();
    readSoon();
}

void WindowReader::itemChange(ItemChange change, const ItemChangeData &data)
{
    QQuickItem::itemChange(change, data);
    if (change == ItemSceneChange && isComponentComplete())
        readSoon();
}

void WindowReader::readSoon()
{
    QMetaObject::invokeMethod(
        this, [this] { Q_EMIT windowRead(window()); }, Qt::QueuedConnection);
}
