#pragma once

#include <QObject>
#include <QPoint>
#include <QQuickItem>
#include <QRect>
#include <QSize>
#include <QWindow>
#include <qqmlregistration.h>

/// Where the small windows that belong to a control are put.
class AnchoredPlacement : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// Upper left corner, on the desktop, of a window of that size below the item and centred on
    /// it; above it where there is no room below, and never over the edge of the screen.
    [[nodiscard]] Q_INVOKABLE QPoint below(QQuickItem *item, QSizeF size) const;
    /// Puts the window there.
    Q_INVOKABLE void putBelow(QWindow *window, QQuickItem *item, QSizeF size) const;
    /// The same for the pointer.
    [[nodiscard]] Q_INVOKABLE QPoint belowPointer(QSizeF size) const;

    [[nodiscard]] static QPoint below(const QRect &anchor, QSize size, const QRect &screen);
};
