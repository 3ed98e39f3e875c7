#include "sticky/Compositing.h"
#include "sticky/WindowShape.h"
#include "sticky/WindowTraits.h"

#include <QSignalSpy>
#include <QTest>

#include <memory>

/// Where there is nobody to ask for anything.
class TestWindowShape : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void elsewhereTheresNothingToDo()
    {
        QVERIFY(Compositing::shared().isRunning());
        QVERIFY(canKeepAbove());
        QWindow window;
        setInputRegion(window, QRect(0, 0, 10, 10));
        setFrameExtents(window, {1, 2, 3, 4});
        keepOutOfTaskSwitcher(window);
        QVERIFY(!window.handle()); // not even made
    }

    void theWantedShadowIsThere()
    {
        WindowShape shape;
        QSignalSpy changed(&shape, &WindowShape::shadowChanged);
        QCOMPARE(shape.shadow(), 0);
        shape.setWantedShadow(24);
        shape.setWantedShadow(24);
        QCOMPARE(shape.shadow(), 24);
        QCOMPARE(changed.count(), 1);
    }

    void valuesAreAnnouncedWhenTheyAreOthers()
    {
        QQuickWindow window;
        WindowShape shape;
        QSignalSpy wishes(&shape, &WindowShape::wishChanged);
        QSignalSpy windows(&shape, &WindowShape::windowChanged);
        for (int again = 0; again < 2; ++again) {
            shape.setRadius(16);
            shape.setWantedShadow(24);
            shape.setGrip(4);
            shape.setWindow(&window);
        }
        QCOMPARE(wishes.count(), 3);
        QCOMPARE(windows.count(), 1);
    }

    void nothingIsCutOff()
    {
        QQuickWindow window;
        window.resize(200, 120);
        WindowShape shape;
        shape.setRadius(16);
        shape.setWindow(&window);
        QVERIFY(!window.handle()); // its owner may still decide what it is to be
        window.show();
        QVERIFY(window.mask().isEmpty());
    }

    void theWindowMayChangeAndGo()
    {
        auto first = std::make_unique<QQuickWindow>();
        auto second = std::make_unique<QQuickWindow>();
        WindowShape shape;
        shape.setWindow(first.get());
        first->show();
        shape.setWindow(second.get());
        second->show();
        first.reset();
        QCOMPARE(shape.window(), second.get());
        second.reset();
        QVERIFY(!shape.window());
        shape.setRadius(4);
        shape.setWindow(nullptr);
    }
};

QTEST_MAIN(TestWindowShape)
#include "tst_window_shape.moc"
