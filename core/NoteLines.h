#pragma once

#include "core/Note.h"

/// As much of a text as a line on any screen can show: to lay out a megabyte takes seconds.
[[nodiscard]] QString lineOf(const QString &text);
/// The note's heading, or what a line can show of it.
[[nodiscard]] QString headingLine(const Note &note);
