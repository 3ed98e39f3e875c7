#include "core/NotesJson.h"
#include "tests/core/Duration.h"
#include "tests/e2e/Keyboard.h"
#include "tests/e2e/PlimRun.h"
#include "tests/e2e/ProcessorWait.h"
#include "tests/e2e/StoredNotes.h"
#include "tests/e2e/TypedText.h"

#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <memory>
#include <thread>

#include <sys/inotify.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
using Clock = TypedText::Clock;
using Duration = TypedText::Duration;

const QString noteID = u"11111111-1111-4111-8111-111111111111"_s;
const QString heading = u"<h1>Numbers</h1>"_s;

constexpr int shortRun = 8; ///< kills in the suite; scripts/soak asks for more
constexpr int runsInOneHome = 20;
constexpr auto shortestStroke = 25ms;
constexpr auto longestStroke = 90ms;
constexpr auto longestRest = 1500ms; ///< of one who pauses now and then
constexpr int strokesBeforeRest = 12;
constexpr auto earliestSave = 200ms; ///< that is waited for
constexpr auto longestSave = 6ms; ///< the writing takes less, most of the time
/// That a key takes to the store, and what is stored to the disk: between the two, timers run.
constexpr auto way = 300ms;
/// That a busy machine may cost the two ways together, at most; an idle one costs them hardly a
/// tenth of a second.
constexpr auto latest = 1000ms;
constexpr auto slowWork = 10ms * (slowness - 1); ///< what a sanitizer costs them

enum class Manner {
    Pausing,  ///< killed at any moment
    Unbroken, ///< never half a second without a key
    Saving,   ///< killed while the notes are being written
};

double seconds(Duration duration)
{
    return std::chrono::duration<double>(duration).count();
}

/// Tells when a file is made in a directory.
class FileWatch
{
public:
    explicit FileWatch(const QString &directory)
        : m_descriptor(inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    {
        inotify_add_watch(m_descriptor, QFile::encodeName(directory).constData(), IN_CREATE);
    }
    ~FileWatch() { ::close(m_descriptor); }
    Q_DISABLE_COPY_MOVE(FileWatch)

    [[nodiscard]] bool hasNewFile() const
    {
        std::array<char, 4096> events{};
        return ::read(m_descriptor, events.data(), events.size()) > 0;
    }

private:
    int m_descriptor;
};

/// The note's words in a file of notes; null when the file is not whole.
QString storedWords(const QByteArray &bytes)
{
    const std::optional<NoteArray> notes = decodeNotes(bytes, {});
    if (!notes || notes->size() != 1 || !(*notes)[0].body.startsWith(heading))
        return {};
    return u""_s + (*notes)[0].body.sliced(heading.size()).replace(u"&nbsp;"_s, u" "_s);
}
} // namespace

