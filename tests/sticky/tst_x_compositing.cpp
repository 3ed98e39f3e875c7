#include "sticky/BlurBehind.h"
#include "sticky/Compositing.h"
#include "sticky/NativePixels.h"
#include "sticky/RoundedRegion.h"
#include "sticky/VisualEffectView.h"
#include "sticky/WindowShape.h"
#include "sticky/WindowTraits.h"
#include "tests/Patience.h"
#include "tests/sticky/XWitness.h"

#include <QGuiApplication>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace
{
constexpr QSize cardWithShadow(200, 120); // points
const QByteArray compositor = "_NET_WM_CM_S0";
const QByteArray extents = "_GTK_FRAME_EXTENTS";
const QByteArray check = "_NET_SUPPORTING_WM_CHECK";
const QByteArray supported = "_NET_SUPPORTED";

QRegion pixels(const QRegion &points)
{
    return nativePixels(points, qGuiApp->devicePixelRatio());
}

quint32 pixels(int length)
{
    return quint32(qRound(length * qGuiApp->devicePixelRatio()));
}

bool hasHoles(const QRegion &region)
{
    const QRect all = region.boundingRect();
    for (int y = all.top(); y <= all.bottom(); ++y) {
        if ((region & QRect(all.left(), y, all.width(), 1)).rectCount() != 1)
            return true;
    }
    return false;
}
} // namespace

/// On an X server without a window manager, where a compositor comes and goes as the test wants.
class TestXCompositing : public QObject
{
    Q_OBJECT

    XWitness m_witness;

    void startCompositor() { m_witness.setSelectionOwner(compositor, m_witness.makeWindow()); }

