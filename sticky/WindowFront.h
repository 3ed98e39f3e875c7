#pragma once

#include "sticky/LaunchToken.h"

class QWindow;

/// Whether its user may see it: shown, and not minimised.
[[nodiscard]] bool isOnScreen(const QWindow &window);

/// Shows the window, however it was put away, as large as it was, in front of the others and with
/// the keyboard.
void bringToFront(QWindow &window);

/// The same for somebody outside of the program: a desktop that lets no window come to the front by
/// itself hears on whose behalf it does. The launcher is told that its start has come to an end.
void bringToFront(QWindow &window, const LaunchToken &token);
