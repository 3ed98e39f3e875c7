#include "tests/views/Stage.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QByteArray grounds = R"(
    WindowDragArea { objectName: "maximizing"; width: 100; height: 100 }
    WindowDragArea { objectName: "other"; x: 100; width: 100; height: 100; maximizes: false }
)";

const QByteArray edges = R"(
    ResizeEdges { objectName: "edges"; anchors.fill: parent }
)";
} // namespace

/// What a window without a frame is moved and resized by.
class TestWindowHandles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { setMoving(false); }
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void aDoubleClickMaximisesOnlyWhereThatIsWanted()
    {
        const Stage w(grounds);
        QSignalSpy clicked(w.item(u"other"_s), SIGNAL(doubleClicked(QQuickMouseEvent *)));
        QTest::mouseDClick(w.window(), Qt::LeftButton, {}, middleOf(w.item(u"other"_s)));
        QCOMPARE(clicked.size(), 1);
        QCOMPARE(w.window()->visibility(), QWindow::Windowed);
        QTest::mouseDClick(w.window(), Qt::LeftButton, {}, middleOf(w.item(u"maximizing"_s)));
        QTRY_COMPARE(w.window()->visibility(), QWindow::Maximized);
    }

    void anEdgeTellsThatItIsTaken_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name :
             {"top", "bottom", "left", "right", "topLeft", "topRight", "bottomLeft", "bottomRight"})
            QTest::newRow(name) << u"resize."_s + QString::fromLatin1(name);
    }
    void anEdgeTellsThatItIsTaken()
    {
        QFETCH(QString, name);
        const Stage w(edges);
        QSignalSpy started(w.item(u"edges"_s), SIGNAL(resizeStarted()));
        QTest::mouseMove(w.window(), middleOf(w.item(name)));
        QCOMPARE(started.size(), 0);
        QTest::mousePress(w.window(), Qt::LeftButton, {}, middleOf(w.item(name)));
        QCOMPARE(started.size(), 1);
        QTest::mouseRelease(w.window(), Qt::LeftButton, {}, middleOf(w.item(name)));
        QCOMPARE(started.size(), 1);
    }

    void whatLiesBetweenTheEdgesIsNotTaken()
    {
        const Stage w(edges);
        QSignalSpy started(w.item(u"edges"_s), SIGNAL(resizeStarted()));
        click(w.item(u"edges"_s));
        QCOMPARE(started.size(), 0);
    }
};

QTEST_MAIN(TestWindowHandles)
#include "tst_window_handles.moc"
