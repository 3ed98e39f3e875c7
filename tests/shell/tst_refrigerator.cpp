#include "shell/Symbol.h"

#include <QPainter>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QString name = u"refrigerator.fill"_s;

/// How many pixels are neither clear nor full.
int blurred(const QImage &image)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const int alpha = qAlpha(image.pixel(x, y));
            count += alpha > 4 && alpha < 251 ? 1 : 0;
        }
    }
    return count;
}
} // namespace

/// The program's own symbol, which stands in a panel of any height.
class TestRefrigerator : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void itIsKnown() { QVERIFY(Symbol::isKnown(name)); }

    void itIsCrisp_data()
    {
        QTest::addColumn<int>("pixels");
        for (const int pixels : {16, 22, 24, 32, 44, 48, 64})
            QTest::addRow("%d pixels", pixels) << pixels;
    }
    void itIsCrisp()
    {
        QFETCH(int, pixels);
        const QImage image = Symbol::image(name, Qt::black, pixels);
        QCOMPARE(image.size(), QSize(pixels, pixels));

        // Row by row and column by column, away from the four round corners.
        const int corner = pixels / 5 + 1;
        for (int y = corner; y < pixels - corner; ++y) {
            for (int x = 0; x < pixels; ++x) {
                const int alpha = qAlpha(image.pixel(x, y));
                QVERIFY2(alpha == 0 || alpha == 255,
                         qPrintable(u"%1 at %2, %3"_s.arg(alpha).arg(x).arg(y)));
            }
        }
        const int middle = pixels / 2;
        for (const int y : {0, corner})
            QCOMPARE(qAlpha(image.pixel(middle, y)), 255);
        // An arc of two to three units leaves few grey pixels; a blurred side would add a column.
        QVERIFY2(blurred(image) <= pixels, qPrintable(QString::number(blurred(image))));
    }

    void itHasTwoDoorsWithHandlesAndStandsOnFeet_data() { itIsCrisp_data(); }
    void itHasTwoDoorsWithHandlesAndStandsOnFeet()
    {
        QFETCH(int, pixels);
        const QImage image = Symbol::image(name, Qt::black, pixels);
        const auto stretches = [&image](QPoint from, QPoint step) {
            int count = 0;
            bool wasFull = false;
            for (QPoint at = from; image.rect().contains(at); at += step) {
                const bool isFull = qAlpha(image.pixel(at)) > 127;
                count += isFull && !wasFull ? 1 : 0;
                wasFull = isFull;
            }
            return count;
        };
        QCOMPARE(stretches({pixels / 2, 0}, {0, 1}), 2);       // doors
        QCOMPARE(stretches({pixels * 11 / 32, 0}, {0, 1}), 4); // along the handles
        QCOMPARE(stretches({0, pixels - 1}, {1, 0}), 2);       // feet
    }

    void itHasTheAskedColor()
    {
        const QImage image = Symbol::image(name, QColor(255, 255, 255, 128), 22);
        const QColor inside = image.pixelColor(11, 4);
        QVERIFY(std::abs(inside.alpha() - 128) <= 1);
        QCOMPARE(inside.red(), 255);
    }

    void inAWindowItMeetsThePixelsOfTheScreen_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<qreal>("scale");
        QTest::newRow("11 points at 200 %") << 11 << 2.0;
        QTest::newRow("16 points at 150 %") << 16 << 1.5;
    }
    void inAWindowItMeetsThePixelsOfTheScreen()
    {
        QFETCH(int, size);
        QFETCH(qreal, scale);
        Symbol symbol;
        symbol.setName(name);
        symbol.setColor(Qt::black);
        symbol.setSize(size);
        const int pixels = qRound(size * scale);
        QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(scale);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        symbol.paint(&painter);
        painter.end();
        image.setDevicePixelRatio(1);
        QCOMPARE(image, Symbol::image(name, Qt::black, pixels));
    }

    void anUnknownSymbolIsAClearImage()
    {
        const QImage image = Symbol::image(u"microwave.fill"_s, Qt::black, 16);
        QCOMPARE(blurred(image), 0);
        QCOMPARE(qAlpha(image.pixel(8, 8)), 0);
    }
};

QTEST_MAIN(TestRefrigerator)
#include "tst_refrigerator.moc"
