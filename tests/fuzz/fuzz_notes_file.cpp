#include "core/NotesJson.h"
#include "tests/fuzz/FuzzTarget.h"

#include <algorithm>

// Whatever stands in the notes file is read or refused, and what was read is written as it was.

namespace
{
bool holdsHalfPairs(const Note &note)
{
    return !note.title.isValidUtf16() || !note.body.isValidUtf16() || !note.color.isValidUtf16();
}
} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const Timestamp now{1000};
    const QByteArray bytes = bytesOf(data, size);
    const std::optional<NoteArray> notes = decodeNotes(bytes, now);
    if (!notes)
        return 0;
    const std::optional<QByteArray> written = encodeNotes(*notes);
    require(written.has_value(), "what was read can be written");
    // What a note has beside its texts, and those, each letter of which may become an escape.
    constexpr qsizetype keys = 256;
    constexpr qsizetype escape = 6;
    require(written->size() <= escape * qsizetype(size) + keys * notes->size() + 2,
            "a file is as long as its notes");
    const std::optional<NoteArray> again = decodeNotes(*written, now);
    require(again && again->size() == notes->size(), "what was written can be read");
    require(std::ranges::any_of(*notes, holdsHalfPairs) || again == notes,
            "what was written is what was read");
    return 0;
}
