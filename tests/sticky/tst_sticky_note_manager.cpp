#include "core/Note.h"
#include "sticky/StickyNoteManager.h"
#include "tests/Patience.h"
#include "tests/sticky/StickyNotesFixture.h"

#include <QElapsedTimer>
#include <QWindow>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
using Fixture = StickyNotesFixture;
} // namespace

// What opens and closes, and where; tst_sticky_arranging has the arrangements, tst_sticky_saving
// and tst_sticky_restoring what is remembered.
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

    void aSourceThatIsAStickyWindowCountsWithoutItsShadow()
    {
        Fixture f(2);
        QWindow host;
        host.setGeometry(100, 200, 372, 452);
        f.open(0, somewhere).host = &host;
        f.manager->open(f.id(1), f.store, &host, std::nullopt);
        QCOMPARE(f.frame(1), (StickyFrame{236, 264, 300, 340}));
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
        QVERIFY(saved.wait(longEnough));
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
        QTRY_COMPARE(f.frame(2), (StickyFrame{10, 590, 320, 400}));
        QCOMPARE(f.window(2).placed.size(), 2); // where it was, until all are packed
        for (const int i : {3, 0}) {
            const QRect first = f.window(i).placed.constFirst();
            QCOMPARE(StickyFrame::fromScreen(first, Fixture::primary),
                     (StickyFrame{136, 264, 300, 340}));
        }
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
};

QTEST_MAIN(TestStickyNoteManager)
#include "tst_sticky_note_manager.moc"
