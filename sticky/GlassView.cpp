#include "sticky/GlassView.h"

#include <QLinearGradient>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace
{
constexpr qreal lightEnd = 0.4;   // of the height
constexpr qreal shadeBegin = 0.75; // of the height
constexpr qreal edgeWidth = 1;     // points
} // namespace

void GlassView::paint(QPainter *painter) const
{
    VisualEffectView::paint(painter);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setCompositionMode(QPainter::CompositionMode_SourceAtop);
    const QPainterPath covered = shape();

    QLinearGradient fromAbove(0, 0, 0, height());
    fromAbove.setColorAt(0, m_light);
    fromAbove.setColorAt(lightEnd, m_body);
    painter->fillPath(covered, fromAbove);

    QColor none = m_shade;
    none.setAlpha(0);
    QLinearGradient below(0, height() * shadeBegin, 0, height());
    below.setColorAt(0, none);
    below.setColorAt(1, m_shade);
    painter->fillPath(covered, below);

    painter->setPen(QPen(m_edge, 2 * edgeWidth)); // its outer half falls outside
    painter->setClipPath(covered);
    painter->drawPath(covered);
    painter->restore();
}

QString GlassView::look() const
{
    QString look = VisualEffectView::look();
    for (const QColor &color : {m_light, m_body, m_shade, m_edge})
        look += u' ' + color.name(QColor::HexArgb);
    return look;
}
