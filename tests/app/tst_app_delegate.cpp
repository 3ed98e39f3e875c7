#include "core/app/AppDelegate.h"

#include "core/NotificationCenter.h"
#include "editor/EditorFlush.h"
#include "tests/Observation.h"
#include "tests/Patience.h"
#include "tests/ThrowAwayHome.h"

#include <QElapsedTimer>
#include <QEvent>
#include <QGuiApplication>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include <functional>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{
using Trigger = void (*)();

constexpr qint64 withoutAnswer = 1900; ///< ms: less than anybody waits who gets none
constexpr int tries = 5;               ///< a machine that stands still makes some last longer

void quit()
{
    QCoreApplication::quit();
}
void postQuit()
{
    QCoreApplication::postEvent(qApp, new QEvent(QEvent::Quit));
}

/// Editors that are asked for their text and answer after a while; never when that is negative.
class SlowEditors : public QObject
{
public:
    explicit SlowEditors(const QList<int> &answersAfter, qsizetype size = 0)
    {
        connect(&NotificationCenter::shared(), &NotificationCenter::plimFlushEditors, this,
                [=, this] {
                    ++asked;
                    for (const int after : answersAfter) {
                        const EditorFlush::Debt debt = EditorFlush::shared().owe(size);
                        if (after < 0)
                            m_neverPaid << debt;
                        else if (after > 0)
                            QTimer::singleShot(after, Qt::PreciseTimer, this, [debt] {});
                    }
                });
    }
    int asked = 0;

private:
    QList<EditorFlush::Debt> m_neverPaid;
};

/// A window that refuses to close, and with that refuses the quit.
class Refusing : public QWindow
{
public:
    bool isRefusing = true;
    std::function<void()> whenRefused; ///< called once, when the quit has been given up

protected:
    bool event(QEvent *event) override
    {
        if (event->type() != QEvent::Close || !isRefusing)
            return QWindow::event(event);
        event->ignore();
        if (whenRefused)
            QTimer::singleShot(0, this, std::exchange(whenRefused, {}));
        return true;
    }
};

/// Runs the event loop until the application quits, which it is asked to at once. Returns the
/// milliseconds that takes.
qint64 runUntilQuit(Trigger trigger = quit)
{
    QElapsedTimer timer;
    QTimer::singleShot(0, qApp, [&] {
        timer.start();
        trigger();
    });
    QTimer late;
    QObject::connect(&late, &QTimer::timeout, qApp, [] { QCoreApplication::exit(1); });
    late.start(longEnough);
    return QCoreApplication::exec() == 0 ? timer.elapsed() : -1;
}
} // namespace

Q_DECLARE_METATYPE(Trigger)

class TestAppDelegate : public QObject
{
    Q_OBJECT

    ThrowAwayHome m_home;

private Q_SLOTS:
    void initTestCase() { QVERIFY(EditorFlush::shared().isSettled()); }
    void cleanup() { QTRY_VERIFY(EditorFlush::shared().isSettled()); }

    void quittingWaitsForTheEditors_data()
    {
        QTest::addColumn<QList<int>>("answersAfter");
        QTest::addColumn<int>("atLeast");
        QTest::addColumn<int>("below");
        QTest::newRow("no editors") << QList<int>{} << 150 << 1500;
        QTest::newRow("an answer at once") << QList<int>{0} << 150 << 1500;
        QTest::newRow("a quick answer") << QList<int>{40} << 150 << 1500;
        QTest::newRow("a slow answer") << QList<int>{400} << 400 << 1900;
        QTest::newRow("the slowest of several") << QList<int>{20, 500, 0, 300} << 500 << 1900;
        QTest::newRow("no answer") << QList<int>{-1} << 1999 << 5000;
        QTest::newRow("one that never answers") << QList<int>{20, -1, 300} << 1999 << 5000;
    }
    void quittingWaitsForTheEditors()
    {
        QFETCH(QList<int>, answersAfter);
        QFETCH(int, atLeast);
        QFETCH(int, below);
        qint64 elapsed = below;
        for (int i = 0; i < tries && elapsed >= below; ++i) {
            const AppDelegate delegate;
            const SlowEditors editors(answersAfter);
            QSignalSpy aboutToQuit(qApp, &QCoreApplication::aboutToQuit);
            elapsed = runUntilQuit();
            QVERIFY2(elapsed >= atLeast, qPrintable(QString::number(elapsed)));
            QCOMPARE(editors.asked, 1);
            QCOMPARE(aboutToQuit.count(), 1);
        }
        QVERIFY2(elapsed < below, qPrintable(QString::number(elapsed)));
    }

