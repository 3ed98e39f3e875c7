#include "sticky/ScreenAreas.h"
#include "tests/sticky/StickyFrameText.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTest>

class TestScreenAreas : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thePrimaryScreenIsTheFirst()
    {
        const ScreenAreas areas = ScreenAreas::current();
        const QScreen *primary = QGuiApplication::primaryScreen();
        QVERIFY(primary);
        QCOMPARE(areas.primary, primary->geometry());
        QCOMPARE(areas.visible.size(), QGuiApplication::screens().size());
        QCOMPARE(areas.visible[0],
                 StickyFrame::fromScreen(primary->availableGeometry(), primary->geometry()));
    }

    void changesAreToldOfATurnLater()
    {
        int told = 0;
        QScreen *screen = QGuiApplication::primaryScreen();
        {
            QObject context;
            ScreenAreas::watch(&context, [&] { ++told; });
            Q_EMIT screen->availableGeometryChanged({});
            QCOMPARE(told, 0);
            QTRY_COMPARE(told, 1);
            Q_EMIT qGuiApp->screenRemoved(screen);
            QTRY_COMPARE(told, 2);
            Q_EMIT qGuiApp->primaryScreenChanged(screen);
            QTRY_COMPARE(told, 3);
        }
        Q_EMIT screen->availableGeometryChanged({});
        QCoreApplication::processEvents();
        QCOMPARE(told, 3);
    }
};

QTEST_MAIN(TestScreenAreas)
#include "tst_screen_areas.moc"
