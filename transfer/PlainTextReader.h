#pragma once

#include "transfer/NoteDocument.h"

/// Each line of the text is a line of the note, blanks and empty lines included.
[[nodiscard]] NoteDocument readPlainText(const QString &text);
