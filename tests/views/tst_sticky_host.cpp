#include "sticky/StickyNoteHost.h"
#include "sticky/WindowShape.h"
#include "tests/page/PageFixture.h"
#include "tests/views/StickyNotes.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
constexpr QMargins around{StickyNotes::shadow, StickyNotes::shadow, StickyNotes::shadow,
                          StickyNotes::shadow};

/// What a window tells.
struct Told {
    explicit Told(StickyNoteHost &host)
        : moved(&host, &StickyWindow::moved), resized(&host, &StickyWindow::resized),
          closed(&host, &StickyWindow::closed)
    {
    }
    [[nodiscard]] QString text() const
    {
        return u"moved %1, resized %2, closed %3"_s.arg(moved.count())
            .arg(resized.count())
            .arg(closed.count());
    }

    QSignalSpy moved;
    QSignalSpy resized;
    QSignalSpy closed;
};

struct Host : StickyNotes {
    Host() { open(0, StickyFrame{600, 600, 300, 340}); }

    /// Somebody comes who draws what is see-through, or goes.
    void setShadow(int shadow) const
    {
        auto *shape = window()->findChild<WindowShape *>();
        if (!shape)
            qFatal("The window has no shape");
        shape->setWantedShadow(shadow);
    }
    /// Where the card is on the desktop, as it is drawn.
    [[nodiscard]] QRect card() const
    {
        const QQuickItem *view = item(u"stickyNoteView"_s);
        return QRect(window()->position() + frameOf(view).topLeft().toPoint(),
                     view->size().toSize());
    }
};
} // namespace

