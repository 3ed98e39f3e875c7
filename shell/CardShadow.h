#pragma once

#include "shell/SharedPicture.h"

#include <QColor>
#include <qqmlregistration.h>

/// The soft shadow around a card with round corners that lies in the item's middle, `reach` points
/// from each of its edges. Below the card itself there is none: it may be see-through.
class CardShadow : public SharedPicture
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int reach READ reach WRITE setReach NOTIFY changed)
    Q_PROPERTY(int radius READ radius WRITE setRadius NOTIFY changed)
    Q_PROPERTY(int drop READ drop WRITE setDrop NOTIFY changed)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY changed)

public:
    using SharedPicture::SharedPicture;

    [[nodiscard]] int reach() const { return m_reach; } ///< points
    void setReach(int reach) { set(m_reach, reach); }
    [[nodiscard]] int radius() const { return m_radius; } ///< points, of the card's corners
    void setRadius(int radius) { set(m_radius, radius); }
    [[nodiscard]] int drop() const { return m_drop; } ///< points, how far it has slipped down
    void setDrop(int drop) { set(m_drop, drop); }
    [[nodiscard]] const QColor &color() const { return m_color; } ///< where it is darkest
    void setColor(const QColor &color) { set(m_color, color); }

    void paint(QPainter *painter) const override;

Q_SIGNALS:
    void changed();

protected:
    [[nodiscard]] QString look() const override;

private:
    template <typename T>
    void set(T &member, const T &value)
    {
        if (member == value)
            return;
        member = value;
        redraw();
        Q_EMIT changed();
    }

    int m_reach = 0;
    int m_radius = 0;
    int m_drop = 0;
    QColor m_color = Qt::black;
};
