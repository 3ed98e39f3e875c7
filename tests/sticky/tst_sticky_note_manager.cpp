#include "core/Note.h"
#include "sticky/StickyNoteManager.h"
#include "tests/sticky/StickyNotesFixture.h"

#include <QElapsedTimer>
#include <QLoggingCategory>
#include <QSettings>
#include <QTimer>
#include <QWindow>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
using Fixture = StickyNotesFixture;

constexpr StickyFrame somewhere{200, 300, 320, 400};
constexpr StickyFrame elsewhere{600, 120.5, 280, 200};
} // namespace

// What opens, closes and is remembered; tst_sticky_arranging has the arrangements.
class TestStickyNoteManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thereIsOneForAll()
    {
        QCOMPARE(StickyNoteManager::create(nullptr, nullptr), &StickyNoteManager::shared());
    }

    void theNotesThatAreOutAreAnnouncedWhenTheyAreOthers()
    {
        Fixture f;
        QSignalSpy changed(&*f.manager, &StickyNoteManager::activeNoteIDsChanged);
        const QUuid first = QUuid::createUuid();
        const QUuid second = QUuid::createUuid();
        QCOMPARE(f.manager->activeNoteIDs().count(), 0);
        f.manager->setActiveNoteIDs({});
        QCOMPARE(changed.count(), 0);
        f.manager->setActiveNoteIDs({{first, second}});
        f.manager->setActiveNoteIDs({{second, first}});
        QCOMPARE(changed.count(), 1);
        QVERIFY(f.manager->activeNoteIDs().contains(first));
        f.manager->setActiveNoteIDs({{second}});
        QCOMPARE(changed.count(), 2);
        QVERIFY(!f.manager->activeNoteIDs().contains(first));
    }

    // Opening

    void withoutAnybodyToMakeWindowsNothingHappens()
    {
        Fixture f(2);
        storeStickyLayout({{f.id(0), somewhere}});
        f.manager->setFactory({});
        QTest::ignoreMessage(QtInfoMsg, "Plim: nobody makes sticky windows");
        f.manager->open(f.id(0), f.store, nullptr, std::nullopt);
        f.manager->openAll(f.ids(), f.store, nullptr);
        f.manager->restore(f.store);
        f.manager->collapseAll();
        f.manager->expandAll();
        f.manager->sortRandomly();
        f.manager->sortWindowsByColor(f.store);
        f.manager->undoArrange();
        f.manager->saveLayout();
        f.manager->prepareForTermination();
        f.manager->resumeAfterTermination();
        QCOMPARE(f.manager->activeNoteIDs().count(), 0);
        QVERIFY(!f.manager->canUndoArrange());
        QCOMPARE(f.saved(0), somewhere);
    }

    void aWindowIsOpenedInFront()
    {
        Fixture f(2);
        QSignalSpy changed(&*f.manager, &StickyNoteManager::activeNoteIDsChanged);
        const FakeStickyWindow &window = f.open(1);
        QCOMPARE(window.noteID, f.id(1));
        QCOMPARE(window.timesInFront, 1);
        QVERIFY(!window.isCollapsed() && !window.isFloating);
        QCOMPARE(changed.count(), 1);
        QVERIFY(f.isOut(1));
        QVERIFY(!f.isOut(0));
    }

    void aNoteHasOneWindowAtMost()
    {
        Fixture f(2);
        const FakeStickyWindow &window = f.open(0, somewhere);
        f.open(0, elsewhere);
        QCOMPARE(f.made, QList{f.id(0)});
        QCOMPARE(window.timesInFront, 2);
        QCOMPARE(f.frame(0), somewhere);
    }

    void aWindowStartsWithItsNotesTextSize_data()
    {
        QTest::addColumn<NoteTextSize>("size");
        QTest::newRow("small") << NoteTextSize::small;
        QTest::newRow("big") << NoteTextSize::big;
    }
    void aWindowStartsWithItsNotesTextSize()
    {
        QFETCH(NoteTextSize, size);
        Fixture f(1);
        Note note = f.store.notes()[0];
        note.textSize = size;
        f.store.updateNote(note);
        QVERIFY(f.open(0).textSize == size);
    }

    void aNoteThatIsNotThereIsShownInTheMiddleSize()
    {
        Fixture f(1);
        const QUuid stranger = QUuid::createUuid();
        f.manager->open(stranger, f.store, nullptr, std::nullopt);
        QVERIFY(f.window(stranger).textSize == NoteTextSize::medium);
        f.store.deleteNote(f.id(0)); // none of its business
        QVERIFY(f.window(stranger).isOpen);
    }

    void aWindowThatCannotBeMadeIsNotOut()
    {
        Fixture f(1);
        f.manager->setFactory([](const QUuid &, NoteTextSize) { return nullptr; });
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^Plim: no window for"_s));
        f.manager->open(f.id(0), f.store, nullptr, std::nullopt);
        QVERIFY(!f.isOut(0));
    }

    // Places

    void aGivenFrameIsTakenAsItIs()
    {
        Fixture f(2);
        f.open(0, somewhere);
        QCOMPARE(f.window(0).frame(), QRect(200, 1000 - 700, 320, 400));
        QCOMPARE(f.window(0).motions, QList{StickyWindow::Motion::Immediate});
        f.open(1, elsewhere);
        QCOMPARE(f.manager->lastFrames().value(f.id(1)), elsewhere);
    }

    void withoutASourceAWindowIsCentred()
    {
        Fixture f(1);
        f.open(0);
        QCOMPARE(f.frame(0), (StickyFrame{650, 40 + 310, 300, 340}));
    }

    void besideItsSourceAWindowIsToTheRightAndBelow()
    {
        Fixture f(1);
        QWindow source;
        source.setGeometry(100, 200, 800, 500); // its lower edge is 300 points above the screen's
        f.manager->open(f.id(0), f.store, &source, std::nullopt);
        QCOMPARE(f.frame(0), (StickyFrame{136, 264, 300, 340}));
    }

    void aGivenFrameGoesBeforeTheSource()
    {
        Fixture f(1);
        QWindow source;
        source.setGeometry(100, 200, 800, 500);
        f.manager->open(f.id(0), f.store, &source, somewhere);
        QCOMPARE(f.frame(0), somewhere);
    }

    void withoutAScreenAWindowIsOpenedNonetheless()
    {
        Fixture f(1);
        f.manager->screens = {};
        f.open(0);
        QCOMPARE(f.window(0).frame().size(), QSize(300, 340));
    }

    void aFrameThatNobodyWouldSeeIsShownElsewhereAndKept_data()
    {
        QTest::addColumn<double>("x");
        QTest::addColumn<double>("width");
        QTest::newRow("outside every screen") << 5000.0 << 300.0;
        QTest::newRow("without a size") << 100.0 << 0.0;
        QTest::newRow("nonsense") << 1e300 << -1e300;
    }
    void aFrameThatNobodyWouldSeeIsShownElsewhereAndKept()
    {
        QFETCH(double, x);
        QFETCH(double, width);
        const StickyFrame unseen{x, 100, width, 340};
        Fixture f(1, {.save = 10ms});
        storeStickyLayout({{f.id(0), unseen}});
        f.startAndRestore();
        QTRY_VERIFY(f.isOut(0));
        QVERIFY(f.frame(0).isInView(f.manager->screens.visible));
        QSignalSpy saved(&*f.manager, &StickyNoteManager::layoutSaved);
        QVERIFY(saved.wait());
        QCOMPARE(f.saved(0), unseen);
        f.restart();
        QTRY_VERIFY(f.isOut(0));
        QCOMPARE(f.saved(0), unseen);

        f.window(0).moveTo({20, 30});
        f.restart();
        QTRY_VERIFY(f.isOut(0));
        QCOMPARE(f.saved(0), (StickyFrame{20, 1000 - 30 - 340.0, 300, 340}));
    }

    void aScreenThatIsUnpluggedKeepsNoWindow()
    {
        Fixture f(3);
        const StickyFrame right{2000, 200, 300, 340};
        f.manager->screens.visible << StickyFrame{1600, 0, 1600, 1000};
        f.open(0, right);
        f.open(1, somewhere);
        f.open(2, right);
        f.manager->screens.visible.removeLast();
        f.manager->bringIntoView();
        QCOMPARE(f.frame(0), (StickyFrame{1300, 200, 300, 340}));
        QCOMPARE(f.manager->lastFrames().value(f.id(0)), right);
        QCOMPARE(f.frame(1), somewhere);
        QCOMPARE(f.window(1).motions.size(), 1);

        // One has been moved by its user before the screen comes back.
        f.window(2).moveTo({40, 50});
        f.manager->screens.visible << StickyFrame{1600, 0, 1600, 1000};
        f.manager->bringIntoView();
        QCOMPARE(f.frame(0), right);
        QCOMPARE(f.window(2).frame().topLeft(), QPoint(40, 50));
        QCOMPARE(f.window(2).motions.size(), 2);
        f.manager->screens = {};
        f.manager->bringIntoView();
        QCOMPARE(f.frame(0), right);
    }

    void movingAndResizingAreRemembered()
    {
        Fixture f(1);
        f.open(0, somewhere);
        f.window(0).moveTo({400, 100});
        QCOMPARE(f.manager->lastFrames().value(f.id(0)), (StickyFrame{400, 500, 320, 400}));
        f.window(0).resizeTo({500, 300});
        QCOMPARE(f.manager->lastFrames().value(f.id(0)), (StickyFrame{400, 600, 500, 300}));
    }

    // Asked for by the window

    void foldingKeepsTheTopEdgeAndTheWidth()
    {
        Fixture f(1);
        FakeStickyWindow &window = f.open(0, somewhere);
        window.fold(true);
        QCOMPARE(f.frame(0), (StickyFrame{200, 644, 320, 56}));
        window.fold(false);
        QCOMPARE(f.frame(0), (StickyFrame{200, 360, 320, 340}));
        QVERIFY(!window.motions.contains(StickyWindow::Motion::Animated));
        QCOMPARE(f.manager->lastFrames().value(f.id(0)), (StickyFrame{200, 360, 320, 340}));
    }

    void aWindowShownElsewhereFoldsWhereItIs()
    {
        Fixture f(1);
        f.open(0, StickyFrame{5000, 100, 300, 340});
        f.window(0).fold(true);
        QCOMPARE(f.frame(0), (StickyFrame{1300, 384, 300, 56}));
        QCOMPARE(f.manager->lastFrames().value(f.id(0)), f.frame(0));
    }

    void aPinnedWindowFloats()
    {
        Fixture f(1);
        FakeStickyWindow &window = f.open(0);
        Q_EMIT window.pinChanged(true);
        QVERIFY(window.isFloating);
        Q_EMIT window.pinChanged(false);
        QVERIFY(!window.isFloating);
    }

    void aWindowThatAsksToBeClosedIsPutAway()
    {
        Fixture f(2);
        QSignalSpy putAway(&*f.manager, &StickyNoteManager::stickyPutAway);
        FakeStickyWindow &window = f.open(0);
        f.open(1);
        QPointer<FakeStickyWindow> closed = &window;
        Q_EMIT window.closeRequested();
        QVERIFY(!f.isOut(0));
        QVERIFY(f.isOut(1));
        QVERIFY(!f.manager->window(f.id(0)));
        QVERIFY(!f.manager->lastFrames().contains(f.id(0)));
        QCOMPARE(putAway.count(), 1);
        QCOMPARE(putAway[0][0].toUuid(), f.id(0));
        QTRY_VERIFY(!closed);
        QVERIFY(f.store.note(f.id(0)));
        f.open(0);
        QCOMPARE(f.made, (QList{f.id(0), f.id(1), f.id(0)}));
    }

    // Deleted notes

    void aDeletedNoteTakesItsWindowWithIt()
    {
        Fixture f(3);
        for (const int i : {0, 1, 2})
            f.open(i);
        QSignalSpy putAway(&*f.manager, &StickyNoteManager::stickyPutAway);
        const QList<QUuid> ids = f.ids();
        const QSet<QUuid> deleted{ids[0], ids[2]};
        const QList<PlacedNote> placed = f.store.placedNotes(deleted);
        f.store.deleteNotes(deleted);
        QCOMPARE(f.manager->windowOrder(), QList{ids[1]});
        QCOMPARE(putAway.count(), 0);

        f.store.reinsertNotes(placed);
        QCoreApplication::processEvents();
        QCOMPARE(f.manager->windowOrder(), QList{ids[1]});
    }

    void notesThatAreReplacedTakeTheirWindowsWithThem()
    {
        Fixture f(3);
        f.open(0);
        f.open(2);
        const QUuid last = f.id(2);
        f.store.setNotes({*f.store.note(last)});
        QCOMPARE(f.manager->windowOrder(), QList{last});
    }

    void archivingANoteLeavesItsWindow()
    {
        Fixture f(1);
        f.open(0);
        f.store.setArchived(true, {f.id(0)});
        QVERIFY(f.isOut(0));
    }

    void whatIsRestoredTakesNoKeyboard()
    {
        Fixture f(2);
        f.open(0, somewhere);
        f.open(1, elsewhere);
        f.restart();
        QSignalSpy restored(&*f.manager, &StickyNoteManager::restored);
        QVERIFY(restored.wait());
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
        QVERIFY(restored.wait());
        QCOMPARE(shownBefore, 0);
        QVERIFY(!f.manager->isRestoring());
        for (const int i : {0, 1, 2})
            QCOMPARE(f.window(i).timesShown, 1);
    }

    void nobodyWaitsForVeryMany()
    {
        Fixture f(45);
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
        f.manager->restore(f.store);
        everyTurn.start(0);
        QVERIFY(restored.wait());
        everyTurn.stop();
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
        f.restart();
        QTRY_COMPARE(f.made.size(), 2);
        f.manager->prepareForTermination();
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
        QVERIFY(restored.wait());
        QCOMPARE(f.window(asked).timesInFront, 1);
        QCOMPARE(f.window(asked).timesShown, 0);
    }

    // Several at once

    void thoseThatAreNotOutAreOpenedInOrderAndPacked()
    {
        Fixture f(4);
        QWindow source;
        source.setGeometry(100, 200, 800, 500);
        f.open(2, somewhere);
        f.made.clear();
        QElapsedTimer timer;
        timer.start();
        f.manager->openAll({f.id(3), f.id(2), f.id(0)}, f.store, &source);
        QTRY_COMPARE(f.made, (QList{f.id(3), f.id(0)}));
        QCOMPARE(f.window(2).timesInFront, 1);
        Q_EMIT f.window(3).ready();
        QTRY_COMPARE(f.window(0).timesInFront, 1); // the keyboard goes to the last one
        QCOMPARE(f.window(3).timesInFront, 0);
        QCOMPARE(f.window(3).timesShown, 1);
        for (const int i : {3, 0})
            QCOMPARE(f.frame(i), (StickyFrame{136, 264, 300, 340}));
        QCOMPARE(f.frame(2), somewhere);
        QTRY_COMPARE(f.frame(2), (StickyFrame{10, 590, 320, 400}));
        QVERIFY2(timer.elapsed() >= 200, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(f.frame(3), (StickyFrame{20, 242, 300, 340}));
        QCOMPARE(f.frame(0), (StickyFrame{10 + 320 + 12 + 10, 650, 300, 340}));
        QCOMPARE(f.window(0).motions.constLast(), StickyWindow::Motion::Animated);
    }

    void openingNoneIsNoHarm()
    {
        Fixture f(1);
        f.manager->openAll({}, f.store, nullptr);
        f.manager->openAll({f.id(0), f.id(0)}, f.store, nullptr);
        QCOMPARE(f.made, QList{f.id(0)});
    }

    void whoIsOpenedOrDeletedBeforeItsTurnIsLeftOut()
    {
        Fixture f(4);
        f.manager->openAll(f.ids(), f.store, nullptr);
        const QUuid deleted = f.id(2);
        QCOMPARE(f.made, QList{f.id(0)}); // the others have their turns
        f.open(1);
        f.store.deleteNotes({deleted});
        const QUuid last = f.id(2);
        QTRY_COMPARE(f.made.size(), 3);
        QTest::qWait(0);
        QCOMPARE(f.made.constLast(), last);
        QVERIFY(!f.manager->window(deleted));
    }

    void aSourceThatIsAStickyWindowCountsWithoutItsShadow()
    {
        Fixture f(2);
        QWindow host;
        host.setGeometry(100, 200, 372, 452);
        f.open(0, somewhere).host = &host;
        f.manager->open(f.id(1), f.store, &host, std::nullopt);
        QCOMPARE(f.frame(1), (StickyFrame{236, 264, 300, 340}));
    }

    // Saving

    void theLayoutIsWrittenOnceAfterTheLastOfManyMoves()
    {
        Fixture f(1);
        f.open(0, somewhere);
        QSignalSpy saved(&*f.manager, &StickyNoteManager::layoutSaved);
        QVERIFY(saved.wait());
        saved.clear();
        QElapsedTimer sinceLast;
        int moves = 0;
        QTimer moving;
        connect(&moving, &QTimer::timeout, this, [&] {
            QCOMPARE(f.saved(0), somewhere);
            f.window(0).moveTo({100 + moves, 100});
            sinceLast.start();
            if (++moves == 25)
                moving.stop();
        });
        moving.start(30);
        QVERIFY(saved.wait());
        QCOMPARE(moves, 25);
        QVERIFY2(sinceLast.elapsed() >= 350, qPrintable(QString::number(sinceLast.elapsed())));
        QCOMPARE(f.saved(0), (StickyFrame{124, 500, 320, 400}));
        QVERIFY(!saved.wait(500));
    }

    void everyKindOfChangeIsSaved_data()
    {
        QTest::addColumn<std::function<void(Fixture &)>>("change");
        using Change = std::function<void(Fixture &)>;
        QTest::newRow("opened") << Change([](Fixture &f) { f.open(1); });
        QTest::newRow("closed") << Change([](Fixture &f) { f.window(0).close(); });
        QTest::newRow("resized") << Change([](Fixture &f) { f.window(0).resizeTo({400, 400}); });
        QTest::newRow("folded") << Change([](Fixture &f) { f.window(0).fold(true); });
        QTest::newRow("sorted") << Change([](Fixture &f) { f.manager->sortRandomly(); });
        QTest::newRow("collapsed") << Change([](Fixture &f) { f.manager->collapseAll(); });
        QTest::newRow("deleted") << Change([](Fixture &f) { f.store.deleteNote(f.id(0)); });
    }
    void everyKindOfChangeIsSaved()
    {
        QFETCH(std::function<void(Fixture &)>, change);
        Fixture f(2, {.save = 10ms});
        f.open(0, somewhere);
        QSignalSpy saved(&*f.manager, &StickyNoteManager::layoutSaved);
        QVERIFY(saved.wait());
        const auto before = StickyNoteManager::loadLayout();
        change(f);
        QVERIFY(saved.wait());
        QVERIFY(StickyNoteManager::loadLayout() != before);
        QCOMPARE(f.savedCount(), f.manager->activeNoteIDs().count());
    }

    void theNumberOfEntriesIsTold()
    {
        const Fixture f(1);
        QLoggingCategory::setFilterRules(u"plim.sticky.debug=true"_s);
        storeStickyLayout({{f.id(0), somewhere}});
        QTest::ignoreMessage(QtDebugMsg, "loadLayout: 1 entries");
        QCOMPARE(StickyNoteManager::loadLayout().size(), 1);
        QLoggingCategory::setFilterRules({});
    }

    // From one start to the next

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

    void quittingWritesTheNewestFramesAtOnce()
    {
        Fixture f(2);
        f.open(0, somewhere);
        f.open(1, elsewhere);
        f.window(0).moveTo({5, 6});
        QCOMPARE(f.savedCount(), 0);
        QSignalSpy saved(&*f.manager, &StickyNoteManager::layoutSaved);
        f.manager->prepareForTermination();
        QVERIFY(f.manager->isTerminating());
        QCOMPARE(saved.count(), 1);
        QCOMPARE(f.saved(0), (StickyFrame{5, 594, 320, 400}));
        QCOMPARE(f.saved(1), elsewhere);
        f.window(0).moveTo({700, 700}); // windows may be shuffled about as they go
        QCOMPARE(f.manager->lastFrames().value(f.id(0)), (StickyFrame{5, 594, 320, 400}));
        f.window(0).close();
        f.manager->prepareForTermination();
        QVERIFY(!saved.wait(500));
        QCOMPARE(f.saved(0), (StickyFrame{5, 594, 320, 400}));
    }

    void quittingBeforeTheWindowsAreBackLosesNone()
    {
        Fixture f(5);
        for (const int i : {0, 1, 2, 3, 4})
            f.open(i, StickyFrame{i * 100.0, 200, 300, 340});
        f.restart();
        f.restart();
        QCOMPARE(f.savedCount(), 5);
        QSignalSpy opened(&*f.manager, &StickyNoteManager::activeNoteIDsChanged);
        QVERIFY(opened.wait());
        QVERIFY(f.manager->activeNoteIDs().count() < 5);
        f.restart();
        QTRY_COMPARE(f.manager->activeNoteIDs().count(), 5);
        for (const int i : {0, 1, 2, 3, 4})
            QCOMPARE(f.frame(i), (StickyFrame{i * 100.0, 200, 300, 340}));
    }

    void savingBeforeTheWindowsAreBackLosesNone()
    {
        Fixture f(3);
        storeStickyLayout({{f.id(0), somewhere}, {f.id(1), elsewhere}});
        f.start();
        QSignalSpy saved(&*f.manager, &StickyNoteManager::layoutSaved);
        f.open(2);
        QVERIFY(saved.wait());
        QCOMPARE(f.savedCount(), 3);
        f.open(1); // where it was, as it was not here yet
        QCOMPARE(f.manager->lastFrames().value(f.id(1)), elsewhere);
        f.window(1).close();
        QVERIFY(saved.wait());
        QCOMPARE(f.savedCount(), 2);
    }

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
        QVERIFY(saved.wait());
        QCOMPARE(f.savedCount(), 20);
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

    // A quit that came to nothing

    void closingByHandForgetsAgainAfterARefusedQuit()
    {
        Fixture f(2);
        f.open(0);
        f.open(1);
        f.manager->prepareForTermination();
        f.manager->resumeAfterTermination();
        QVERIFY(!f.manager->isTerminating());
        f.window(0).close();
        f.restart();
        QTRY_COMPARE(f.made, QList{f.id(1)});
    }

    void windowsThatARefusedQuitHasClosedComeBack()
    {
        Fixture f(3);
        f.open(0, somewhere);
        f.open(1, elsewhere);
        f.manager->prepareForTermination();
        f.window(0).close();
        f.made.clear();
        f.manager->resumeAfterTermination();
        QTRY_COMPARE(f.made, QList{f.id(0)});
        QCOMPARE(f.frame(0), somewhere);
        QVERIFY(f.window(0).isOpen);
        QVERIFY(f.isOut(1));
    }

    void restoringGoesOnAfterARefusedQuit()
    {
        Fixture f(3);
        for (const int i : {0, 1, 2})
            f.open(i);
        f.restart();
        f.manager->prepareForTermination();
        QCoreApplication::processEvents();
        QCOMPARE(f.made.size(), 0);
        f.manager->resumeAfterTermination();
        QTRY_COMPARE(f.made.size(), 3);
    }

    void takingTheWindowsDownForgetsNothing()
    {
        Fixture f(2);
        f.open(0, somewhere);
        f.manager->prepareForTermination();
        f.manager->setFactory({});
        QVERIFY(!f.manager->isTerminating());
        QCOMPARE(f.manager->activeNoteIDs().count(), 0);
        QCOMPARE(f.saved(0), somewhere);
        f.store.deleteNote(f.id(0)); // nobody minds
    }
};

QTEST_MAIN(TestStickyNoteManager)
#include "tst_sticky_note_manager.moc"