    void aLongTextHasItsTime()
    {
        constexpr qsizetype twoMegabytes = 2'000'000;
        {
            const AppDelegate delegate;
            const SlowEditors editors({5500}, twoMegabytes);
            QVERIFY(runUntilQuit() >= 5500);
        }
        const AppDelegate delegate;
        const SlowEditors editors({-1}, twoMegabytes);
        QVERIFY(runUntilQuit() >= 5999); // and no more than that
    }

    void debtsMayComeWhileWaiting()
    {
        qint64 elapsed = withoutAnswer;
        for (int i = 0; i < tries && elapsed >= withoutAnswer; ++i) {
            const AppDelegate delegate;
            const SlowEditors editors({100});
            EditorFlush::Debt late;
            QObject lender;
            connect(
                &NotificationCenter::shared(), &NotificationCenter::plimFlushEditors, &lender, [&] {
                    QTimer::singleShot(60, &lender, [&] { late = EditorFlush::shared().owe(); });
                    QTimer::singleShot(600, &lender, [&] { late.reset(); });
                });
            elapsed = runUntilQuit();
            QVERIFY2(elapsed >= 600, qPrintable(QString::number(elapsed)));
        }
        QVERIFY2(elapsed < withoutAnswer, qPrintable(QString::number(elapsed)));
    }

    void everyQuitTakesTheSameRoad_data()
    {
        QTest::addColumn<Trigger>("trigger");
        QTest::newRow("quit") << Trigger(quit);
        QTest::newRow("an event") << Trigger(postQuit);
        QTest::newRow("the last window closed") << Trigger([] {
            auto *window = new QWindow;
            QObject::connect(qApp, &QGuiApplication::lastWindowClosed, window,
                             &QObject::deleteLater);
            window->show();
            window->close();
        });
    }
    void everyQuitTakesTheSameRoad()
    {
        QFETCH(Trigger, trigger);
        qint64 elapsed = withoutAnswer;
        for (int i = 0; i < tries && elapsed >= withoutAnswer; ++i) {
            const AppDelegate delegate;
            const SlowEditors editors({300});
            elapsed = runUntilQuit(trigger);
            QVERIFY2(elapsed >= 300, qPrintable(QString::number(elapsed)));
            QCOMPARE(editors.asked, 1);
        }
        QVERIFY2(elapsed < withoutAnswer, qPrintable(QString::number(elapsed)));
    }

    void theEditorsAnswerBeforeTheEnd()
    {
        const AppDelegate delegate;
        QStringList order;
        QObject listener;
        connect(&NotificationCenter::shared(), &NotificationCenter::plimFlushEditors, &listener,
                [&] {
                    order << u"asked"_s;
                    QTimer::singleShot(300, &listener, [&, debt = EditorFlush::shared().owe()] {
                        order << u"answered"_s;
                    });
                });
        connect(qApp, &QCoreApplication::aboutToQuit, &listener, [&] { order << u"ended"_s; });
        QVERIFY(runUntilQuit() >= 0);
        QCOMPARE(order, (QStringList{u"asked"_s, u"answered"_s, u"ended"_s}));
    }

    void theLoopRunsWhileWaiting()
    {
        int ticks = 0;
        const auto isTicking = [&ticks] {
            const AppDelegate delegate;
            const SlowEditors editors({400});
            QTimer ticking;
            ticks = 0;
            connect(&ticking, &QTimer::timeout, &ticking, [&] { ++ticks; });
            ticking.start(10);
            return runUntilQuit() >= 0 && ticks >= 10;
        };
        QVERIFY2(isSeenOnce(isTicking), qPrintable(QString::number(ticks)));
    }

