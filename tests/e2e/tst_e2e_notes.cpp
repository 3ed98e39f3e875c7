#include "tests/e2e/PlimRun.h"
#include "tests/e2e/ProcessFamily.h"
#include "tests/e2e/StoredNotes.h"
#include "tests/Patience.h"

#include <QDir>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QScopeGuard>
#include <QTest>

#include <algorithm>
#include <csignal>

using namespace Qt::StringLiterals;

namespace
{
const QString firstID = u"11111111-1111-4111-8111-111111111111"_s;
const QString secondID = u"22222222-2222-4222-8222-222222222222"_s;
} // namespace

/// The built program over a real file, with real keys.
class TestEndToEnd : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsAndWarnsOfNothing();
    void typedTextIsOnDiskSoon();
    void threeLinesStayThreeLines();
    void lastWordsAreKeptWhateverEndsIt_data();
    void lastWordsAreKeptWhateverEndsIt();
    void lostDisplayKeepsWhatWasReported();
    void everyPolishLetterComesFromThePolishKeyboard();
    void ticksSurviveRestarts();
    void textThatShowsMarkupSurvivesRestarts();
    void switchingWhileTypingKeepsNotesApart();
    void killedRendererComesBack();
    void nothingIsWrittenWhileNothingHappens();
    void aListAloneNeedsNoWebEngine();
    void aPageNeedsNoGraphicsDriver();
    void whatIsTypedBeforeThereIsAPageIsKept();
};

void TestEndToEnd::startsAndWarnsOfNothing()
{
    const ThrowAwayHome home;
    storeNotes(home, {storedNote(firstID, u"<h1>Tea</h1><p>milk</p>"_s)});
    PlimRun plim(home);
    QVERIFY(plim.open());
    QVERIFY(plim.selectRow(0, firstID));
    plim.sendSignal(SIGTERM);
    QCOMPARE(plim.exitCode(), 0);
    QCOMPARE(plim.warnings().join(u"\n"_s), QString());
}

void TestEndToEnd::typedTextIsOnDiskSoon()
{
    const ThrowAwayHome home;
    PlimRun plim(home);
    QVERIFY(plim.open());
    QVERIFY(plim.addNote());
    plim.type(u"Tea"_s);
    plim.press({u"Return"_s});
    plim.type(u"milk & sugar"_s);
    QString expected = u"<h1>Tea</h1>milk &amp; sugar"_s;
    QTRY_COMPARE(plim.bodyOnDisk(), expected);
    // Half a second after the last change; the rest is this machine's business, once at least it
    // will not have stood still.
    constexpr qint64 soon = 2500; // ms
    qint64 best = soon;
    for (int attempt = 0; attempt < 10 && best >= soon; ++attempt) {
        plim.type(u"!"_s);
        expected += u'!';
        QElapsedTimer timer;
        timer.start();
        QTRY_COMPARE(plim.bodyOnDisk(), expected);
        best = std::min(best, timer.elapsed());
    }
    QVERIFY2(best < soon, qPrintable(QString::number(best)));
    QVERIFY(plim.isRunning());
}

void TestEndToEnd::threeLinesStayThreeLines()
{
    const ThrowAwayHome home;
    storeNotes(home, {storedNote(firstID, u"<h1>A</h1>"_s), storedNote(secondID, u"<h1>B</h1><p>other</p>"_s)});
    const QString lines = u"<h1>A</h1>one<p>two</p><p>three</p>"_s;
    PlimRun plim(home);
    QVERIFY(plim.open());
    QVERIFY(plim.selectRow(0, firstID));
    plim.type(u"one"_s);
    plim.press({u"Return"_s});
    plim.type(u"two"_s);
    plim.press({u"Return"_s});
    plim.type(u"three"_s);
    QVERIFY(plim.selectRow(1, secondID));
    QVERIFY(plim.selectRow(0, firstID));
    plim.sendSignal(SIGTERM);
    QCOMPARE(plim.exitCode(), 0);
    QCOMPARE(plim.bodyOnDisk(0), lines);
    QCOMPARE(plim.bodyOnDisk(1), u"<h1>B</h1><p>other</p>"_s);
    QVERIFY(plim.open());
    QVERIFY(plim.selectRow(0, firstID));
    plim.sendSignal(SIGTERM);
    QCOMPARE(plim.exitCode(), 0);
    QCOMPARE(plim.bodyOnDisk(0), lines);
}

