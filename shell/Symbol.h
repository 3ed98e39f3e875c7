#pragma once

#include "shell/SharedPicture.h"

#include <QColor>
#include <QIcon>
#include <QImage>
#include <QString>
#include <qqmlregistration.h>

/// An icon by the name of its symbol ("trash", "pin.fill"), in one colour, drawn sharp at every
/// scale. A name that is unknown draws nothing.
class Symbol : public SharedPicture
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
    Q_PROPERTY(qreal size READ size WRITE setSize NOTIFY sizeChanged)
    Q_PROPERTY(bool isBold READ isBold WRITE setIsBold NOTIFY isBoldChanged)

public:
    explicit Symbol(QQuickItem *parent = nullptr);

    [[nodiscard]] const QString &name() const { return m_name; }
    void setName(const QString &name);
    [[nodiscard]] const QColor &color() const { return m_color; }
    void setColor(const QColor &color);
    [[nodiscard]] qreal size() const { return implicitWidth(); } ///< points, of a square
    void setSize(qreal size);
    [[nodiscard]] bool isBold() const { return m_isBold; }
    void setIsBold(bool isBold);

    [[nodiscard]] static bool isKnown(const QString &name);
    /// For whoever shows a symbol outside of a window: a square of that many pixels.
    [[nodiscard]] static QImage image(const QString &name, const QColor &color, int pixels);

    /// The symbol for a menu, in one colour; empty when the name is unknown.
    [[nodiscard]] static QIcon icon(const QString &name, const QColor &color);

    void paint(QPainter *painter) const override;

Q_SIGNALS:
    void nameChanged();
    void colorChanged();
    void sizeChanged();
    void isBoldChanged();

protected:
    [[nodiscard]] QString look() const override;

private:
    QString m_name;
    QColor m_color = Qt::white;
    bool m_isBold = false;
};
