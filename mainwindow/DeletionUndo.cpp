#include "mainwindow/DeletionUndo.h"

#include "shell/L10n.h"

#include <utility>

DeletionUndo::DeletionUndo(NoteStore &store, std::chrono::milliseconds offerTime, QObject *parent)
    : QObject(parent), m_store(store)
{
    m_end.setSingleShot(true);
    m_end.setInterval(offerTime);
    connect(&m_end, &QTimer::timeout, this, &DeletionUndo::dismiss);
    connect(&L10n::shared(), &L10n::changed, this, &DeletionUndo::textChanged);
}

QString DeletionUndo::text() const
{
    return L10n::deletedCount(m_count);
}

void DeletionUndo::offer(const QList<PlacedNote> &notes)
{
    if (notes.isEmpty())
        return;
    const bool wasOffered = isOffered();
    m_notes = notes;
    m_count = int(notes.size());
    m_end.start();
    Q_EMIT textChanged();
    if (!wasOffered)
        Q_EMIT isOfferedChanged();
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

void DeletionUndo::undo()
{
    const QList<PlacedNote> notes = std::exchange(m_notes, {});
    if (notes.isEmpty())
        return;
    m_end.stop();
    Q_EMIT isOfferedChanged();
    m_store.reinsertNotes(notes);
    QList<QUuid> noteIDs;
    for (const PlacedNote &placed : notes)
        noteIDs << placed.note.id;
    Q_EMIT restored(noteIDs);
}

void DeletionUndo::dismiss()
{
    if (!isOffered())
        return;
    m_end.stop();
    m_notes.clear();
    Q_EMIT isOfferedChanged();
}
