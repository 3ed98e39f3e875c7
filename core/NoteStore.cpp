#include "core/NoteStore.h"

#include "core/CoreLog.h"
#include "core/NotesJson.h"
#include "core/ThreadJob.h"

#include <QCoreApplication>
#include <QStandardPaths>

#include <algorithm>
#include <chrono>
#include <utility>

using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr auto savePause = 500ms; ///< without changes, before they are written
/// Whoever types without a pause finds every key on the disk after five seconds. They count from
/// the key: the page takes the first 120 ms of them to report it (CHANGE_DEBOUNCE there), and the
/// write needs what is left at the end.
constexpr auto longestUnsaved = 4700ms;
} // namespace

NoteStore::NoteStore(const QString &dataDirectory, Clock clock, QObject *parent)
    : QObject(parent), m_file(dataDirectory), m_clock(std::move(clock))
{
    beginSaving();
    load();
}

NoteStore::NoteStore(const QString &dataDirectory, NotesAhead &ahead)
    : m_file(dataDirectory), m_clock(&Timestamp::now)
{
    beginSaving();
    load(ahead.take());
}

void NoteStore::beginSaving()
{
    m_saveWorkItem.setSingleShot(true);
    m_saveWorkItem.setTimerType(Qt::PreciseTimer);
    connect(&m_saveWorkItem, &QTimer::timeout, this, [this] { performSave(false); });
    connect(&m_retry, &SaveRetry::due, this, [this] { performSave(false); });
    connect(&m_retry, &SaveRetry::failingSinceChanged, this, &NoteStore::savingFailsSinceChanged);

    m_saveQueue.setObjectName(u"org.plim.Plim.save"_s);
    m_saveQueue.setMaxThreadCount(1); // one write at a time, in the order they were asked for
    m_saveQueue.setThreadPriority(QThread::LowPriority);

    m_file.createDirectories();
    if (QCoreApplication *application = QCoreApplication::instance())
        connect(application, &QCoreApplication::aboutToQuit, this, &NoteStore::flush);
}

NoteStore::~NoteStore()
{
    m_saveQueue.waitForDone();
}

QString NoteStore::defaultDataDirectory()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/Plim"_s;
}

void NoteStore::setNotes(NoteArray notes)
{
    if (m_notes == notes)
        return;
    m_notes = std::move(notes);
    m_rowsAreStale = true;
    announce({});
}

const Note *NoteStore::note(const QUuid &noteID) const
{
    const qsizetype row = indexOf(noteID);
    return row < 0 ? nullptr : &m_notes[row];
}

qsizetype NoteStore::indexOf(const QUuid &noteID) const
{
    if (m_rowsAreStale)
        buildIndex();
    return m_rows.value(noteID, -1);
}

QUuid NoteStore::addNote()
{
    Note note = Note::fresh(m_clock());
    const QUuid id = note.id;
    m_notes.insert(0, std::move(note));
    m_rowsAreStale = true;
    announce({.kind = NotesChange::Kind::Inserted, .ids = {id}, .rows = {0}});
    return id;
}

void NoteStore::updateNote(Note note)
{
    const QUuid id = note.id;
    const qsizetype row = indexOf(id);
    if (row < 0)
        return;
    note.updatedAt = m_clock();
    m_notes.replace(row, std::move(note));
    announce({.kind = NotesChange::Kind::Updated, .ids = {id}, .rows = {row}});
}

void NoteStore::setArchived(bool isArchived, const QSet<QUuid> &noteIDs)
{
    const QList<qsizetype> rows = rowsOf(noteIDs);
    if (rows.isEmpty())
        return;
    const Timestamp now = m_clock();
    for (const qsizetype row : rows) {
        Note note = m_notes[row];
        note.isArchived = isArchived;
        note.updatedAt = now;
        m_notes.replace(row, std::move(note));
    }
    announce({.kind = NotesChange::Kind::Updated, .ids = idsAt(rows), .rows = rows});
}

void NoteStore::deleteNote(const QUuid &noteID)
{
    const qsizetype row = indexOf(noteID);
    if (row < 0)
        return;
    m_notes.removeAt(row);
    m_rowsAreStale = true;
    announce({.kind = NotesChange::Kind::Deleted, .ids = {noteID}, .rows = {row}});
}

void NoteStore::deleteNotes(const QSet<QUuid> &noteIDs)
{
    const QList<qsizetype> rows = rowsOf(noteIDs);
    if (rows.isEmpty())
        return;
    const QList<QUuid> ids = idsAt(rows);
    for (auto row = rows.crbegin(); row != rows.crend(); ++row)
        m_notes.removeAt(*row);
    m_rowsAreStale = true;
    announce({.kind = NotesChange::Kind::Deleted, .ids = ids, .rows = rows});
}

QList<PlacedNote> NoteStore::placedNotes(const QSet<QUuid> &noteIDs) const
{
    QList<PlacedNote> notes;
    for (const qsizetype row : rowsOf(noteIDs)) {
        const QUuid nextID = row + 1 < m_notes.size() ? m_notes[row + 1].id : QUuid();
        notes.append({.note = m_notes[row], .nextID = nextID, .row = row});
    }
    return notes;
}