/// The built program, typed into and killed. What its user has lost then is what was typed in the
/// last moment, and never more.
///
/// A busy machine is later with everything, and that is none of the program's faults: it may be
/// late by what its threads have waited for a processor, on the ways, and by what this test, which
/// only sleeps between two keys, came late itself while it typed. No timer of the program has a
/// part in either.
class TestKill : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        bool isGiven = false;
        m_seed = qEnvironmentVariable("PLIM_SEED").toUInt(&isGiven);
        if (!isGiven)
            m_seed = QRandomGenerator::global()->generate();
        m_random.seed(m_seed);
        std::printf("seed %u (PLIM_SEED)\n", m_seed);
        QVERIFY(m_keyboard.isConnected());
    }

    void onlyTheLastMomentIsMissing_data()
    {
        QTest::addColumn<Manner>("manner");
        QTest::newRow("typing with pauses") << Manner::Pausing;
        QTest::newRow("typing without a pause") << Manner::Unbroken;
        QTest::newRow("while the notes are written") << Manner::Saving;
    }
    void onlyTheLastMomentIsMissing()
    {
        QFETCH(Manner, manner);
        const int wanted = qEnvironmentVariableIntValue("PLIM_KILLS");
        const int all = wanted > 0 ? wanted : shortRun;
        const int kills = std::max(1, share(manner, all));
        m_most = m_mostAllowed = {};
        m_lost = 0;
        for (int done = 0; done < kills; ++done) {
            if (done % runsInOneHome == 0) {
                m_home = std::make_unique<ThrowAwayHome>();
                storeNotes(*m_home, {storedNote(noteID, heading)});
                m_words = u""_s;
                m_next.clear();
            }
            killOnce(manner, done % 2 == 0);
            if (QTest::currentTestFailed())
                return;
            if (kills > shortRun && (done + 1) % 10 == 0)
                std::printf("%s: %d of %d\n", QTest::currentDataTag(), done + 1, kills);
            std::fflush(stdout);
        }
        std::printf("%s: %d kills, in %d something was missing, at most the last %.2f s; the "
                    "machine was late by up to %.3f s\n",
                    QTest::currentDataTag(), kills, m_lost, seconds(m_most),
                    seconds(m_mostAllowed));
    }

