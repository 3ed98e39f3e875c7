#pragma once

#include "sticky/StickyFrame.h"

#include <QList>
#include <QRect>

#include <functional>

class QObject;

/// Where windows can be.
struct ScreenAreas {
    QRect primary;              ///< the whole primary screen as windows see it; null without one
    QList<StickyFrame> visible; ///< what panels leave of each screen, the primary one's first

    [[nodiscard]] bool isEmpty() const { return visible.isEmpty(); }

    [[nodiscard]] static ScreenAreas current();
    /// Calls it a turn of the event loop after any of this has changed, as long as the context
    /// lives. Does nothing without a window system.
    static void watch(QObject *context, const std::function<void()> &changed);
};
