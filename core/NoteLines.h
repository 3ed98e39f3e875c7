#pragma once

#include "core/Note.h"

#include <functional>

/// As much of a text as a line on any screen can show: to lay out a megabyte takes seconds.
[[nodiscard]] QString lineOf(const QString &text);
/// The note's heading, or what a line can show of it.
[[nodiscard]] QString headingLine(const Note &note);
/// The first words below the heading; empty when there are none.
[[nodiscard]] QString previewLine(const Note &note);

/// What a list shows of a note and a search looks through.
struct NotePlainText {
    QString heading; ///< all of it
    QString preview; ///< as previewLine gives it
    QString all;     ///< heading and body; empty when the note shows no text
};
/// All three from one reading of the note, which takes as long as one of them. It ends early, with
/// what it has, when it is no longer wanted.
[[nodiscard]] NotePlainText notePlainText(const Note &note,
                                          const std::function<bool()> &isWanted);
