#include "core/JobAnswers.h"

#include "core/ThreadJob.h"
#include "tests/Patience.h"

#include <QTest>
#include <QThreadPool>

#include <algorithm>
#include <memory>
#include <vector>

class TestJobAnswers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theyComeInTheirOrderToWhoAsked()
    {
        constexpr int count = 500;
        std::vector<int> found;
        JobAnswers answers;
        QThreadPool thread;
        thread.setMaxThreadCount(1);
        for (int i = 0; i < count; ++i) {
            startJob(thread, [&, i] {
                answers.give([&, numbers = std::vector<int>{i}] {
                    QCOMPARE(QThread::currentThread(), answers.thread());
                    found.push_back(numbers.front());
                });
            });
        }
        QTRY_COMPARE(int(found.size()), count);
        QVERIFY(std::ranges::is_sorted(found));
        QCoreApplication::processEvents();
        QCOMPARE(int(found.size()), count);
    }

    void manyThreadsMayGiveAtOnce()
    {
        constexpr int threads = 4;
        constexpr int each = 200;
        std::vector<int> found;
        JobAnswers answers;
        QThreadPool pool;
        pool.setMaxThreadCount(threads);
        for (int i = 0; i < threads; ++i) {
            startJob(pool, [&] {
                for (int k = 0; k < each; ++k)
                    answers.give(
                        [&, numbers = std::vector<int>{k}] { found.push_back(numbers[0]); });
            });
        }
        QTRY_COMPARE(int(found.size()), threads * each);
    }

    void oneMayBringAnother()
    {
        int calls = 0;
        JobAnswers answers;
        answers.give([&] {
            ++calls;
            answers.give([&] { ++calls; });
        });
        QCOMPARE(calls, 0); // never at once
        QTRY_COMPARE(calls, 2);
    }

    void noneComesWhenNobodyIsThere()
    {
        bool isCalled = false;
        const auto held = std::make_shared<int>(0);
        {
            JobAnswers answers;
            QThreadPool thread;
            startJob(thread, [&] { answers.give([&isCalled, held] { isCalled = true; }); });
            thread.waitForDone();
        }
        QCoreApplication::processEvents();
        QVERIFY(!isCalled);
        QCOMPARE(held.use_count(), 1L);
    }
};

QTEST_GUILESS_MAIN(TestJobAnswers)
#include "tst_job_answers.moc"
