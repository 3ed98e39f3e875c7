#include "tests/e2e/StickyOnScreen.h"

using namespace Qt::StringLiterals;

namespace
{
constexpr int strip = 40; ///< above the page
constexpr int controlSide = 24;
constexpr int controlGap = 2;
constexpr int controlMargin = 8;
constexpr int leastHeightWithPage = 80;
constexpr int leastInk = 20;
} // namespace

QString StickyOnScreen::frame() const
{
    const QRect place = geometry();
    const int bottom = m_server->geometry(m_server->root()).height() - place.y() - place.height();
    return frameText(place.x(), bottom, place.width(), place.height());
}

QPoint StickyOnScreen::place(Control control) const
{
    const QSize size = geometry().size();
    const int height = size.height() < leastHeightWithPage ? size.height() : strip;
    return {size.width() - controlMargin - controlSide / 2 - control * (controlSide + controlGap),
            height / 2};
}

bool StickyOnScreen::showsText() const
{
    return inkIn(pixels(QRect(page().x() - 85, strip, 200, 70))) > leastInk;
}

QString frameText(double x, double y, double width, double height)
{
    return u"%1,%2 %3x%4"_s.arg(x).arg(y).arg(width).arg(height);
}