    void aSecondQuitWhileWaitingIsTheSameQuit()
    {
        qint64 elapsed = withoutAnswer;
        for (int i = 0; i < tries && elapsed >= withoutAnswer; ++i) {
            const AppDelegate delegate;
            const SlowEditors editors({300});
            QSignalSpy aboutToQuit(qApp, &QCoreApplication::aboutToQuit);
            for (const int after : {20, 60, 200})
                QTimer::singleShot(after, qApp, after == 60 ? postQuit : quit);
            elapsed = runUntilQuit();
            QVERIFY2(elapsed >= 300, qPrintable(QString::number(elapsed)));
            QCOMPARE(editors.asked, 1);
            QCOMPARE(aboutToQuit.count(), 1);
            QCoreApplication::processEvents();
            QCOMPARE(editors.asked, 1);
        }
        QVERIFY2(elapsed < withoutAnswer, qPrintable(QString::number(elapsed)));
    }

    void askingForTheTextsIsNotQuitting()
    {
        AppDelegate delegate;
        const SlowEditors editors({300});
        QSignalSpy aboutToQuit(qApp, &QCoreApplication::aboutToQuit);
        QElapsedTimer timer;
        timer.start();
        delegate.applicationShouldTerminate();
        QVERIFY(timer.elapsed() >= 300);
        QCOMPARE(editors.asked, 1);
        QCOMPARE(aboutToQuit.count(), 0);
        delegate.applicationShouldTerminate();
        QCOMPARE(editors.asked, 2);
    }

    void askingAgainWhileWaitingAsksNobody()
    {
        AppDelegate delegate;
        const SlowEditors editors({300});
        QTimer::singleShot(50, qApp, [&] { delegate.applicationShouldTerminate(); });
        delegate.applicationShouldTerminate();
        QCOMPARE(editors.asked, 1);
    }

    // The session manager asks for the texts, and then may or may not end the session.
    void aQuitWhileTheTextsAreCollectedIsFollowed()
    {
        AppDelegate delegate;
        const SlowEditors editors({200});
        QStringList order;
        QTimer::singleShot(0, qApp, [&] {
            delegate.applicationShouldTerminate();
            order << u"collected"_s;
        });
        QObject listener;
        connect(qApp, &QCoreApplication::aboutToQuit, &listener, [&] { order << u"ended"_s; });
        QTimer::singleShot(50, qApp, quit);
        QTimer::singleShot(longEnough, &listener, [] { QCoreApplication::exit(1); });
        QCOMPARE(QCoreApplication::exec(), 0);
        QCOMPARE(order, (QStringList{u"collected"_s, u"ended"_s}));
    }

    void aRefusedQuitCanBeAskedAgain()
    {
        const AppDelegate delegate;
        const SlowEditors editors({10});
        Refusing window;
        window.show();
        QSignalSpy aboutToQuit(qApp, &QCoreApplication::aboutToQuit);
        window.whenRefused = [&] {
            QCOMPARE(editors.asked, 1);
            QCOMPARE(aboutToQuit.count(), 0);
            window.isRefusing = false;
            quit();
        };
        QVERIFY(runUntilQuit() >= 0);
        QCOMPARE(editors.asked, 2);
        QCOMPARE(aboutToQuit.count(), 1);
    }

    void aRefusedQuitStandsForThoseWhileItWaited()
    {
        AppDelegate delegate;
        const SlowEditors editors({200});
        Refusing window;
        window.show();
        QTimer::singleShot(0, qApp, quit);
        QTimer::singleShot(50, qApp, quit);
        window.whenRefused = [&] {
            delegate.applicationShouldTerminate();
            window.isRefusing = false;
            QTimer::singleShot(0, &window,
                               [] { QCoreApplication::exit(7); }); // behind a quit in the queue
        };
        QCOMPARE(QCoreApplication::exec(), 7);
        QCOMPARE(editors.asked, 2);
    }

    void otherEventsAreNoneOfItsBusiness()
    {
        AppDelegate delegate;
        const SlowEditors editors({});
        QObject other;
        QEvent quitOfAnother(QEvent::Quit);
        QCoreApplication::sendEvent(&other, &quitOfAnother);
        QEvent close(QEvent::Close);
        QCoreApplication::sendEvent(qApp, &close);
        QCOMPARE(editors.asked, 0);
    }
};

QTEST_MAIN(TestAppDelegate)
#include "tst_app_delegate.moc"
