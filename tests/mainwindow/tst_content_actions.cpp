#include "mainwindow/ContentController.h"

#include "core/NotificationCenter.h"
#include "mainwindow/DragOverlayManager.h"
#include "tests/mainwindow/ContentFixture.h"

#include <QRegularExpression>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace
{
using Fixture = ContentFixture;
} // namespace

// What the user asks the main window to do; tst_content_undo has what is taken back.
class TestContentActions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void choosingATabEndsTheTickingAndKeepsTheSearch()
    {
        Fixture f(u"A b C"_s);
        f.content.filteredNotes()->setSearchText(u"about"_s);
        f.tick(u"A C"_s);
        f.content.selectTab(SidebarTab::Archive);
        QVERIFY(f.selection.selectedTab() == SidebarTab::Archive);
        QVERIFY(!f.isTicking());
        QCOMPARE(f.content.multiSelection()->selectedIDs().count(), 0);
        QCOMPARE(f.content.filteredNotes()->searchText(), u"about"_s);
        QCOMPARE(f.list(), u"b"_s);
        // Also when it is the tab that is shown already.
        f.tick(u"b"_s);
        f.content.selectTab(SidebarTab::Archive);
        QVERIFY(!f.isTicking());
    }

    void aNewNoteIsSeenWhateverWasGoingOn()
    {
        Fixture f(u"A b C"_s);
        f.content.selectTab(SidebarTab::Archive);
        f.content.filteredNotes()->setSearchText(u"zebra"_s);
        f.tick(u"b"_s);
        f.content.addNote();
        QVERIFY(f.selection.selectedTab() == SidebarTab::Notes);
        QCOMPARE(f.content.filteredNotes()->searchText(), QString());
        QVERIFY(!f.isTicking());
        QCOMPARE(f.content.selectedRow(), 0);
        QCOMPARE(f.list(), u"Untitled A C"_s);
    }

    void aNoteIsArchivedOrRestored()
    {
        Fixture f(u"A b C"_s);
        f.select(u"A"_s);
        f.content.archiveNote(f.id(u"A"_s));
        QCOMPARE(f.archived(), u"A b"_s);
        QVERIFY(f.selection.selectedNoteID() == f.id(u"A"_s));
        f.content.archiveNote(f.id(u"A"_s));
        f.content.archiveNote(f.id(u"b"_s));
        QCOMPARE(f.archived(), QString());
        const NoteArray before = f.store.notes();
        f.content.archiveNote(QUuid::createUuid());
        QVERIFY(f.store.notes() == before);
    }

    void stickyWindowsAreAskedFor()
    {
        Fixture f(u"A b C"_s);
        QWindow window;
        WindowHolder::shared().window = &window;
        f.content.makeSticky(f.id(u"C"_s));
        QCOMPARE(f.sticky.opened, QList{f.id(u"C"_s)});
        f.content.makeAllSticky();
        QCOMPARE(f.sticky.openedTogether, (QList<QList<QUuid>>{{f.id(u"A"_s), f.id(u"C"_s)}}));
        QCOMPARE(f.sticky.sources, (QList<QWindow *>{nullptr, &window}));
        QCOMPARE(f.sticky.stores, (QList<NoteStore *>{&f.store, &f.store}));
        f.content.filteredNotes()->setSearchText(u"about A"_s);
        QCOMPARE(f.list(), u"A"_s);
        f.content.makeAllSticky();
        QCOMPARE(f.sticky.openedTogether.constLast(), QList{f.id(u"A"_s)});
        QVERIFY(!f.store.hasPendingSave());
    }

    void theSearchFieldIsAskedFor()
    {
        Fixture f;
        QSignalSpy asked(&f.content, &ContentController::searchFocusRequested);
        Q_EMIT NotificationCenter::shared().plimFocusSearch();
        QCOMPARE(asked.count(), 1);
    }

    // Ticked notes

    void allOfTheListIsTicked_data()
    {
        QTest::addColumn<bool>("isArchive");
        QTest::addColumn<QString>("search");
        QTest::addColumn<QString>("ticked");
        QTest::newRow("notes") << false << u""_s << u"Ant Bee Cat"_s;
        QTest::newRow("archive") << true << u""_s << u"dog eel"_s;
        QTest::newRow("found notes") << false << u"cat"_s << u"Cat"_s;
        QTest::newRow("nothing found") << false << u"zebra"_s << u""_s;
    }
    void allOfTheListIsTicked()
    {
        QFETCH(bool, isArchive);
        QFETCH(QString, search);
        QFETCH(QString, ticked);
        Fixture f(u"Ant Bee Cat dog eel"_s);
        f.content.selectTab(isArchive ? SidebarTab::Archive : SidebarTab::Notes);
        f.content.filteredNotes()->setSearchText(search);
        (void)f.list();
        f.content.multiSelection()->setIsSelectionMode(true);
        f.content.selectAll();
        QCOMPARE(f.content.multiSelection()->selectedIDs().ids, f.ids(ticked));
    }

    void theTickedNotesChangeTheTab_data()
    {
        QTest::addColumn<bool>("isArchive");
        QTest::addColumn<QString>("ticked");
        QTest::addColumn<QString>("archived");
        QTest::newRow("to the archive") << false << u"A C"_s << u"A b C d"_s;
        QTest::newRow("back to the notes") << true << u"d"_s << u"b"_s;
        QTest::newRow("all") << true << u"b d"_s << u""_s;
    }
    void theTickedNotesChangeTheTab()
    {
        QFETCH(bool, isArchive);
        QFETCH(QString, ticked);
        Fixture f(u"A b C d"_s);
        f.content.selectTab(isArchive ? SidebarTab::Archive : SidebarTab::Notes);
        f.tick(ticked);
        QSignalSpy changed(&f.store, &NoteStore::notesChanged);
        f.content.archiveSelection();
        QTEST(f.archived(), "archived");
        QCOMPARE(changed.count(), 1); // one operation of the store
        QVERIFY(!f.isTicking());
    }

    void theTickedNotesAreDeletedTogether()
    {
        Fixture f(u"A b C D"_s);
        f.select(u"C"_s);
        f.tick(u"A C"_s);
        QSignalSpy changed(&f.store, &NoteStore::notesChanged);
        f.content.deleteSelection();
        QCOMPARE(f.order(), u"b D"_s);
        QCOMPARE(changed.count(), 1);
        QVERIFY(!f.isTicking());
        QVERIFY(!f.selection.selectedNoteID());
        QCOMPARE(f.content.deletionUndo()->text(), u"2 notes deleted"_s);
        f.content.deletionUndo()->undo();
        QCOMPARE(f.order(), u"A b C D"_s);
        QVERIFY(f.selection.selectedNoteID() == f.id(u"C"_s));
    }

    void withoutTickedNotesTheTickingGoesOn()
    {
        Fixture f(u"A b"_s);
        f.tick(u""_s);
        const NoteArray before = f.store.notes();
        f.content.archiveSelection();
        f.content.deleteSelection();
        QVERIFY(f.store.notes() == before);
        QVERIFY(f.isTicking());
    }

    void aNoteThatIsGoneIsNotTicked()
    {
        Fixture f(u"A B C"_s);
        f.tick(u"A B"_s);
        f.store.deleteNote(f.id(u"A"_s));
        QCOMPARE(f.content.multiSelection()->selectedIDs().ids, f.ids(u"B"_s));
        QCOMPARE(f.content.selectedCountText(), u"1 note selected"_s);
        f.store.setNotes(notesOf(u"X"_s));
        QCOMPARE(f.content.multiSelection()->selectedIDs().count(), 0);
        QVERIFY(f.isTicking());
    }

    void theCountFollowsTicksAndLanguage()
    {
        Fixture f(u"A B C D E"_s);
        QSignalSpy told(&f.content, &ContentController::selectedCountTextChanged);
        QCOMPARE(f.content.selectedCountText(), u"0 notes selected"_s);
        f.tick(u"A B"_s);
        QCOMPARE(told.count(), 1);
        QCOMPARE(f.content.selectedCountText(), u"2 notes selected"_s);
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QCOMPARE(told.count(), 2);
        QCOMPARE(f.content.selectedCountText(), u"Zaznaczono 2 notatki"_s);
        f.content.selectAll();
        QCOMPARE(f.content.selectedCountText(), u"Zaznaczono 5 notatek"_s);
    }

    // Moving

    void aNoteIsMovedByRows_data()
    {
        QTest::addColumn<QString>("note");
        QTest::addColumn<int>("rows");
        QTest::addColumn<QString>("order");
        QTest::newRow("up") << u"C"_s << -1 << u"A x C B D"_s;
        QTest::newRow("down") << u"B"_s << 1 << u"A x C B D"_s;
        QTest::newRow("down past the archive") << u"A"_s << 1 << u"x B A C D"_s;
        QTest::newRow("up from the first") << u"A"_s << -1 << u"A x B C D"_s;
        QTest::newRow("down from the last") << u"D"_s << 1 << u"A x B C D"_s;
        QTest::newRow("to the last row") << u"C"_s << 1 << u"A x B D C"_s;
        QTest::newRow("by no rows") << u"B"_s << 0 << u"A x B C D"_s;
        QTest::newRow("far up") << u"D"_s << -99 << u"D A x B C"_s;
        QTest::newRow("far down") << u"A"_s << 99 << u"x B C D A"_s;
        QTest::newRow("in the other tab") << u"x"_s << 1 << u"A x B C D"_s;
    }
    void aNoteIsMovedByRows()
    {
        QFETCH(QString, note);
        QFETCH(int, rows);
        Fixture f(u"A x B C D"_s);
        const QString before = f.order();
        QSignalSpy changed(&f.store, &NoteStore::notesChanged);
        f.content.moveNoteBy(f.id(note), rows);
        QTEST(f.order(), "order");
        QCOMPARE(changed.count(), f.order() == before ? 0 : 1);
    }

    void aFoundNoteIsMovedAmongTheFound()
    {
        Fixture f(u"Ox1 Ant Ox2 Bee Ox3 Cat"_s);
        f.content.filteredNotes()->setSearchText(u"ox"_s);
        QCOMPARE(f.list(), u"Ox1 Ox2 Ox3"_s);
        f.content.moveNoteBy(f.id(u"Ox3"_s), -1);
        QCOMPARE(f.order(), u"Ox1 Ant Ox3 Ox2 Bee Cat"_s);
        f.content.moveNoteBy(f.id(u"Ox1"_s), 1);
        QCOMPARE(f.order(), u"Ant Ox3 Ox1 Ox2 Bee Cat"_s);
        f.content.moveNoteBy(f.id(u"Ox3"_s), 2);
        QCOMPARE(f.order(), u"Ant Ox1 Ox2 Bee Cat Ox3"_s);
        f.content.moveNoteBy(f.id(u"Ant"_s), 1); // is not in the list
        QCOMPARE(f.order(), u"Ant Ox1 Ox2 Bee Cat Ox3"_s);
    }

    void notesAreNotMovedWhileTheyAreTicked()
    {
        Fixture f(u"A B"_s);
        f.tick(u"A"_s);
        f.content.moveNoteBy(f.id(u"A"_s), 1);
        f.drag(u"A"_s, 5);
        f.content.reordering()->endDrag();
        QCOMPARE(f.order(), u"A B"_s);
    }

    void aDroppedNoteIsMoved_data()
    {
        QTest::addColumn<QString>("note");
        QTest::addColumn<int>("toRow");
        QTest::addColumn<QString>("search");
        QTest::addColumn<QString>("order");
        QTest::newRow("up") << u"Ox3"_s << 0 << u""_s << u"Ox3 Ox1 bat Ox2 Ant"_s;
        QTest::newRow("onto its own place") << u"Ox2"_s << 1 << u""_s << u"Ox1 bat Ox2 Ox3 Ant"_s;
        QTest::newRow("to the end") << u"Ox1"_s << 9 << u""_s << u"bat Ox2 Ox3 Ant Ox1"_s;
        QTest::newRow("among the found") << u"Ox3"_s << 1 << u"ox"_s << u"Ox1 bat Ox3 Ox2 Ant"_s;
        QTest::newRow("behind the found") << u"Ox1"_s << 9 << u"ox"_s << u"bat Ox2 Ox3 Ant Ox1"_s;
    }
    void aDroppedNoteIsMoved()
    {
        QFETCH(QString, note);
        QFETCH(int, toRow);
        QFETCH(QString, search);
        Fixture f(u"Ox1 bat Ox2 Ox3 Ant"_s);
        f.content.filteredNotes()->setSearchText(search);
        (void)f.list();
        const QString before = f.order();
        f.drag(note, toRow);
        QCOMPARE(f.order(), before);
        f.content.reordering()->endDrag();
        QTEST(f.order(), "order");
        QCOMPARE(f.store.hasPendingSave(), f.order() != before);
    }

    void theDraggedNotesCardIsShown()
    {
        Fixture f(u"Milk Bread"_s);
        auto &card = DragOverlayManager::shared();
        f.drag(u"Milk"_s, 1);
        QVERIFY(card.isShown());
        QVERIFY(card.currentNoteID() == f.id(u"Milk"_s));
        QCOMPARE(card.title(), u"Milk"_s);
        QCOMPARE(card.width(), 320.0);
        f.content.reordering()->endDrag();
        QVERIFY(!card.isShown());
        f.content.reordering()->state()->setRowFrames({});
        f.content.reordering()->drag(f.id(u"Bread"_s), {0, 0}, {1, 1});
        QCOMPARE(card.title(), u"Bread"_s);
        QCOMPARE(card.width(), 340.0); // no row is known
        f.content.reordering()->cancelDrag();
        QVERIFY(!card.isShown());
    }
};

QTEST_MAIN(TestContentActions)
#include "tst_content_actions.moc"
