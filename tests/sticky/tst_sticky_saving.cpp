#include "sticky/StickyNoteManager.h"
#include "tests/Patience.h"
#include "tests/sticky/StickyNotesFixture.h"

#include <QElapsedTimer>
#include <QLoggingCategory>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
using Fixture = StickyNotesFixture;
} // namespace

// What is written of the windows, and what a quit leaves of it.
class TestStickySaving : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theLayoutIsWrittenOnceAfterTheLastOfManyMoves()
    {
        Fixture f(1);
        f.open(0, somewhere);
        QSignalSpy saved(&*f.manager, &StickyNoteManager::layoutSaved);
        QVERIFY(saved.wait(longEnough));
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
        QVERIFY(saved.wait(longEnough));
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
        QVERIFY(saved.wait(longEnough));
        const auto before = StickyNoteManager::loadLayout();
        change(f);
        QVERIFY(saved.wait(longEnough));
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

    void savingBeforeTheWindowsAreBackLosesNone()
    {
        Fixture f(3);
        storeStickyLayout({{f.id(0), somewhere}, {f.id(1), elsewhere}});
        f.start();
        QSignalSpy saved(&*f.manager, &StickyNoteManager::layoutSaved);
        f.open(2);
        QVERIFY(saved.wait(longEnough));
        QCOMPARE(f.savedCount(), 3);
        f.open(1); // where it was, as it was not here yet
        QCOMPARE(f.manager->lastFrames().value(f.id(1)), elsewhere);
        f.window(1).close();
        QVERIFY(saved.wait(longEnough));
        QCOMPARE(f.savedCount(), 2);
    }

    // The end of the program

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
        QVERIFY(opened.wait(longEnough));
        QVERIFY(f.manager->activeNoteIDs().count() < 5);
        f.restart();
        QTRY_COMPARE(f.manager->activeNoteIDs().count(), 5);
        for (const int i : {0, 1, 2, 3, 4})
            QCOMPARE(f.frame(i), (StickyFrame{i * 100.0, 200, 300, 340}));
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
};

QTEST_MAIN(TestStickySaving)
#include "tst_sticky_saving.moc"