void TestEndToEnd::lastWordsAreKeptWhateverEndsIt_data()
{
    QTest::addColumn<int>("signal"); // 0: the window is closed
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGHUP") << SIGHUP;
    QTest::newRow("closed window") << 0;
}

void TestEndToEnd::lastWordsAreKeptWhateverEndsIt()
{
    QFETCH(int, signal);
    const ThrowAwayHome home;
    storeNotes(home, {storedNote(firstID, u"<h1>A</h1>"_s)});
    PlimRun plim(home);
    QVERIFY(plim.open());
    QVERIFY(plim.selectRow(0, firstID));
    plim.type(u"last words"_s);
    if (signal != 0)
        plim.sendSignal(signal);
    else
        plim.closeWindow();
    QCOMPARE(plim.exitCode(), 0);
    QCOMPARE(plim.bodyOnDisk(), u"<h1>A</h1>last words"_s);
}

/// The window system ends the process without asking; what the page had reported is saved.
void TestEndToEnd::lostDisplayKeepsWhatWasReported()
{
    QProcess server;
    server.start(u"Xvfb"_s, {u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, u"1280x800x24"_s, u"-nolisten"_s, u"tcp"_s, u"-noreset"_s, u"-r"_s});
    QVERIFY(server.waitForStarted());
    QByteArray number;
    QTRY_VERIFY_WITH_TIMEOUT((number += server.readAllStandardOutput()).endsWith('\n'), longEnough);
    const QByteArray usualDisplay = qgetenv("DISPLAY");
    const auto restore = qScopeGuard([&] { qputenv("DISPLAY", usualDisplay); });

    const ThrowAwayHome home;
    // So large that what becomes of a backup is left to a thread, even now.
    storeNotes(home, {storedNote(firstID, u"<h1>A</h1>"_s), storedNote(secondID, QString(2'000'000, u'x'))});
    for (const QString &backup : {u"bak.1"_s, u"bak.2"_s, u"bak.3"_s})
        QVERIFY(QFile::copy(home.data() + u"/notes.json"_s, home.data() + u"/notes.json."_s + backup));
    PlimRun plim(home);
    QVERIFY(plim.open(u':' + QString::fromLatin1(number.trimmed())));
    QVERIFY(plim.selectRow(0, firstID));
    plim.type(u"first words"_s);
    QTRY_COMPARE(plim.bodyOnDisk(), u"<h1>A</h1>first words"_s);
    plim.type(u" and more"_s);
    // Reported, and within the half second before the save.
    QVERIFY(plim.waitUntilSaid(u"accepted %1 characters"_s.arg(u"<h1>A</h1>first words and more"_s.size())));
    server.kill();
    QVERIFY(server.waitForFinished());
    QTRY_VERIFY_WITH_TIMEOUT(!plim.isRunning(), longEnough);
    QCOMPARE(plim.exitCode(), 1);
    QCOMPARE(plim.bodyOnDisk(), u"<h1>A</h1>first words and more"_s);
}

void TestEndToEnd::everyPolishLetterComesFromThePolishKeyboard()
{
    QCOMPARE(QProcess::execute(u"setxkbmap"_s, {u"pl"_s}), 0);
    const auto restore = qScopeGuard([] { QProcess::execute(u"setxkbmap"_s, {u"us"_s}); });
    const ThrowAwayHome home;
    PlimRun plim(home);
    QVERIFY(plim.open());
    QVERIFY(plim.addNote());
    const QStringList keys = {u"a"_s, u"c"_s, u"e"_s, u"l"_s, u"n"_s, u"o"_s, u"s"_s, u"z"_s, u"x"_s};
    for (const bool isUpper : {false, true}) {
        for (const QString &key : keys)
            plim.press({(isUpper ? u"ISO_Level3_Shift+shift+"_s : u"ISO_Level3_Shift+"_s) + key});
    }
    plim.press({u"Return"_s});
    for (const QString &key : keys)
        plim.press({u"ISO_Level3_Shift+"_s + key});
    // The keys of the three formats, with AltGr, write what the keyboard has there.
    plim.press({u"ISO_Level3_Shift+b"_s, u"ISO_Level3_Shift+i"_s, u"ISO_Level3_Shift+u"_s});
    QTRY_COMPARE(plim.bodyOnDisk(), u"<h1>ąćęłńóśżźĄĆĘŁŃÓŚŻŹ</h1>ąćęłńóśżź”→↓"_s);
}

