#include "core/SaveRetry.h"

#include "tests/Patience.h"

#include <QSignalSpy>
#include <QTest>

using namespace std::chrono_literals;

namespace
{
const QDateTime first = QDateTime::fromSecsSinceEpoch(1'600'000'000);
}

class TestSaveRetry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pauses_data()
    {
        QTest::addColumn<int>("failures");
        QTest::addColumn<int>("seconds");
        int failures = 0;
        for (const int seconds : {1, 2, 4, 8, 16, 30, 30}) {
            ++failures;
            QTest::addRow("%d", failures) << failures << seconds;
        }
        QTest::newRow("for a year") << 1'000'000 << 30;
    }
    void pauses()
    {
        QFETCH(int, failures);
        QFETCH(int, seconds);
        QCOMPARE(SaveRetry::pause(failures).count(), seconds);
    }

    void failingLastsFromTheFirstFailureToASuccess()
    {
        SaveRetry retry;
        QSignalSpy changed(&retry, &SaveRetry::failingSinceChanged);
        QVERIFY(!retry.failingSince());
        retry.succeeded();
        QCOMPARE(changed.count(), 0);
        retry.failed(first);
        retry.failed(first.addSecs(1));
        QCOMPARE(retry.failingSince(), first);
        QCOMPARE(changed.count(), 1);
        retry.succeeded();
        retry.succeeded();
        QVERIFY(!retry.failingSince());
        QCOMPARE(changed.count(), 2);
        retry.failed(first.addSecs(9));
        QCOMPARE(retry.failingSince(), first.addSecs(9));
    }

    void waitsOnlyAfterAFailure()
    {
        SaveRetry retry;
        QVERIFY(!retry.isWaiting());
        retry.failed(first);
        QVERIFY(retry.isWaiting());
        retry.stopWaiting();
        QVERIFY(!retry.isWaiting());
        retry.failed(first);
        retry.succeeded();
        QVERIFY(!retry.isWaiting());
    }

    void isDueOnceAfterASecond()
    {
        SaveRetry retry;
        QSignalSpy due(&retry, &SaveRetry::due);
        QElapsedTimer timer;
        timer.start();
        retry.failed(first);
        QVERIFY(due.wait(longEnough));
        QVERIFY2(timer.elapsed() >= 900, qPrintable(QString::number(timer.elapsed())));
        QVERIFY(!retry.isWaiting());
    }
};

QTEST_MAIN(TestSaveRetry)
#include "tst_save_retry.moc"
