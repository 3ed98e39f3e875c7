#include "shell/CardShadow.h"

#include <QImage>
#include <QPainter>
#include <QTest>

namespace
{
constexpr int reach = 26;
constexpr int radius = 16;
constexpr int drop = 6;
constexpr QSize small(352, 108);

QImage painted(QSize size, qreal scale = 1)
{
    CardShadow shadow;
    shadow.setReach(reach);
    shadow.setRadius(radius);
    shadow.setDrop(drop);
    shadow.setColor(QColor(0, 0, 0, 110));
    shadow.setSize(size);
    QImage image(size * scale, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    shadow.paint(&painter);
    return image;
}
} // namespace

class TestCardShadow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void belowTheCardThereIsNone_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<qreal>("scale");
        QTest::newRow("capsule") << small << 1.0;
        QTest::newRow("card") << QSize(352, 392) << 1.0;
        QTest::newRow("at a finer scale") << QSize(352, 392) << 2.0;
        QTest::newRow("at a scale between") << QSize(352, 392) << 1.5;
    }
    void belowTheCardThereIsNone()
    {
        QFETCH(QSize, size);
        QFETCH(qreal, scale);
        const QImage image = painted(size, scale);
        const int inset = int((reach + radius) * scale);
        const int edge = int(reach * scale) + 2;
        for (int x = inset; x < image.width() - inset; ++x) {
            QCOMPARE(image.pixelColor(x, edge).alpha(), 0);
            QCOMPARE(image.pixelColor(x, image.height() / 2).alpha(), 0);
            QCOMPARE(image.pixelColor(x, image.height() - 1 - edge).alpha(), 0);
        }
    }

    void itIsDarkestAtTheCardAndGoneAtTheRim()
    {
        const QImage image = painted({352, 392});
        const auto alphaAt = [&image](int x, int y) { return image.pixelColor(x, y).alpha(); };
        // outwards from the middle of each edge
        int last = alphaAt(176, 392 - reach);
        QVERIFY(last > 60);
        for (int y = 392 - reach + 1; y < 392; ++y) {
            QVERIFY2(alphaAt(176, y) <= last, qPrintable(QString::number(y)));
            last = alphaAt(176, y);
        }
        for (int x = 0; x < 352; ++x) {
            QVERIFY(alphaAt(x, 0) <= 1);
            QVERIFY(alphaAt(x, 391) <= 1);
        }
        for (int y = 0; y < 392; ++y) {
            QVERIFY(alphaAt(0, y) <= 1);
            QVERIFY(alphaAt(351, y) <= 1);
        }
    }

    void itHasSlippedDown()
    {
        const QImage image = painted({352, 392});
        QVERIFY(image.pixelColor(176, 392 - reach + 8).alpha() >
                image.pixelColor(176, reach - 9).alpha() + 10);
    }

    void nowhereIsItOfOneGrey()
    {
        const QImage image = painted({352, 392});
        for (int y = 392 - reach + 1; y < 392 - reach + 12; ++y)
            QVERIFY2(image.pixelColor(176, y).alpha() < image.pixelColor(176, y - 1).alpha(),
                     qPrintable(QString::number(y)));
    }

    // The corners are drawn once and the edges between them stretched.
    void theEdgesShowNoSeams()
    {
        const QImage image = painted({500, 392});
        const int y = 392 - reach + 4;
        for (int x = reach + radius + drop; x < 500 - reach - radius - drop; ++x)
            QCOMPARE(image.pixelColor(x, y).alpha(), image.pixelColor(250, y).alpha());
    }

    void withoutReachThereIsNothing()
    {
        CardShadow shadow;
        shadow.setSize(small);
        QImage image(small, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        shadow.paint(&painter);
        QVERIFY(image.allGray() && image.pixelColor(0, 0).alpha() == 0);
    }
};

QTEST_MAIN(TestCardShadow)
#include "tst_card_shadow.moc"
