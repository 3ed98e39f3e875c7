#include "shell/FocusWatch.h"
#include "tests/Patience.h"

#include <QGuiApplication>
#include <QSignalSpy>
#include <QTest>

namespace
{
void activate(QWindow &window)
{
    window.setVisible(true);
    window.requestActivate();
    if (!QTest::qWaitFor([&] { return QGuiApplication::focusWindow() == &window; }, longEnough))
        qFatal("The window does not get the keyboard");
}

struct Fixture {
    Fixture()
    {
        main.resize(100, 100);
        popover.resize(100, 100);
        popover.setTransientParent(&main);
        watch.setProperty("window", QVariant::fromValue(&popover));
    }

    QWindow main;
    QWindow popover;
    FocusWatch watch;
    QSignalSpy lost{&watch, &FocusWatch::lost};
};
} // namespace

class TestFocusWatch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void turningToAnotherWindowIsTold()
    {
        Fixture f;
        activate(f.main);
        activate(f.popover);
        QCOMPARE(f.lost.count(), 0);
        activate(f.main);
        QCOMPARE(f.lost.count(), 1);
    }

    void eachTimeAnew()
    {
        Fixture f;
        for (int time = 1; time <= 2; ++time) {
            activate(f.popover);
            activate(f.main);
            QCOMPARE(f.lost.count(), time);
        }
    }

    void aWindowThatNeverHadTheKeyboardDoesNotLoseIt()
    {
        Fixture f;
        f.popover.setFlags(Qt::ToolTip); // is shown without getting the keyboard
        activate(f.main);
        f.popover.setVisible(true);
        QWindow third;
        activate(third);
        QCOMPARE(f.lost.count(), 0);
    }

    void aWindowThatCloses()
    {
        Fixture f;
        activate(f.main);
        activate(f.popover);
        f.popover.setVisible(false);
        activate(f.main);
        QCOMPARE(f.lost.count(), 0);
    }

    void aPressInAnotherWindowIsTold()
    {
        Fixture f;
        f.main.setVisible(true);
        f.popover.setVisible(true);
        QTest::mousePress(&f.popover, Qt::LeftButton, {}, {5, 5});
        QTest::mouseRelease(&f.popover, Qt::LeftButton, {}, {5, 5});
        QCOMPARE(f.lost.count(), 0);
        QTest::mousePress(&f.main, Qt::LeftButton, {}, {5, 5});
        QCOMPARE(f.lost.count(), 1);
        QTest::mouseRelease(&f.main, Qt::LeftButton, {}, {5, 5});
        QCOMPARE(f.lost.count(), 1);
    }

    void aHiddenWindowHasNothingToLose()
    {
        Fixture f;
        f.main.setVisible(true);
        QTest::mousePress(&f.main, Qt::LeftButton, {}, {5, 5});
        QTest::mouseRelease(&f.main, Qt::LeftButton, {}, {5, 5});
        QCOMPARE(f.lost.count(), 0);
    }

    void withoutAWindowNothingIsWatched()
    {
        QWindow tip;
        QWindow second;
        FocusWatch watch;
        QSignalSpy lost(&watch, &FocusWatch::lost);
        Q_EMIT qGuiApp->focusWindowChanged(nullptr); // no window, as none is watched
        tip.setFlags(Qt::ToolTip);
        tip.setVisible(true);
        watch.setProperty("window", QVariant::fromValue(&tip));
        activate(second);
        QCOMPARE(lost.count(), 0);
    }

    void aWindowThatIsGoneLosesNothing()
    {
        QWindow second;
        FocusWatch watch;
        QSignalSpy lost(&watch, &FocusWatch::lost);
        {
            QWindow gone;
            watch.setProperty("window", QVariant::fromValue(&gone));
            activate(gone);
        }
        activate(second);
        QCOMPARE(lost.count(), 0);
    }
};

QTEST_MAIN(TestFocusWatch)
#include "tst_focus_watch.moc"
