#include "tests/e2e/PlimRun.h"
#include "tests/e2e/StoredNotes.h"

#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;

namespace
{
const QPoint header(300, 24);
const QPoint paneStrip(950, 20); // beside the menus
const QPoint english(361, 680);
const QPoint options(1054, 22);
const QPoint undo(830, 662);
constexpr int doubleClickTime = 500; // ms

QPoint row(int number)
{
    return {220, 120 + 70 * number};
}

QPoint deleteButton(int number)
{
    return {412, row(number).y()};
}

QString orderOnDisk(const PlimRun &plim)
{
    QStringList order;
    for (const QJsonValue note : plim.notesOnDisk())
        order << note[u"body"_s].toString().section(u"<h1>"_s, 1).section(u"</h1>"_s, 0, 0);
    return order.join(u' ');
}

bool isAbout(QPoint place, QPoint expected)
{
    constexpr int tolerance = 40; // pixels: a drag begins a little later than the press
    return (place - expected).manhattanLength() <= tolerance;
}
} // namespace

/// The built program's window under a real window manager, by real mouse and keys.
class TestEndToEndWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void freeGroundMovesTheWindow_data()
    {
        QTest::addColumn<QPoint>("ground");
        QTest::newRow("header") << header;
        QTest::newRow("above the editor") << paneStrip;
    }
    void freeGroundMovesTheWindow()
    {
        QFETCH(QPoint, ground);
        const ThrowAwayHome home;
        storeNotesCalled(home, {u"Tea"_s});
        PlimRun plim(home);
        QVERIFY(plim.open());
        QVERIFY(plim.selectRow(0, u"11111111-1111-4111-8111-111111111111"_s));
        const QRect before = plim.geometry();
        const QPoint way(-160, 90);
        plim.pull(ground, ground + way);
        QTRY_VERIFY2(isAbout(plim.geometry().topLeft(), before.topLeft() + way),
                     qPrintable(QDebug::toString(plim.geometry())));
        QCOMPARE(plim.geometry().size(), before.size());
        // Once the button is up, the window stays where it is.
        const QRect moved = plim.geometry();
        plim.point(QPoint(500, 300));
        plim.point(QPoint(600, 350));
        plim.click(row(0));
        QCOMPARE(plim.geometry(), moved);
    }

    void edgesResizeTheWindow_data()
    {
        QTest::addColumn<QPoint>("edge"); ///< of 1100 × 700
        QTest::addColumn<QPoint>("way");
        QTest::addColumn<QMargins>("growth");
        QTest::newRow("left") << QPoint(2, 350) << QPoint(-50, 0) << QMargins(50, 0, 0, 0);
        QTest::newRow("right") << QPoint(1097, 350) << QPoint(50, 0) << QMargins(0, 0, 50, 0);
        QTest::newRow("top") << QPoint(550, 2) << QPoint(0, -40) << QMargins(0, 40, 0, 0);
        QTest::newRow("bottom") << QPoint(550, 697) << QPoint(0, 40) << QMargins(0, 0, 0, 40);
        QTest::newRow("corner, up left") << QPoint(2, 2) << QPoint(-50, -40) << QMargins(50, 40, 0, 0);
        QTest::newRow("corner, up right") << QPoint(1097, 2) << QPoint(50, -40) << QMargins(0, 40, 50, 0);
        QTest::newRow("corner, down left") << QPoint(2, 697) << QPoint(-50, 40) << QMargins(50, 0, 0, 40);
        QTest::newRow("corner, down right") << QPoint(1097, 697) << QPoint(50, 40) << QMargins(0, 0, 50, 40);
    }
    void edgesResizeTheWindow()
    {
        QFETCH(QPoint, edge);
        QFETCH(QPoint, way);
        QFETCH(QMargins, growth);
        const ThrowAwayHome home;
        PlimRun plim(home);
        QVERIFY(plim.open());
        const QRect wanted = plim.geometry() + growth;
        plim.pull(edge, edge + way);
        QTRY_VERIFY2(isAbout(plim.geometry().topLeft(), wanted.topLeft())
                         && isAbout(plim.geometry().bottomRight(), wanted.bottomRight()),
                     qPrintable(QDebug::toString(plim.geometry())));
    }

    void aDoubleClickOnTheHeaderMaximisesAndBack()
    {
        const ThrowAwayHome home;
        PlimRun plim(home);
        QVERIFY(plim.open());
        const QRect before = plim.geometry();
        plim.doubleClick(header);
        QTRY_VERIFY(plim.geometry().width() > before.width() && plim.geometry().height() > before.height());
        QTest::qWait(doubleClickTime); // or the next press would be its third
        plim.doubleClick(header);
        QTRY_COMPARE(plim.geometry(), before);
    }

    void theWindowIsWhereItWasLastTime()
    {
        const ThrowAwayHome home;
        QRect left;
        {
            PlimRun plim(home);
            QVERIFY(plim.open());
            const QRect before = plim.geometry();
            plim.pull(header, header + QPoint(-120, 60));
            QTRY_VERIFY(plim.geometry().topLeft() != before.topLeft());
            plim.pull(QPoint(1097, 697), QPoint(1147, 737));
            QTRY_VERIFY(plim.geometry().size() != before.size());
            left = plim.geometry();
            plim.closeWindow();
            QCOMPARE(plim.exitCode(), 0);
        }
        {
            PlimRun plim(home);
            QVERIFY(plim.open());
            QTRY_COMPARE(plim.geometry(), left);
            plim.doubleClick(header);
            QTRY_VERIFY(plim.geometry().width() > left.width());
            plim.sendSignal(SIGTERM);
            QCOMPARE(plim.exitCode(), 0);
        }
        PlimRun plim(home);
        QVERIFY(plim.open());
        QTRY_VERIFY(plim.geometry().width() > left.width());
        plim.doubleClick(header);
        QTRY_COMPARE(plim.geometry(), left);
    }

    void draggingANoteReordersTheFile()
    {
        const ThrowAwayHome home;
        storeNotesCalled(home, {u"A"_s, u"B"_s, u"C"_s, u"D"_s});
        PlimRun plim(home);
        QVERIFY(plim.open());
        plim.drag(row(0), row(2) + QPoint(0, 10));
        QTRY_COMPARE(orderOnDisk(plim), u"B C A D"_s);
        plim.drag(row(1), row(5));
        QTRY_COMPARE(orderOnDisk(plim), u"B A D C"_s);
        plim.drag(row(3), row(0) - QPoint(0, 30));
        QTRY_COMPARE(orderOnDisk(plim), u"C B A D"_s);
        QCOMPARE(plim.warnings().join(u'\n'), QString());
    }

    void whatWasDeletedComesBackWhereItWas()
    {
        const ThrowAwayHome home;
        storeNotesCalled(home, {u"A"_s, u"B"_s, u"C"_s});
        PlimRun plim(home);
        QVERIFY(plim.open());
        const QJsonArray before = plim.notesOnDisk();
        plim.point(row(1));
        plim.click(deleteButton(1));
        plim.press({u"shift+Tab"_s, u"shift+Tab"_s, u"Return"_s});
        QTRY_COMPARE(orderOnDisk(plim), u"A C"_s);
        plim.click(undo);
        QTRY_COMPARE(plim.notesOnDisk(), before);
    }

    void colourAndLanguageAreKept()
    {
        const ThrowAwayHome home;
        storeNotesCalled(home, {u"Tea"_s});
        PlimRun plim(home);
        QVERIFY(plim.open());
        QVERIFY(plim.selectRow(0, u"11111111-1111-4111-8111-111111111111"_s));
        plim.click(options);
        plim.press({u"Tab"_s, u"Right"_s, u"Return"_s});
        QTRY_VERIFY(plim.notesOnDisk()[0][u"color"_s].toString() != u"yellow");
        plim.press({u"Escape"_s});
        plim.click(english);
        QTRY_VERIFY(home.read(u".config/Plim/Plim.conf"_s).contains("plimLanguage=en"));
    }
};

QTEST_GUILESS_MAIN(TestEndToEndWindow)
#include "tst_e2e_window.moc"
