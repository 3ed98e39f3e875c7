#include "core/NotesJson.h"
#include "tests/core/Duration.h"
#include "tests/e2e/Keyboard.h"
#include "tests/e2e/PlimRun.h"
#include "tests/e2e/ProcessorWait.h"
#include "tests/e2e/StoredLayout.h"
#include "tests/e2e/StoredNotes.h"

#include <QDir>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <csignal>
#include <cstdio>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
using Clock = ProcessorWait::Clock;

constexpr int stickyCount = 5;
constexpr int editorCount = stickyCount + 1; ///< the last note's is the main window's
constexpr auto slowestReturn = 2s * int(slowness);
constexpr auto latest = 8s; ///< that a busy machine may add, at most
constexpr auto longestTyping = 2000ms;

QString headingOf(int note)
{
    return u"<h1>%1</h1>"_s.arg(QChar(u'A' + note));
}

QString wordsBefore(int note)
{
    return u"before %1"_s.arg(note);
}

double seconds(Clock::duration duration)
{
    return std::chrono::duration<double>(duration).count();
}

QString acceptedLine(qsizetype size)
{
    return u"accepted %1 characters"_s.arg(size);
}
} // namespace

/// The process that all editors have in common dies, in the middle of a word.
class TestLostPages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void everyEditorComesBackWithItsText_data();
    void everyEditorComesBackWithItsText();

private:
    [[nodiscard]] static bool open(PlimRun &plim);
    [[nodiscard]] static bool goTo(const PlimRun &plim, int note);
    [[nodiscard]] static bool isSound(const QByteArray &bytes);
    void writeIntoAllBut(PlimRun &plim, int note);
    void typeUntilItIsLost(PlimRun &plim, int note);

    QRandomGenerator m_random;
    Keyboard m_keyboard;
    QStringList m_bodies; ///< of the notes, as they must be in the file
};

void TestLostPages::initTestCase()
{
    bool isGiven = false;
    quint32 seed = qEnvironmentVariable("PLIM_SEED").toUInt(&isGiven);
    if (!isGiven)
        seed = QRandomGenerator::global()->generate();
    m_random.seed(seed);
    std::printf("seed %u (PLIM_SEED)\n", seed);
    QVERIFY(m_keyboard.isConnected());
}

void TestLostPages::everyEditorComesBackWithItsText_data()
{
    QTest::addColumn<int>("typedInto");
    for (int note = 0; note < stickyCount; ++note)
        QTest::addRow("typing in sticky window %d", note + 1) << note;
    QTest::newRow("typing in the main window") << stickyCount;
}

/// Lost at any moment while one of them is typed into, soon after all others have been.
void TestLostPages::everyEditorComesBackWithItsText()
{
    QFETCH(int, typedInto);
    const ThrowAwayHome home;
    m_bodies.clear();
    QJsonArray notes;
    QByteArrayList layout;
    for (int note = 0; note < editorCount; ++note) {
        m_bodies << headingOf(note) + wordsBefore(note);
        notes << storedNote(storedID(note), m_bodies[note]);
        if (note < stickyCount)
            layout << StoredLayout::entry(storedID(note), 40 + 330 * note, 60, 300, 340);
    }
    storeNotes(home, notes);
    StoredLayout(home).write('[' + layout.join(',') + ']');
    PlimRun plim(home);
    QVERIFY(open(plim));
    writeIntoAllBut(plim, typedInto);
    if (!QTest::currentTestFailed())
        typeUntilItIsLost(plim, typedInto);
    if (!QTest::currentTestFailed())
        writeIntoAllBut(plim, typedInto);
    if (QTest::currentTestFailed())
        return;
    plim.sendSignal(SIGTERM);
    QCOMPARE(plim.exitCode(), 0);
    for (int note = 0; note < editorCount; ++note)
        QCOMPARE(plim.bodyOnDisk(note), m_bodies[note]);
    for (const QString &file :
         QDir(home.data()).entryList({u"notes.json"_s, u"notes.json.bak*"_s}, QDir::Files))
        QVERIFY2(isSound(home.read(u"data/Plim/"_s + file)), qPrintable(file));
    QCOMPARE(plim.warnings().filter(u"editor page lost"_s).size(), plim.warnings().size());
}

/// A word that their pages have reported, whether or not it is in the file already.
void TestLostPages::writeIntoAllBut(PlimRun &plim, int note)
{
    for (int other = 0; other < editorCount; ++other) {
        if (other == note)
            continue;
        QVERIFY(goTo(plim, other));
        const QByteArray word = "x" + QByteArray::number(m_random.bounded(100, 1000));
        m_bodies[other] += QString::fromLatin1(word);
        const QString accepted = acceptedLine(m_bodies[other].size());
        const auto count = plim.said().count(accepted);
        m_keyboard.type(word);
        QVERIFY(plim.waitUntilSaid(accepted, int(count) + 1));
    }
}

