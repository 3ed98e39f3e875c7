#pragma once

#include <QObject>
#include <QPointer>
#include <QQuickItem>
#include <qqmlregistration.h>

/// Remembers what of a window had the keyboard, and gives it back. Popups of a window that is no
/// ApplicationWindow leave the keyboard nowhere when they close.
class FocusReturn : public QObject
{
    Q_OBJECT
    QML_ELEMENT

public:
    using QObject::QObject;

    /// Remembers the outermost focus scope around what has the keyboard: what it was within may be
    /// gone by then, and a scope knows itself who in it comes next.
    Q_INVOKABLE void remember(QQuickItem *ofSameWindow);
    /// Leaves the keyboard alone when somebody has taken it meanwhile, or what had it is hidden.
    Q_INVOKABLE void giveBack();

private:
    QPointer<QQuickItem> m_item;
};
