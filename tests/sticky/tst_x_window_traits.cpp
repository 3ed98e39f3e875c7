#include "sticky/Compositing.h"
#include "sticky/WindowShape.h"
#include "sticky/WindowTraits.h"
#include "tests/Patience.h"
#include "tests/sticky/XWitness.h"

#include <QProcess>
#include <QRasterWindow>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QByteArray state = "_NET_WM_STATE";
const QByteArray skipTaskbar = "_NET_WM_STATE_SKIP_TASKBAR";
const QByteArray skipPager = "_NET_WM_STATE_SKIP_PAGER";
const QByteArray above = "_NET_WM_STATE_ABOVE";

/// Counts the presses that reach it.
class Target : public QRasterWindow
{
public:
    Target()
    {
        setFlag(Qt::FramelessWindowHint);
        setGeometry(200, 150, 300, 200);
    }
    int presses = 0;

protected:
    void mousePressEvent(QMouseEvent *) override { ++presses; }
};

/// By a real pointer, wherever that leads.
void click(QPoint position)
{
    QProcess::execute(u"xdotool"_s, {u"mousemove"_s, QString::number(position.x()),
                                     QString::number(position.y()), u"click"_s, u"1"_s});
}
} // namespace

/// Under the window manager and the compositor of a real display.
class TestXWindowTraits : public QObject
{
    Q_OBJECT

    XWitness m_witness;