// The window of a note, as its manager has it.
class TestStickyHost : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        failOnWarnings();
        setMoving(false);
    }
    void cleanup() { setMoving(false); }

    void itIsTheCardThatIsPlaced()
    {
        Host s;
        s.host().setFrame(QRect(500, 300, 320, 200), StickyWindow::Motion::Immediate);
        QCOMPARE(s.host().frame(), QRect(500, 300, 320, 200));
        QTRY_COMPARE(s.card(), QRect(500, 300, 320, 200));
        QCOMPARE(s.window()->geometry(), QRect(500, 300, 320, 200) + around);
    }

    void whatItIsToldItDoesNotTell()
    {
        Host s;
        const Told told(s.host());
        s.host().setFrame(QRect(500, 300, 320, 200), StickyWindow::Motion::Immediate);
        s.host().setCollapsed(true);
        QTRY_COMPARE(s.card(), QRect(500, 300, 320, 200));
        QCOMPARE(told.text(), u"moved 0, resized 0, closed 0"_s);
    }

    void itsUsersMoveIsToldOnce()
    {
        Host s;
        const Told told(s.host());
        const QRect before = s.host().frame();
        s.window()->setPosition(s.window()->position() + QPoint(30, -20));
        QTRY_COMPARE(s.host().frame(), before.translated(30, -20));
        QCOMPARE(told.text(), u"moved 1, resized 0, closed 0"_s);
    }

    void itsUsersResizingIsToldOnce()
    {
        Host s;
        const Told told(s.host());
        const QRect before = s.host().frame();
        s.window()->resize(s.window()->size() + QSize(40, 50));
        QTRY_COMPARE(s.host().frame(), before.adjusted(0, 0, 40, 50));
        QCOMPARE(told.text(), u"moved 0, resized 1, closed 0"_s);
    }

    void anEdgeThatMovesTheWindowIsToldOnceToo()
    {
        Host s;
        const Told told(s.host());
        const QRect before = s.host().frame();
        s.window()->setGeometry(s.window()->geometry().adjusted(-20, -30, 0, 0));
        QTRY_COMPARE(s.host().frame(), before.adjusted(-20, -30, 0, 0));
        QCOMPARE(told.text(), u"moved 1, resized 1, closed 0"_s);
    }

    void closingIsToldOnce_data()
    {
        QTest::addColumn<bool>("byItsUser");
        QTest::newRow("by its user") << true;
        QTest::newRow("by its manager") << false;
    }
    void closingIsToldOnce()
    {
        QFETCH(bool, byItsUser);
        Host s;
        const QPointer<StickyNoteHost> host(&s.host());
        const Told told(*host);
        QSignalSpy putAway(&s.manager, &StickyNoteManager::stickyPutAway);
        if (byItsUser)
            s.window()->close();
        else
            host->close();
        QCOMPARE(told.closed.count(), 1);
        QCOMPARE(putAway.count(), 1);
        QTRY_VERIFY(!host);
        QCOMPARE(told.closed.count(), 1);
    }

    void aGlideEndsWhereItWasToEnd()
    {
        setMoving(true);
        Host s;
        const Told told(s.host());
        const QPoint from = s.card().topLeft();
        const QRect to(900, 100, 300, 340);
        QSignalSpy steps(s.window(), &QWindow::xChanged);
        s.host().setFrame(to, StickyWindow::Motion::Animated);
        QCOMPARE(s.host().frame(), to); // that is where it will be
        QVERIFY(s.card().topLeft() != to.topLeft());
        QTRY_COMPARE(s.card(), to);
        QTRY_COMPARE(s.window()->geometry(), to + around);
        QVERIFY2(steps.count() > 2, qPrintable(QString::number(steps.count())));
        QVERIFY(from != to.topLeft());
        QCOMPARE(told.text(), u"moved 0, resized 0, closed 0"_s);
    }

    void aGlideThatIsCutShortLeadsToTheNewPlace()
    {
        setMoving(true);
        Host s;
        s.host().setFrame(QRect(900, 100, 300, 340), StickyWindow::Motion::Animated);
        QSignalSpy steps(s.window(), &QWindow::xChanged);
        QVERIFY(steps.wait(longEnough)); // there are more to come
        QVERIFY(s.card().topLeft() != QPoint(900, 100));
        const QRect to(200, 500, 300, 340);
        s.host().setFrame(to, StickyWindow::Motion::Animated);
        QCOMPARE(s.host().frame(), to);
        QTRY_COMPARE(s.card(), to);
        QTRY_COMPARE(s.window()->geometry(), to + around);
    }

    void whereNothingIsToMoveTheWindowIsThereAtOnce()
    {
        Host s;
        const QRect to(900, 100, 300, 340);
        QSignalSpy steps(s.window(), &QWindow::xChanged);
        s.host().setFrame(to, StickyWindow::Motion::Animated);
        QTRY_COMPARE(steps.count(), 1);
        QCOMPARE(s.card(), to);
    }

    // The pointer has it by then, and the window system moves it.
    void whoTakesHoldOfAGlidingWindowStopsIt()
    {
        setMoving(true);
        Host s;
        const QRect to(900, 100, 300, 340);
        s.host().setFrame(to, StickyWindow::Motion::Animated);
        QSignalSpy steps(s.window(), &QWindow::xChanged);
        QVERIFY(steps.wait(longEnough)); // there are more to come
        const Told told(s.host());
        s.controller().beginResizing();
        const QRect stopped = s.card();
        QVERIFY(stopped.topLeft() != to.topLeft());
        QCOMPARE(s.host().frame(), stopped);
        QCOMPARE(told.moved.count(), 1);
        QTest::qWait(250); // longer than it would have glided
        QCOMPARE(s.card(), stopped);
    }

    void aCapsuleThatIsPulledOpenUnfolds()
    {
        Host s;
        s.fold();
        QTest::mousePress(s.window(), Qt::LeftButton, {}, middleOf(s.item(u"resize.bottom"_s)));
        s.window()->resize(s.window()->size() + QSize(0, 100));
        QTRY_VERIFY(!s.host().isCollapsed());
        QVERIFY(s.controller().showsEditor());
        QTRY_VERIFY(isDrawn(s.item(u"editor"_s)));
        QCOMPARE(s.host().frame().height(), StickyNotes::capsuleHeight + 100);
    }

    void aCapsuleThatIsPulledWiderStaysOne()
    {
        Host s;
        s.fold();
        s.controller().beginResizing();
        s.window()->resize(s.window()->size() + QSize(100, 20));
        QTRY_COMPARE(s.host().frame().width(), 400);
        QVERIFY(s.host().isCollapsed());
    }

    // Of a window that nobody pulls at, it is old news.
    void aHeightThatComesLateUnfoldsNothing()
    {
        Host s;
        s.fold();
        s.window()->resize(s.window()->size() + QSize(0, 200));
        QTRY_COMPARE(s.host().frame().height(), StickyNotes::capsuleHeight + 200);
        QVERIFY(s.host().isCollapsed());
    }

    void aShadowThatGoesOrComesLeavesTheCardWhereItIs()
    {
        Host s;
        const QRect card = s.card();
        QCOMPARE(card, s.host().frame());
        const Told told(s.host());
        for (const int shadow : {0, StickyNotes::shadow}) {
            s.setShadow(shadow);
            QTRY_COMPARE(s.window()->size(), card.size() + QSize(2, 2) * shadow);
            QTRY_COMPARE(s.card(), card);
            QCOMPARE(s.host().frame(), card);
        }
        QCOMPARE(told.text(), u"moved 0, resized 0, closed 0"_s);
    }

    void withoutAShadowALowCardIsAsLow()
    {
        Host s;
        s.setShadow(0);
        s.host().setFrame(QRect(500, 300, 260, 52), StickyWindow::Motion::Immediate);
        QTRY_COMPARE(s.card(), QRect(500, 300, 260, 52));
        s.setShadow(StickyNotes::shadow);
        QTRY_COMPARE(s.card(), QRect(500, 300, 260, 52));
        QCOMPARE(s.window()->minimumSize(),
                 QSize(260 + 2 * StickyNotes::shadow, 52 + 2 * StickyNotes::shadow));
    }

    void openingLeavesTheKeyboardWhereItIsWhenItIsTo()
    {
        StickyNotes s(u"Tea Milk"_s);
        QQuickWindow *first = s.open(0);
        storeStickyLayout({{s.id(0), {600, 600, 300, 340}}, {s.id(1), {900, 600, 300, 340}}});
        QSignalSpy restored(&s.manager, &StickyNoteManager::restored);
        s.manager.restore(s.store);
        QTRY_COMPARE(restored.count(), 1);
        QVERIFY(s.window(1)->isVisible());
        QVERIFY(s.window(1)->property("_q_showWithoutActivating").toBool());
        QVERIFY(!first->property("_q_showWithoutActivating").toBool());
    }
};

PLIM_PAGE_TEST_MAIN(TestStickyHost)
#include "tst_sticky_host.moc"
