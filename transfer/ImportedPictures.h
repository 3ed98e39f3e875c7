#pragma once

#include "transfer/NoteDocument.h"

/// Takes the pictures of a foreign document into the folder where notes keep theirs: those inline,
/// and those in files below the folder of the document. Pictures of the web become links, since a
/// note loads nothing from there; of any other the words that stand for it remain.
[[nodiscard]] NoteDocument withImportedPictures(NoteDocument document, const QString &folder,
                                                const QString &imagesDirectory);
