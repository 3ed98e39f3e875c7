#include "core/app/QuitSignals.h"

#include "tests/Patience.h"

#include <QEvent>
#include <QGuiApplication>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <cerrno>
#include <csignal>

namespace
{
class QuitSpy : public QObject
{
public:
    QuitSpy() { qApp->installEventFilter(this); }
    int quits = 0;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (watched == qApp && event->type() == QEvent::Quit)
            ++quits;
        return false;
    }
};

/// Runs the event loop; the exit code is 1 when nobody ends it.
int runUntilQuit()
{
    QTimer late;
    QObject::connect(&late, &QTimer::timeout, qApp, [] { QCoreApplication::exit(1); });
    late.start(longEnough);
    return QCoreApplication::exec();
}

void (*handlerOf(int signal))(int)
{
    struct sigaction action = {};
    ::sigaction(signal, nullptr, &action);
    return action.sa_handler;
}
} // namespace

class TestQuitSignals : public QObject
{
    Q_OBJECT

    static void everySignal()
    {
        QTest::addColumn<int>("signal");
        QTest::newRow("SIGTERM") << SIGTERM;
        QTest::newRow("SIGINT") << SIGINT;
        QTest::newRow("SIGHUP") << SIGHUP;
    }

private Q_SLOTS:
    void aSignalIsAnOrdinaryQuit_data() { everySignal(); }
    void aSignalIsAnOrdinaryQuit()
    {
        QFETCH(int, signal);
        const QuitSignals handling;
        QuitSpy spy;
        QSignalSpy aboutToQuit(qApp, &QCoreApplication::aboutToQuit);
        QTimer::singleShot(0, qApp, [signal] { ::raise(signal); });
        QCOMPARE(runUntilQuit(), 0);
        QCOMPARE(spy.quits, 1);
        QCOMPARE(aboutToQuit.count(), 1);
    }

    void aSignalBeforeTheLoopIsKept()
    {
        const QuitSignals handling;
        QuitSpy spy;
        ::raise(SIGTERM);
        QCOMPARE(runUntilQuit(), 0);
        QCOMPARE(spy.quits, 1);
    }

    void severalAtOnceAreOneQuit()
    {
        const QuitSignals handling;
        QuitSpy spy;
        QTimer::singleShot(0, qApp, [] {
            for (const int signal : {SIGTERM, SIGHUP, SIGTERM, SIGINT})
                ::raise(signal);
        });
        QCOMPARE(runUntilQuit(), 0);
        QCOMPARE(spy.quits, 1);
    }

    void aFloodOfSignalsDoesNotBlock()
    {
        const QuitSignals handling;
        errno = EDOM;
        for (int i = 0; i < 100'000; ++i) // more than a pipe holds
            ::raise(SIGHUP);
        QCOMPARE(errno, EDOM); // whatever was interrupted finds its own
        QCOMPARE(runUntilQuit(), 0);
    }

    void afterwardsSignalsEndTheProcessAgain_data() { everySignal(); }
    void afterwardsSignalsEndTheProcessAgain()
    {
        QFETCH(int, signal);
        {
            const QuitSignals handling;
            QVERIFY(handlerOf(signal) != SIG_DFL);
        }
        QVERIFY(handlerOf(signal) == SIG_DFL);
    }
};

QTEST_MAIN(TestQuitSignals)
#include "tst_quit_signals.moc"
