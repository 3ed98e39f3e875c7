#include "core/app/PendingSelection.h"

#include "mainwindow/ContentController.h"
#include "sticky/WindowHolder.h"
#include "tests/mainwindow/NoteListFixture.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class TestPendingSelection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thePendingNoteIsSelectedInItsTab_data()
    {
        QTest::addColumn<QString>("pending");
        QTest::addColumn<SidebarTab>("tab");
        QTest::addColumn<SidebarTab>("tabAfter");
        const auto notes = SidebarTab::Notes;
        const auto archive = SidebarTab::Archive;
        QTest::newRow("a note, in the notes") << u"A"_s << notes << notes;
        QTest::newRow("a note, in the archive") << u"A"_s << archive << notes;
        QTest::newRow("an archived one, in the notes") << u"b"_s << notes << archive;
        QTest::newRow("an archived one, in the archive") << u"b"_s << archive << archive;
        QTest::newRow("no note, in the notes") << QString() << notes << notes;
        QTest::newRow("no note, in the archive") << QString() << archive << archive;
    }
    void thePendingNoteIsSelectedInItsTab()
    {
        QFETCH(QString, pending);
        QFETCH(SidebarTab, tab);
        NoteListFixture f(u"A b C"_s);
        f.selection.setSelectedTab(tab);
        QSignalSpy tabChanged(&f.selection, &SelectionManager::selectedTabChanged);
        WindowHolder holder;
        const QUuid id = pending.isNull() ? QUuid::createUuid() : f.id(pending);
        holder.pendingSelectedID = id;
        selectPending(holder, f.selection, f.store);
        QVERIFY(f.selection.selectedNoteID() == id);
        QTEST(f.selection.selectedTab(), "tabAfter");
        QCOMPARE(tabChanged.count(), f.selection.selectedTab() == tab ? 0 : 1);
        QVERIFY(!holder.pendingSelectedID);
    }

    void nothingPendingChangesNothing()
    {
        NoteListFixture f(u"A b"_s);
        f.selection.setSelectedNoteID(f.id(u"b"_s));
        WindowHolder holder;
        selectPending(holder, f.selection, f.store);
        QVERIFY(f.selection.selectedNoteID() == f.id(u"b"_s));
        QVERIFY(f.selection.selectedTab() == SidebarTab::Notes);
    }

    void aRequestIsServedOnce()
    {
        NoteListFixture f(u"A b"_s);
        WindowHolder holder;
        holder.pendingSelectedID = f.id(u"A"_s);
        selectPending(holder, f.selection, f.store);
        f.selection.setSelectedNoteID(f.id(u"b"_s));
        selectPending(holder, f.selection, f.store);
        QVERIFY(f.selection.selectedNoteID() == f.id(u"b"_s));
    }

    void theListShowsIt()
    {
        NoteListFixture f(u"A b"_s);
        const ContentController content(f.store, f.selection);
        WindowHolder holder;
        holder.pendingSelectedID = f.id(u"b"_s);
        selectPending(holder, f.selection, f.store);
        QCOMPARE(content.selectedRow(), 0);
        QVERIFY(content.hasEditedNote());
        QVERIFY(content.isEditorWanted());
    }

    void thereIsOneHolderForAll()
    {
        QCOMPARE(&WindowHolder::shared(), &WindowHolder::shared());
        QVERIFY(!WindowHolder::shared().window);
        QVERIFY(!WindowHolder::shared().pendingSelectedID);
    }

    void theHolderLetsGoOfAClosedWindow()
    {
        WindowHolder holder;
        {
            QWindow window;
            holder.window = &window;
            QCOMPARE(holder.window.data(), &window);
        }
        QVERIFY(!holder.window);
    }
};

QTEST_MAIN(TestPendingSelection)
#include "tst_pending_selection.moc"
