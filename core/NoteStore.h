#pragma once

#include "core/JobAnswers.h"
#include "core/NoteArray.h"
#include "core/NotesChange.h"
#include "core/NotesFile.h"
#include "core/NotesReading.h"
#include "core/SaveRetry.h"

#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QSet>
#include <QThreadPool>
#include <QTimer>

#include <atomic>
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
/// on the save queue. What could not be written is tried again until it is. Everything here belongs
/// to the main thread but that writing.
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
    /// With the notes file of that directory, as it was read ahead.
    NoteStore(const QString &dataDirectory, NotesAhead &ahead);
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

    /// Writes the notes half a second from now, or from when it is called again before, but so soon
    /// after the first of these calls that they are on disk five seconds after the key that led to
    /// it.
    void save();
    /// Whether a write is to come: one that was asked for, or another try.
    [[nodiscard]] bool hasPendingSave() const
    {
        return m_saveWorkItem.isActive() || m_retry.isWaiting();
    }
    /// Since when the notes could not be written; nullopt when the last write succeeded.
    [[nodiscard]] std::optional<QDateTime> savingFailsSince() const
    {
        return m_retry.failingSince();
    }
    /// Writes the notes now and waits for the disk. The application's end does this by itself.
    void flush();
    /// Waits until everything that was to be saved is on disk, and writes nothing besides.
    void settle();

    [[nodiscard]] std::vector<NotesBackup> availableBackups() const;
    /// Brings a backup back as the notes file and loads it. Only where there is no notes file: one
    /// that exists is never replaced, and the answer is false.
    bool restore(const QString &backup);
    /// The notes in a file, as loading would take them; nullopt when there are none to be
    /// understood.
    [[nodiscard]] std::optional<NoteArray> notesIn(const QString &url) const;
    /// Writes the notes, as they are now, into a file of their own beside the backups, which no
    /// rotation touches. Returns its path; nullopt, and one line in the log, when it was refused.
    std::optional<QString> keepVersion();

Q_SIGNALS:
    /// Once per operation that changed something.
    void notesChanged(const NotesChange &change);
    /// A write has ended; false when the notes are not on disk.
    void saved(bool ok);
    void savingFailsSinceChanged();
    /// Something else had written the notes file while the program ran. Its notes are in the file
    /// named here now, and the store's in the notes file.
    void conflictKept(const QString &path);

private:
    void load();
    void load(ReadNotes found); ///< as the notes file
    void beginSaving();
    void performSave(bool sync);
    [[nodiscard]] bool write(const NoteArray &notes, const NotesFile &file);
    void finishSave(bool ok, const QString &keptConflict);
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
    QElapsedTimer m_unsavedSince; ///< while a write is to come
    SaveRetry m_retry;
    std::atomic_bool m_failureIsLogged = false; ///< of this run of failures; the save queue's
    JobAnswers m_answers; ///< of the save queue
    QThreadPool m_saveQueue;
    mutable QHash<QUuid, qsizetype> m_rows; ///< of each id's first note, unless stale
    mutable bool m_rowsAreStale = true;     ///< notes came, went or moved since
};
