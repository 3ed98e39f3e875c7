#pragma once

#include <QString>
#include <QUuid>

class NoteStore;

// What an editor does to a note: each gives the store a copy of the note with one thing changed,
// dated now even when it is what the note had. False when there is no such note.

bool storeBody(NoteStore &store, const QUuid &noteID, const QString &html);
/// Also false, and nothing is stored, when the text names no colour; likewise with the size.
bool storeColor(NoteStore &store, const QUuid &noteID, const QString &rawValue);
bool storeTextSize(NoteStore &store, const QUuid &noteID, const QString &rawValue);
