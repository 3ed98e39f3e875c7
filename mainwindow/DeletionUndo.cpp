#include "mainwindow/DeletionUndo.h"

#include "shell/L10n.h"

DeletionUndo::DeletionUndo(NoteStore &store, std::chrono::milliseconds offerTime, QObject *parent)
    : UndoOffer(offerTime, parent), m_store(store)
{
}

QString DeletionUndo::text() const
{
    return L10n::deletedCount(m_count);
}

void DeletionUndo::offer(const QList<PlacedNote> &notes)
{
    if (notes.isEmpty())
        return;
    m_notes = notes;
    m_count = int(notes.size());
    begin();
}

bool DeletionUndo::applyEdit(const QUuid &noteID, const QString &html)
{
    for (PlacedNote &placed : m_notes) {
        if (placed.note.id == noteID) {
            placed.note.body = html;
            return true;
        }
    }
    return false;
}

void DeletionUndo::takeBack()
{
    m_store.reinsertNotes(m_notes);
    QList<QUuid> noteIDs;
    for (const PlacedNote &placed : m_notes)
        noteIDs << placed.note.id;
    Q_EMIT restored(noteIDs);
}

void DeletionUndo::forget()
{
    m_notes.clear();
}
