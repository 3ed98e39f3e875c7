#pragma once

class QWindow;

/// Asks the desktop to blur what is behind the whole window, where it can; elsewhere does nothing.
void blurBehind(QWindow &window);
