#include "bench/probe/ProcessorTime.h"
#include "tests/core/Duration.h"
#include "tests/e2e/PauseProbe.h"
#include "tests/e2e/PlimRun.h"
#include "tests/e2e/StoredNotes.h"

#include <QElapsedTimer>
#include <QTest>

#include <csignal>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace
{
constexpr double longestPause = slowness; ///< s, in which the program may not attend to its events
constexpr int pageTime = 20'000;          ///< ms that the page may take to show such a note, or not
const QString lastWords = u"last words"_s;
const QString typedWords = u"typed"_s;

QString twentyMegabytes()
{
    return u"<h1>A</h1>"_s +
           u"<p>some words of a paragraph, and more of them</p>"_s.repeated(400'000) +
           u"<p>last words</p>"_s;
}
} // namespace

/// Notes as nobody writes them, but as somebody may once have pasted one: the page takes the time
/// that it takes for them, the program none. Times are those of a machine that has nothing else to
/// do.
class TestLargeNotes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void theWindowAnswersAllTheTime_data();
    void theWindowAnswersAllTheTime();
    void whatWasJustTypedIsThereAfterTheEnd();

private:
    /// Waits until the list shows so many notes.
    [[nodiscard]] static bool isListOf(const PlimRun &plim, int count)
    {
        const auto isDrawn = [&plim](int row) {
            return !isFlat(plim.mainWindow().pixels({40, 100 + 70 * row, 200, 40}));
        };
        return QTest::qWaitFor([&] { return isDrawn(count - 1) && !isDrawn(count); },
                               XTools::patience);
    }

    /// Until the three notes are in the list, in seconds; 0 when they do not come.
    [[nodiscard]] static double startOf(PlimRun &plim)
    {
        QElapsedTimer time;
        time.start();
        if (!plim.open() || !isListOf(plim, 3))
            return 0;
        return ownPause(double(time.elapsed()) / 1000, {},
                        ProcessorTime::of(std::uint32_t(plim.processId())));
    }

    /// What is done meanwhile, and whether it could be.
    template <typename Act>
    void during(const char *what, const PlimRun &plim, Act act)
    {
        PauseProbe probe(plim.processId());
        const bool isDone = act();
        QTest::qWait(300); // what it leads to
        const double pause = probe.longestPause();
        std::printf("%s, %s: %.2f s\n", QTest::currentDataTag(), what, pause);
        std::fflush(stdout);
        QVERIFY2(isDone, what);
        QVERIFY2(pause >= 0 && pause < longestPause, what);
    }

    double m_usualStart = 0;
};

void TestLargeNotes::initTestCase()
{
    const ThrowAwayHome home;
    storeNotesCalled(home, {u"A"_s, u"B"_s, u"C"_s});
    for (int start = 0; start < 2; ++start) { // the first one reads the program from the disk
        PlimRun plim(home);
        m_usualStart = startOf(plim);
        QVERIFY(m_usualStart > 0);
        plim.sendSignal(SIGTERM);
        QCOMPARE(plim.exitCode(), 0);
    }
}

