#pragma once

#include "core/NoteArray.h"
#include "core/NotesChange.h"
#include "core/NotesFile.h"

#include <QHash>
#include <QObject>
#include <QSet>
#include <QThreadPool>
#include <QTimer>

#include <functional>
#include <optional>
#include <vector>

/// A note and its place among the others, so that it can be put back.
struct PlacedNote {
    Note note;
    QUuid nextID;      ///< of the note that followed it; null when it was the last one
    qsizetype row = 0; ///< its row, for when that note is gone, too

    [[nodiscard]] bool operator==(const PlacedNote &) const = default;
};

/// Owns every note and keeps them on disk. Changing notes and saving them are apart: whoever
/// watches notesChanged() calls save(), and half a second after the last call a snapshot is written
/// on the save queue. Everything here belongs to the main thread but that writing.
class NoteStore : public QObject
{
    Q_OBJECT

public:
    using Clock = std::function<Timestamp()>;

    /// Loads the notes at once. The application's end writes what is unsaved.
    explicit NoteStore(const QString &dataDirectory, QObject *parent = nullptr)
        : NoteStore(dataDirectory, &Timestamp::now, parent)
    {
    }
    NoteStore(const QString &dataDirectory, Clock clock, QObject *parent = nullptr);
    ~NoteStore() override; ///< waits for the save queue; what was never flushed is not written
    Q_DISABLE_COPY_MOVE(NoteStore)

    [[nodiscard]] static QString defaultDataDirectory();
    [[nodiscard]] QString imagesDirectory() const { return m_file.imagesDirectory(); }

    /// The notes in the user's manual order.
    [[nodiscard]] const NoteArray &notes() const { return m_notes; }
    void setNotes(NoteArray notes);
    /// The first note with the id, good until the next change; nullptr when there is none.
    [[nodiscard]] const Note *note(const QUuid &noteID) const;
    [[nodiscard]] qsizetype indexOf(const QUuid &noteID) const; ///< -1 when there is none

    /// Puts a new note on top and returns its id.
    QUuid addNote();
    /// Takes the note's values and dates it now.
    void updateNote(Note note);
    void setArchived(bool isArchived, const QSet<QUuid> &noteIDs);
    void deleteNote(const QUuid &noteID);
    void deleteNotes(const QSet<QUuid> &noteIDs);
    /// The notes of the list with the ids, ascending, each with its place.
    [[nodiscard]] QList<PlacedNote> placedNotes(const QSet<QUuid> &noteIDs) const;
    /// Puts deleted notes back where they were, as they were; the list's order is that of
    /// placedNotes(). A note that is there by now is left alone.
    void reinsertNotes(const QList<PlacedNote> &notes);
    void moveNote(const QUuid &noteID, const QUuid &targetID); ///< to right before the target
    void moveNoteToEnd(const QUuid &noteID);

    /// Writes the notes half a second from now, unless called again before.
    void save();
    [[nodiscard]] bool hasPendingSave() const { return m_saveWorkItem.isActive(); }
    /// Writes the notes now and waits for the disk. The application's end does this by itself.
    void flush();

    [[nodiscard]] std::vector<NotesBackup> availableBackups() const;
    /// Brings a backup back as the notes file and loads it. Only where there is no notes file: one
    /// that exists is never replaced, and the answer is false.
    bool restore(const QString &backup);

Q_SIGNALS:
    /// Once per operation that changed something.
    void notesChanged(const NotesChange &change);
    /// A write has ended; false when the notes are not on disk.
    void saved(bool ok);

private:
    void load();
    void performSave(bool sync);
    void announce(const NotesChange &change);
    void relocate(qsizetype from, qsizetype to);
    void buildIndex() const;
    [[nodiscard]] QList<qsizetype> rowsOf(const QSet<QUuid> &noteIDs) const;
    [[nodiscard]] QList<QUuid> idsAt(const QList<qsizetype> &rows) const;

    NotesFile m_file;
    Clock m_clock;
    NoteArray m_notes;
    bool m_hasContent = true; ///< false while loading has found nothing and nobody has changed that
    QTimer m_saveWorkItem;
    QThreadPool m_saveQueue;
    mutable QHash<QUuid, qsizetype> m_rows; ///< of each id's first note, unless stale
    mutable bool m_rowsAreStale = true;     ///< notes came, went or moved since
};
