// What is measured inside the program, as one line of JSON:
// bench_figures edit|search|cold-search|save|growth NOTES

#include "core/NotesJson.h"
#include "core/SearchQuery.h"
#include "core/String+HTML.h"
#include "core/app/Platform.h"
#include "core/app/PlimApp.h"
#include "core/app/WindowSystem.h"
#include "editor/EditorWebView.h"
#include "mainwindow/ContentController.h"
#include "sticky/WindowHolder.h"
#include "tests/core/Duration.h"
#include "tests/core/OpenFiles.h"
#include "tests/mainwindow/ManyNotes.h"
#include "tests/mainwindow/NoteListFixture.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QThread>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

namespace
{
/// What the main thread has worked, or all of them, whatever else the machine did meanwhile.
double workedSeconds(clockid_t clock = CLOCK_THREAD_CPUTIME_ID)
{
    return processorTime(clock) / 1e9;
}
template <typename Work>
double worked(Work work)
{
    return duration(work) / 1e9;
}
template <typename Work>
double lasted(Work work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return double(timer.nsecsElapsed()) / 1e9;
}

double median(std::vector<double> values)
{
    std::ranges::sort(values);
    return values[values.size() / 2];
}

template <typename Condition>
void waitFor(const char *what, Condition condition)
{
    const QDeadlineTimer end(std::chrono::minutes(2));
    while (!condition()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        if (end.hasExpired())
            qFatal("bench_figures: %s does not happen", what);
    }
}

/// Plim itself on so many notes, its main window on the screen.
class RunningPlim
{
public:
    explicit RunningPlim(int notes)
    {
        QDir().mkpath(m_home.data());
        QFile file(m_home.data() + u"/notes.json"_s);
        if (!file.open(QIODevice::WriteOnly) || file.write(*encodeNotes(manyNotes(notes))) <= 0)
            qFatal("bench_figures: the notes cannot be written");
        file.close();
        m_plim = std::make_unique<PlimApp>();
        m_plim->start({});
        m_frames = QObject::connect(&window(), &QQuickWindow::frameSwapped, &window(),
                                    [this] { ++m_frameCount; });
        waitForFrame();
    }
    ~RunningPlim() { QObject::disconnect(m_frames); }
    Q_DISABLE_COPY_MOVE(RunningPlim)

    [[nodiscard]] static QQuickWindow &window()
    {
        return *qobject_cast<QQuickWindow *>(WindowHolder::shared().window);
    }
    [[nodiscard]] static ContentController &content()
    {
        return *window().property("content").value<ContentController *>();
    }
    [[nodiscard]] static NoteListModel &list() { return *content().filteredNotes(); }

