#pragma once

#include "core/Note.h"

/// The note as this version keeps it: with its markup repaired, its inline pictures in files of the
/// images directory and its title in its body, which is never empty. Repairing twice equals
/// repairing once.
[[nodiscard]] Note repairedNote(Note note, const QString &imagesDirectory);
