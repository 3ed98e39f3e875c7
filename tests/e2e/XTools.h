#pragma once

#include "tests/Patience.h"

#include <QString>
#include <QStringList>

/// The programs by which a user's hands are played, on the display that the environment names.
namespace XTools
{
inline constexpr int patience = longEnough; ///< ms, for whatever the program takes to do something

/// What the program says before it ends.
QString run(const QString &program, const QStringList &arguments);
void xdotool(const QStringList &arguments);
/// Real key events; letters that no key has are put on one for the moment.
void type(const QString &text);
/// Keys in the X server's names, "ctrl+z".
void press(const QStringList &keys);
} // namespace XTools
