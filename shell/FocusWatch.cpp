#include "shell/FocusWatch.h"

#include <QEvent>
#include <QGuiApplication>

FocusWatch::FocusWatch(QObject *parent) : QObject(parent)
{
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &FocusWatch::follow);
    qGuiApp->installEventFilter(this);
}

bool FocusWatch::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonPress && m_window && m_window->isVisible() &&
        watched->isWindowType() && watched != m_window)
        Q_EMIT lost();
    return QObject::eventFilter(watched, event);
}

void FocusWatch::follow(QWindow *focusWindow)
{
    if (m_window && focusWindow == m_window) {
        m_hadFocus = true;
    } else if (m_hadFocus) {
        m_hadFocus = false;
        if (m_window && m_window->isVisible())
            Q_EMIT lost();
    }
}
