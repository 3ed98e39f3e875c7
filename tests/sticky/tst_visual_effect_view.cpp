#include "sticky/VisualEffectView.h"

#include "sticky/RoundedRegion.h"

#include <QImage>
#include <QPainter>
#include <QQuickWindow>
#include <QSet>
#include <QSignalSpy>
#include <QTest>

namespace
{
constexpr int width = 200;
constexpr int height = 120;

QImage painted(VisualEffectView &view)
{
    view.setSize({width, height});
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    view.paint(&painter);
    return image;
}

/// Which of the corners are drawn: upper left, upper right, lower left, lower right.
QList<bool> corners(const QImage &image)
{
    QList<bool> corners;
    for (const QPoint &corner :
         {QPoint(0, 0), QPoint(width - 1, 0), QPoint(0, height - 1), QPoint(width - 1, height - 1)})
        corners << (image.pixelColor(corner).alpha() > 0);
    return corners;
}

bool isNear(const QColor &a, const QColor &b)
{
    return std::abs(a.red() - b.red()) <= 6 && std::abs(a.green() - b.green()) <= 6 &&
           std::abs(a.blue() - b.blue()) <= 6 && std::abs(a.alpha() - b.alpha()) <= 1;
}
} // namespace

class TestVisualEffectView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theCornersAreRoundTheRestIsTinted_data()
    {
        QTest::addColumn<qreal>("leading");
        QTest::addColumn<qreal>("trailing");
        QTest::addColumn<QList<bool>>("corners");
        QTest::newRow("square") << 0.0 << 0.0 << QList<bool>{true, true, true, true};
        QTest::newRow("round on the left") << 12.0 << 0.0 << QList<bool>{false, true, false, true};
        QTest::newRow("round on the right") << 0.0 << 12.0 << QList<bool>{true, false, true, false};
        QTest::newRow("round") << 12.0 << 12.0 << QList<bool>{false, false, false, false};
        QTest::newRow("unlike sides") << 12.0 << 30.0 << QList<bool>{false, false, false, false};
    }
    void theCornersAreRoundTheRestIsTinted()
    {
        QFETCH(qreal, leading);
        QFETCH(qreal, trailing);
        const QColor tint(0x22, 0x25, 0x2b, 242);
        VisualEffectView view;
        view.setTint(tint);
        view.setLeadingRadius(leading);
        view.setTrailingRadius(trailing);
        const QImage image = painted(view);
        QTEST(corners(image), "corners");
        // The middle, and every edge between the corners, without a gap.
        for (int x = int(leading); x < width - int(trailing); ++x) {
            for (const int y : {0, height / 2, height - 1})
                QVERIFY2(isNear(image.pixelColor(x, y), tint), qPrintable(QString::number(x)));
        }
        for (int y = 32; y < height - 32; ++y) {
            for (const int x : {0, width - 1})
                QVERIFY2(isNear(image.pixelColor(x, y), tint), qPrintable(QString::number(y)));
        }
    }

    void theGroundIsGrainy()
    {
        VisualEffectView view;
        view.setTint(QColor(0x80, 0x80, 0x80));
        QSet<QRgb> colors;
        const QImage image = painted(view);
        for (int x = 0; x < width; ++x)
            colors.insert(image.pixel(x, height / 2));
        QVERIFY(colors.size() > 1);
        QCOMPARE(painted(view), image); // and does not flicker
        view.setMaterial(VisualEffectView::Material::Sheet);
        QVERIFY(painted(view) != image);
    }

    void valuesAreAnnouncedWhenTheyAreOthers()
    {
        VisualEffectView view;
        QSignalSpy changed(&view, &VisualEffectView::changed);
        view.setMaterial(view.material());
        view.setBlendingMode(view.blendingMode());
        view.setLeadingRadius(0);
        view.setTrailingRadius(0);
        QCOMPARE(changed.count(), 0);
        for (int again = 0; again < 2; ++again) {
            view.setMaterial(VisualEffectView::Material::Sheet);
            view.setBlendingMode(VisualEffectView::BlendingMode::WithinWindow);
            view.setTint(Qt::red);
            view.setLeadingRadius(3);
            view.setTrailingRadius(4);
        }
        QCOMPARE(changed.count(), 5);
    }

    void itKnowsWhatItCovers_data()
    {
        QTest::addColumn<qreal>("leading");
        QTest::addColumn<qreal>("trailing");
        QTest::addColumn<QRegion>("covered");
        const QRect area(30, 40, width, height);
        const QRect left(30, 40, width / 2, height);
        QTest::newRow("square") << 0.0 << 0.0 << QRegion(area);
        QTest::newRow("round") << 16.0 << 16.0 << roundedRegion(area, 16);
        QTest::newRow("round on the left")
            << 12.0 << 0.0 << (roundedRegion(area, 12) & left) + (QRegion(area) - left);
    }
    void itKnowsWhatItCovers()
    {
        QFETCH(qreal, leading);
        QFETCH(qreal, trailing);
        QFETCH(QRegion, covered);
        QQuickWindow window;
        QQuickItem parent(window.contentItem());
        parent.setPosition({20, 40});
        VisualEffectView view(&parent);
        view.setPosition({10, 0});
        view.setSize({width, height});
        view.setLeadingRadius(leading);
        view.setTrailingRadius(trailing);
        QCOMPARE(view.coveredRegion(), covered);
        parent.setX(25);
        QCOMPARE(view.coveredRegion(), covered.translated(5, 0));
        view.setSize({0, 0});
        QVERIFY(view.coveredRegion().isEmpty());
    }

    void itMayChangeWindows()
    {
        QQuickWindow first;
        first.setVisible(true);
        VisualEffectView view;
        view.setParentItem(first.contentItem());
        {
            QQuickWindow second;
            view.setParentItem(second.contentItem());
            second.setVisible(true);
            view.setBlendingMode(VisualEffectView::BlendingMode::WithinWindow);
            view.setParentItem(nullptr);
        }
        first.setVisible(false);
        view.setBlendingMode(VisualEffectView::BlendingMode::BehindWindow);
    }
};

QTEST_MAIN(TestVisualEffectView)
#include "tst_visual_effect_view.moc"
