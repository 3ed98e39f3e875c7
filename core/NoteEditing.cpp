#include "core/NoteEditing.h"

#include "core/NoteColor.h"
#include "core/NoteStore.h"
#include "core/NoteTextSize.h"

#include <utility>

namespace
{
template <typename Edit>
bool change(NoteStore &store, const QUuid &noteID, const Edit &edit)
{
    const Note *note = store.note(noteID);
    if (!note)
        return false;
    Note changed = *note;
    edit(changed);
    store.updateNote(std::move(changed));
    return true;
}
} // namespace

bool storeBody(NoteStore &store, const QUuid &noteID, const QString &html)
{
    return change(store, noteID, [&](Note &note) { note.body = html; });
}

bool storeColor(NoteStore &store, const QUuid &noteID, const QString &rawValue)
{
    return noteColorFromRawValue(rawValue) &&
           change(store, noteID, [&](Note &note) { note.color = rawValue; });
}

bool storeTextSize(NoteStore &store, const QUuid &noteID, const QString &rawValue)
{
    const auto size = noteTextSizeFromRawValue(rawValue);
    return size && change(store, noteID, [&](Note &note) { note.textSize = *size; });
}
