#pragma once

#include <QColor>
#include <QIconEngine>
#include <QString>

/// A symbol in one colour, sharp at whatever size it is wanted, for whoever shows it outside of the
/// program's windows.
class SymbolIconEngine : public QIconEngine
{
public:
    SymbolIconEngine(const QString &name, const QColor &color) : m_name(name), m_color(color) {}

    /// The name by which the desktop may know the icon, and prefer its own way of drawing it.
    void setThemeName(const QString &themeName) { m_themeName = themeName; }

    QString iconName() override { return m_themeName; }
    QString key() const override { return QStringLiteral("SymbolIconEngine"); }
    QIconEngine *clone() const override { return new SymbolIconEngine(*this); }
    QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) override;
    QSize actualSize(const QSize &size, QIcon::Mode mode, QIcon::State state) override;
    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override;

private:
    QString m_name;
    QColor m_color;
    QString m_themeName;
};
