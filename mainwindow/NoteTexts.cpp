#include "mainwindow/NoteTexts.h"

#include "core/NoteLines.h"
#include "core/SearchQuery.h"
#include "core/ThreadJob.h"

#include <algorithm>
#include <numeric>
#include <utility>

#ifdef Q_OS_LINUX
#include <sys/resource.h>
#endif

using namespace Qt::StringLiterals;

namespace
{
// A batch takes a millisecond or two, ten where Qt's importer has to read the notes. One more than
// there are threads keeps them busy while the main thread takes one in; more would let a note that
// was edited just now wait.
constexpr std::size_t notesInBatch = 64;
constexpr qsizetype charactersInBatch = 131'072;
// While a search waits, enough of them for all threads to go on while the main thread draws a
// frame.
constexpr int hurriedBatches = 40;

// Each piece of news makes a list of ten thousand look at all its rows, and mostly behind those on
// the screen: the first comes soon, and each later one after twice the time.
constexpr qint64 firstNewsInterval = 25; // ms

// Qt's own priorities mean nothing to the usual scheduler of Linux, and there may be thousands of
// notes to derive while the window and the web engine are still coming up.
void giveWay()
{
#ifdef Q_OS_LINUX
    constexpr int niceness = 10;
    thread_local bool isDone = false;
    if (!std::exchange(isDone, true)) // 0: this thread alone
        ::setpriority(PRIO_PROCESS, 0, ::getpriority(PRIO_PROCESS, 0) + niceness);
#endif
}
} // namespace

NoteTexts::NoteTexts(QObject *parent) : QObject(parent)
{
    m_thread.setObjectName(u"org.plim.Plim.texts"_s);
    m_thread.setMaxThreadCount(1);
    m_thread.setThreadPriority(QThread::LowPriority);
    m_hurriedThreads.setObjectName(m_thread.objectName());
}

NoteTexts::~NoteTexts()
{
    m_isEnding = true;
    for (QThreadPool *threads : {&m_thread, &m_hurriedThreads}) {
        threads->clear();
        threads->waitForDone();
    }
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
        entry.lines = Lines{headingLine(note), previewLine(note)};
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

void NoteTexts::setHurried(bool isHurried)
{
    if (m_isHurried == isHurried)
        return;
    m_isHurried = isHurried;
    if (isHurried) {
        m_sinceTold.start();
        m_newsInterval = firstNewsInterval;
        hireWorker();
    }
}

// The texts lie side by side in one piece of memory: thousands of small ones keep the kernel busy,
// which makes a thread's memory larger page by page.
std::vector<NoteTexts::Result> NoteTexts::deriveBatch(const std::vector<Source> &batch) const
{
    const auto length = [](qsizetype sum, const Source &source) {
        return sum + source.body.size();
    };
    QByteArray texts;
    texts.reserve(std::accumulate(batch.begin(), batch.end(), qsizetype(0), length));
    std::vector<Result> results;
    results.reserve(batch.size());
    for (const Source &source : batch) {
        if (m_isEnding)
            break;
        results.push_back(derive(source, texts));
    }
    texts.squeeze();
    const char *start = texts.constData();
    for (Result &result : results) {
        const qsizetype size = result.searched.text.size();
        result.searched.text = {start, size};
        result.searched.texts = texts;
        start += size;
    }
    return results;
}

/// What is searched is put behind the texts; where that is in the end is not known yet.
NoteTexts::Result NoteTexts::derive(const Source &source, QByteArray &texts) const
{
    Note note;
    note.title = source.title;
    note.body = source.body;
    NotePlainText text = notePlainText(note, [this] { return !m_isEnding; });
    if (text.all.isEmpty())
        text.all = source.body; // better found by its markup than never
    const qsizetype start = texts.size();
    appendSearchable(texts, {text.heading, text.preview, text.all});
    const bool hasPreview = !text.preview.isEmpty();
    return {source.id,
            source.revision,
            {lineOf(text.heading), std::move(text.preview)},
            {QByteArrayView(texts).sliced(start), hasPreview, {}}};
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
    // A thread that has given way once does so for ever; the hurried ones are others.
    QThreadPool &threads = m_isHurried ? m_hurriedThreads : m_thread;
    const int mostBatches = m_isHurried ? hurriedBatches : threads.maxThreadCount() + 1;
    while (m_batches < mostBatches) {
        std::vector<Source> batch = nextBatch();
        if (batch.empty())
            return;
        ++m_batches;
        startJob(threads, [this, isHurried = m_isHurried, batch = std::move(batch)] {
            if (!isHurried)
                giveWay();
            m_answers.give(
                [this, results = deriveBatch(batch)]() mutable { take(std::move(results)); });
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
    for (Result &result : results) {
        const auto entry = m_entries.find(result.id);
        if (entry == m_entries.end() || entry->revision != result.revision)
            continue; // deleted or changed meanwhile
        entry->state = State::Derived;
        if (!entry->lines)
            entry->lines = std::move(result.lines);
        entry->searched = std::move(result.searched);
        m_untold << result.id;
    }
    if (!m_isHurried || m_batches == 0) {
        tell();
    } else if (m_sinceTold.elapsed() >= m_newsInterval) {
        m_newsInterval *= 2;
        tell();
    }
}

void NoteTexts::tell()
{
    m_sinceTold.start();
    const QList<QUuid> ids = std::exchange(m_untold, {});
    if (!ids.isEmpty())
        Q_EMIT derived(ids);
}
