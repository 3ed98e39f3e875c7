#include "tests/e2e/WindowOnScreen.h"

#include "tests/e2e/XTools.h"

#include <QTest>

#include <algorithm>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace
{
using XTools::patience;

QStringList moveTo(QPoint place)
{
    return {u"mousemove"_s, QString::number(place.x()), QString::number(place.y())};
}

const QStringList shortRest{u"sleep"_s, u"0.03"_s};
const QStringList release{u"mouseup"_s, u"1"_s};

QStringList pressAt(QPoint place)
{
    return moveTo(place) + shortRest + QStringList{u"mousedown"_s, u"1"_s, u"sleep"_s, u"0.05"_s};
}

// As a hand does it: in small steps, each of them seen by the program and by the window manager.
QStringList glide(QPoint from, QPoint to)
{
    constexpr int steps = 12;
    QStringList arguments;
    for (int step = 1; step <= steps; ++step)
        arguments += moveTo(from + (to - from) * step / steps) + shortRest;
    return arguments;
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
                    QStringList{u"click"_s, u"--repeat"_s, u"2"_s, u"--delay"_s, u"20"_s, u"1"_s});
}

void WindowOnScreen::point(QPoint place) const
{
    XTools::xdotool(moveTo(geometry().topLeft() + place));
}

void WindowOnScreen::drag(QPoint from, QPoint to) const
{
    const QPoint origin = geometry().topLeft();
    XTools::xdotool(pressAt(origin + from) + glide(origin + from, origin + to) + release);
}

void WindowOnScreen::pull(QPoint from, QPoint to) const
{
    const QRect before = geometry();
    const QPoint start = before.topLeft() + from;
    const QPoint end = before.topLeft() + to;
    const QPoint way = end - start;
    const int length = std::max({1, std::abs(way.x()), std::abs(way.y())});
    XTools::xdotool(pressAt(start));
    // To and fro, just beyond where a drag begins: a pointer that rests pulls at nothing.
    int distance = 0;
    const auto follows = [&] {
        distance = distance == 12 ? 14 : 12;
        XTools::xdotool(moveTo(start + way * distance / length) + shortRest);
        return geometry() != before;
    };
    if (!QTest::qWaitFor(follows, patience))
        qWarning("the window does not follow the pointer");
    XTools::xdotool(glide(start + way * distance / length, end) + release);
    // An answer of the window manager tells that it has seen the pointer's way to its end.
    const xcb_window_t asker = m_server->makeWindow();
    m_server->askForFrame(asker);
    if (!QTest::qWaitFor([&] { return m_server->hasProperty(asker, "_NET_FRAME_EXTENTS"); },
                         patience))
        qWarning("the window manager does not answer");
    m_server->destroyWindow(asker);
}

void WindowOnScreen::activate() const
{
    XTools::run(u"wmctrl"_s, {u"-i"_s, u"-a"_s, u"0x%1"_s.arg(m_window, 0, 16)});
}

// Asked for once, right after the window came up, it may come to nothing.
bool WindowOnScreen::waitUntilActive() const
{
    constexpr int betweenTries = 2000; // ms
    for (int waited = 0; waited < patience; waited += betweenTries) {
        activate();
        if (QTest::qWaitFor([this] { return isActive(); }, betweenTries))
            return true;
    }
    return false;
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
