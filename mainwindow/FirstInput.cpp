#include "mainwindow/FirstInput.h"

#include <QEvent>

void FirstInput::setWindow(QWindow *window)
{
    if (window == m_window)
        return;
    if (m_window)
        m_window->removeEventFilter(this);
    m_window = window;
    if (m_window)
        m_window->installEventFilter(this);
    Q_EMIT windowChanged();
}

bool FirstInput::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseMove:
    case QEvent::MouseButtonPress:
    case QEvent::Wheel:
    case QEvent::TouchBegin:
    case QEvent::TabletMove:
    case QEvent::KeyPress:
        watched->removeEventFilter(this);
        Q_EMIT happened();
        break;
    default:
        break;
    }
    return false;
}
