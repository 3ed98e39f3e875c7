#include "tests/e2e/StickyOnScreen.h"

using namespace Qt::StringLiterals;

namespace
{
constexpr int strip = 40; ///< above the page
constexpr int controlSide = 24;
constexpr int controlGap = 2;
constexpr int controlMargin = 8;
constexpr int leastHeightWithPage = 80;
constexpr int darkest = 90;  ///< of 255: darker than that is only what is written
constexpr int leastInk = 20; ///< pixels
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
    const QImage image = pixels(QRect(page().x() - 85, strip, 200, 70));
    int inked = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            inked += qGray(image.pixel(x, y)) < darkest ? 1 : 0;
    }
    return inked > leastInk;
}

QString frameText(double x, double y, double width, double height)
{
    return u"%1,%2 %3x%4"_s.arg(x).arg(y).arg(width).arg(height);
}