void TestEndToEnd::ticksSurviveRestarts()
{
    const QString box = u"<span class=\"chk%1\" contenteditable=\"false\" role=\"checkbox\" aria-checked=\"%2\"></span>"_s;
    const QString list = u"<h1>A</h1><ul class=\"checklist\"><li class=\"checked\">"_s + box.arg(u" checked"_s, u"true"_s) + u"milk</li><li>"_s
        + box.arg(QString(), u"false"_s) + u"tea</li></ul>"_s;
    const ThrowAwayHome home;
    storeNotes(home, {storedNote(firstID, list)});
    for (int round = 0; round < 3; ++round) {
        PlimRun plim(home);
        QVERIFY(plim.open());
        QVERIFY(plim.selectRow(0, firstID));
        QTRY_COMPARE(plim.bodyOnDisk(), list);
        plim.sendSignal(SIGTERM);
        QCOMPARE(plim.exitCode(), 0);
        QCOMPARE(plim.bodyOnDisk(), list);
    }
}

void TestEndToEnd::textThatShowsMarkupSurvivesRestarts()
{
    const QString body = u"<h1>style=\"color:red\"</h1><p>class='x' style=\"color:red\" &lt;div&gt; &amp;amp;lt; class=\"text-content\"</p><p><br></p><p>x</p>"_s;
    const ThrowAwayHome home;
    storeNotes(home, {storedNote(firstID, body)});
    for (int round = 0; round < 3; ++round) {
        PlimRun plim(home);
        QVERIFY(plim.open());
        QVERIFY(plim.selectRow(0, firstID));
        plim.type(u"y"_s);
        plim.sendSignal(SIGTERM);
        QCOMPARE(plim.exitCode(), 0);
        QCOMPARE(plim.bodyOnDisk(), QString(body).replace(u"<p>x"_s, u"<p>x"_s + QString(round + 1, u'y')));
    }
}

void TestEndToEnd::switchingWhileTypingKeepsNotesApart()
{
    const ThrowAwayHome home;
    storeNotes(home, {storedNote(firstID, u"<h1>A</h1>"_s), storedNote(secondID, u"<h1>B</h1>"_s)});
    PlimRun plim(home);
    QVERIFY(plim.open());
    QString first;
    QString second;
    for (int round = 0; round < 5; ++round) {
        QVERIFY(plim.selectRow(0, firstID));
        plim.type(u"milk"_s);
        first += u"milk"_s;
        QVERIFY(plim.selectRow(1, secondID));
        plim.type(u"tea"_s);
        second += u"tea"_s;
    }
    plim.sendSignal(SIGTERM);
    QCOMPARE(plim.exitCode(), 0);
    QCOMPARE(plim.bodyOnDisk(0), u"<h1>A</h1>"_s + first);
    QCOMPARE(plim.bodyOnDisk(1), u"<h1>B</h1>"_s + second);
}

void TestEndToEnd::killedRendererComesBack()
{
    const ThrowAwayHome home;
    storeNotes(home, {storedNote(firstID, u"<h1>A</h1>"_s)});
    PlimRun plim(home);
    QVERIFY(plim.open());
    QVERIFY(plim.selectRow(0, firstID));
    plim.type(u"before"_s);
    QTRY_COMPARE(plim.bodyOnDisk(), u"<h1>A</h1>before"_s);
    const qint64 renderer = plim.rendererId();
    QVERIFY(renderer > 0);
    ::kill(pid_t(renderer), SIGKILL);
    QVERIFY(plim.waitUntilSaid(u"plim.editor: shown"_s, 2));
    plim.type(u" after"_s);
    QTRY_COMPARE(plim.bodyOnDisk(), u"<h1>A</h1>before after"_s);
    plim.sendSignal(SIGTERM);
    QCOMPARE(plim.exitCode(), 0);
    QCOMPARE(plim.bodyOnDisk(), u"<h1>A</h1>before after"_s);
}

