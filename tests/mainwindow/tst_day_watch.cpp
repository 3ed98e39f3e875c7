#include "mainwindow/DayWatch.h"
#include "tests/Patience.h"

#include <QSignalSpy>
#include <QTest>
#include <QTimeZone>

using namespace Qt::StringLiterals;

namespace
{
/// A clock that is set by hand, in Warsaw.
struct Watched {
    explicit Watched(const QString &text) : now(at(text)) {}

    static QDateTime at(const QString &text)
    {
        QDateTime moment = QDateTime::fromString(text, u"yyyy-MM-dd HH:mm:ss.zzz"_s);
        moment.setTimeZone(QTimeZone("Europe/Warsaw"));
        return moment;
    }
    void set(const QString &text)
    {
        now = at(text);
        watch.check();
    }

    QDateTime now;
    DayWatch watch{[this] { return now; }};
    QSignalSpy changed{&watch, &DayWatch::changed};
};
} // namespace

class TestDayWatch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyNewDayIsToldOnce()
    {
        Watched w(u"2024-03-15 23:58:00.000"_s);
        w.set(u"2024-03-15 23:59:59.999"_s);
        QCOMPARE(w.changed.count(), 0);
        w.set(u"2024-03-16 00:00:00.000"_s);
        QCOMPARE(w.changed.count(), 1);
        w.set(u"2024-03-16 12:00:00.000"_s);
        QCOMPARE(w.changed.count(), 1);
        w.set(u"2024-03-20 12:00:00.000"_s); // a long sleep
        QCOMPARE(w.changed.count(), 2);
        w.set(u"2024-03-19 12:00:00.000"_s); // the clock was wrong
        QCOMPARE(w.changed.count(), 3);
    }

    void anotherZoneIsTold()
    {
        Watched w(u"2024-03-15 12:00:00.000"_s);
        w.now = w.now.toTimeZone(QTimeZone("Asia/Tokyo"));
        w.watch.check();
        QCOMPARE(w.changed.count(), 1);
    }

    // The timer waits for as long as the clock says, and that is a moment.
    void midnightIsNotedUnasked_data()
    {
        QTest::addColumn<QString>("before");
        QTest::newRow("on a common day") << u"2024-03-15 23:59:59.990"_s;
        QTest::newRow("on the day of 23 hours") << u"2024-03-31 23:59:59.990"_s;
        QTest::newRow("on the day of 25 hours") << u"2024-10-27 23:59:59.990"_s;
    }
    void midnightIsNotedUnasked()
    {
        QFETCH(QString, before);
        Watched w(before);
        w.now = w.now.addMSecs(10);
        QVERIFY(w.changed.wait(longEnough));
        QCOMPARE(w.changed.count(), 1);
    }

    void aTimerThatComesEarlyWaitsOn()
    {
        Watched w(u"2024-03-15 23:59:59.998"_s);
        w.now = w.now.addMSecs(1);
        QTimer::singleShot(20, this, [&] { w.now = w.now.addMSecs(1); });
        QVERIFY(w.changed.wait(longEnough));
        QCOMPARE(w.changed.count(), 1);
    }

    void theClockIsLookedAtEveryMinute()
    {
        Watched w(u"2024-03-15 12:00:00.000"_s);
        const auto *timer = w.watch.findChild<QTimer *>();
        QVERIFY(timer && timer->isActive());
        QVERIFY(timer->interval() <= 60'000);
    }

    void theClockIsLookedAtWhenTheApplicationBecomesActive()
    {
        Watched w(u"2024-03-15 12:00:00.000"_s);
        w.now = w.now.addDays(1);
        Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationActive);
        QCOMPARE(w.changed.count(), 1);
    }
};

QTEST_MAIN(TestDayWatch)
#include "tst_day_watch.moc"
