#pragma once

#include "tests/sticky/XWitness.h"

#include <QPoint>
#include <QRect>

/// A window as the window system has it, and a mouse for it. Places are in pixels from the upper
/// left corner of what its user takes for the window: a shadow that it draws itself does not count.
class WindowOnScreen
{
public:
    WindowOnScreen(const XWitness &server, xcb_window_t window)
        : m_server(&server), m_window(window)
    {
    }

    [[nodiscard]] xcb_window_t id() const { return m_window; }
    /// On the screen.
    [[nodiscard]] QRect geometry() const;
    /// It has the keyboard.
    [[nodiscard]] bool isActive() const;
    [[nodiscard]] bool hasState(const QByteArray &name) const;
    /// What is seen on the screen in a part of the window's place.
    [[nodiscard]] QImage pixels(const QRect &part) const;

    void click(QPoint place) const;
    void doubleClick(QPoint place) const;
    /// Moves the pointer there, with no button down.
    void point(QPoint place) const;
    /// Presses the left button at one place and lets go at another.
    void drag(QPoint from, QPoint to) const;
    /// The same for a place by which the window itself is moved or resized: goes on as soon as the
    /// window follows. The window manager takes hold of it a moment after the program has asked it
    /// to, and what the pointer does before is lost.
    void pull(QPoint from, QPoint to) const;

    // What is asked of the window manager
    void activate() const;
    /// Asks until the window has the keyboard; false when it does not get it.
    [[nodiscard]] bool waitUntilActive() const;
    void close() const;

    [[nodiscard]] bool operator==(const WindowOnScreen &other) const
    {
        return m_window == other.m_window;
    }

private:
    const XWitness *m_server;
    xcb_window_t m_window;
};

/// Nothing is drawn there: what glass and gradients differ by does not count.
[[nodiscard]] bool isFlat(const QImage &image);
/// How many pixels are as dark as what is written on a note's colour; a line of text has hundreds.
[[nodiscard]] int inkIn(const QImage &image);
