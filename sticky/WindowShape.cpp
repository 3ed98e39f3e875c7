#include "sticky/WindowShape.h"

#include "sticky/Compositing.h"
#include "sticky/WindowTraits.h"

#include <QPlatformSurfaceEvent>

WindowShape::WindowShape(QObject *parent) : QObject(parent)
{
    connect(&Compositing::shared(), &Compositing::isRunningChanged, this, [this] {
        if (m_wish.shadow != 0)
            Q_EMIT shadowChanged();
        apply();
    });
}

void WindowShape::setWindow(QQuickWindow *window)
{
    if (m_window == window)
        return;
    if (m_window) {
        m_window->removeEventFilter(this);
        m_window->disconnect(this);
    }
    m_window = window;
    m_applied.reset();
    if (window) {
        window->installEventFilter(this);
        connect(window, &QWindow::screenChanged, this, &WindowShape::apply);
    }
    apply();
    Q_EMIT windowChanged();
}

void WindowShape::setRadius(int radius)
{
    set(&WindowOutline::Wish::radius, radius);
}

void WindowShape::setWantedShadow(int shadow)
{
    const int before = this->shadow();
    set(&WindowOutline::Wish::shadow, shadow);
    if (this->shadow() != before)
        Q_EMIT shadowChanged();
}

void WindowShape::setGrip(int grip)
{
    set(&WindowOutline::Wish::grip, grip);
}

int WindowShape::shadow() const
{
    return Compositing::shared().isRunning() ? m_wish.shadow : 0;
}

bool WindowShape::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::PlatformSurface: // a native window has come or is about to go
        m_applied.reset();
        if (static_cast<QPlatformSurfaceEvent *>(event)->surfaceEventType() ==
            QPlatformSurfaceEvent::SurfaceCreated)
            apply();
        break;
    case QEvent::Show:
        m_isToBeTaken = true;
        break;
    case QEvent::Expose:
        // Some window managers take up only what they see happen to a window that they have.
        if (m_isToBeTaken && m_window->isExposed()) {
            m_isToBeTaken = false;
            m_applied.reset();
        }
        apply(); // the scale may be another one
        break;
    case QEvent::Resize:
        apply();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void WindowShape::set(int WindowOutline::Wish::*part, int value)
{
    if (m_wish.*part == value)
        return;
    m_wish.*part = value;
    apply();
    Q_EMIT wishChanged();
}

// Without a native window there is nobody to tell: it is told as soon as it is made.
void WindowShape::apply()
{
    if (!m_window || !m_window->handle())
        return;
    const std::pair wanted(
        WindowOutline::of(m_window->size(), m_wish, Compositing::shared().isRunning()),
        m_window->devicePixelRatio());
    if (m_applied == wanted)
        return;
    m_applied = wanted;
    const WindowOutline &outline = wanted.first;
    if (!m_window->mask().isEmpty() ||
        !outline.mask.isEmpty()) // not every platform has such a thing
        m_window->setMask(outline.mask);
    setInputRegion(*m_window, outline.input);
    setFrameExtents(*m_window, {outline.shadow, outline.shadow, outline.shadow, outline.shadow});
}
