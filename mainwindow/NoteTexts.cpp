#include "mainwindow/NoteTexts.h"

#include "core/SearchQuery.h"
#include "core/String+HTML.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{
// A batch takes some ten milliseconds. The second one keeps the thread busy while the main thread
// takes the first in; more would let a note that was edited just now wait.
constexpr int batchesAhead = 2;
constexpr std::size_t notesInBatch = 32;
constexpr qsizetype charactersInBatch = 65'536;
} // namespace

NoteTexts::NoteTexts(QObject *parent) : QObject(parent)
{
    m_thread.setObjectName(u"org.plim.Plim.texts"_s);
    m_thread.setMaxThreadCount(1);
    m_thread.setThreadPriority(QThread::LowPriority);
}

NoteTexts::~NoteTexts()
{
    m_isEnding = true;
    m_thread.clear();
    m_thread.waitForDone();
}

void NoteTexts::setNotes(const NoteArray &notes)
{
    const QHash<QUuid, Entry> before = std::exchange(m_entries, {});
    m_entries.reserve(notes.size());
    std::vector<std::pair<Timestamp, QUuid>> waiting;
    for (const Note &note : notes) {
        if (m_entries.contains(note.id))
            continue; // an id twice: the first note is the one the store knows by it
        Entry &entry = m_entries[note.id];
        const auto known = before.constFind(note.id);
        if (known != before.constEnd() && known->body == note.body && known->title == note.title)
            entry = *known;
        else
            entry = {note.title, note.body, ++m_lastRevision, State::Waiting, {}, {}};
        if (entry.state == State::Waiting)
            waiting.emplace_back(note.updatedAt, note.id);
    }
    std::ranges::stable_sort(waiting, [](const auto &a, const auto &b) {
        return a.first.secondsSinceReferenceDate < b.first.secondsSinceReferenceDate;
    });
    m_waiting.clear();
    for (const auto &[changed, id] : waiting)
        m_waiting.push_back(id);
    startWork();
}

void NoteTexts::update(const Note &note)
{
    (void)entryOf(note);
}

void NoteTexts::remove(const QUuid &id)
{
    m_entries.remove(id);
}

const NoteTexts::Lines &NoteTexts::lines(const Note &note)
{
    Entry &entry = entryOf(note);
    if (!entry.lines)
        entry.lines = linesOf(entry.title, entry.body);
    return *entry.lines;
}

const NoteTexts::Searched *NoteTexts::searched(const QUuid &id) const
{
    const auto found = m_entries.constFind(id);
    return found != m_entries.constEnd() && found->searched ? &*found->searched : nullptr;
}

bool NoteTexts::isDerived(const QUuid &id) const
{
    const auto found = m_entries.constFind(id);
    return found != m_entries.constEnd() && found->state == State::Derived;
}

NoteTexts::Lines NoteTexts::linesOf(const QString &title, const QString &body)
{
    Note note;
    note.title = title;
    note.body = body;
    return {note.headingText(), note.previewText({})};
}

NoteTexts::Result NoteTexts::derive(const Source &source)
{
    Result result{source.id, source.revision, linesOf(source.title, source.body), {}};
    QString text = slowStrippingHTML(source.body);
    if (text.isEmpty())
        text = source.body; // better found by its markup than never
    result.searched = {searchableText({result.lines.heading, result.lines.preview, text}),
                       !result.lines.preview.isEmpty()};
    return result;
}

/// The note's entry, up to date but for its texts.
NoteTexts::Entry &NoteTexts::entryOf(const Note &note)
{
    Entry &entry = m_entries[note.id];
    if (entry.revision != 0 && entry.body == note.body && entry.title == note.title)
        return entry; // archived, coloured, or not changed at all
    const bool isNext = !m_waiting.empty() && m_waiting.back() == note.id;
    entry.title = note.title;
    entry.body = note.body;
    entry.revision = ++m_lastRevision;
    entry.state = State::Waiting;
    entry.lines.reset();
    if (!isNext)
        m_waiting.push_back(note.id);
    startWork();
    return entry;
}

// From the event loop: what changes together is then in one batch, and a start of the program is
// first of all drawn.
void NoteTexts::startWork()
{
    if (std::exchange(m_isStarting, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_isStarting = false;
            hireWorker();
        },
        Qt::QueuedConnection);
}

void NoteTexts::hireWorker()
{
    while (m_batches < batchesAhead) {
        std::vector<Source> batch = nextBatch();
        if (batch.empty())
            return;
        ++m_batches;
        m_thread.start([this, batch = std::move(batch)] {
            std::vector<Result> results;
            results.reserve(batch.size());
            for (const Source &source : batch) {
                if (m_isEnding)
                    return;
                results.push_back(derive(source));
            }
            // The object outlives its thread, and is only told, not touched.
            QMetaObject::invokeMethod(
                this, [this, results = std::move(results)] { take(results); },
                Qt::QueuedConnection);
        });
    }
}

std::vector<NoteTexts::Source> NoteTexts::nextBatch()
{
    std::vector<Source> batch;
    qsizetype characters = 0;
    while (!m_waiting.empty() && batch.size() < notesInBatch && characters < charactersInBatch) {
        const QUuid id = m_waiting.back();
        m_waiting.pop_back();
        const auto entry = m_entries.find(id);
        if (entry == m_entries.end() || entry->state != State::Waiting)
            continue;
        entry->state = State::InWork;
        characters += entry->body.size();
        batch.push_back({id, entry->title, entry->body, entry->revision});
    }
    return batch;
}

void NoteTexts::take(std::vector<Result> results)
{
    --m_batches;
    hireWorker();
    QList<QUuid> ids;
    for (Result &result : results) {
        const auto entry = m_entries.find(result.id);
        if (entry == m_entries.end() || entry->revision != result.revision)
            continue; // deleted or changed meanwhile
        entry->state = State::Derived;
        if (!entry->lines)
            entry->lines = std::move(result.lines);
        entry->searched = std::move(result.searched);
        ids << result.id;
    }
    if (!ids.isEmpty())
        Q_EMIT
    derived(ids);
}
