#include "sticky/WindowOutline.h"

#include "sticky/RoundedRegion.h"

#include <QTest>

namespace
{
constexpr QSize window(200, 120);
}

class TestWindowOutline : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thePointerIsTheCardsAndItsGrips_data()
    {
        QTest::addColumn<int>("radius");
        QTest::addColumn<int>("shadow");
        QTest::addColumn<int>("grip");
        QTest::addColumn<QRegion>("input");
        QTest::newRow("square card") << 0 << 24 << 0 << QRegion(24, 24, 152, 72);
        QTest::newRow("round card") << 16 << 24 << 0 << QRegion(24, 24, 152, 72);
        QTest::newRow("round card with grips") << 16 << 24 << 4 << QRegion(20, 20, 160, 80);
        QTest::newRow("grips that reach the edge") << 16 << 3 << 4 << QRegion(0, 0, 200, 120);
        QTest::newRow("no shadow, the whole window") << 16 << 0 << 4 << QRegion();
        QTest::newRow("nothing left, the whole window") << 16 << 70 << 0 << QRegion();
    }
    void thePointerIsTheCardsAndItsGrips()
    {
        QFETCH(int, radius);
        QFETCH(int, shadow);
        QFETCH(int, grip);
        const auto outline = WindowOutline::of(window, {radius, shadow, grip}, true);
        QTEST(outline.input, "input");
        QCOMPARE(outline.shadow, shadow);
        QVERIFY(outline.mask.isEmpty());
    }

    void withoutCompositingTheCornersAreCutOff()
    {
        WindowOutline wanted;
        QCOMPARE(WindowOutline::of(window, {0, 24, 4}, false), wanted);
        wanted.mask = roundedRegion({QPoint(0, 0), window}, 16);
        QCOMPARE(WindowOutline::of(window, {16, 24, 4}, false), wanted);
        QCOMPARE(WindowOutline::of(window, {16, 0, 0}, false), wanted);
    }
};

QTEST_GUILESS_MAIN(TestWindowOutline)
#include "tst_window_outline.moc"
