#pragma once

#include <QByteArray>
#include <QProcessEnvironment>

/// Which of Qt's platforms to ask for, the best first; empty where Qt's own choice is right.
[[nodiscard]] QByteArray wantedPlatforms(const QProcessEnvironment &environment);

/// How windows come to the screen and are drawn there, settled before the application object is
/// made.
void prepareWindowSystem();
/// Whether that is by the processor alone.
[[nodiscard]] bool isDrawnByProcessor();

/// Where the processor draws, no driver of a graphics card is loaded even to be asked what it can do:
/// with its compiler it takes fifty megabytes. To be called after prepareWindowSystem().
void spareDriver();
