#include "shell/Symbol.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

using namespace Qt::StringLiterals;

namespace
{
constexpr int defaultSize = 13; // points

QString symbolFile(const QString &name)
{
    return u":/plim/symbols/"_s + name + u".svg"_s;
}

/// The family has one weight; a line along the edges makes the heavier one.
QByteArray symbolText(const QString &name, const QColor &color, bool isBold)
{
    QFile file(symbolFile(name));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QByteArray text = file.readAll();
    QByteArray paint = "fill=\"" + color.name().toLatin1() + '"';
    if (isBold)
        paint += " stroke=\"" + color.name().toLatin1() + "\" stroke-width=\"0.7\"";
    text.replace("fill=\"currentColor\"", paint);
    return text;
}
} // namespace

Symbol::Symbol(QQuickItem *parent) : SharedPicture(parent)
{
    setImplicitSize(defaultSize, defaultSize);
}

void Symbol::setName(const QString &name)
{
    if (m_name == name)
        return;
    m_name = name;
    redraw();
    Q_EMIT nameChanged();
}

void Symbol::setColor(const QColor &color)
{
    if (m_color == color)
        return;
    m_color = color;
    redraw();
    Q_EMIT colorChanged();
}

void Symbol::setSize(qreal size)
{
    if (implicitWidth() == size)
        return;
    setImplicitSize(size, size);
    Q_EMIT sizeChanged();
}

void Symbol::setIsBold(bool isBold)
{
    if (m_isBold == isBold)
        return;
    m_isBold = isBold;
    redraw();
    Q_EMIT isBoldChanged();
}

bool Symbol::isKnown(const QString &name)
{
    return QFile::exists(symbolFile(name));
}

void Symbol::paint(QPainter *painter) const
{
    QSvgRenderer renderer(symbolText(m_name, m_color, m_isBold));
    if (!renderer.isValid())
        return;
    painter->setOpacity(m_color.alphaF());
    renderer.render(painter, QRectF(0, 0, width(), height()));
}

QString Symbol::look() const
{
    return m_name + u' ' + m_color.name(QColor::HexArgb) + (m_isBold ? u" bold"_s : QString());
}