    void waitForFrame() const
    {
        const int before = m_frameCount;
        waitFor("a frame", [&] { return m_frameCount > before; });
    }
    /// All texts are there to be searched.
    static void derive()
    {
        list().setSearchText(u"x"_s);
        waitFor("the end of a search", [] { return list().isSearchComplete(); });
        list().setSearchText({});
    }
    /// Where the page's messages come in, once it shows the first note.
    static PageMessages &openedPage()
    {
        content().selectRow(0);
        const auto *loader = window().findChild<QQuickItem *>(u"editor"_s);
        EditorWebView *view = nullptr;
        waitFor("the editor", [&] {
            auto *item = loader->property("item").value<QQuickItem *>();
            view = item ? item->findChild<EditorWebView *>() : nullptr;
            return view && view->isFirstResponder();
        });
        bool isShown = false;
        const auto connection = QObject::connect(
            view, &EditorWebView::messageReceived, view,
            [&](const QString &handler) { isShown = isShown || handler == u"plimState"; });
        waitFor("the page", [&] { return isShown; });
        QObject::disconnect(connection);
        return *qobject_cast<PageMessages *>(view->messages());
    }
    /// What the list's first row has on the screen.
    static QString firstTitle()
    {
        QQuickItem *row = nullptr;
        for (auto *item : window().findChildren<QQuickItem *>()) {
            if (!row && item->inherits("QQuickListView"))
                QMetaObject::invokeMethod(item, "itemAtIndex", Q_RETURN_ARG(QQuickItem *, row),
                                          Q_ARG(int, 0));
        }
        return row ? row->property("titleText").toString() : QString();
    }

private:
    ThrowAwayHome m_home;
    std::unique_ptr<PlimApp> m_plim;
    QMetaObject::Connection m_frames;
    int m_frameCount = 0;
};

/// From the page's report of a key to the note in the store and the row in the list.
QJsonObject edit(int notes)
{
    constexpr int repetitions = 200;
    const RunningPlim plim(notes);
    plim.derive();
    PageMessages &page = plim.openedPage();
    const QString id = plim.list().noteIDs()[0].toString(QUuid::WithoutBraces);
    const QString rest = manyNotes(1)[0].body;
    std::vector<double> times;
    std::vector<double> toFrame;
    for (int i = 0; i < repetitions; ++i) {
        const QString title = u"Heading "_s + QString::number(i);
        const QString report = QString::fromUtf8(
            QJsonDocument(
                QJsonObject{{u"id"_s, id}, {u"html"_s, u"<h1>"_s + title + u"</h1>"_s + rest}})
                .toJson(QJsonDocument::Compact));
        const double start = workedSeconds();
        page.receive(u"plim"_s, report);
        times.push_back(workedSeconds() - start);
        if (plim.firstTitle() != title)
            qFatal("bench_figures: edit %d, the row shows \"%s\", the list \"%s\"", i,
                   qPrintable(plim.firstTitle()),
                   qPrintable(plim.list().index(0).data(NoteListModel::TitleRole).toString()));
        plim.waitForFrame();
        toFrame.push_back(workedSeconds() - start);
    }
    return {{u"edit"_s, median(times)},
            {u"editGreatest"_s, std::ranges::max(times)},
            {u"editToFrame"_s, median(toFrame)}};
}

/// A key in the search field, until the list with its hits is drawn.
QJsonObject search(int notes)
{
    constexpr int repetitions = 15;
    const RunningPlim plim(notes);
    const auto press = [&](const QString &text) {
        plim.list().setSearchText(text);
        plim.waitForFrame();
    };
    QJsonObject result{{u"searchCold"_s, worked([&] { press(u"m"_s); })}};
    plim.derive();
    plim.waitForFrame();
    // At the machine's pace, and no faster than the frames.
    const QStringList keys{u"m"_s,    u"mi"_s, u"mil"_s, u"milk"_s, u"milkx"_s,
                           u"milk"_s, u""_s,   u"7"_s,   u""_s};
    std::vector<std::vector<double>> times(keys.size());
    std::vector<std::vector<double>> found(keys.size());
    for (int i = 0; i < repetitions; ++i) {
        for (qsizetype key = 0; key < keys.size(); ++key) {
            const double start = workedSeconds();
            plim.list().setSearchText(keys[key]);
            found[std::size_t(key)].push_back(workedSeconds() - start);
            plim.waitForFrame();
            times[std::size_t(key)].push_back(workedSeconds() - start);
        }
    }
    std::vector<double> medians;
    std::ranges::transform(times, std::back_inserter(medians), &median);
    result[u"searchWarm"_s] = median(medians);
    result[u"searchWarmSlowest"_s] = std::ranges::max(medians);
    medians.clear();
    std::ranges::transform(found, std::back_inserter(medians), &median);
    result[u"searchFoundSlowest"_s] = std::ranges::max(medians);
    return result;
}

/// The same in the first moment, and until all hits are on the screen: the texts are derived first.
QJsonObject coldSearch(int notes)
{
    const RunningPlim plim(notes);
    return {{u"searchColdWhole"_s, lasted([&] {
                 plim.list().setSearchText(u"m"_s);
                 waitFor("the end of a search", [&] { return plim.list().isSearchComplete(); });
                 plim.waitForFrame();
             })}};
}

/// Until the backup that a save has deleted is gone: no figure has the rest of the one before.
void waitForRest(const QString &dataDirectory)
{
    const QDeadlineTimer end(std::chrono::minutes(1));
    while (holdsDeletedFile(dataDirectory)) {
        if (end.hasExpired())
            qFatal("bench_figures: a save does not end");
        QThread::msleep(1);
    }
}

double writeAlone(const QString &path, const QByteArray &bytes)
{
    return lasted([&] {
        QSaveFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
            qFatal("bench_figures: %s", qPrintable(file.errorString()));
    });
}

/// What a save takes of the main thread, and all of it beside the bare writing of the same bytes.
QJsonObject save(int notes)
{
    constexpr int repetitions = 8;
    NoteListFixture f;
    f.store.setNotes(manyNotes(notes));
    const QByteArray bytes = *encodeNotes(f.store.notes());
    std::vector<double> main, whole, alone, ratios, encoding;
    for (int i = 0; i < repetitions; ++i) {
        main.push_back(worked([&] {
            bool isSaved = false;
            const auto connection =
                QObject::connect(&f.store, &NoteStore::saved, &f.store, [&] { isSaved = true; });
            f.store.save();
            waitFor("a save", [&] { return isSaved; });
            QObject::disconnect(connection);
        }));
        // In turns, each first as often as the other: the disk is not as fast all the time.
        const auto writeBytes = [&] {
            waitForRest(f.home.data());
            alone.push_back(writeAlone(f.home.path(u"alone.json"_s), bytes));
        };
        const auto writeStore = [&] {
            waitForRest(f.home.data());
            whole.push_back(lasted([&] { f.store.flush(); }));
        };
        if (i % 2 == 0)
            writeBytes();
        writeStore();
        if (i % 2 != 0)
            writeBytes();
        ratios.push_back(whole.back() / alone.back());
        encoding.push_back(worked(
            [&] { (void)writeNotes(f.store.notes(), [](QByteArrayView) { return true; }); }));
    }
    return {{u"saveMain"_s, median(main)},
            {u"saveWhole"_s, median(whole)},
            {u"saveAlone"_s, median(alone)},
            {u"saveRatio"_s, median(ratios)},
            {u"saveEncoding"_s, median(encoding)}};
}

/// The same thousand again and again, each with an id of its own: making them takes longer than
/// what is measured.
NoteArray repeatedNotes(int count)
{
    const NoteArray some = manyNotes(std::min(count, 1000));
    NoteArray notes;
    for (int i = 0; i < count; ++i) {
        Note note = some[i % some.size()];
        note.id = QUuid::createUuid();
        notes.append(std::move(note));
    }
    return notes;
}

/// Work that grows with the notes, all of it on one thread at a time.
QJsonObject growth(int notes)
{
    ThrowAwayHome home;
    QDir().mkpath(home.data());
    const NoteArray all = repeatedNotes(notes);
    QFile file(home.data() + u"/notes.json"_s);
    if (!file.open(QIODevice::WriteOnly) || file.write(*encodeNotes(all)) <= 0)
        qFatal("bench_figures: the notes cannot be written");
    file.close();
    std::vector<QByteArray> texts;
    for (const Note &note : all)
        texts.push_back(searchableText({fastStrippingHTML(note.body)}));
    // At once: what lies about for seconds may be taken out of the memory by the kernel.
    const double search = worked([&] {
        const SearchQuery query(u"a line that nobody has ever written"_s);
        if (std::ranges::any_of(texts, [&](const QByteArray &t) { return query.occursIn(t); }))
            qFatal("bench_figures: it is there");
    });
    const auto processSeconds = [] { return workedSeconds(CLOCK_PROCESS_CPUTIME_ID); };
    const double start = processSeconds();
    NoteStore store(home.data());
    const double load = processSeconds() - start;
    std::vector<double> saves, encoding;
    constexpr int backups = 3; // what each of the first saves leaves behind, all later ones delete
    // The least of several: the page cache's memory comes from the machine below at ten times the
    // price until it has been used before.
    constexpr int repetitions = 6;
    for (int i = 0; i < backups + repetitions; ++i) {
        const double before = processSeconds();
        store.flush();
        waitForRest(home.data());
        if (i >= backups)
            saves.push_back(processSeconds() - before);
    }
    for (int i = 0; i < repetitions; ++i)
        encoding.push_back(
            worked([&] { (void)writeNotes(store.notes(), [](QByteArrayView) { return true; }); }));
    return {{u"load"_s, load},
            {u"growthSave"_s, std::ranges::min(saves)},
            {u"growthEncoding"_s, median(encoding)},
            {u"growthSearch"_s, search}};
}
} // namespace

int main(int argc, char **argv)
{
    preparePlatform();
    spareDriver();
    const QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QHash<QString, QJsonObject (*)(int)> figures{{u"edit"_s, &edit},
                                                       {u"search"_s, &search},
                                                       {u"cold-search"_s, &coldSearch},
                                                       {u"save"_s, &save},
                                                       {u"growth"_s, &growth}};
    const int notes = arguments.size() == 3 ? arguments[2].toInt() : 0;
    if (notes < 1 || !figures.contains(arguments[1])) {
        std::fputs("usage: bench_figures edit|search|cold-search|save|growth NOTES\n", stderr);
        return EXIT_FAILURE;
    }
    std::puts(
        QJsonDocument(figures[arguments[1]](notes)).toJson(QJsonDocument::Compact).constData());
    std::fflush(stdout);
    std::_Exit(EXIT_SUCCESS); // the web engine's end is not measured
}
