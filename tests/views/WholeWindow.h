#pragma once

#include "tests/Patience.h"
#include "tests/views/CommandedWindow.h"

#include <QGuiApplication>
#include <QTest>

/// The main window with a pointer that rests on nothing.
struct WholeWindow : CommandedWindow {
    explicit WholeWindow(const QString &words = QStringLiteral("A B C a b"))
        : CommandedWindow(words)
    {
        moveTo(window(), QPoint(800, 600));
    }
    using CommandedWindow::window;

    [[nodiscard]] MultiSelection &ticks() { return *content.multiSelection(); }
    [[nodiscard]] QQuickWindow *popover() const
    {
        return window(QStringLiteral("noteOptionsPopover"));
    }
    void openNote(const QString &heading) const { click(row(heading)); }
    using CommandedWindow::openNote;
    /// The texts of the right side.
    [[nodiscard]] bool shows(const QString &text) const
    {
        return textsIn(window()->contentItem()).contains(text);
    }
    void openPopover() const
    {
        click(item(QStringLiteral("noteOptions")));
        QTRY_COMPARE(QGuiApplication::focusWindow(), popover());
        pictureOf(popover());
    }
    [[nodiscard]] QStringList walk(Qt::Key key, int steps) const
    {
        QStringList names;
        for (int i = 0; i < steps; ++i) {
            press(window(), key);
            names << focusedName();
        }
        return names;
    }
};
