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
    // The shortest note, "{}", becomes one with every key.
    require(written->size() <= 100 * qsizetype(size), "a file is at most a hundred times larger");
    const std::optional<NoteArray> again = decodeNotes(*written, now);
    require(again && again->size() == notes->size(), "what was written can be read");
    require(std::ranges::any_of(*notes, holdsHalfPairs) || again == notes,
            "what was written is what was read");
    return 0;
}
