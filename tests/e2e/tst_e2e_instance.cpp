#include "core/DataLock.h"
#include "tests/e2e/PlimRun.h"
#include "tests/e2e/StoredNotes.h"

#include <QDir>
#include <QTest>

#include <algorithm>
#include <csignal>
#include <memory>
#include <vector>

#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace
{
using XTools::patience;

/// A start whose window the test does not wait for.
class Start
{
public:
    explicit Start(const ThrowAwayHome &home, const QStringList &arguments = {},
                   const QString &display = qEnvironmentVariable("DISPLAY"),
                   const QString &startupID = {})
    {
        auto environment = PlimRun::environment(home, display);
        environment.insert(u"DESKTOP_STARTUP_ID"_s, startupID);
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::MergedChannels);
        PlimRun::endWithTest(process);
        process.start(PlimRun::program(), arguments);
    }
    ~Start()
    {
        process.kill();
        process.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(Start)

    [[nodiscard]] bool isOver() const { return process.state() == QProcess::NotRunning; }
    /// Waits for the end; -1 when it did not come, or not in an orderly way.
    [[nodiscard]] int exitCode()
    {
        if (!QTest::qWaitFor([this] { return isOver(); }, patience))
            return -1;
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }

    QProcess process;
};

/// Of a start beside a Plim that runs.
int exitCodeOf(const ThrowAwayHome &home, const QStringList &arguments)
{
    return Start(home, arguments).exitCode();
}

/// ms of the processor that the programs have had which this one has started, and which have ended.
qint64 endedProcessesTime()
{
    rusage usage{};
    ::getrusage(RUSAGE_CHILDREN, &usage);
    const auto milliseconds = [](const timeval &time) {
        return qint64(time.tv_sec) * 1000 + time.tv_usec / 1000;
    };
    return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

bool isOnScreen(const PlimRun &plim)
{
    return plim.mainWindow().id() != XCB_NONE;
}

/// What the window manager has of a program: its main windows on the screen.
qsizetype countMainWindows(const XWitness &server, const QList<qint64> &processes)
{
    const QList<xcb_window_t> windows = server.visibleWindows();
    return std::ranges::count_if(windows, [&](xcb_window_t window) {
        return server.text(window, "WM_WINDOW_ROLE") == "main" &&
               processes.contains(qint64(server.property(window, "_NET_WM_PID").value(0)));
    });
}

bool isInFrontOf(const PlimRun &plim, xcb_window_t other)
{
    const QList<xcb_window_t> windows = plim.server().visibleWindows();
    return windows.indexOf(plim.mainWindow().id()) > windows.indexOf(other);
}
} // namespace

/// Several starts of the built program, by one user on one desktop.
class TestEndToEndInstance : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aSecondStartBringsTheWindowToTheFront_data()
    {
        QTest::addColumn<QString>("startupID");
        QTest::newRow("from a terminal") << QString();
        QTest::newRow("by a launcher") << u"launcher-7-host_TIME0"_s;
    }
    void aSecondStartBringsTheWindowToTheFront()
    {
        QFETCH(QString, startupID);
        const ThrowAwayHome home;
        PlimRun plim(home);
        QVERIFY(plim.open());
        const QRect place = plim.geometry();
        const xcb_window_t other =
            plim.server().showPlainWindow(place.adjusted(-20, -20, 20, 20), 0x336699);
        const WindowOnScreen inFront(plim.server(), other);
        QTRY_VERIFY(plim.server().visibleWindows().contains(other));
        QTRY_VERIFY([&] { // Plim raises itself once more when its start is complete
            inFront.activate();
            return inFront.isActive() && !isInFrontOf(plim, other);
        }());
        Start second(home, {}, qEnvironmentVariable("DISPLAY"), startupID);
        QCOMPARE(second.exitCode(), 0);
        QCOMPARE(second.process.readAll(), QByteArray());
        QTRY_VERIFY(plim.mainWindow().isActive() && isInFrontOf(plim, other));
        QCOMPARE(plim.geometry(), place);
        plim.server().destroyWindow(other);
        QCOMPARE(plim.warnings(), QStringList());
    }

    void aSecondStartBringsAMinimisedWindowBack()
    {
        const ThrowAwayHome home;
        PlimRun plim(home);
        QVERIFY(plim.open());
        const auto window = QString::number(plim.mainWindow().id());
        XTools::xdotool({u"windowminimize"_s, window});
        QTRY_VERIFY(!isOnScreen(plim));
        QCOMPARE(exitCodeOf(home, {}), 0);
        QTRY_VERIFY(isOnScreen(plim) && plim.mainWindow().isActive());
    }

    // It loads neither notes nor windows.
    void aSecondStartIsOverSoon()
    {
        const ThrowAwayHome home;
        PlimRun plim(home);
        QVERIFY(plim.open());
        qint64 best = patience;
        for (int count = 0; count < 5; ++count) {
            const qint64 before = endedProcessesTime();
            QCOMPARE(exitCodeOf(home, {}), 0);
            best = std::min(best, endedProcessesTime() - before);
        }
        QVERIFY2(best < 500, qPrintable(QString::number(best)));
    }

    void ofTwoStartsAtOnceOneGoesOn_data()
    {
        QTest::addColumn<int>("count");
        for (int row = 0; row < 3; ++row)
            QTest::addRow("two, %d", row) << 2;
        QTest::newRow("five") << 5;
    }
    void ofTwoStartsAtOnceOneGoesOn()
    {
        QFETCH(int, count);
        const ThrowAwayHome home;
        const XWitness server;
        std::vector<std::unique_ptr<Start>> starts;
        QList<qint64> processes;
        starts.reserve(count);
        for (int number = 0; number < count; ++number)
            starts.push_back(std::make_unique<Start>(home));
        for (const auto &start : starts) {
            QVERIFY(start->process.waitForStarted());
            processes << start->process.processId();
        }
        const auto ended = [&] { return std::ranges::count_if(starts, &Start::isOver); };
        QTRY_COMPARE_WITH_TIMEOUT(ended(), count - 1, patience);
        for (const auto &start : starts) {
            if (start->isOver())
                QCOMPARE(start->exitCode(), 0);
        }
        QTRY_COMPARE_WITH_TIMEOUT(countMainWindows(server, processes), 1, patience);
        QCOMPARE(exitCodeOf(home, {u"--quit"_s}), 0);
        for (const auto &start : starts)
            QCOMPARE(start->exitCode(), 0);
    }

    void afterACrashItStartsAtOnce()
    {
        const ThrowAwayHome home;
        for (int run = 0; run < 2; ++run) {
            PlimRun plim(home);
            QVERIFY(plim.open());
            plim.sendSignal(SIGKILL);
            QCOMPARE(plim.exitCode(), -1);
        }
        PlimRun plim(home);
        QVERIFY(plim.open());
        QCOMPARE(exitCodeOf(home, {}), 0);
        QCOMPARE(plim.warnings(), QStringList());
    }

    void aNewNoteIsAddedByTheOneThatRuns()
    {
        const ThrowAwayHome home;
        storeNotesCalled(home, {u"A"_s});
        PlimRun plim(home);
        QVERIFY(plim.open());
        QCOMPARE(exitCodeOf(home, {u"--new-note"_s}), 0);
        QTRY_COMPARE_WITH_TIMEOUT(plim.notesOnDisk().size(), 2, patience);
        QVERIFY(plim.waitUntilSaid(u"plim.editor: shown"_s));
        plim.type(u"tea"_s);
        QTRY_VERIFY_WITH_TIMEOUT(plim.bodyOnDisk(0).contains(u"tea"_s), patience);
        QCOMPARE(exitCodeOf(home, {u"--new-note"_s, u"--hidden"_s}), 0);
        QTRY_COMPARE_WITH_TIMEOUT(plim.notesOnDisk().size(), 3, patience);
    }

    void aNewNoteIsAddedByOneThatStarts()
    {
        const ThrowAwayHome home;
        storeNotesCalled(home, {u"A"_s});
        PlimRun plim(home, {u"--new-note"_s});
        QVERIFY(plim.open());
        QTRY_COMPARE_WITH_TIMEOUT(plim.notesOnDisk().size(), 2, patience);
    }

    void theWindowIsHiddenAndShown()
    {
        const ThrowAwayHome home;
        PlimRun plim(home, {u"--toggle-window"_s}); // with none running: shown
        QVERIFY(plim.open());
        const QRect place = plim.geometry();
        for (const QString &back : {u"--toggle-window"_s, u""_s, u"--new-note"_s}) {
            QCOMPARE(exitCodeOf(home, {u"--toggle-window"_s}), 0);
            QTRY_VERIFY(!isOnScreen(plim));
            QCOMPARE(exitCodeOf(home, {u"--hidden"_s}), 0);
            QVERIFY(plim.isRunning() && !isOnScreen(plim));
            QCOMPARE(exitCodeOf(home, back.isEmpty() ? QStringList() : QStringList{back}), 0);
            QTRY_VERIFY(isOnScreen(plim) && plim.mainWindow().isActive());
            QTRY_COMPARE(plim.geometry(), place);
        }
        QCOMPARE(plim.warnings(), QStringList());
    }

    // A window that nobody could ever open again is not hidden.
    void withoutATrayAHiddenStartIsAStart()
    {
        const ThrowAwayHome home;
        PlimRun plim(home, {u"--hidden"_s});
        QVERIFY(plim.open());
        XTools::xdotool({u"windowminimize"_s, QString::number(plim.mainWindow().id())});
        QTRY_VERIFY(!isOnScreen(plim));
        QCOMPARE(exitCodeOf(home, {u"--hidden"_s}), 0);
        QVERIFY(plim.isRunning() && !isOnScreen(plim));
    }

    void quittingIsOrderly()
    {
        const ThrowAwayHome home;
        PlimRun plim(home);
        QVERIFY(plim.open());
        QVERIFY(plim.addNote());
        plim.type(u"last words"_s);
        QCOMPARE(exitCodeOf(home, {u"--quit"_s}), 0);
        // Whoever starts it while it ends waits for that, and loses nothing.
        PlimRun next(home);
        QVERIFY(next.open());
        QCOMPARE(plim.exitCode(), 0);
        QCOMPARE(next.bodyOnDisk(), u"<h1>last words</h1>"_s);
        QCOMPARE(exitCodeOf(home, {u"--quit"_s}), 0);
        QCOMPARE(next.exitCode(), 0);
        QCOMPARE(exitCodeOf(home, {u"--quit"_s}), 0);
    }

    void twoHomesDoNotMeet()
    {
        const ThrowAwayHome one;
        storeNotesCalled(one, {u"A"_s});
        PlimRun first(one);
        QVERIFY(first.open());
        const ThrowAwayHome two;
        PlimRun second(two);
        QVERIFY(second.open());
        QVERIFY(first.isRunning() && isOnScreen(first));
        QCOMPARE(exitCodeOf(two, {u"--new-note"_s}), 0);
        QTRY_COMPARE_WITH_TIMEOUT(second.notesOnDisk().size(), 1, patience);
        QCOMPARE(exitCodeOf(two, {u"--quit"_s}), 0);
        QCOMPARE(second.exitCode(), 0);
        QVERIFY(first.isRunning());
        QCOMPARE(first.notesOnDisk().size(), 1);
    }

    void notesThatAreOpenElsewhereAreLeftAlone_data()
    {
        QTest::addColumn<QString>("display");
        QTest::newRow("without a display") << QString();
        QTest::newRow("on a display that is not there") << u":987"_s;
        QTest::newRow("on a display") << qEnvironmentVariable("DISPLAY");
    }
    void notesThatAreOpenElsewhereAreLeftAlone()
    {
        QFETCH(QString, display);
        const ThrowAwayHome home;
        storeNotesCalled(home, {u"A"_s});
        DataLock lock(home.data()); // this process is elsewhere
        QCOMPARE(lock.take(), DataLock::State::Taken);
        const QByteArray before = home.read(u"data/Plim/notes.json"_s);
        const QStringList files = QDir(home.data()).entryList(QDir::AllEntries | QDir::Hidden);

        Start start(home, {}, display);
        if (display == qEnvironmentVariable("DISPLAY")) {
            const XWitness server;
            xcb_window_t message = XCB_NONE;
            const auto find = [&] {
                for (const xcb_window_t window : server.visibleWindows()) {
                    if (qint64(server.property(window, "_NET_WM_PID").value(0)) ==
                        start.process.processId())
                        message = window;
                }
                return message != XCB_NONE;
            };
            QVERIFY(QTest::qWaitFor(find, patience));
            QVERIFY(!start.isOver());
            QCOMPARE(server.text(message, "_NET_WM_NAME"), "Plim");
            WindowOnScreen(server, message).close();
        }
        QCOMPARE(start.exitCode(), 1);
        const QString said = QString::fromUtf8(start.process.readAll());
        QVERIFY2(said.contains(u"plim: Plim is already open elsewhere"_s), qPrintable(said));
        QVERIFY2(said.contains(home.data()), qPrintable(said));
        QCOMPARE(home.read(u"data/Plim/notes.json"_s), before);
        QCOMPARE(QDir(home.data()).entryList(QDir::AllEntries | QDir::Hidden), files);
        QVERIFY(QDir(home.documents()).isEmpty());
    }

    void oneThatHangsIsNotDoubled()
    {
        const ThrowAwayHome home;
        PlimRun plim(home);
        QVERIFY(plim.open());
        plim.sendSignal(SIGSTOP);
        Start second(home, {}, QString());
        QCOMPARE(second.exitCode(), 1);
        plim.sendSignal(SIGCONT);
        QCOMPARE(exitCodeOf(home, {u"--quit"_s}), 0);
        QCOMPARE(plim.exitCode(), 0);
    }
};

QTEST_GUILESS_MAIN(TestEndToEndInstance)
#include "tst_e2e_instance.moc"
