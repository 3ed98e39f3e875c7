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
    void theSymbolicOneHasOneColor_data() { symbolicOnes(); }
    void theSymbolicOneHasOneColor()
    {
        QFETCH(QString, file);
        QVERIFY(QSvgRenderer(m_package.path(file)).isValid());
        QCOMPARE(m_package.read(file).count("fill="), 1);
    }

    // Every panel that takes the icon by its name finds a drawing whose edges are on its pixels.
    void theSymbolicOneIsCrisp_data() { symbolicOnes(); }
    void theSymbolicOneIsCrisp()
    {
        QFETCH(QString, file);
        QFETCH(int, side);
        QSvgRenderer renderer(m_package.path(file));
        QCOMPARE(side % renderer.defaultSize().width(), 0);
        QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        renderer.render(&painter);
        painter.end();
        // Across the middle of the body, where nothing is round
        const int y = side * 3 / 4;
        int inked = 0;
        for (int x = 0; x < side; ++x) {
            const int alpha = qAlpha(image.pixel(x, y));
            QVERIFY2(alpha == 0 || alpha == 255, qPrintable(u"%1 at %2"_s.arg(alpha).arg(x)));
            inked += alpha == 255 ? 1 : 0;
        }
        QVERIFY(inked > side / 2);
    }

private:
    static void symbolicOnes()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<int>("side");
        const auto row = [](int side, const QString &directory) {
            QTest::addRow("%d", side)
                << icons + directory + u"/apps/org.plim.Plim-symbolic.svg"_s << side;
        };
        row(16, u"symbolic"_s);
        row(22, u"22x22"_s);
        row(24, u"24x24"_s);
        row(32, u"symbolic"_s);
    }

    UnpackedPackage m_package;
};

QTEST_GUILESS_MAIN(TestIcons)
#include "tst_icons.moc"
