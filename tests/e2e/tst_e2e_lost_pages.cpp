#include "core/NotesJson.h"
#include "tests/e2e/Keyboard.h"
#include "tests/e2e/PlimRun.h"
#include "tests/e2e/StoredLayout.h"
#include "tests/e2e/StoredNotes.h"

#include <QDir>
#include <QElapsedTimer>
#include <QRegularExpression>
#include <QTest>

#include <csignal>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace
{
constexpr int stickyCount = 5;
constexpr int editorCount = stickyCount + 1; ///< the last note's is the main window's
constexpr int slowestReturn =
    20'000; ///< ms, on any machine; two seconds are promised on a usual one

QString headingOf(int note)
{
    return u"<h1>%1</h1>"_s.arg(QChar(u'A' + note));
}

QString wordsBefore(int note)
{
    return u"before %1"_s.arg(note);
}
} // namespace

/// The process that all editors have in common dies, in the middle of a word.
class TestLostPages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyEditorComesBackWithItsText_data();
    void everyEditorComesBackWithItsText();

private:
    [[nodiscard]] static bool open(PlimRun &plim);
    [[nodiscard]] static bool goTo(const PlimRun &plim, int note);
    [[nodiscard]] static bool isSound(const QByteArray &bytes);
};

void TestLostPages::everyEditorComesBackWithItsText_data()
{
    QTest::addColumn<int>("typedInto");
    QTest::newRow("typing in the main window") << stickyCount;
    QTest::newRow("typing in a sticky window") << 2;
}

void TestLostPages::everyEditorComesBackWithItsText()
{
    QFETCH(int, typedInto);
    const ThrowAwayHome home;
    QJsonArray notes;
    QByteArrayList layout;
    for (int note = 0; note < editorCount; ++note) {
        notes << storedNote(storedID(note), headingOf(note) + wordsBefore(note));
        if (note < stickyCount)
            layout << StoredLayout::entry(storedID(note), 40 + 330 * note, 60, 300, 340);
    }
    storeNotes(home, notes);
    StoredLayout(home).write('[' + layout.join(',') + ']');
    PlimRun plim(home);
    QVERIFY(open(plim));
    QVERIFY(goTo(plim, typedInto));

    const Keyboard keyboard;
    QVERIFY(keyboard.isConnected());
    QByteArray typed;
    const QString shown = u"plim.editor: shown"_s;
    const auto shownBefore = plim.said().count(shown);
    for (int number = 100; number < 130; ++number) {
        typed += ' ' + QByteArray::number(number);
        keyboard.type(typed.last(4));
        QTest::qWait(40);
    }
    const QList<qint64> renderers = plim.rendererIds();
    QVERIFY(!renderers.isEmpty());
    const QString saidBefore = plim.said();
    for (const qint64 renderer : renderers)
        ::kill(pid_t(renderer), SIGKILL);
    QElapsedTimer gone;
    gone.start();
    QVERIFY(plim.waitUntilSaid(u"editor page lost"_s, editorCount));
    QVERIFY(plim.waitUntilSaid(shown, int(shownBefore) + editorCount));
    std::printf("%s: every editor was back after %.2f s\n", QTest::currentDataTag(),
                double(gone.elapsed()) / 1000);
    std::fflush(stdout);
    QVERIFY(gone.elapsed() < slowestReturn);

    // What had been reported is there; what had not been is the end of the words.
    static const QRegularExpression acceptedLine(u"accepted (\\d+) characters"_s);
    qsizetype reported = 0;
    for (auto match = acceptedLine.globalMatch(saidBefore); match.hasNext();)
        reported = match.next().capturedView(1).toLongLong();
    QVERIFY(reported > 0);
    const QString start = headingOf(typedInto) + wordsBefore(typedInto);
    QVERIFY(plim.isRunning());
    keyboard.type(" after"); // no click: who typed goes on typing
    QTRY_VERIFY2(plim.bodyOnDisk(typedInto).endsWith("after"_L1),
                 qPrintable(plim.bodyOnDisk(typedInto)));
    const QString kept = plim.bodyOnDisk(typedInto).chopped(6).replace(u"&nbsp;"_s, u" "_s);
    QVERIFY2((start + QString::fromLatin1(typed)).startsWith(kept), qPrintable(kept));
    // A space at the end was reported as a reference of six characters.
    QVERIFY2(kept.size() >= reported - 5,
             qPrintable(u"%1 of %2: %3"_s.arg(kept.size()).arg(reported).arg(kept)));

    for (int note = 0; note < editorCount; ++note) {
        QVERIFY(goTo(plim, note));
        keyboard.type("again");
        QTRY_VERIFY2(plim.bodyOnDisk(note).endsWith("again"_L1), qPrintable(plim.bodyOnDisk(note)));
        if (note != typedInto)
            QCOMPARE(plim.bodyOnDisk(note), headingOf(note) + wordsBefore(note) + u"again"_s);
    }
    plim.sendSignal(SIGTERM);
    QCOMPARE(plim.exitCode(), 0);
    for (const QString &file :
         QDir(home.data()).entryList({u"notes.json"_s, u"notes.json.bak*"_s}, QDir::Files))
        QVERIFY2(isSound(home.read(u"data/Plim/"_s + file)), qPrintable(file));
    QCOMPARE(plim.warnings().filter(u"editor page lost"_s).size(), plim.warnings().size());
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
    window.activate();
    if (!QTest::qWaitFor([&] { return window.isActive(); }, XTools::patience))
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
