#include "sticky/RoundedRegion.h"

#include <QTest>

namespace
{
/// How many squares the lines leave out on their left, from the top.
QList<int> insets(const QRegion &region, const QRect &rect, int lines)
{
    QList<int> insets;
    for (int y = rect.top(); y < rect.top() + lines; ++y) {
        int x = rect.left();
        while (x <= rect.right() && !region.contains(QPoint(x, y)))
            ++x;
        insets << x - rect.left();
    }
    return insets;
}

QRegion mirrored(const QRegion &region, const QRect &rect, bool isSideways)
{
    QRegion mirrored;
    for (const QRect &part : region) {
        QRect other = part;
        if (isSideways)
            other.moveLeft(rect.left() + rect.right() - part.right());
        else
            other.moveTop(rect.top() + rect.bottom() - part.bottom());
        mirrored += other;
    }
    return mirrored;
}
} // namespace

class TestRoundedRegion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theCornersAreQuarterCircles_data()
    {
        QTest::addColumn<QRect>("rect");
        QTest::addColumn<int>("radius");
        QTest::addColumn<QList<int>>("wanted");
        const QRect rect(7, -3, 40, 30);
        QTest::newRow("square") << rect << 0 << QList<int>{0, 0};
        QTest::newRow("1") << rect << 1 << QList<int>{0, 0};
        QTest::newRow("2") << rect << 2 << QList<int>{1, 0, 0};
        QTest::newRow("4") << rect << 4 << QList<int>{2, 1, 0, 0, 0};
        QTest::newRow("8") << rect << 8 << QList<int>{5, 3, 2, 1, 1, 0, 0, 0, 0};
        QTest::newRow("negative") << rect << -4 << QList<int>{0, 0};
        QTest::newRow("too large") << QRect(0, 0, 40, 8) << 100 << QList<int>{2, 1, 0, 0};
        QTest::newRow("no larger than the corners")
            << QRect(0, 0, 4, 4) << 2 << QList<int>{1, 0, 0, 1};
    }
    void theCornersAreQuarterCircles()
    {
        QFETCH(QRect, rect);
        QFETCH(int, radius);
        QFETCH(QList<int>, wanted);
        const QRegion region = roundedRegion(rect, radius);
        QCOMPARE(insets(region, rect, int(wanted.size())), wanted);
        QCOMPARE(region.boundingRect(), rect);
        QCOMPARE(mirrored(region, rect, true), region);
        QCOMPARE(mirrored(region, rect, false), region);
    }

    // Square by square, against what a circle is.
    void everySquareIsOnItsSideOfTheCircle_data()
    {
        QTest::addColumn<int>("radius");
        for (const int radius : {3, 5, 12, 16, 20, 32})
            QTest::addRow("%d", radius) << radius;
    }
    void everySquareIsOnItsSideOfTheCircle()
    {
        QFETCH(int, radius);
        const QRegion region = roundedRegion(QRect(0, 0, 100, 80), radius);
        for (int y = 0; y < radius; ++y) {
            for (int x = 0; x < radius; ++x) {
                const bool isWithin = std::hypot(radius - x - 0.5, radius - y - 0.5) <= radius;
                QVERIFY2(region.contains(QPoint(x, y)) == isWithin,
                         qPrintable(QStringLiteral("%1, %2").arg(x).arg(y)));
            }
        }
    }

    void nothingHasNoCorners()
    {
        QVERIFY(roundedRegion(QRect(), 4).isEmpty());
        QVERIFY(roundedRegion(QRect(0, 0, -10, -10), 4).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestRoundedRegion)
#include "tst_rounded_region.moc"