void NoteStore::reinsertNotes(const QList<PlacedNote> &notes)
{
    // Which of the notes in the list each one goes before; a null id stands for the list's end.
    QHash<QUuid, QUuid> followers;
    QHash<QUuid, QList<Note>> arrivals;
    QSet<QUuid> inserted;
    // From the last one up: the note that follows may itself be one of those that come back.
    for (auto placed = notes.crbegin(); placed != notes.crend(); ++placed) {
        if (indexOf(placed->note.id) >= 0 || inserted.contains(placed->note.id))
            continue;
        QUuid follower = followers.value(placed->nextID, placed->nextID);
        if (!follower.isNull() && indexOf(follower) < 0)
            follower = placed->row < m_notes.size() ? m_notes[placed->row].id : QUuid();
        followers.insert(placed->note.id, follower);
        arrivals[follower].prepend(placed->note);
        inserted.insert(placed->note.id);
    }
    if (inserted.isEmpty())
        return;
    NoteArray all;
    const auto take = [&](const QUuid &follower) {
        for (const Note &note : arrivals.take(follower))
            all.append(note);
    };
    for (const Note &note : std::as_const(m_notes)) {
        take(note.id);
        all.append(note);
    }
    take(QUuid());
    m_notes = std::move(all);
    m_rowsAreStale = true;
    const QList<qsizetype> rows = rowsOf(inserted);
    announce({.kind = NotesChange::Kind::Inserted, .ids = idsAt(rows), .rows = rows});
}

void NoteStore::moveNote(const QUuid &noteID, const QUuid &targetID)
{
    const qsizetype from = indexOf(noteID);
    const qsizetype target = indexOf(targetID);
    if (noteID == targetID || from < 0 || target < 0)
        return;
    relocate(from, from < target ? target - 1 : target);
}

void NoteStore::moveNoteToEnd(const QUuid &noteID)
{
    const qsizetype from = indexOf(noteID);
    if (from >= 0)
        relocate(from, m_notes.size() - 1);
}

// Who never pauses does not wait for ever either.
void NoteStore::save()
{
    if (!m_saveWorkItem.isActive()) // another try that is to come counts for nothing here
        m_unsavedSince.start();
    const auto left = longestUnsaved - std::chrono::milliseconds(m_unsavedSince.elapsed());
    m_saveWorkItem.start(std::clamp<std::chrono::milliseconds>(left, 0ms, savePause));
}

void NoteStore::flush()
{
    m_saveWorkItem.stop();
    if (m_hasContent)
        performSave(true);
}

void NoteStore::settle()
{
    if (hasPendingSave()) // else: each write costs the oldest backup
        flush();
    else
        m_saveQueue.waitForDone();
}

std::vector<NotesBackup> NoteStore::availableBackups() const
{
    return m_file.availableBackups();
}

void NoteStore::performSave(bool sync)
{
    m_retry.stopWaiting();
    startJob(m_saveQueue, [this, notes = m_notes, file = m_file] {
        const bool ok = write(notes, file); // the store outlives its jobs
        const QString keptConflict = file.takeKeptConflict();
        m_answers.give([this, ok, keptConflict] { finishSave(ok, keptConflict); });
    });
    if (sync)
        m_saveQueue.waitForDone();
}

/// Runs on the save queue. Logs the first failure of a run: the tries that follow have nothing new
/// to say.
bool NoteStore::write(const NoteArray &notes, const NotesFile &file)
{
    const bool hasBytes = haveFiniteDates(notes);
    const std::optional<QString> error = hasBytes ? file.write(notes) : std::nullopt;
    const bool ok = hasBytes && !error;
    const bool wasLogged = m_failureIsLogged.exchange(!ok);
    if (ok || wasLogged)
        return ok;
    if (error)
        qCWarning(plimCore).noquote() << u"Nie udało się zapisać notatek: "_s + *error;
    else
        qCWarning(plimCore, "Plim: encode failed");
    return false;
}

void NoteStore::finishSave(bool ok, const QString &keptConflict)
{
    if (!keptConflict.isEmpty())
        Q_EMIT conflictKept(keptConflict);
    if (ok)
        m_retry.succeeded();
    else
        m_retry.failed(QDateTime::currentDateTime());
    Q_EMIT saved(ok);
}

void NoteStore::announce(const NotesChange &change)
{
    m_hasContent = true;
    Q_EMIT notesChanged(change);
}

void NoteStore::relocate(qsizetype from, qsizetype to)
{
    if (from == to)
        return;
    Note note = m_notes.takeAt(from);
    const QUuid id = note.id;
    m_notes.insert(to, std::move(note));
    m_rowsAreStale = true;
    announce({.kind = NotesChange::Kind::Moved, .ids = {id}, .rows = {}, .from = from, .to = to});
}

void NoteStore::buildIndex() const
{
    m_rows.clear();
    m_rows.reserve(m_notes.size());
    qsizetype row = 0;
    for (const Note &note : m_notes) {
        if (!m_rows.contains(note.id))
            m_rows.insert(note.id, row);
        ++row;
    }
    m_rowsAreStale = false;
}

/// The rows of every note with one of the ids, ascending. A damaged file may hold an id twice, so
/// this looks at the notes and not only at each id's first one.
QList<qsizetype> NoteStore::rowsOf(const QSet<QUuid> &noteIDs) const
{
    QList<qsizetype> rows;
    if (noteIDs.isEmpty())
        return rows;
    qsizetype row = 0;
    for (const Note &note : m_notes) {
        if (noteIDs.contains(note.id))
            rows.append(row);
        ++row;
    }
    return rows;
}

QList<QUuid> NoteStore::idsAt(const QList<qsizetype> &rows) const
{
    QList<QUuid> ids;
    ids.reserve(rows.size());
    for (const qsizetype row : rows)
        ids.append(m_notes[row].id);
    return ids;
}
