#pragma once

#include "tests/Patience.h"
#include "tests/ThrowAwayHome.h"

#include <QByteArray>
#include <QPoint>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QString>

#include <functional>
#include <memory>

// What tests of views have in common: finding an item, and doing to it what a user does.

/// Calls `visit` with the item and everything drawn in it, in the order of the tree.
void visitItems(QQuickItem *root, const std::function<void(QQuickItem *)> &visit);
/// The first item with the object name in what the window shows; ends the test program when there
/// is none.
[[nodiscard]] QQuickItem *itemIn(const QQuickWindow *window, const QString &name);
[[nodiscard]] QQuickItem *itemIn(QQuickItem *root, const QString &name);
[[nodiscard]] bool hasItem(const QQuickWindow *window, const QString &name);
/// Middle of the item in its window.
[[nodiscard]] QPoint middleOf(const QQuickItem *item);
[[nodiscard]] QRectF frameOf(const QQuickItem *item); ///< in its window
/// Its opacity and that of everything around it.
[[nodiscard]] qreal opacityOf(const QQuickItem *item);
/// It and all around it are visible, not transparent, and it has an area.
[[nodiscard]] bool isDrawn(const QQuickItem *item);
/// The texts drawn in the item, in the order of the tree.
[[nodiscard]] QStringList textsIn(QQuickItem *root);
QImage pictureOf(QQuickWindow *window);

void click(QQuickItem *item);
void hover(QQuickItem *item);
void moveTo(QQuickWindow *window, QPoint place);
void press(QQuickWindow *window, Qt::Key key, Qt::KeyboardModifiers modifiers = {});
void type(QQuickWindow *window, const QString &text);
/// Turns the wheel over the place, in notches; towards the user is negative.
void turnWheel(QQuickWindow *window, QPoint place, int notches);

/// Whether things glide and fade, and if so, in steady steps (SteadyTime). Tests that do not look
/// at that go faster without.
void setMoving(bool isMoving);
/// No key was used yet, as far as focus rings are concerned.
void forgetKeyboard(QQuickWindow *window);

/// A window with views in it, written down as QML. All modules of the program are imported.
class Stage
{
public:
    explicit Stage(const QByteArray &views, QSize size = QSize(480, 360));
    ~Stage();
    Q_DISABLE_COPY_MOVE(Stage)

    [[nodiscard]] QQuickWindow *window() const { return m_window.get(); }
    [[nodiscard]] QQuickItem *item(const QString &name) const
    {
        return itemIn(m_window.get(), name);
    }
    /// An object that is no item, like a dialog or another window.
    [[nodiscard]] QObject *object(const QString &name) const;
    [[nodiscard]] QQmlEngine *engine() { return &m_engine; }

private:
    ThrowAwayHome m_home;
    QQmlEngine m_engine;
    std::unique_ptr<QQuickWindow> m_window;
};