void TestEndToEnd::nothingIsWrittenWhileNothingHappens()
{
    const ThrowAwayHome home;
    storeNotes(home, {storedNote(firstID, u"<h1>A</h1><p>milk</p>"_s)});
    const QByteArray before = home.read(u"data/Plim/notes.json"_s);
    PlimRun plim(home);
    QVERIFY(plim.open());
    QVERIFY(plim.selectRow(0, firstID));
    QTest::qWait(1500); // longer than every delay between a change and its save
    QCOMPARE(home.read(u"data/Plim/notes.json"_s), before);
    QVERIFY(!QFile::exists(home.path(u"data/Plim/notes.json.bak.1"_s)));
}

// Letters typed before there is a page would be lost, so it does not wait to be asked for.
void TestEndToEnd::aListAloneNeedsNoWebEngine()
{
    const ThrowAwayHome home;
    storeNotes(home, {storedNote(firstID, u"<h1>Tea</h1><p>milk</p>"_s)});
    PlimRun plim(home);
    const auto hasEngine = [&plim] {
        QFile maps(u"/proc/%1/maps"_s.arg(plim.processId()));
        return maps.open(QIODevice::ReadOnly) && maps.readAll().contains("WebEngineCore");
    };
    QVERIFY(plim.open());
    QVERIFY(!hasEngine());
    plim.point({220, 120}); // who comes to the window will want a page soon
    QVERIFY(plim.waitUntilSaid(u"plim.editor: page ready"_s));
    QVERIFY(hasEngine());
    QVERIFY(!plim.said().contains(u"plim.editor: shown"_s));
}

// It would take fifty megabytes, and the processor draws.
void TestEndToEnd::aPageNeedsNoGraphicsDriver()
{
    const ThrowAwayHome home;
    storeNotes(home, {storedNote(firstID, u"<h1>Tea</h1><p>milk</p>"_s)});
    PlimRun plim(home);
    plim.setVariable(u"QT_QUICK_BACKEND"_s, u"software"_s);
    QVERIFY(plim.open());
    QVERIFY(plim.selectRow(0, firstID));
    QFile maps(u"/proc/%1/maps"_s.arg(plim.processId()));
    QVERIFY(maps.open(QIODevice::ReadOnly));
    const QByteArray libraries = maps.readAll();
    QVERIFY(libraries.contains("WebEngineCore"));
    for (const char *part : {"_dri.so", "libLLVM", "libGLX_", "glx-integration"})
        QVERIFY2(!libraries.contains(part), part);
    const QList<qint64> family = ProcessFamily::members(plim.processId());
    QVERIFY(family.size() > 1);
    for (const qint64 process : family) { // nobody is told but Qt's own part here
        QFile environment(u"/proc/%1/environ"_s.arg(process));
        QVERIFY(environment.open(QIODevice::ReadOnly));
        QVERIFY(!environment.readAll().contains("GL_INTEGRATION"));
    }
}

void TestEndToEnd::whatIsTypedBeforeThereIsAPageIsKept()
{
    const ThrowAwayHome home;
    storeNotes(home, {storedNote(firstID, u"<h1>Tea</h1><p>milk</p>"_s)});
    PlimRun plim(home);
    QVERIFY(plim.open());
    const QString words = u"the quick brown fox jumps over the lazy dog"_s;
    plim.press({u"ctrl+n"_s, u"T"_s, u"Return"_s}); // with nothing between them
    plim.type(words);
    const QString whole = u"<h1>T</h1>"_s + words;
    QTRY_COMPARE(plim.bodyOnDisk(), whole); // the new one is the first
    QCOMPARE(plim.bodyOnDisk(1), u"<h1>Tea</h1><p>milk</p>"_s);
}

QTEST_GUILESS_MAIN(TestEndToEnd)
#include "tst_e2e_notes.moc"