private:
    /// Each manner's share of so many kills; together they have them all.
    static int share(Manner manner, int kills)
    {
        constexpr std::array eighths{0, 3, 5, 8};
        const auto index = std::size_t(manner);
        return kills * eighths[index + 1] / 8 - kills * eighths[index] / 8;
    }

    /// Anything from the one to the other.
    Duration anything(Duration from, Duration to)
    {
        return from + std::chrono::duration_cast<Duration>((to - from) * m_random.generateDouble());
    }

    void press(TypedText &typed)
    {
        if (m_next.isEmpty())
            m_next = QByteArray::number(++m_number) + ' ';
        const Clock::time_point before = Clock::now(); // the earliest that the program can have it
        m_keyboard.press(m_next[0]);
        typed.add(m_next[0], before);
        m_next.remove(0, 1);
    }

    /// Types a key and waits until the program has it.
    [[nodiscard]] bool pressFirst(PlimRun &plim, TypedText &typed)
    {
        press(typed);
        return plim.waitUntilSaid(
            u"accepted %1 "_s.arg(heading.size() + lengthInPage(m_words + typed.text())));
    }

    /// The page keeps a space at the end as a reference of six characters.
    static qsizetype lengthInPage(const QString &words)
    {
        return words.size() + (words.endsWith(u' ') ? 5 : 0);
    }

    /// With `isWhenDue` one who pauses is killed as soon as everything must be there.
    void killOnce(Manner manner, bool isWhenDue)
    {
        PlimRun plim(*m_home);
        QVERIFY(plim.open());
        QVERIFY(plim.selectRow(0, noteID));
        TypedText typed;
        QVERIFY(pressFirst(plim, typed));

        ProcessorWait wait(plim.processId());
        Duration overslept{};
        const auto lateness = [&](Clock::time_point from, Clock::time_point to) {
            const Duration waited =
                to - from < 2 * way ? wait.between(from, to)
                                    : wait.between(from, from + way) + wait.between(to - way, to);
            return std::min<Duration>(latest, waited + overslept) +
                   std::chrono::duration_cast<Duration>(slowWork);
        };
        const auto sleepUntil = [&](Clock::time_point wake) {
            std::this_thread::sleep_until(wake);
            overslept = std::max(overslept, Clock::now() - wake);
        };

        const FileWatch saves(m_home->data());
        const Clock::time_point begin = Clock::now();
        Clock::time_point end = begin + killAfter(manner);
        Clock::time_point nextKey = begin;
        int strokes = 0;
        for (bool isAimed = false; Clock::now() < end;) {
            if (manner == Manner::Saving && !isAimed && Clock::now() > begin + earliestSave &&
                saves.hasNewFile()) {
                isAimed = true;
                end = Clock::now() + anything(0ms, longestSave);
            }
            if (!isAimed)
                wait.look();
            if (Clock::now() >= nextKey) {
                press(typed);
                nextKey = Clock::now() + anything(shortestStroke, longestStroke);
                if (manner != Manner::Unbroken && ++strokes % strokesBeforeRest == 0)
                    nextKey += anything(100ms, longestRest);
            }
            sleepUntil(
                std::min({end, nextKey, Clock::now() + (manner == Manner::Saving ? 1ms : 20ms)}));
        }
        if (manner == Manner::Pausing && isWhenDue) {
            while (typed.due(Clock::now(), lateness) < typed.size()) {
                sleepUntil(Clock::now() + 5ms);
                wait.look();
            }
        }
        plim.sendSignal(SIGKILL);
        const Clock::time_point killed = Clock::now();
        QVERIFY(QTest::qWaitFor([&] { return !plim.isRunning(); }, XTools::patience));
        QCOMPARE(plim.warnings(), QStringList());
        check(typed, killed, lateness);
    }

    Duration killAfter(Manner manner)
    {
        switch (manner) {
        case Manner::Pausing:
            return anything(100ms, 3s);
        case Manner::Unbroken: // from the first moment at which anything must be there
            return anything(4s, 7s);
        case Manner::Saving:
            return 10s; // if there should be no save at all
        }
        return {};
    }

    void check(const TypedText &typed, Clock::time_point killed,
               const TypedText::Lateness &lateness)
    {
        for (const QString &backup :
             QDir(m_home->data()).entryList({u"notes.json.bak*"_s}, QDir::Files))
            QVERIFY2(!storedWords(m_home->read(u"data/Plim/"_s + backup)).isNull(),
                     qPrintable(backup));
        const QByteArray bytes = m_home->read(u"data/Plim/notes.json"_s);
        const QString words = storedWords(bytes);
        QVERIFY2(!words.isNull(), bytes);
        const QString all = m_words + typed.text();
        QVERIFY2(all.startsWith(words),
                 qPrintable(u"\"%1\" was stored of \"%2\""_s.arg(words, all)));
        QVERIFY2(words.startsWith(m_words),
                 qPrintable(u"\"%1\" was there before, \"%2\" is now"_s.arg(m_words, words)));

        const qsizetype stored = words.size() - m_words.size();
        Duration allowed{};
        const qsizetype due = typed.due(killed, [&](Clock::time_point from, Clock::time_point to) {
            const Duration late = lateness(from, to);
            allowed = std::max(allowed, late);
            return late;
        });
        m_mostAllowed = std::max(m_mostAllowed, allowed);
        const Duration missing = typed.missing(stored, killed);
        m_lost += stored < typed.size();
        m_most = std::max(m_most, missing);
        QVERIFY2(stored >= due,
                 qPrintable(u"%1 of %2 characters were stored, %3 had to be; the first missing one "
                            u"was typed %4 s before "
                            "the end, and %5 s are allowed on this machine"_s.arg(stored)
                                .arg(typed.size())
                                .arg(due)
                                .arg(seconds(missing))
                                .arg(seconds(allowed))));
        m_words = words;
        m_number += 1000; // what was lost is not typed again
        m_next.clear();
    }

    quint32 m_seed = 0;
    QRandomGenerator m_random;
    Keyboard m_keyboard;
    std::unique_ptr<ThrowAwayHome> m_home;
    QString m_words;   ///< that the disk had after the last kill
    QByteArray m_next; ///< the rest of the number that is being typed
    int m_number = 0;
    Duration m_most{};
    Duration m_mostAllowed{};
    int m_lost = 0;
};

int main(int argc, char **argv)
{
    if (QFileInfo(u"/dev/shm"_s).isWritable())
        qputenv("TMPDIR", "/dev/shm"); // it is the program that dies, not the disk
    const QCoreApplication application(argc, argv);
    TestKill test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_e2e_kill.moc"
