#pragma once

#include "core/NoteArray.h"
#include "core/Timestamp.h"

#include <QByteArray>

#include <optional>

/// The notes file's bytes: compact, keys sorted, "/" written "\/". nullopt when a date is not
/// finite, which JSON cannot hold.
[[nodiscard]] std::optional<QByteArray> encodeNotes(const NoteArray &notes);

/// nullopt unless the bytes are a JSON array of which every element is a note; one bad element
/// fails the whole, so that a backup is preferred to a file with holes.
[[nodiscard]] std::optional<NoteArray> decodeNotes(const QByteArray &bytes, Timestamp now);
