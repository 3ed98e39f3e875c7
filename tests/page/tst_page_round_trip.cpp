#include "tests/page/PageFixture.h"

#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QTest>

#include <cstdio>

using namespace Qt::StringLiterals;

/// Whatever is made in the editor reads the same when it is loaded again, nothing but deleting takes
/// words away, and every step can be undone.
///
/// PLIM_TEST_SEED repeats one document.
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
    const bool isRepeated = qEnvironmentVariableIsSet("PLIM_TEST_SEED");
    const quint32 first = isRepeated ? qEnvironmentVariable("PLIM_TEST_SEED").toUInt() : QRandomGenerator::global()->generate();
    const quint32 count = isRepeated ? 1 : 2000;
    qInfo("seeds from %u", first);
    for (quint32 seed = first; seed != first + count; ++seed) {
        const QString problem = m_page.text(u"play(%1, %2)"_s.arg(seed).arg(6 + seed % 40));
        if (!problem.isEmpty())
            std::fprintf(stderr, "PLIM_TEST_SEED=%u\n%s\n", seed, qPrintable(problem)); // too long for QVERIFY2
        QVERIFY2(problem.isEmpty(), qPrintable(u"PLIM_TEST_SEED=%1"_s.arg(seed)));
    }
}

PLIM_PAGE_TEST_MAIN(TestPageRoundTrip)
#include "tst_page_round_trip.moc"
