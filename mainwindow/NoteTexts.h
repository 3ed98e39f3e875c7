#pragma once

#include "core/JobAnswers.h"
#include "core/NoteArray.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QThreadPool>
#include <QUuid>

#include <atomic>
#include <optional>
#include <vector>

/// What the list shows of the notes and what a search looks through, derived from their HTML once
/// per change: on a thread of its own that gives way to all others, those changed last first, and
/// on as many as there are processors while somebody waits. Everything else here belongs to the
/// main thread; those threads see copies of notes only.
class NoteTexts : public QObject
{
    Q_OBJECT

public:
    /// What a row shows.
    struct Lines {
        QString heading; ///< empty when the note has none
        QString preview; ///< empty when the note has no text below its heading
    };
    struct Searched {
        QByteArrayView text; ///< as searchableText makes it: heading, preview, whole plain text
        bool hasPreview = false;
        QByteArray texts; ///< of all notes of a batch, the text's memory
    };

    explicit NoteTexts(QObject *parent = nullptr);
    ~NoteTexts() override; ///< waits for the threads, which end at once

    /// These are all notes now. What is known of those that are the same stays.
    void setNotes(const NoteArray &notes);
    void update(const Note &note); ///< new or changed
    void remove(const QUuid &id);

    /// Derives them at once where they are not there yet.
    [[nodiscard]] const Lines &lines(const Note &note);
    /// Of a note that has changed since, its text before, until the new one is there; nullptr when
    /// there never was any.
    [[nodiscard]] const Searched *searched(const QUuid &id) const;
    /// Whether searched() is up to date.
    [[nodiscard]] bool isDerived(const QUuid &id) const;

    /// A search waits for the texts, or no longer does.
    void setHurried(bool isHurried);

Q_SIGNALS:
    void derived(const QList<QUuid> &ids);

private:
    enum class State { Waiting, InWork, Derived };

    struct Entry {
        QString title; ///< with the body, what the texts are of
        QString body;
        quint64 revision = 0;
        State state = State::Waiting;
        std::optional<Lines> lines;
        std::optional<Searched> searched;
    };
    struct Source {
        QUuid id;
        QString title;
        QString body;
        quint64 revision = 0;
    };
    struct Result {
        QUuid id;
        quint64 revision = 0;
        Lines lines;
        Searched searched;
    };

    // Called on a thread.
    [[nodiscard]] std::vector<Result> deriveBatch(const std::vector<Source> &batch) const;
    [[nodiscard]] Result derive(const Source &source, QByteArray &texts) const;

    [[nodiscard]] Entry &entryOf(const Note &note);
    void startWork();
    void hireWorker();
    [[nodiscard]] std::vector<Source> nextBatch();
    void take(std::vector<Result> results);
    void tell();

    QHash<QUuid, Entry> m_entries;
    std::vector<QUuid> m_waiting; ///< the next one last; some may be done or gone by now
    quint64 m_lastRevision = 0;
    int m_batches = 0; ///< on a thread, or in front of it
    bool m_isStarting = false;
    bool m_isHurried = false;
    QList<QUuid> m_untold; ///< derived since the last news
    QElapsedTimer m_sinceTold;
    qint64 m_newsInterval = 0; ///< ms
    std::atomic<bool> m_isEnding = false;
    JobAnswers m_answers;
    QThreadPool m_thread;
    QThreadPool m_hurriedThreads;
};
