#include "sticky/WindowConfigView.h"

#include "sticky/WindowHolder.h"

#include <QQuickWindow>

void WindowConfigView::itemChange(ItemChange change, const ItemChangeData &data)
{
    QQuickItem::itemChange(change, data);
    if (change != ItemSceneChange || !data.window)
        return;
    WindowHolder::shared().window = data.window;
    data.window->setProperty("_q_xcb_wm_window_role", QByteArray("main")); // for rules of the desktop
    data.window->setColor(Qt::transparent);
    data.window->setFlag(Qt::FramelessWindowHint);
}