void TestLostPages::typeUntilItIsLost(PlimRun &plim, int note)
{
    QVERIFY(goTo(plim, note));
    const QString shown = u"plim.editor: shown"_s;
    const QString lost = u"editor page lost"_s;
    const auto shownBefore = plim.said().count(shown);
    const auto lostBefore = plim.said().count(lost);
    const auto saidBefore = plim.said().size();

    QByteArray typed;
    QByteArray next;
    const Clock::time_point begin = Clock::now();
    const auto end = begin + std::chrono::duration_cast<Clock::duration>(longestTyping *
                                                                         m_random.generateDouble());
    do {
        if (next.isEmpty())
            next = ' ' + QByteArray::number(m_random.bounded(100, 1000));
        m_keyboard.press(next[0]);
        typed += next[0];
        next.remove(0, 1);
        QTest::qWait(m_random.bounded(20, 80));
    } while (Clock::now() < end);
    const QList<qint64> renderers = plim.rendererIds();
    QVERIFY(!renderers.isEmpty());
    const QString reports = plim.said().mid(saidBefore);

    ProcessorWait wait(plim.processId());
    const Clock::time_point killed = Clock::now();
    for (const qint64 renderer : renderers)
        ::kill(pid_t(renderer), SIGKILL);
    const auto areBack = [&] {
        wait.look();
        return plim.said().count(lost) == lostBefore + editorCount &&
               plim.said().count(shown) == shownBefore + editorCount;
    };
    QVERIFY(QTest::qWaitFor(areBack, XTools::patience));
    const Clock::duration gone = Clock::now() - killed;
    const auto waited = std::min<Clock::duration>(latest, wait.between(killed, Clock::now()));
    std::printf("%s for %.2f s: all were back after %.2f s, in which their "
                "threads waited %.2f s for a processor\n",
                QTest::currentDataTag(), seconds(killed - begin), seconds(gone), seconds(waited));
    std::fflush(stdout);
    QVERIFY(gone < slowestReturn + waited);

    // What had been reported is there; what had not been is the end of the words.
    static const QRegularExpression line(u"accepted (\\d+) characters"_s);
    qsizetype reported = 0;
    for (auto match = line.globalMatch(reports); match.hasNext();)
        reported = match.next().capturedView(1).toLongLong();
    QVERIFY(plim.isRunning());
    m_keyboard.type("after"); // no click: who typed goes on typing
    QTRY_VERIFY2(plim.bodyOnDisk(note).endsWith("after"_L1), qPrintable(plim.bodyOnDisk(note)));
    const QString all = plim.bodyOnDisk(note);
    const QString kept = all.chopped(5).replace(u"&nbsp;"_s, u" "_s);
    QVERIFY2(kept.startsWith(m_bodies[note]) &&
                 (m_bodies[note] + QString::fromLatin1(typed)).startsWith(kept),
             qPrintable(kept));
    // A space at the end was reported as a reference of six characters.
    QVERIFY2(kept.size() >= reported - 5,
             qPrintable(u"%1 of %2: %3"_s.arg(kept.size()).arg(reported).arg(kept)));
    m_bodies[note] = all;
}

bool TestLostPages::open(PlimRun &plim)
{
    return plim.open() &&
           QTest::qWaitFor([&] { return plim.stickies().size() == stickyCount; },
                           XTools::patience) &&
           plim.waitUntilSaid(u"plim.editor: shown"_s, stickyCount) &&
           plim.selectRow(stickyCount, storedID(stickyCount));
}

/// Gives the note's editor the keyboard, the caret at the end of its text.
bool TestLostPages::goTo(const PlimRun &plim, int note)
{
    const bool isMain = note == stickyCount;
    const WindowOnScreen window =
        isMain ? plim.mainWindow() : WindowOnScreen(plim.stickies().at(note));
    if (!window.waitUntilActive())
        return false;
    window.click(isMain ? QPoint(700, 300) : StickyOnScreen::page());
    plim.press({u"ctrl+End"_s});
    return true;
}

/// No note of that file has lost its text.
bool TestLostPages::isSound(const QByteArray &bytes)
{
    const std::optional<NoteArray> notes = decodeNotes(bytes, {});
    if (!notes || notes->size() != editorCount)
        return false;
    for (int note = 0; note < editorCount; ++note) {
        if (!(*notes)[note].body.startsWith(headingOf(note) + wordsBefore(note)))
            return false;
    }
    return true;
}

QTEST_GUILESS_MAIN(TestLostPages)
#include "tst_e2e_lost_pages.moc"
