#pragma once

#include "core/JsonWriter.h"
#include "core/NoteArray.h"
#include "core/Timestamp.h"

#include <QByteArray>

#include <optional>

/// Whether there are bytes for the notes: JSON cannot hold a date that is not finite.
[[nodiscard]] bool haveFiniteDates(const NoteArray &notes);

/// Makes the notes file's bytes: compact, keys sorted, "/" written "\/". False when a date is not
/// finite, and then nothing was made, or when a piece was refused.
[[nodiscard]] bool writeNotes(const NoteArray &notes, JsonWriter::Sink sink);

/// All these bytes; nullopt when a date is not finite.
[[nodiscard]] std::optional<QByteArray> encodeNotes(const NoteArray &notes);

/// nullopt unless the bytes are a JSON array of which every element is a note; one bad element
/// fails the whole, so that a backup is preferred to a file with holes.
[[nodiscard]] std::optional<NoteArray> decodeNotes(const QByteArray &bytes, Timestamp now);
