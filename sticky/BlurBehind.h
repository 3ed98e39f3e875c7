#pragma once

#include <QRegion>

class QWindow;

/// Asks the desktop to blur what is behind this part of the window, in points, where it can;
/// elsewhere does nothing. An empty region means the whole window.
void blurBehind(QWindow &window, const QRegion &region = {});
