#pragma once

#include "transfer/NoteDocument.h"

/// The document as the body of a note, in the form in which the editor page stores one. Nothing but
/// what that form knows comes out, and every word and address is escaped.
[[nodiscard]] QString noteBody(const NoteDocument &document);
