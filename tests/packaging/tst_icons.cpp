#include "tests/packaging/UnpackedPackage.h"

#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QString icons = u"usr/share/icons/hicolor/"_s;

/// The share of pixels near a colour.
double share(const QImage &image, const QColor &color)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            const int distance = std::abs(pixel.red() - color.red()) +
                                 std::abs(pixel.green() - color.green()) +
                                 std::abs(pixel.blue() - color.blue());
            count += pixel.alpha() > 200 && distance < 120 ? 1 : 0;
        }
    }
    return double(count) / (image.width() * image.height());
}

void checkDrawing(const QImage &image)
{
    const int last = image.width() - 1;
    for (const QPoint corner : {QPoint(0, 0), QPoint(last, 0), QPoint(0, last), QPoint(last, last)})
        QCOMPARE(qAlpha(image.pixel(corner)), 0);
    QVERIFY2(share(image, QColor(0x54, 0xcc, 0xff)) > 0.15, "the refrigerator");
    QVERIFY2(share(image, QColor(0xff, 0xdb, 0x0a)) > 0.05, "the note");
}
} // namespace

class TestIcons : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_package.isValid()); }

    void thereIsAPictureInEverySize_data()
    {
        QTest::addColumn<int>("side");
        for (const int side : {16, 22, 24, 32, 48, 64, 128, 256, 512})
            QTest::addRow("%d", side) << side;
    }
    void thereIsAPictureInEverySize()
    {
        QFETCH(int, side);
        const QImage image(m_package.path(icons + u"%1x%1/apps/org.plim.Plim.png"_s.arg(side)));
        QCOMPARE(image.size(), QSize(side, side));
        checkDrawing(image);
    }

    void thereIsADrawingForTheOtherSizes()
    {
        QSvgRenderer renderer(m_package.path(icons + u"scalable/apps/org.plim.Plim.svg"_s));
        QVERIFY(renderer.isValid());
        QImage image(96, 96, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        renderer.render(&painter);
        painter.end();
        checkDrawing(image);
    }

    // A desktop gives it the colour of its text, which it can do with one only.
    void theSymbolicOneHasOneColor()
    {
        const QString file = icons + u"symbolic/apps/org.plim.Plim-symbolic.svg"_s;
        QVERIFY(QSvgRenderer(m_package.path(file)).isValid());
        QCOMPARE(m_package.read(file).count("fill="), 1);
    }

private:
    UnpackedPackage m_package;
};

QTEST_GUILESS_MAIN(TestIcons)
#include "tst_icons.moc"