    [[nodiscard]] QRegion shapeOf(const QWindow &window,
                                  xcb_shape_kind_t kind = XCB_SHAPE_SK_BOUNDING) const
    {
        return m_witness.shape(xcb_window_t(window.winId()), kind);
    }
    [[nodiscard]] QList<quint32> property(const QWindow &window, const QByteArray &name) const
    {
        return m_witness.property(xcb_window_t(window.winId()), name);
    }
    /// As one property's numbers.
    [[nodiscard]] static QList<quint32> numbers(const QRegion &region)
    {
        QList<quint32> numbers;
        for (const QRect &rect : region)
            numbers << quint32(rect.x()) << quint32(rect.y()) << quint32(rect.width())
                    << quint32(rect.height());
        return numbers;
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_witness.isConnected()); }
    void init()
    {
        m_witness.setSelectionOwner(compositor, XCB_NONE);
        QTRY_VERIFY(!Compositing::shared().isRunning());
    }

    void aCompositorComesAndGoes_data()
    {
        QTest::addColumn<bool>("isRunningBefore");
        QTest::newRow("after the program's start") << false;
        QTest::newRow("before the program's start") << true;
    }
    void aCompositorComesAndGoes()
    {
        QFETCH(bool, isRunningBefore);
        const xcb_window_t owner = m_witness.makeWindow();
        if (isRunningBefore)
            m_witness.setSelectionOwner(compositor, owner);
        Compositing compositing(nullptr);
        QTRY_COMPARE(compositing.isRunning(), isRunningBefore);
        QSignalSpy changed(&compositing, &Compositing::isRunningChanged);
        if (!isRunningBefore) {
            m_witness.setSelectionOwner(compositor, owner);
            QTRY_COMPARE(changed.count(), 1);
            QVERIFY(compositing.isRunning());
            changed.clear();
        }
        m_witness.destroyWindow(owner);
        QTRY_COMPARE(changed.count(), 1);
        QVERIFY(!compositing.isRunning());
    }

    void aCompositorThatDiesIsGone()
    {
        {
            const XWitness other;
            other.setSelectionOwner(compositor, other.makeWindow());
            QTRY_VERIFY(Compositing::shared().isRunning());
        }
        QTRY_VERIFY(!Compositing::shared().isRunning());
    }

    void oneCompositorMayFollowAnother()
    {
        startCompositor();
        QTRY_VERIFY(Compositing::shared().isRunning());
        QSignalSpy changed(&Compositing::shared(), &Compositing::isRunningChanged);
        startCompositor();
        m_witness.setSelectionOwner("_PLIM_TEST", m_witness.makeWindow()); // nobody's business
        m_witness.setSelectionOwner(compositor, XCB_NONE);
        QTRY_VERIFY(!Compositing::shared().isRunning());
        QCOMPARE(changed.count(), 1);
    }

    void theOutlineFollowsTheCompositor()
    {
        QQuickWindow window;
        window.setFlag(Qt::FramelessWindowHint);
        window.setColor(Qt::transparent);
        window.resize(cardWithShadow);
        WindowShape shape;
        shape.setRadius(16);
        shape.setWantedShadow(24);
        shape.setGrip(4);
        shape.setWindow(&window);
        QSignalSpy shadow(&shape, &WindowShape::shadowChanged);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window, longEnough));
        const QRegion whole = pixels(QRect(QPoint(0, 0), cardWithShadow));
        const QRegion rounded = pixels(roundedRegion({QPoint(0, 0), cardWithShadow}, 16));
        const QRegion input = pixels(QRect(20, 20, 160, 80));
        const QList<quint32> margins(4, pixels(24));
        for (int again = 0; again < 2; ++again) {
            QTRY_COMPARE(shape.shadow(), 0);
            QTRY_COMPARE(shapeOf(window), rounded);
            QVERIFY(!hasHoles(shapeOf(window)));
            QTRY_COMPARE(shapeOf(window, XCB_SHAPE_SK_INPUT), whole);
            QTRY_VERIFY(!m_witness.hasProperty(xcb_window_t(window.winId()), extents));
            startCompositor();
            QTRY_COMPARE(shape.shadow(), 24);
            QTRY_COMPARE(shapeOf(window), whole);
            QTRY_COMPARE(shapeOf(window, XCB_SHAPE_SK_INPUT), input);
            QTRY_COMPARE(property(window, extents), margins);
            QCOMPARE(shadow.count(), 2 * again + 1);
            m_witness.setSelectionOwner(compositor, XCB_NONE);
            QTRY_COMPARE(shadow.count(), 2 * again + 2);
        }
    }

    void theOutlineFollowsTheWindow()
    {
        QQuickWindow window;
        window.setFlag(Qt::FramelessWindowHint);
        window.resize(cardWithShadow);
        WindowShape shape;
        shape.setWindow(&window);
        shape.setRadius(12);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window, longEnough));
        QTRY_COMPARE(shapeOf(window), pixels(roundedRegion({0, 0, 200, 120}, 12)));
        window.resize(300, 200);
        QTRY_COMPARE(shapeOf(window), pixels(roundedRegion({0, 0, 300, 200}, 12)));
        shape.setRadius(0); // as a maximised one's
        QTRY_COMPARE(shapeOf(window), pixels(QRect(0, 0, 300, 200)));
        shape.setRadius(16);
        QTRY_COMPARE(shapeOf(window), pixels(roundedRegion({0, 0, 300, 200}, 16)));
        const WId before = window.winId();
        window.close(); // the native window, too
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window, longEnough));
        QVERIFY(window.winId() != before);
        QTRY_COMPARE(shapeOf(window), pixels(roundedRegion({0, 0, 300, 200}, 16)));
        window.hide();
        window.resize(200, 120);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window, longEnough));
        QTRY_COMPARE(shapeOf(window), pixels(roundedRegion({0, 0, 200, 120}, 16)));
    }

    void aShadowFollowsTheWindow()
    {
        startCompositor();
        QTRY_VERIFY(Compositing::shared().isRunning());
        QQuickWindow window;
        window.resize(cardWithShadow);
        WindowShape shape;
        shape.setWindow(&window);
        shape.setWantedShadow(24);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window, longEnough));
        QTRY_COMPARE(shapeOf(window, XCB_SHAPE_SK_INPUT), pixels(QRect(24, 24, 152, 72)));
        window.resize(300, 200);
        QTRY_COMPARE(shapeOf(window, XCB_SHAPE_SK_INPUT), pixels(QRect(24, 24, 252, 152)));
        shape.setGrip(5);
        QTRY_COMPARE(shapeOf(window, XCB_SHAPE_SK_INPUT), pixels(QRect(19, 19, 262, 162)));
        window.close();
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window, longEnough));
        QTRY_COMPARE(shapeOf(window, XCB_SHAPE_SK_INPUT), pixels(QRect(19, 19, 262, 162)));
        QTRY_COMPARE(property(window, extents), QList<quint32>(4, pixels(24)));
        shape.setWantedShadow(0);
        QTRY_COMPARE(shapeOf(window, XCB_SHAPE_SK_INPUT), pixels(QRect(0, 0, 300, 200)));
        QTRY_VERIFY(!m_witness.hasProperty(xcb_window_t(window.winId()), extents));
    }

    void theSidesOfAShadowMayDiffer()
    {
        QWindow window;
        setFrameExtents(window, {1, 2, 3, 4}); // left, top, right, bottom
        const QList<quint32> wanted{pixels(1), pixels(3), pixels(2), pixels(4)};
        QTRY_COMPARE(property(window, extents), wanted);
    }

    void whatIsBlurredIsToldInPixels()
    {
        const QByteArray blur = "_KDE_NET_WM_BLUR_BEHIND_REGION";
        QWindow window;
        window.create();
        QVERIFY(!m_witness.hasProperty(xcb_window_t(window.winId()), blur));
        blurBehind(window, QRegion(3, 5, 10, 20) + QRegion(30, 5, 10, 20));
        QTRY_COMPARE(property(window, blur),
                     numbers(pixels(QRegion(3, 5, 10, 20) + QRegion(30, 5, 10, 20))));
        blurBehind(window);
        QTRY_VERIFY(property(window, blur).isEmpty());
        QVERIFY(m_witness.hasProperty(xcb_window_t(window.winId()), blur));
    }

    void whatIsBlurredIsWhatTheViewCovers()
    {
        const QByteArray blur = "_KDE_NET_WM_BLUR_BEHIND_REGION";
        QQuickWindow window;
        window.resize(cardWithShadow);
        QQuickItem card(window.contentItem());
        VisualEffectView view;
        view.setParentItem(&card);
        view.setSize({100, 80});
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window, longEnough));
        QTRY_COMPARE(property(window, blur), numbers(pixels(QRect(0, 0, 100, 80))));
        card.setPosition({24, 24}); // which the view is not told
        QTRY_COMPARE(property(window, blur), numbers(pixels(QRect(24, 24, 100, 80))));
        view.setLeadingRadius(16);
        view.setTrailingRadius(16);
        QTRY_COMPARE(property(window, blur), numbers(pixels(roundedRegion({24, 24, 100, 80}, 16))));
        window.close();
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window, longEnough));
        QTRY_COMPARE(property(window, blur), numbers(pixels(roundedRegion({24, 24, 100, 80}, 16))));
    }

    void aboveNeedsAWindowManagerThatCan_data()
    {
        QTest::addColumn<bool>("isAlive");
        QTest::addColumn<bool>("isNamed");
        QTest::addColumn<QList<QByteArray>>("abilities");
        QTest::addColumn<bool>("can");
        const QList<QByteArray> all{"_NET_WM_STATE", "_NET_WM_STATE_ABOVE"};
        QTest::newRow("none") << false << false << QList<QByteArray>() << false;
        QTest::newRow("alive") << true << true << all << true;
        QTest::newRow("died") << false << true << all << false;
        QTest::newRow("ended") << false << false << all << false;
        QTest::newRow("a simple one") << true << true << all.first(1) << false;
    }
    void aboveNeedsAWindowManagerThatCan()
    {
        QFETCH(bool, isAlive);
        QFETCH(bool, isNamed);
        QFETCH(QList<QByteArray>, abilities);
        QFETCH(bool, can);
        const xcb_window_t manager = m_witness.makeWindow();
        if (isAlive)
            m_witness.setProperty(manager, check, XCB_ATOM_WINDOW, {manager});
        if (isNamed)
            m_witness.setProperty(m_witness.root(), check, XCB_ATOM_WINDOW, {manager});
        QList<quint32> atoms;
        for (const QByteArray &ability : abilities)
            atoms << m_witness.atom(ability);
        m_witness.setProperty(m_witness.root(), supported, XCB_ATOM_ATOM, atoms);
        if (!isAlive)
            m_witness.destroyWindow(manager);
        // Read back: the server has done all that by then.
        QCOMPARE(m_witness.property(m_witness.root(), supported), atoms);
        QCOMPARE(canKeepAbove(), can);
        m_witness.destroyWindow(manager);
        m_witness.deleteProperty(m_witness.root(), check);
    }
};

int main(int argc, char **argv)
{
    // Before the application, which then opens its windows there.
    QProcess server;
    server.start(u"Xvfb"_s, {u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, u"1280x800x24"_s,
                             u"-nolisten"_s, u"tcp"_s, u"-noreset"_s});
    QByteArray number;
    while (!number.endsWith('\n') && server.waitForReadyRead())
        number += server.readAllStandardOutput();
    if (number.trimmed().isEmpty())
        qFatal("Xvfb did not start");
    qputenv("DISPLAY", ':' + number.trimmed());
    int code = 0;
    {
        QGuiApplication application(argc, argv);
        TestXCompositing test;
        code = QTest::qExec(&test, argc, argv);
    }
    server.kill();
    server.waitForFinished();
    return code;
}

#include "tst_x_compositing.moc"
