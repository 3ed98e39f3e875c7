#pragma once

#include "sticky/WindowOutline.h"

#include <QObject>
#include <QPointer>
#include <QQuickWindow>
#include <qqmlregistration.h>

#include <optional>

/// Gives a frameless window the outline of the card that it draws: round corners, and a shadow
/// around it that does not keep the pointer from what lies beneath.
class WindowShape : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickWindow *window READ window WRITE setWindow NOTIFY windowChanged)
    Q_PROPERTY(int radius READ radius WRITE setRadius NOTIFY wishChanged)
    Q_PROPERTY(int wantedShadow READ wantedShadow WRITE setWantedShadow NOTIFY wishChanged)
    Q_PROPERTY(int grip READ grip WRITE setGrip NOTIFY wishChanged)
    Q_PROPERTY(int shadow READ shadow NOTIFY shadowChanged)

public:
    explicit WindowShape(QObject *parent = nullptr);

    [[nodiscard]] QQuickWindow *window() const { return m_window; }
    void setWindow(QQuickWindow *window);
    /// Points, of the card's corners.
    [[nodiscard]] int radius() const { return m_wish.radius; }
    void setRadius(int radius);
    /// Points on each side of the card.
    [[nodiscard]] int wantedShadow() const { return m_wish.shadow; }
    void setWantedShadow(int shadow);
    /// Points: how far around the card the pointer still belongs to it.
    [[nodiscard]] int grip() const { return m_wish.grip; }
    void setGrip(int grip);
    /// Points on each side of the card that are there for it to be drawn in.
    [[nodiscard]] int shadow() const;

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void windowChanged();
    void wishChanged();
    void shadowChanged();

private:
    void set(int WindowOutline::Wish::*part, int value);
    void apply();

    QPointer<QQuickWindow> m_window;
    WindowOutline::Wish m_wish;
    /// What its native window has been told, and at which scale; empty when that knows nothing.
    std::optional<std::pair<WindowOutline, qreal>> m_applied;
    bool m_isToBeTaken = false; ///< by the window manager, which has got the window anew
};
