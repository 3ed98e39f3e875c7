#include "shell/Symbol.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

using namespace Qt::StringLiterals;

namespace
{
constexpr int defaultSize = 13; // points
constexpr int menuIconSize = 16;

QString symbolFile(const QString &name)
{
    return u":/plim/symbols/"_s + name + u".svg"_s;
}

/// The drawing whose grid meets the pixels; all have one of 16 units, some another one as well.
QString symbolFile(const QString &name, int pixels)
{
    for (const int grid : {24, 22}) {
        QString file = symbolFile(name + u'-' + QString::number(grid));
        if (pixels % grid == 0 && QFile::exists(file))
            return file;
    }
    return symbolFile(name);
}

/// The family has one weight; a line along the edges makes the heavier one.
QByteArray symbolText(const QString &name, int pixels, const QColor &color, bool isBold)
{
    QFile file(symbolFile(name, pixels));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QByteArray text = file.readAll();
    QByteArray paint = "fill=\"" + color.name().toLatin1() + '"';
    if (isBold)
        paint += " stroke=\"" + color.name().toLatin1() + "\" stroke-width=\"0.7\"";
    text.replace("fill=\"currentColor\"", paint);
    return text;
}

void draw(QPainter &painter, const QString &name, QSizeF size, const QColor &color, bool isBold)
{
    const int pixels = qRound(size.width() * painter.deviceTransform().m11());
    QSvgRenderer renderer(symbolText(name, pixels, color, isBold));
    if (!renderer.isValid())
        return;
    painter.setOpacity(color.alphaF());
    renderer.render(&painter, QRectF(QPointF(), size));
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

QIcon Symbol::icon(const QString &name, const QColor &color)
{
    QIcon icon;
    if (!isKnown(name))
        return icon;
    for (const int ratio : {1, 2, 3}) {
        QPixmap picture = QPixmap::fromImage(image(name, color, menuIconSize * ratio));
        picture.setDevicePixelRatio(ratio);
        icon.addPixmap(picture);
    }
    return icon;
}

QImage Symbol::image(const QString &name, const QColor &color, int pixels)
{
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    draw(painter, name, QSizeF(pixels, pixels), color, false);
    return image;
}

void Symbol::paint(QPainter *painter) const
{
    draw(*painter, m_name, QSizeF(width(), height()), m_color, m_isBold);
}

QString Symbol::look() const
{
    return m_name + u' ' + m_color.name(QColor::HexArgb) + (m_isBold ? u" bold"_s : QString());
}
