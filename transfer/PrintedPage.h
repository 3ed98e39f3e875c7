#pragma once

#include "core/Note.h"

/// The page that a note is printed from: with its pictures where they lie.
[[nodiscard]] QString printedPage(const Note &note, const QString &fontsDirectory,
                                  const QString &untitled);
