#include "transfer/PrintLayout.h"

#include <QTest>

class TestPrintLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void paperGoesByTheMeasures_data()
    {
        QTest::addColumn<QLocale::MeasurementSystem>("measures");
        QTest::addColumn<QPageSize::PageSizeId>("paper");
        QTest::newRow("metric") << QLocale::MetricSystem << QPageSize::A4;
        QTest::newRow("United States") << QLocale::ImperialUSSystem << QPageSize::Letter;
        QTest::newRow("United Kingdom") << QLocale::ImperialUKSystem << QPageSize::A4;
        QTest::newRow("Polish") << QLocale(QLocale::Polish, QLocale::Poland).measurementSystem()
                                << QPageSize::A4;
        QTest::newRow("American")
            << QLocale(QLocale::English, QLocale::UnitedStates).measurementSystem()
            << QPageSize::Letter;
    }
    void paperGoesByTheMeasures()
    {
        QFETCH(QLocale::MeasurementSystem, measures);
        const QPageLayout layout = printLayout(measures);
        QTEST(layout.pageSize().id(), "paper");
        QCOMPARE(layout.orientation(), QPageLayout::Portrait);
        QCOMPARE(layout.margins(QPageLayout::Millimeter), QMarginsF(20, 20, 20, 20));
    }
};

QTEST_APPLESS_MAIN(TestPrintLayout)
#include "tst_print_layout.moc"
