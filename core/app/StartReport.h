#pragma once

class QQuickWindow;

/// Tells those who ask for plim.start.debug, once, when a window can be used: what it shows is on
/// the screen, the desktop has given it the keyboard, and the program attends to its events.
void reportWhenUsable(QQuickWindow &window);
