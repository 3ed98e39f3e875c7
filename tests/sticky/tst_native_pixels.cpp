#include "sticky/NativePixels.h"

#include "sticky/RoundedRegion.h"

#include <QTest>

class TestNativePixels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pointsBecomePixels_data()
    {
        QTest::addColumn<QRect>("points");
        QTest::addColumn<qreal>("scale");
        QTest::addColumn<QRect>("pixels");
        QTest::newRow("as they are") << QRect(3, 4, 10, 20) << 1.0 << QRect(3, 4, 10, 20);
        QTest::newRow("twice") << QRect(3, 4, 10, 20) << 2.0 << QRect(6, 8, 20, 40);
        QTest::newRow("half as much again") << QRect(2, 4, 10, 20) << 1.5 << QRect(3, 6, 15, 30);
        QTest::newRow("edges on the nearest pixel")
            << QRect(1, 1, 1, 2) << 1.25 << QRect(1, 1, 2, 3);
        QTest::newRow("nothing") << QRect() << 2.0 << QRect();
    }
    void pointsBecomePixels()
    {
        QFETCH(QRect, points);
        QFETCH(qreal, scale);
        QFETCH(QRect, pixels);
        QCOMPARE(nativePixels(points, scale), QRegion(pixels));
    }

    // A line missing between two that were neighbours would be a slit in a window.
    void nothingOpensBetweenNeighbours_data()
    {
        QTest::addColumn<qreal>("scale");
        for (const double scale : {1.1, 1.25, 1.5, 1.75, 2.0, 2.5, 3.0})
            QTest::addRow("%g", scale) << qreal(scale);
    }
    void nothingOpensBetweenNeighbours()
    {
        QFETCH(qreal, scale);
        const QRegion pixels = nativePixels(roundedRegion(QRect(5, 5, 90, 70), 16), scale);
        const QRect all = pixels.boundingRect();
        for (int y = all.top(); y <= all.bottom(); ++y) {
            const QRegion line = pixels & QRect(all.left(), y, all.width(), 1);
            QCOMPARE(line.rectCount(), 1);
        }
        for (int x = all.left(); x <= all.right(); ++x) {
            const QRegion column = pixels & QRect(x, all.top(), 1, all.height());
            int height = 0;
            for (const QRect &part : column)
                height += part.height();
            QCOMPARE(height, column.boundingRect().height());
        }
    }
};

QTEST_GUILESS_MAIN(TestNativePixels)
#include "tst_native_pixels.moc"
