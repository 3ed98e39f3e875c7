#include "shell/CardShadow.h"

#include <QHash>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace
{
constexpr double falloff = 2.2; ///< exponent; at 1 it would fade evenly

struct Look {
    int reach;
    int radius;
    int drop;
    QRgb color;
    double scale; ///< pixels per point

    [[nodiscard]] bool operator==(const Look &) const = default;
};

size_t qHash(const Look &look, size_t seed = 0)
{
    return qHashMulti(seed, look.reach, look.radius, look.drop, look.color, look.scale);
}

/// Points to the outline of a rectangle with round corners, negative inside of it.
double distance(QPointF at, const QRectF &card, double radius)
{
    const QPointF middle = card.center();
    const double x = std::abs(at.x() - middle.x()) - card.width() / 2 + radius;
    const double y = std::abs(at.y() - middle.y()) - card.height() / 2 + radius;
    return std::min(std::max(x, y), 0.0) + std::hypot(std::max(x, 0.0), std::max(y, 0.0)) - radius;
}

/// What differs from card to card is how long the edges are: one picture holds all the corners.
int cornerSide(const Look &look)
{
    return look.reach + look.radius + look.drop;
}

QImage drawCorners(const Look &look)
{
    const double side = 2 * cornerSide(look) + 1; // points
    const int pixels = int(std::ceil(side * look.scale));
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    const QRectF card =
        QRectF(0, 0, side, side).adjusted(look.reach, look.reach, -look.reach, -look.reach);
    const QRectF dropped = card.translated(0, look.drop);
    const double strength = qAlpha(look.color) / 255.0;
    for (int row = 0; row < pixels; ++row) {
        for (int column = 0; column < pixels; ++column) {
            const QPointF at((column + 0.5) / look.scale, (row + 0.5) / look.scale);
            // It fades from within, so that what has slipped down shows no band of one grey, and
            // ends where the item does.
            const double outside =
                std::clamp((distance(at, dropped, look.radius) + look.drop) / look.reach, 0.0, 1.0);
            const double uncovered =
                std::clamp(distance(at, card, look.radius) * look.scale + 0.5, 0.0, 1.0);
            const double alpha = strength * std::pow(1 - outside, falloff) * uncovered;
            image.setPixel(column, row,
                           qPremultiply(qRgba(qRed(look.color), qGreen(look.color),
                                              qBlue(look.color), int(std::lround(alpha * 255)))));
        }
    }
    return image;
}

const QImage &corners(const Look &look)
{
    static QHash<Look, QImage> drawn;
    auto found = drawn.find(look);
    if (found == drawn.end())
        found = drawn.insert(look, drawCorners(look));
    return *found;
}
} // namespace

void CardShadow::paint(QPainter *painter) const
{
    if (m_reach <= 0)
        return;
    const Look look{m_reach, m_radius, m_drop, m_color.rgba(),
                    painter->device()->devicePixelRatio()};
    const QImage &image = corners(look);
    const double corner = cornerSide(look);
    const double drawn = corner * look.scale; // pixels
    const std::array<double, 4> across{0, corner, width() - corner, width()};
    const std::array<double, 4> down{0, corner, height() - corner, height()};
    const std::array<double, 4> from{0, drawn, image.width() - drawn, double(image.width())};
    painter->setCompositionMode(QPainter::CompositionMode_Source);
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            if (row == 1 && column == 1)
                continue;
            painter->drawImage(
                QRectF(QPointF(across[column], down[row]),
                       QPointF(across[column + 1], down[row + 1])),
                image,
                QRectF(QPointF(from[column], from[row]), QPointF(from[column + 1], from[row + 1])));
        }
    }
}

QString CardShadow::look() const
{
    return u"%1 %2 %3 %4"_s.arg(m_reach).arg(m_radius).arg(m_drop).arg(
        m_color.name(QColor::HexArgb));
}
