#include "sticky/WindowConfigView.h"

#include "sticky/WindowHolder.h"

#include <QQuickWindow>

void WindowConfigView::itemChange(ItemChange change, const ItemChangeData &data)
{
    QQuickItem::itemChange(change, data);
    if (change != ItemSceneChange || !data.window)
        return;
    WindowHolder::shared().window = data.window;
    data.window->setColor(Qt::transparent);
    data.window->setFlag(Qt::FramelessWindowHint);
}
