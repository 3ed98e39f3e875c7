#pragma once

#include <QMargins>
#include <QRegion>

class QWindow;

// What a window is to its desktop beyond what Qt can say; lengths are points. Where the desktop has
// no such thing, these do nothing. What is told of a window goes with its native window: one that
// is made anew has to be told again.

/// Where the window takes the pointer; elsewhere that goes to what lies beneath. An empty region
/// means the whole window.
void setInputRegion(QWindow &window, const QRegion &region);

/// How much of the window, on each side, is nothing but its shadow.
void setFrameExtents(QWindow &window, const QMargins &shadow);

/// For good, however often the window is hidden and shown. It stays a window of the normal type:
/// of the others some desktops hide all when the program is not the active one.
void keepOutOfTaskSwitcher(QWindow &window);

/// Whether a window can stay above the others, as Qt::WindowStaysOnTopHint wants it, here and now.
[[nodiscard]] bool canKeepAbove();

/// Whether a program knows where its windows are, and can put them anywhere.
[[nodiscard]] bool canPlaceWindows();
