#include "shell/AnchoredPlacement.h"

#include <QCursor>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QScreen>
#include <QTest>

class TestAnchoredPlacement : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void corners_data()
    {
        QTest::addColumn<QRect>("anchor");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QRect>("screen");
        QTest::addColumn<QPoint>("corner");
        const QRect screen(0, 0, 1600, 1000);
        const QRect second(1600, 200, 800, 600);
        const QSize size(200, 100);
        const auto row = [](const char *name, const QRect &anchor, QSize size, const QRect &screen,
                            QPoint corner) {
            QTest::newRow(name) << anchor << size << screen << corner;
        };
        row("in the middle", {800, 500, 41, 30}, size, screen, {720, 536});
        row("at the left edge", {0, 500, 41, 30}, size, screen, {0, 536});
        row("at the right edge", {1559, 500, 41, 30}, size, screen, {1400, 536});
        row("over the left edge", {-300, 500, 41, 30}, size, screen, {0, 536});
        row("at the upper edge", {800, 0, 41, 30}, size, screen, {720, 36});
        row("at the lower edge", {800, 970, 41, 30}, size, screen, {720, 864});
        row("just room enough below", {800, 864, 41, 30}, size, screen, {720, 900});
        row("a point too little", {800, 865, 41, 30}, size, screen, {720, 759});
        row("in the lower right corner", {1580, 980, 20, 20}, size, screen, {1400, 874});
        row("higher than the screen", {800, 500, 41, 30}, {200, 2000}, screen, {720, 0});
        row("wider than the screen", {800, 500, 41, 30}, {2000, 100}, screen, {0, 536});
        row("room neither above nor below", {800, 50, 41, 900}, size, screen, {720, 0});
        row("on a second screen", {1990, 400, 21, 20}, size, second, {1900, 426});
        row("left on a second screen", {1600, 400, 21, 20}, size, second, {1600, 426});
        row("low on a second screen", {1990, 780, 21, 20}, size, second, {1900, 674});
        row("high on a second screen", {1990, 200, 21, 590}, size, second, {1900, 200});
    }
    void corners()
    {
        QFETCH(QRect, anchor);
        QFETCH(QSize, size);
        QFETCH(QRect, screen);
        QTEST(AnchoredPlacement::below(anchor, size, screen), "corner");
    }

    void anItemIsAnAnchor()
    {
        const AnchoredPlacement placement;
        QQuickWindow window;
        window.setGeometry(100, 100, 400, 300);
        QQuickItem item(window.contentItem());
        item.setPosition({150, 50});
        item.setSize({101, 20});
        const QPoint corner = window.mapToGlobal(QPoint(150, 50));
        QCOMPARE(placement.below(&item, QSizeF(41, 30)), corner + QPoint(30, 26));
    }

    void withoutAWindowThereIsNoAnchor()
    {
        const AnchoredPlacement placement;
        QQuickItem item;
        QCOMPARE(placement.below(&item, QSizeF(40, 30)), QPoint());
        QCOMPARE(placement.below(nullptr, QSizeF(40, 30)), QPoint());
    }

    void belowThePointerAndOnTheScreen()
    {
        const AnchoredPlacement placement;
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        QCursor::setPos(screen.center());
        const QPoint middle = placement.belowPointer(QSizeF(100, 20));
        QVERIFY(middle.y() > screen.center().y());
        QVERIFY(std::abs(middle.x() + 50 - screen.center().x()) <= 1);
        QCursor::setPos(screen.bottomRight());
        const QRect tip(placement.belowPointer(QSizeF(100, 20)), QSize(100, 20));
        QVERIFY(screen.contains(tip));
        QVERIFY(tip.bottom() < screen.bottom());
    }
};

QTEST_MAIN(TestAnchoredPlacement)
#include "tst_anchored_placement.moc"
