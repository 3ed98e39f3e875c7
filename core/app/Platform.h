#pragma once

#include <QByteArray>
#include <QProcessEnvironment>

/// Which of Qt's platforms to ask for, the best first; empty where Qt's own choice is right.
[[nodiscard]] QByteArray wantedPlatforms(const QProcessEnvironment &environment);

/// What has to be settled before the application object is made: names, the web engine's flags and
/// how windows are drawn.
void preparePlatform();