    [[nodiscard]] QList<QByteArray> states(const QWindow &window) const
    {
        return m_witness.names(xcb_window_t(window.winId()), state);
    }
    [[nodiscard]] bool isKeptOut(const QWindow &window) const
    {
        return states(window).contains(skipTaskbar) && states(window).contains(skipPager);
    }
    /// Waits until the window manager has done all that it was asked for so far: it answers in
    /// order.
    void letTheManagerCatchUp() const
    {
        const xcb_window_t asker = m_witness.makeWindow();
        m_witness.askForFrame(asker);
        QTRY_VERIFY(m_witness.hasProperty(asker, "_NET_FRAME_EXTENTS"));
        m_witness.destroyWindow(asker);
    }
    /// What the window manager itself holds: it writes all states anew when one of them changes.
    [[nodiscard]] bool isKeptOutByTheManager(QWindow &window) const
    {
        const auto isAbove = [&] { return states(window).contains(above); };
        letTheManagerCatchUp();
        window.setFlag(Qt::WindowStaysOnTopHint);
        if (!QTest::qWaitFor(isAbove, longEnough) || !isKeptOut(window))
            return false;
        window.setFlag(Qt::WindowStaysOnTopHint, false);
        return QTest::qWaitFor([&] { return !isAbove(); }, longEnough) && isKeptOut(window);
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_witness.isConnected()); }

    void theDisplayHasWhatADesktopHas()
    {
        QVERIFY(Compositing::shared().isRunning());
        QVERIFY(canKeepAbove());
    }

    void aClickBesideTheCardReachesWhatLiesBeneath()
    {
        Target beneath;
        Target card;
        beneath.show();
        QVERIFY(QTest::qWaitForWindowExposed(&beneath, longEnough));
        card.show();
        QVERIFY(QTest::qWaitForWindowExposed(&card, longEnough));
        const xcb_window_t frame = m_witness.frameOf(card);
        QVERIFY(frame != xcb_window_t(card.winId())); // or there is nothing to be tested
        click({205, 155});
        QTRY_COMPARE(card.presses, 1); // it is in front

        setInputRegion(card, QRect(20, 20, 260, 160));
        QTRY_COMPARE(m_witness.shape(frame, XCB_SHAPE_SK_INPUT), QRegion(20, 20, 260, 160));
        click({205, 155});
        QTRY_COMPARE(beneath.presses, 1);
        card.raise();
        QTRY_COMPARE(m_witness.property(m_witness.root(), "_NET_CLIENT_LIST_STACKING").last(),
                     quint32(card.winId()));
        click({225, 175});
        QTRY_COMPARE(card.presses, 2);
        QCOMPARE(beneath.presses, 1);

        setInputRegion(card, {});
        QTRY_COMPARE(m_witness.shape(frame, XCB_SHAPE_SK_INPUT), QRegion(0, 0, 300, 200));
        click({205, 155});
        QTRY_COMPARE(card.presses, 3);
        QCOMPARE(beneath.presses, 1);
    }

    void aCardOfAWindowThatIsShownHasItsMarginFromTheStart()
    {
        QQuickWindow window;
        window.setFlag(Qt::FramelessWindowHint);
        window.setColor(Qt::transparent);
        window.setGeometry(200, 150, 300, 200);
        WindowShape shape;
        shape.setWantedShadow(24);
        shape.setGrip(4);
        shape.setWindow(&window);
        window.show();
        QTRY_COMPARE(m_witness.shape(m_witness.frameOf(window), XCB_SHAPE_SK_INPUT),
                     QRegion(20, 20, 260, 160));
        window.hide();
        window.show();
        window.resize(350, 250);
        QTRY_COMPARE(m_witness.shape(m_witness.frameOf(window), XCB_SHAPE_SK_INPUT),
                     QRegion(20, 20, 310, 210));
        QCOMPARE(m_witness.property(xcb_window_t(window.winId()), "_GTK_FRAME_EXTENTS"),
                 QList<quint32>(4, 24));
    }

    void aWindowIsKeptOutOfTheTaskSwitcher_data()
    {
        QTest::addColumn<bool>("isShownBefore");
        QTest::newRow("told before it is shown") << false;
        QTest::newRow("told afterwards") << true;
    }
    void aWindowIsKeptOutOfTheTaskSwitcher()
    {
        QFETCH(bool, isShownBefore);
        Target window;
        if (isShownBefore) {
            window.show();
            QVERIFY(QTest::qWaitForWindowExposed(&window, longEnough));
            QVERIFY(!isKeptOut(window));
        }
        keepOutOfTaskSwitcher(window);
        keepOutOfTaskSwitcher(window); // once is enough
        QCOMPARE(window.children().size(), 1);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window, longEnough));
        QTRY_VERIFY(isKeptOut(window));
        QVERIFY(isKeptOutByTheManager(window));
        QCOMPARE(m_witness.names(xcb_window_t(window.winId()), "_NET_WM_WINDOW_TYPE").last(),
                 "_NET_WM_WINDOW_TYPE_NORMAL");
    }

    void itIsStillKeptOutWhenItIsShownAgain_data()
    {
        QTest::addColumn<bool>("isWaitedFor");
        QTest::addColumn<bool>("isClosed");
        QTest::newRow("hidden") << true << false;
        QTest::newRow("hidden for a moment") << false << false;
        QTest::newRow("closed") << true << true;
        QTest::newRow("closed for a moment") << false << true;
    }
    void itIsStillKeptOutWhenItIsShownAgain()
    {
        QFETCH(bool, isWaitedFor);
        QFETCH(bool, isClosed);
        Target window;
        window.setFlag(Qt::WindowStaysOnTopHint);
        keepOutOfTaskSwitcher(window);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window, longEnough));
        QTRY_VERIFY(isKeptOut(window));
        for (int again = 0; again < 3; ++again) {
            if (isClosed)
                window.close();
            else
                window.hide();
            if (isWaitedFor && !isClosed)
                QTRY_VERIFY(!m_witness.hasProperty(xcb_window_t(window.winId()), state));
            window.show();
            QVERIFY(QTest::qWaitForWindowExposed(&window, longEnough));
            letTheManagerCatchUp();
            QTRY_VERIFY(isKeptOut(window));
            // What Qt says of it is left alone. A window manager that sees a window go and come in
            // one moment may drop that, with or without anything of ours.
            if (isWaitedFor)
                QTRY_VERIFY(states(window).contains(above));
        }
        window.setFlag(Qt::WindowStaysOnTopHint, false);
        QTRY_VERIFY(!states(window).contains(above));
        QVERIFY(isKeptOutByTheManager(window));
    }
};

QTEST_MAIN(TestXWindowTraits)
#include "tst_x_window_traits.moc"
