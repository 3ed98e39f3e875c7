#pragma once

#include "transfer/NoteDocument.h"

/// An HTML text as a note would show it.
struct ReadHtml {
    NoteDocument document;
    QString title; ///< of a whole page
};

/// Reads the HTML of notes, and any other, fragments as well as whole pages. Only words, pictures
/// and what a note can say about them come out: no script, no style, no address that would run.
/// Tables become lines, elements without a meaning give way to what they hold.
[[nodiscard]] ReadHtml readHtml(const QString &html);
