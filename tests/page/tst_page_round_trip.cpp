#include "tests/RandomSeed.h"
#include "tests/page/PageFixture.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTest>

#include <cstdio>

using namespace Qt::StringLiterals;

/// Whatever is made in the editor reads the same when it is loaded again, nothing but deleting
/// takes words away, and every step can be undone.
///
/// PLIM_TEST_SEED=n PLIM_TEST_COUNT=1 repeats one document.
class TestPageRoundTrip : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void randomDocumentsReadTheSame();

private:
    PageFixture m_page;
};

void TestPageRoundTrip::initTestCase()
{
    QVERIFY(m_page.open(QUuid::createUuid(), u"<h1>T</h1>"_s));
    QFile file(u":/play.js"_s);
    QVERIFY(file.open(QIODevice::ReadOnly));
    m_page.js(QString::fromUtf8(file.readAll()));
}

void TestPageRoundTrip::randomDocumentsReadTheSame()
{
    constexpr qint64 timeEnough = 60'000; // ms
    constexpr quint32 documentsEnough = 200;
    const quint32 first = randomSeed();
    const quint32 count = documentCount(2000);
    const bool isChosen = qEnvironmentVariableIsSet("PLIM_TEST_COUNT");
    QElapsedTimer timer;
    timer.start();
    for (quint32 seed = first; seed != first + count; ++seed) {
        if (!isChosen && seed - first >= documentsEnough && timer.elapsed() > timeEnough) {
            qInfo("%u documents in %lld s", seed - first, timer.elapsed() / 1000);
            break;
        }
        const QString problem = m_page.text(u"play(%1, %2)"_s.arg(seed).arg(6 + seed % 40));
        if (!problem.isEmpty())
            std::fprintf(stderr, "PLIM_TEST_SEED=%u PLIM_TEST_COUNT=1\n%s\n", seed,
                         qPrintable(problem)); // too long for QVERIFY2
        QVERIFY2(problem.isEmpty(), qPrintable(u"PLIM_TEST_SEED=%1"_s.arg(seed)));
    }
}

PLIM_PAGE_TEST_MAIN(TestPageRoundTrip)
#include "tst_page_round_trip.moc"
