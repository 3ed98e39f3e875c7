// What the list of ten thousand notes costs: bench_note_list [--benchmark_filter=…]

#include "core/SearchQuery.h"
#include "core/String+HTML.h"
#include "mainwindow/NoteListModel.h"
#include "tests/mainwindow/ManyNotes.h"
#include "tests/mainwindow/NoteListFixture.h"

#include <QGuiApplication>

#include <benchmark/benchmark.h>

#include <chrono>
#include <memory>

using namespace Qt::StringLiterals;

namespace
{
constexpr int noteCount = 10'000;

struct Fixture : NoteListFixture {
    Fixture() { store.setNotes(manyNotes(noteCount)); }

    void search(const QString &text) const
    {
        model->setSearchText(text);
        while (!model->isSearchComplete())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    /// Fresh, all texts derived.
    void prepare()
    {
        model = std::make_unique<NoteListModel>(store, selection);
        search(u"x"_s);
        search(u""_s);
    }

    std::unique_ptr<NoteListModel> model;
};

Fixture &fixture()
{
    static Fixture fixture;
    return fixture;
}

/// The one with all its texts, as it is after some seconds.
Fixture &ready()
{
    static Fixture &ready = []() -> Fixture & {
        fixture().prepare();
        return fixture();
    }();
    ready.search(u""_s);
    return ready;
}

template <typename Work>
void measure(benchmark::State &state, Work work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    state.SetIterationTime(
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
}

void deriveLines(benchmark::State &state)
{
    const Note note = fixture().store.notes()[0];
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(note.headingText());
        benchmark::DoNotOptimize(note.previewText({}));
    }
}
BENCHMARK(deriveLines)->Unit(benchmark::kMicrosecond);

void derivePlainText(benchmark::State &state)
{
    const Note note = fixture().store.notes()[0];
    while (state.KeepRunning())
        benchmark::DoNotOptimize(searchableText({slowStrippingHTML(note.body)}));
}
BENCHMARK(derivePlainText)->Unit(benchmark::kMicrosecond);

// Until a search that began at once is complete.
void deriveAll(benchmark::State &state)
{
    Fixture &f = fixture();
    while (state.KeepRunning()) {
        NoteListModel model(f.store, f.selection);
        model.setSearchText(u"milk"_s);
        while (!model.isSearchComplete())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}
BENCHMARK(deriveAll)->Unit(benchmark::kMillisecond)->Iterations(1);

// Before any text is derived.
void firstSearch(benchmark::State &state)
{
    Fixture &f = fixture();
    while (state.KeepRunning()) {
        NoteListModel model(f.store, f.selection);
        measure(state, [&] { model.setSearchText(u"milk"_s); });
    }
}
BENCHMARK(firstSearch)->UseManualTime()->Unit(benchmark::kMillisecond);

void keystroke(benchmark::State &state, const char *before, const char *after)
{
    Fixture &f = ready();
    int rows = 0;
    while (state.KeepRunning()) {
        f.model->setSearchText(QString::fromUtf8(before));
        measure(state, [&] { f.model->setSearchText(QString::fromUtf8(after)); });
        rows = f.model->rowCount();
    }
    state.counters["rows"] = rows;
}
#define KEYSTROKE(name, before, after)                                                             \
    BENCHMARK_CAPTURE(keystroke, name, before, after)                                              \
        ->UseManualTime()                                                                          \
        ->Unit(benchmark::kMillisecond)
KEYSTROKE(first_letter, "", "e");
KEYSTROKE(rare_letter, "", "q");
KEYSTROKE(frequent_pair, "e", "ea");
KEYSTROKE(rare_pair, "q", "qx");
KEYSTROKE(here_and_there, "", "7"); // in the numbers of a third
KEYSTROKE(here_and_there_cleared, "7", "");
KEYSTROKE(here_and_there_else, "7", "8");
KEYSTROKE(word, "mil", "milk");
KEYSTROKE(no_hit, "milk", "milkx");
KEYSTROKE(no_hit_pair, "", "\xc5\xba\xc5\xba"); // źź
KEYSTROKE(long_no_hit, "", "a line that nobody has ever written");
KEYSTROKE(backspace, "milkx", "milk");
KEYSTROKE(backspace_rare, "qx", "q");
KEYSTROKE(cleared, "milkx", "");

void editNote(benchmark::State &state, const char *query, bool isTold)
{
    Fixture &f = ready();
    f.search(QString::fromUtf8(query));
    const QUuid id = f.store.notes()[7000].id;
    const QString bodies[]{f.store.note(id)->body, f.store.note(id)->body + u"<p>x</p>"_s};
    if (!isTold)
        f.model.reset(); // what the store takes by itself
    int turn = 0;
    while (state.KeepRunning()) {
        Note note = *f.store.note(id);
        note.body = bodies[++turn % 2];
        f.store.updateNote(note);
    }
    if (!isTold)
        f.prepare();
}
BENCHMARK_CAPTURE(editNote, store_alone, "", false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(editNote, with_list, "", true)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(editNote, with_search, "milk", true)->Unit(benchmark::kMicrosecond);

void moveNote(benchmark::State &state, bool isTold)
{
    Fixture &f = ready();
    const QUuid id = f.store.notes()[7000].id;
    const QUuid targets[]{f.store.notes()[100].id, f.store.notes()[9000].id};
    if (!isTold)
        f.model.reset();
    int turn = 0;
    while (state.KeepRunning()) {
        f.store.moveNote(id, targets[++turn % 2]);
        benchmark::DoNotOptimize(f.store.indexOf(id));
    }
    if (!isTold)
        f.prepare();
}
BENCHMARK_CAPTURE(moveNote, store_alone, false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(moveNote, with_list, true)->Unit(benchmark::kMicrosecond);

void rowData(benchmark::State &state, int role, const char *query)
{
    Fixture &f = ready();
    f.search(QString::fromUtf8(query));
    int row = 0;
    while (state.KeepRunning())
        benchmark::DoNotOptimize(f.model->data(f.model->index(row++ % f.model->rowCount()), role));
}
BENCHMARK_CAPTURE(rowData, title, NoteListModel::TitleRole, "");
BENCHMARK_CAPTURE(rowData, preview, NoteListModel::PreviewRole, "");
BENCHMARK_CAPTURE(rowData, preview_markup, NoteListModel::PreviewMarkupRole, "milk");
BENCHMARK_CAPTURE(rowData, time, NoteListModel::TimestampRole, "");
BENCHMARK_CAPTURE(rowData, colour, NoteListModel::ColorRole, "");

void rowOf(benchmark::State &state)
{
    Fixture &f = ready();
    const QList<QUuid> ids = f.model->noteIDs();
    int row = 0;
    while (state.KeepRunning())
        benchmark::DoNotOptimize(f.model->rowOf(ids[(row += 7919) % noteCount]));
}
BENCHMARK(rowOf);
} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
