#pragma once

#include "sticky/VisualEffectView.h"

/// Tinted glass: over the tint, a light from above, a little shade below, and a thin edge.
class GlassView : public VisualEffectView
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor light READ light WRITE setLight NOTIFY changed)
    Q_PROPERTY(QColor body READ body WRITE setBody NOTIFY changed)
    Q_PROPERTY(QColor shade READ shade WRITE setShade NOTIFY changed)
    Q_PROPERTY(QColor edge READ edge WRITE setEdge NOTIFY changed)

public:
    using VisualEffectView::VisualEffectView;

    [[nodiscard]] const QColor &light() const { return m_light; } ///< at the upper edge
    void setLight(const QColor &light) { set(m_light, light); }
    [[nodiscard]] const QColor &body() const { return m_body; } ///< from the middle on
    void setBody(const QColor &body) { set(m_body, body); }
    [[nodiscard]] const QColor &shade() const { return m_shade; } ///< at the lower edge
    void setShade(const QColor &shade) { set(m_shade, shade); }
    [[nodiscard]] const QColor &edge() const { return m_edge; }
    void setEdge(const QColor &edge) { set(m_edge, edge); }

    void paint(QPainter *painter) const override;

protected:
    [[nodiscard]] QString look() const override;

private:
    QColor m_light = Qt::transparent;
    QColor m_body = Qt::transparent;
    QColor m_shade = Qt::transparent;
    QColor m_edge = Qt::transparent;
};
