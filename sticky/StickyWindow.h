#pragma once

#include "core/NoteTextSize.h"

#include <QObject>
#include <QRect>
#include <QUuid>
#include <QWindow>

#include <functional>
#include <memory>

/// One note's window, as StickyNoteManager knows it: it is told what to do, and tells what was done
/// to it. Everything here is in the coordinates of windows, y growing downwards, without whatever
/// shadow the window draws around its card.
class StickyWindow : public QObject
{
    Q_OBJECT

public:
    enum class Motion { Immediate, Animated };

    /// While it glides to a new place: that place.
    [[nodiscard]] virtual QRect frame() const = 0;
    virtual void setFrame(const QRect &frame, Motion motion) = 0;
    /// Shows it in front of the others and leaves the keyboard where it is.
    virtual void appear() = 0;
    /// Shows it in front of the others, with the keyboard; wherever it was, minimised, too.
    virtual void bringToFront() = 0;
    /// Closes it, which nobody can refuse; closed() follows.
    virtual void close() = 0;
    virtual void setFloating(bool isFloating) = 0; ///< above all windows of other kinds
    [[nodiscard]] virtual bool isCollapsed() const = 0;
    /// Changes the form that is drawn, and not the frame. Asks for nothing.
    virtual void setCollapsed(bool isCollapsed) = 0;
    /// Whether the window that the window system has is this one's.
    [[nodiscard]] virtual bool isHostedBy(const QWindow *window) const = 0;

Q_SIGNALS:
    /// What it shows is there, be it in sight or not; once.
    void ready();
    void moved();
    void resized();
    /// By whomever, before anything of it is taken down; once.
    void closed();

    // What its user asks for
    void closeRequested();
    void pinChanged(bool isPinned);
    /// It draws the other form now and wants the frame for it.
    void collapseChanged(bool isCollapsed);
};

/// Makes a note's window, hidden. Empty when there can be none.
using StickyWindowFactory =
    std::function<std::unique_ptr<StickyWindow>(const QUuid &noteID, NoteTextSize textSize)>;
