#pragma once

#include "sticky/StickyWindow.h"

#include <QList>

#include <utility>

/// A window that is nowhere but in the test, and writes down what it is told.
class FakeStickyWindow : public StickyWindow
{
public:
    [[nodiscard]] QRect frame() const override { return m_frame; }
    void setFrame(const QRect &frame, Motion motion) override
    {
        motions << motion;
        placed << frame;
        change(frame);
    }
    void appear() override { ++timesShown; }
    void bringToFront() override { ++timesInFront; }
    void close() override
    {
        isOpen = false;
        Q_EMIT closed();
    }
    void setFloating(bool value) override { isFloating = value; }
    [[nodiscard]] bool isCollapsed() const override { return m_isCollapsed; }
    void setCollapsed(bool isCollapsed) override { m_isCollapsed = isCollapsed; }
    [[nodiscard]] bool isHostedBy(const QWindow *window) const override
    {
        return window && window == host;
    }

    // What a user does
    void moveTo(const QPoint &position) { change({position, m_frame.size()}); }
    void resizeTo(const QSize &size) { change({m_frame.topLeft(), size}); }
    void fold(bool isCollapsed)
    {
        m_isCollapsed = isCollapsed;
        Q_EMIT collapseChanged(isCollapsed);
    }

    QUuid noteID;
    NoteTextSize textSize = NoteTextSize::medium;
    QList<Motion> motions;
    QList<QRect> placed; ///< where it was told to be, one after the other
    int timesShown = 0;  ///< without the keyboard
    int timesInFront = 0;
    const QWindow *host = nullptr;
    bool isOpen = true;
    bool isFloating = false;

private:
    void change(const QRect &frame)
    {
        const QRect before = std::exchange(m_frame, frame);
        if (before.topLeft() != frame.topLeft())
            Q_EMIT moved();
        if (before.size() != frame.size())
            Q_EMIT resized();
    }

    QRect m_frame;
    bool m_isCollapsed = false;
};
