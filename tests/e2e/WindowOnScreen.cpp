#include "tests/e2e/WindowOnScreen.h"

#include "tests/e2e/XTools.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
QStringList moveTo(QPoint place)
{
    return {u"mousemove"_s, QString::number(place.x()), QString::number(place.y())};
}
} // namespace

QRect WindowOnScreen::geometry() const
{
    const QRect all = m_server->geometryOnScreen(m_window);
    const QList<quint32> shadow = m_server->property(m_window, "_GTK_FRAME_EXTENTS");
    if (shadow.size() != 4)
        return all;
    return all - QMargins(int(shadow[0]), int(shadow[2]), int(shadow[1]), int(shadow[3]));
}

bool WindowOnScreen::isActive() const
{
    return m_server->property(m_server->root(), "_NET_ACTIVE_WINDOW").value(0) == m_window;
}

bool WindowOnScreen::hasState(const QByteArray &name) const
{
    return m_server->names(m_window, "_NET_WM_STATE").contains(name);
}

QImage WindowOnScreen::pixels(const QRect &part) const
{
    return m_server->pixels(part.translated(geometry().topLeft()));
}

void WindowOnScreen::click(QPoint place) const
{
    XTools::xdotool(moveTo(geometry().topLeft() + place) + QStringList{u"click"_s, u"1"_s});
}

void WindowOnScreen::doubleClick(QPoint place) const
{
    XTools::xdotool(moveTo(geometry().topLeft() + place) +
                    QStringList{u"click"_s, u"--repeat"_s, u"2"_s, u"--delay"_s, u"60"_s, u"1"_s});
}

void WindowOnScreen::point(QPoint place) const
{
    XTools::xdotool(moveTo(geometry().topLeft() + place));
}

// As a hand does it: in small steps, each of them seen by the program and by the window manager.
void WindowOnScreen::drag(QPoint from, QPoint to) const
{
    constexpr int steps = 12;
    const QPoint origin = geometry().topLeft();
    const QStringList pause{u"sleep"_s, u"0.03"_s};
    QStringList arguments = moveTo(origin + from) + pause;
    arguments << u"mousedown"_s << u"1"_s << u"sleep"_s << u"0.05"_s;
    for (int step = 1; step <= steps; ++step)
        arguments += moveTo(origin + from + (to - from) * step / steps) + pause;
    arguments << u"mouseup"_s << u"1"_s;
    XTools::xdotool(arguments);
}

void WindowOnScreen::activate() const
{
    XTools::run(u"wmctrl"_s, {u"-i"_s, u"-a"_s, u"0x%1"_s.arg(m_window, 0, 16)});
}

void WindowOnScreen::close() const
{
    XTools::run(u"wmctrl"_s, {u"-i"_s, u"-c"_s, u"0x%1"_s.arg(m_window, 0, 16)});
}

bool isFlat(const QImage &image)
{
    constexpr int flatness = 24; // of 255
    int darkest = 255;
    int lightest = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const int grey = qGray(image.pixel(x, y));
            darkest = std::min(darkest, grey);
            lightest = std::max(lightest, grey);
        }
    }
    return lightest - darkest < flatness;
}

int inkIn(const QImage &image)
{
    constexpr int darkest = 90; // of 255
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += qGray(image.pixel(x, y)) < darkest ? 1 : 0;
    }
    return count;
}
