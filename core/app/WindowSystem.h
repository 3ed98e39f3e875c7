#pragma once

#include <QByteArray>
#include <QProcessEnvironment>

/// Which of Qt's platforms to ask for, the best first; empty where Qt's own choice is right.
[[nodiscard]] QByteArray wantedPlatforms(const QProcessEnvironment &environment);

/// How windows come to the screen and are drawn there, settled before the application object is
/// made.
void prepareWindowSystem();