void TestLargeNotes::theWindowAnswersAllTheTime_data()
{
    constexpr int deep = 5'000;
    QTest::addColumn<QString>("body");
    QTest::addColumn<bool>("isTypedInto"); ///< not where the page is busy for minutes
    QTest::newRow("a heading of a megabyte")
        << u"<h1>"_s + u"heading words "_s.repeated(75'000) + u"end</h1><p>last words</p>"_s
        << true;
    QTest::newRow("twenty megabytes") << twentyMegabytes() << true;
    QTest::newRow("one word of twenty megabytes")
        << u"<h1>A</h1><p>"_s + QString(20'000'000, u'x') + u"</p><p>last words</p>"_s << true;
    QTest::newRow("a heading of one word")
        << u"<h1>"_s + QString(1'000'000, u'x') + u"</h1><p>last words</p>"_s << true;
    QTest::newRow("two hundred thousand items")
        << u"<h1>A</h1><ul>"_s + u"<li>an item</li>"_s.repeated(200'000) +
               u"<li>last words</li></ul>"_s
        << false;
    QTest::newRow("deep blocks") << u"<h1>A</h1>"_s + u"<div>"_s.repeated(deep) + u"last words"_s +
                                        u"</div>"_s.repeated(deep)
                                 << false;
    QTest::newRow("deep formats") << u"<h1>A</h1><p>"_s + u"<b>"_s.repeated(deep) +
                                         u"last words"_s + u"</b>"_s.repeated(deep) + u"</p>"_s
                                  << false;
    QTest::newRow("deep lists") << u"<h1>A</h1>"_s + u"<ul><li>"_s.repeated(deep) +
                                       u"last words"_s + u"</li></ul>"_s.repeated(deep)
                                << false;
}

/// The page needs seconds to write all of it down.
void TestLargeNotes::whatWasJustTypedIsThereAfterTheEnd()
{
    const ThrowAwayHome home;
    storeNotes(home, {storedNote(storedID(0), twentyMegabytes())});
    PlimRun plim(home);
    QVERIFY(plim.open());
    plim.click({220, 120});
    QVERIFY(plim.waitUntilSaid(u"shown \"%1"_s.arg(storedID(0).left(8))));
    plim.click({700, 300});
    plim.type(typedWords);
    QTest::qWait(500); // the keys are on their way, what they wrote is not
    plim.sendSignal(SIGTERM);
    QVERIFY(QTest::qWaitFor([&] { return !plim.isRunning(); }, XTools::patience));
    QCOMPARE(plim.exitCode(), 0);
    QVERIFY(plim.bodyOnDisk().contains(typedWords));
}

void TestLargeNotes::theWindowAnswersAllTheTime()
{
    QFETCH(QString, body);
    QFETCH(bool, isTypedInto);
    const ThrowAwayHome home;
    storeNotes(home,
               {storedNote(storedID(0), body), storedNote(storedID(1), u"<h1>B</h1><p>words</p>"_s),
                storedNote(storedID(2), u"<h1>Third</h1><p>other</p>"_s)});
    PlimRun plim(home);
    const double start = startOf(plim);
    std::printf("%s, start: %.2f s, with small notes %.2f s\n", QTest::currentDataTag(), start,
                m_usualStart);
    QVERIFY(start > 0 && start < m_usualStart + longestPause);
    during("after the start", plim, [&] {
        plim.point({220, 400});
        plim.point({220, 120});
        QTest::qWait(1000);
        return true;
    });
    during("searching", plim, [&] {
        plim.press({u"ctrl+f"_s});
        plim.type(u"third"_s);
        return isListOf(plim, 1) && plim.selectRow(0, storedID(2));
    });
    during("searching what it says", plim, [&] {
        plim.press({u"ctrl+f"_s, u"ctrl+a"_s});
        plim.type(u"words"_s);
        plim.press({u"ctrl+a"_s, u"BackSpace"_s});
        return isListOf(plim, 3);
    });
    during("opening it", plim, [&] {
        plim.click({220, 120});
        (void)QTest::qWaitFor(
            [&] { return plim.said().contains(u"shown \"%1"_s.arg(storedID(0).left(8))); },
            pageTime);
        return true;
    });
    if (isTypedInto) {
        during("typing into it", plim, [&] {
            plim.click({700, 300});
            plim.type(typedWords);
            return plim.waitUntilSaid(
                u"accepted %1 characters"_s.arg(body.size() + typedWords.size()));
        });
    }
    during("opening it in a sticky window", plim, [&] {
        plim.point({220, 120});
        plim.click({357, 120});
        return QTest::qWaitFor([&] { return plim.stickies().size() == 1; }, XTools::patience);
    });
    if (QTest::currentTestFailed())
        return;

    const auto id = std::uint32_t(plim.processId());
    const ProcessorTime before = ProcessorTime::of(id);
    ProcessorTime last = before;
    QElapsedTimer ending;
    ending.start();
    plim.sendSignal(SIGTERM);
    const bool hasEnded = QTest::qWaitFor(
        [&] {
            if (const ProcessorTime now = ProcessorTime::of(id); now.mainThread > 0)
                last = now;
            return !plim.isRunning();
        },
        XTools::patience);
    QVERIFY(hasEnded);
    const double pause = ownPause(double(ending.elapsed()) / 1000, before, last);
    std::printf("%s, ending: %.2f s\n", QTest::currentDataTag(), pause);
    std::fflush(stdout);
    QVERIFY(pause < longestPause);
    QCOMPARE(plim.exitCode(), 0);
    const QString stored = plim.bodyOnDisk(0);
    QVERIFY(stored.contains(lastWords)); // all of it: they are its end
    if (isTypedInto) {
        QVERIFY(stored.contains(typedWords));
        QCOMPARE(stored.size(), body.size() + typedWords.size());
    }
    QCOMPARE(plim.bodyOnDisk(1), u"<h1>B</h1><p>words</p>"_s);
    QCOMPARE(plim.warnings(), QStringList());
}

QTEST_GUILESS_MAIN(TestLargeNotes)
#include "tst_e2e_large_notes.moc"
