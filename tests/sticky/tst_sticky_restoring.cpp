#include "sticky/StickyNoteManager.h"
#include "tests/Patience.h"
#include "tests/sticky/StickyNotesFixture.h"

#include <QSettings>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
using Fixture = StickyNotesFixture;
} // namespace

// The windows that come back with the program.
class TestStickyRestoring : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void windowsComeBackWhereTheyWere()
    {
        Fixture f(4);
        f.open(2, somewhere);
        f.open(0, elsewhere);
        f.open(3, StickyFrame{10, 20, 300, 56});
        f.restart();
        QTRY_COMPARE(f.manager->activeNoteIDs().count(), 3);
        QCOMPARE(f.made, (QList{f.id(2), f.id(0), f.id(3)}));
        QCOMPARE(f.frame(2), somewhere);
        QCOMPARE(f.manager->lastFrames().value(f.id(0)), elsewhere);
        QCOMPARE(f.frame(3), (StickyFrame{10, 20, 300, 56}));
    }

    void aWindowClosedByHandDoesNotComeBack()
    {
        Fixture f(3);
        for (const int i : {0, 1, 2})
            f.open(i);
        f.window(1).close();
        f.restart();
        QTRY_COMPARE(f.made, (QList{f.id(0), f.id(2)}));
        QVERIFY(!f.isOut(1));
    }

    void whatWasCollapsedComesBackExpandedAtItsFrame()
    {
        Fixture f(1);
        f.open(0, somewhere);
        f.window(0).fold(true);
        Q_EMIT f.window(0).pinChanged(true);
        f.restart();
        QTRY_VERIFY(f.isOut(0));
        QCOMPARE(f.frame(0), (StickyFrame{200, 644, 320, 56}));
        QVERIFY(!f.window(0).isCollapsed());
        QVERIFY(!f.window(0).isFloating);
    }

    void aNoteThatIsDeletedMeanwhileDoesNotComeBack()
    {
        Fixture f(3);
        for (const int i : {0, 1, 2})
            f.open(i);
        f.restart();
        const QList<PlacedNote> placed = f.store.placedNotes({f.id(1)});
        f.store.deleteNote(f.id(1));
        f.store.reinsertNotes(placed);
        QTRY_COMPARE(f.made, (QList{f.id(0), f.id(2)}));
        f.manager->prepareForTermination();
        QCOMPARE(f.savedCount(), 2);
    }

    void aWindowOpenedMeanwhileIsNotOpenedAgain()
    {
        Fixture f(2);
        f.open(0, somewhere);
        f.open(1, elsewhere);
        f.restart();
        f.open(1);
        QTRY_COMPARE(f.made, (QList{f.id(1), f.id(0)}));
        QCOMPARE(f.manager->lastFrames().value(f.id(1)), elsewhere);
    }

    void aLayoutThatCannotBeReadIsAnEmptyOne()
    {
        Fixture f(1);
        QSettings().setValue(u"stickyLayout.v1"_s, QByteArray("[{\"noteID\":"));
        f.startAndRestore();
        QCoreApplication::processEvents();
        QCOMPARE(f.made.size(), 0);
        f.open(0, somewhere);
        f.restart();
        QTRY_COMPARE(f.made.size(), 1);
    }

    // How they appear

    void twentyWindowsComeBackOneAfterTheOther()
    {
        Fixture f(20);
        QList<StickyLayoutEntry> entries;
        QList<QUuid> expected;
        for (int i = 19; i >= 0; --i) {
            entries << StickyLayoutEntry{f.id(i), {i * 10.0, 200, 300, 340}};
            expected << f.id(i);
        }
        for (const int place : {17, 9, 3, 0})
            entries.insert(place, {QUuid::createUuid(), somewhere});
        entries << entries[1]; // doubled
        storeStickyLayout(entries);
        f.startAndRestore();
        QCOMPARE(f.made.size(), 0);
        int turns = 0;
        QTimer turn; // is served between any two of them
        connect(&turn, &QTimer::timeout, this, [&] {
            ++turns;
            if (f.made.size() > turns)
                QFAIL(qPrintable(u"%1 in turn %2"_s.arg(f.made.size()).arg(turns)));
        });
        turn.start(0);
        QTRY_COMPARE(f.made.size(), 20);
        QCOMPARE(f.made, expected);
        for (int i = 0; i < 20; ++i)
            QCOMPARE(f.frame(i), (StickyFrame{i * 10.0, 200, 300, 340}));
        QSignalSpy saved(&*f.manager, &StickyNoteManager::layoutSaved);
        QVERIFY(saved.wait(longEnough));
        QCOMPARE(f.savedCount(), 20);
    }

    void whatIsRestoredTakesNoKeyboard()
    {
        Fixture f(2);
        f.open(0, somewhere);
        f.open(1, elsewhere);
        f.restart();
        QSignalSpy restored(&*f.manager, &StickyNoteManager::restored);
        QVERIFY(restored.wait(longEnough));
        QVERIFY(f.isOut(0) && f.isOut(1));
        for (const int i : {0, 1}) {
            QCOMPARE(f.window(i).timesInFront, 0);
            QCOMPARE(f.window(i).timesShown, 1);
        }
    }

    void whatIsRestoredAppearsTogether()
    {
        Fixture f(3);
        for (const int i : {0, 1, 2})
            f.open(i, somewhere);
        f.restart();
        int shownBefore = 0; // before all were made
        f.whenMade = [&] {
            QVERIFY(f.manager->isRestoring());
            for (const QUuid &noteID : f.manager->windowOrder())
                shownBefore += f.window(noteID).timesShown;
        };
        QSignalSpy restored(&*f.manager, &StickyNoteManager::restored);
        QVERIFY(restored.wait(longEnough));
        QCOMPARE(shownBefore, 0);
        QVERIFY(!f.manager->isRestoring());
        for (const int i : {0, 1, 2})
            QCOMPARE(f.window(i).timesShown, 1);
    }

    void nobodyWaitsForVeryMany()
    {
        Fixture f(45, {.appear = 10min});
        QList<StickyLayoutEntry> entries;
        for (const QUuid &id : f.ids())
            entries << StickyLayoutEntry{id, somewhere};
        storeStickyLayout(entries);
        f.start();
        const auto shown = [&f] {
            int count = 0;
            for (const QUuid &noteID : f.manager->windowOrder())
                count += f.window(noteID).timesShown;
            return count;
        };
        int shownBefore = 0; // before all were made
        f.whenMade = [&] { shownBefore += shown(); };
        QSet<int> counts;
        QTimer everyTurn;
        connect(&everyTurn, &QTimer::timeout, this, [&] { counts << shown(); });
        QSignalSpy restored(&*f.manager, &StickyNoteManager::restored);
        connect(&*f.manager, &StickyNoteManager::restored, &everyTurn, &QTimer::stop);
        f.manager->restore(f.store);
        everyTurn.start(0);
        QTRY_COMPARE(f.made.size(), 45);
        Q_EMIT f.window(0).ready();
        QTRY_COMPARE(restored.count(), 1);
        QCOMPARE(shownBefore, 0);
        QCOMPARE(counts, (QSet<int>{0, 20, 40}));
        QCOMPARE(shown(), 45);
    }

    void theyAppearAsSoonAsOneHasSomethingToShow()
    {
        Fixture f(3, {.appear = 10min});
        for (const int i : {0, 1, 2})
            f.open(i, somewhere);
        f.restart();
        QSignalSpy restored(&*f.manager, &StickyNoteManager::restored);
        QTRY_COMPARE(f.made.size(), 3);
        QVERIFY(f.manager->isRestoring());
        QCOMPARE(f.window(0).timesShown, 0);
        Q_EMIT f.window(1).ready();
        QTRY_COMPARE(restored.count(), 1);
        for (const int i : {0, 1, 2})
            QCOMPARE(f.window(i).timesShown, 1);
    }

    void noneAppearsWhileTheProgramEnds()
    {
        Fixture f(2);
        for (const int i : {0, 1})
            f.open(i, somewhere);
        f.whenMade = [&f] {
            if (f.made.size() == 2) // long before it would appear
                QTimer::singleShot(0, &*f.manager, [&f] { f.manager->prepareForTermination(); });
        };
        f.restart();
        QTRY_VERIFY(f.manager->isTerminating());
        Q_EMIT f.window(0).ready();
        QTest::qWait(400); // longer than anybody is waited for
        QCOMPARE(f.window(0).timesShown, 0);
        f.manager->resumeAfterTermination();
        QTRY_COMPARE(f.window(0).timesShown, 1);
        QTRY_COMPARE(f.window(1).timesShown, 1);
    }

    void oneThatIsAskedForIsNotAwaitedAnyMore()
    {
        Fixture f(3);
        for (const int i : {0, 1, 2})
            f.open(i, somewhere);
        f.restart();
        QUuid asked;
        f.whenMade = [&] {
            if (!asked.isNull() || f.manager->windowOrder().isEmpty())
                return;
            asked = f.manager->windowOrder().constFirst();
            f.manager->open(asked, f.store, nullptr, std::nullopt);
        };
        QSignalSpy restored(&*f.manager, &StickyNoteManager::restored);
        QVERIFY(restored.wait(longEnough));
        QCOMPARE(f.window(asked).timesInFront, 1);
        QCOMPARE(f.window(asked).timesShown, 0);
    }
};

QTEST_MAIN(TestStickyRestoring)
#include "tst_sticky_restoring.moc"
