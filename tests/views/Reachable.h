#pragma once

#include <QAccessible>
#include <QList>
#include <QQuickItem>
#include <QQuickWindow>
#include <QStringList>

// What somebody hears who cannot see the screen.

/// Everything that can be reached in the window and is not hidden.
[[nodiscard]] QList<QAccessibleInterface *> shownIn(QQuickWindow *window);
[[nodiscard]] QString nameOf(QAccessibleInterface *node);
[[nodiscard]] QAccessibleInterface *interfaceOf(QQuickItem *item);
/// What has no name but should have one.
[[nodiscard]] QStringList namelessIn(QQuickWindow *window);
/// Names of all controls of the role, in order.
[[nodiscard]] QStringList namesIn(QQuickWindow *window, QAccessible::Role role);
/// Buttons of every kind, those that are on, in order.
[[nodiscard]] QList<QAccessibleInterface *> buttonsIn(QQuickWindow *window);
