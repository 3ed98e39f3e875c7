#include "core/NotificationCenter.h"
#include "tests/Patience.h"
#include "tests/sticky/StickyNotesFixture.h"

#include <QElapsedTimer>
#include <QSet>

using namespace Qt::StringLiterals;

namespace
{
using Fixture = StickyNotesFixture;
using Motion = StickyWindow::Motion;

/// The notes' numbers in the order in which their windows lie: by columns, from the top.
QString order(Fixture &f)
{
    QList<int> numbers;
    for (int i = 0; i < f.store.notes().size(); ++i) {
        if (f.isOut(i))
            numbers << i;
    }
    std::ranges::sort(numbers, {}, [&f](int i) { return std::pair(f.frame(i).x, -f.frame(i).y); });
    QString text;
    for (const int number : numbers)
        text += QString::number(number);
    return text;
}

Fixture &openSome(Fixture &f, int count)
{
    for (int i = 0; i < count; ++i)
        f.open(i, StickyFrame{100.0 + 20 * i, 300, 300 + 10.0 * i, 340});
    return f;
}
} // namespace

class TestStickyArranging : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingIsOutAndNothingHappens()
    {
        Fixture f(1);
        f.manager->collapseAll();
        f.manager->sortRandomly();
        f.manager->sortWindowsByColor(f.store);
        QVERIFY(!f.manager->canUndoArrange());
    }

    void withoutAScreenNothingIsPacked()
    {
        Fixture f(2);
        openSome(f, 2);
        f.manager->screens = {};
        const QRect before = f.window(1).frame();
        f.manager->sortRandomly();
        f.manager->sortWindowsByColor(f.store);
        QCOMPARE(f.window(1).frame(), before);
    }

    void moreWindowsThanAColumnHoldsFillTheNext()
    {
        Fixture f(3);
        f.open(0, StickyFrame{0, 100, 420, 340});
        f.open(1, StickyFrame{0, 100, 260, 340});
        f.open(2, StickyFrame{0, 100, 300, 90});
        for (int i = 0; i < 3; ++i)
            f.setColor(i, u"red"_s);
        f.manager->sortWindowsByColor(f.store);
        QCOMPARE(f.frame(0), (StickyFrame{10, 650, 420, 340}));
        QCOMPARE(f.frame(1), (StickyFrame{10 + 80, 302, 260, 340}));
        QCOMPARE(f.frame(2), (StickyFrame{10 + 60, 302 - 8 - 56, 300, 56}));
        QCOMPARE(f.manager->lastFrames().value(f.id(2)), f.frame(2));
        QCOMPARE(f.window(0).motions.constLast(), Motion::Animated);
    }

    void whatFindsNoRoomIsPackedAndStillSeen()
    {
        Fixture f(12);
        openSome(f, 12);
        f.manager->sortWindowsByColor(f.store);
        for (int i = 0; i < 12; ++i)
            QVERIFY(f.frame(i).isInView(f.manager->screens.visible));
        QVERIFY(f.manager->lastFrames().value(f.id(11)).x > Fixture::primary.width());
    }

    // Sorting

    void coloursLieInTheirOrder()
    {
        Fixture f(9);
        const QStringList colors{u"brown"_s, u"blue"_s,   u"red"_s,  u"pink"_s,  u"yellow"_s,
                                 u"green"_s, u"purple"_s, u"blue"_s, u"orange"_s};
        for (int i = 0; i < 9; ++i) {
            f.setColor(i, colors[i]);
            f.open(i, StickyFrame{0, 100, 300, 56});
        }
        f.manager->sortWindowsByColor(f.store);
        QCOMPARE(order(f), u"283451760"_s);
    }

    void windowsWithoutANoteAreTheLast()
    {
        Fixture f(1);
        f.setColor(0, u"brown"_s);
        const QUuid stranger = QUuid::createUuid();
        f.manager->open(stranger, f.store, nullptr, std::nullopt);
        f.open(0);
        f.manager->sortWindowsByColor(f.store);
        QCOMPARE(f.frame(0).top(), 990.0);
        QCOMPARE(f.window(stranger).frame().top(), 1000 - 642);
    }

    void chanceBringsEveryOrder()
    {
        Fixture f(3);
        for (int i = 0; i < 3; ++i)
            f.open(i, StickyFrame{0, 100, 300, 200});
        QSet<QString> orders;
        for (int i = 0; i < 300; ++i) {
            f.manager->sortRandomly();
            orders << order(f);
        }
        QCOMPARE(orders.size(), 6); // fails by chance once in 10 ^ 23 runs
        QCOMPARE(f.manager->windowOrder(), f.ids());
    }

    // Collapsing and expanding

    void allCollapseAndArePackedSoonAfter()
    {
        Fixture f(3);
        openSome(f, 3);
        f.window(1).fold(true);
        QSignalSpy told(&NotificationCenter::shared(), &NotificationCenter::plimCollapseAll);
        QElapsedTimer timer;
        timer.start();
        f.manager->collapseAll();
        QCOMPARE(told.count(), 1);
        for (int i = 0; i < 3; ++i) {
            QVERIFY(f.window(i).isCollapsed());
            QCOMPARE(f.frame(i), (StickyFrame{100.0 + 20 * i, 640 - 56, 300, 56}));
            QVERIFY(!f.window(i).motions.contains(Motion::Animated));
        }
        QTRY_COMPARE(order(f), u"012"_s);
        QTRY_COMPARE(f.frame(0), (StickyFrame{10, 990 - 56, 300, 56}));
        QVERIFY2(timer.elapsed() >= 100, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(f.frame(2), (StickyFrame{10, 990 - 2 * 64 - 56, 300, 56}));
        QCOMPARE(f.window(2).motions.constLast(), Motion::Animated);
    }

    void allExpandAndArePackedSoonAfter()
    {
        Fixture f(2);
        openSome(f, 2);
        f.window(0).fold(true);
        QSignalSpy told(&NotificationCenter::shared(), &NotificationCenter::plimExpandAll);
        f.manager->expandAll();
        QCOMPARE(told.count(), 1);
        for (int i = 0; i < 2; ++i) {
            QVERIFY(!f.window(i).isCollapsed());
            QCOMPARE(f.frame(i), (StickyFrame{100.0 + 20 * i, 300, 300, 340}));
        }
        QTRY_COMPARE(f.frame(1), (StickyFrame{10, 302, 300, 340}));
    }

    // Cards take their new form when they hear of it, and ask for its height.
    void windowsMayActOnTheNotificationThemselves()
    {
        Fixture f(2);
        openSome(f, 2);
        const QMetaObject::Connection connection =
            connect(&NotificationCenter::shared(), &NotificationCenter::plimCollapseAll, this, [&] {
                for (int i = 0; i < 2; ++i)
                    f.window(i).fold(true);
            });
        f.manager->collapseAll();
        disconnect(connection);
        QCOMPARE(f.frame(1), (StickyFrame{120, 640 - 56, 300, 56}));
        f.manager->undoArrange();
        QCOMPARE(f.frame(1), (StickyFrame{120, 300, 310, 340}));
    }

    void theLastOfTwoOrdersCounts()
    {
        Fixture f(2);
        openSome(f, 2);
        f.manager->collapseAll();
        f.manager->expandAll();
        QTRY_COMPARE(f.frame(1), (StickyFrame{10, 302, 300, 340}));
        QCOMPARE(f.frame(0), (StickyFrame{10, 650, 300, 340}));
    }

    void anOrderOfItsOwnIsNotPackedAway()
    {
        Fixture f(2);
        f.setColor(0, u"brown"_s);
        f.setColor(1, u"red"_s);
        openSome(f, 2);
        f.manager->expandAll();
        f.manager->sortWindowsByColor(f.store);
        QSignalSpy saved(&*f.manager, &StickyNoteManager::layoutSaved);
        QVERIFY(saved.wait(longEnough)); // that is later than any packing
        QCOMPARE(order(f), u"10"_s);
    }

    void aWindowClosedBeforeThePackingIsNotMissed()
    {
        Fixture f(3);
        openSome(f, 3);
        f.manager->collapseAll();
        f.window(0).close();
        QTRY_COMPARE(f.frame(1), (StickyFrame{10, 934, 300, 56}));
        QCOMPARE(f.frame(2), (StickyFrame{10, 870, 300, 56}));
    }

    // The way back

    void everyArrangementCanBeUndoneOnce_data()
    {
        QTest::addColumn<std::function<void(Fixture &)>>("arrange");
        using Arrange = std::function<void(Fixture &)>;
        QTest::newRow("random") << Arrange([](Fixture &f) { f.manager->sortRandomly(); });
        QTest::newRow("colour") << Arrange(
            [](Fixture &f) { f.manager->sortWindowsByColor(f.store); });
        QTest::newRow("collapse") << Arrange([](Fixture &f) { f.manager->collapseAll(); });
        QTest::newRow("collapse, packed") << Arrange([](Fixture &f) {
            f.manager->collapseAll();
            QTRY_COMPARE(f.frame(0).x, 10.0);
        });
        QTest::newRow("expand, packed") << Arrange([](Fixture &f) {
            f.manager->expandAll();
            QTRY_COMPARE(f.frame(0).x, 10.0);
        });
        QTest::newRow("all out") << Arrange([](Fixture &f) {
            f.manager->openAll(f.ids(), f.store, nullptr);
            QTRY_COMPARE(f.frame(0).x, 10.0 + 10);
        });
    }
    void everyArrangementCanBeUndoneOnce()
    {
        QFETCH(std::function<void(Fixture &)>, arrange);
        Fixture f(4);
        openSome(f, 3);
        f.window(1).fold(true);
        QList<StickyFrame> before;
        for (int i = 0; i < 3; ++i)
            before << f.frame(i);
        QSignalSpy changed(&*f.manager, &StickyNoteManager::canUndoArrangeChanged);
        QVERIFY(!f.manager->canUndoArrange());

        arrange(f);
        QVERIFY(f.manager->canUndoArrange());
        QCOMPARE(changed.count(), 1);
        f.manager->undoArrange();
        QVERIFY(!f.manager->canUndoArrange());
        QCOMPARE(changed.count(), 2);
        QSignalSpy saved(&*f.manager, &StickyNoteManager::layoutSaved);
        QVERIFY(saved.wait(longEnough)); // that is later than any packing
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(f.frame(i), before[i]);
            QCOMPARE(f.saved(i), before[i]);
            QCOMPARE(f.window(i).isCollapsed(), i == 1);
            QCOMPARE(f.window(i).motions.constLast(), Motion::Animated);
        }

        f.window(0).moveTo({7, 8});
        f.manager->undoArrange();
        QCOMPARE(f.window(0).frame().topLeft(), QPoint(7, 8));
    }

    void theLastArrangementIsTheOneThatIsUndone()
    {
        Fixture f(2);
        openSome(f, 2);
        f.manager->sortWindowsByColor(f.store);
        const StickyFrame sorted = f.frame(0);
        f.manager->collapseAll();
        f.manager->undoArrange();
        QCOMPARE(f.frame(0), sorted);
        QVERIFY(!f.manager->canUndoArrange());
    }

    void windowsOpenedSinceStayWhereTheyAre()
    {
        Fixture f(3);
        openSome(f, 2);
        f.manager->sortRandomly();
        f.open(2, StickyFrame{500, 500, 300, 340});
        f.manager->undoArrange();
        QCOMPARE(f.frame(2), (StickyFrame{500, 500, 300, 340}));
        QCOMPARE(f.frame(0), (StickyFrame{100, 300, 300, 340}));
    }

    void windowsClosedSinceAreLeftClosed()
    {
        Fixture f(2);
        openSome(f, 2);
        f.manager->sortRandomly();
        f.window(0).close();
        QVERIFY(f.manager->canUndoArrange());
        f.window(1).close();
        QVERIFY(!f.manager->canUndoArrange());
        openSome(f, 1);
        f.manager->undoArrange();
        QCOMPARE(f.manager->windowOrder(), QList{f.id(0)});
    }
};

QTEST_MAIN(TestStickyArranging)
#include "tst_sticky_arranging.moc"
