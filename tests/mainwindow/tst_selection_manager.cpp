#include "mainwindow/SelectionManager.h"

#include <QSignalSpy>
#include <QTest>

class TestSelectionManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void atFirstNoNoteAndTheNotes()
    {
        const SelectionManager selection(nullptr);
        QVERIFY(!selection.selectedNoteID());
        QVERIFY(selection.selectedTab() == SidebarTab::Notes);
        QCOMPARE(selection.property("selectedNoteID").toUuid(), QUuid());
    }

    void aNoteIsAnnouncedWhenItIsAnotherOne()
    {
        SelectionManager selection(nullptr);
        QSignalSpy noteChanged(&selection, &SelectionManager::selectedNoteIDChanged);
        QSignalSpy tabChanged(&selection, &SelectionManager::selectedTabChanged);
        const QUuid first = QUuid::createUuid();
        const QUuid second = QUuid::createUuid();
        const struct {
            std::optional<QUuid> id;
            int changes;
        } steps[] = {{std::nullopt, 0}, {first, 1},        {first, 1}, {second, 2},
                     {std::nullopt, 3}, {std::nullopt, 3}, {first, 4}};
        for (const auto &[id, changes] : steps) {
            selection.setSelectedNoteID(id);
            QVERIFY(selection.selectedNoteID() == id);
            QCOMPARE(selection.property("selectedNoteID").toUuid(), id.value_or(QUuid()));
            QCOMPARE(noteChanged.count(), changes);
        }
        QCOMPARE(tabChanged.count(), 0);
    }

    void aTabIsAnnouncedWhenItIsTheOther()
    {
        SelectionManager selection(nullptr);
        selection.setSelectedNoteID(QUuid::createUuid());
        QSignalSpy noteChanged(&selection, &SelectionManager::selectedNoteIDChanged);
        QSignalSpy tabChanged(&selection, &SelectionManager::selectedTabChanged);
        selection.setSelectedTab(SidebarTab::Notes);
        QCOMPARE(tabChanged.count(), 0);
        selection.setSelectedTab(SidebarTab::Archive);
        selection.setSelectedTab(SidebarTab::Archive);
        QCOMPARE(tabChanged.count(), 1);
        QVERIFY(selection.selectedTab() == SidebarTab::Archive);
        selection.setSelectedTab(SidebarTab::Notes);
        QCOMPARE(tabChanged.count(), 2);
        QCOMPARE(noteChanged.count(), 0);
        QVERIFY(selection.selectedNoteID());
    }

    void thereIsOneForAll()
    {
        QCOMPARE(SelectionManager::create(nullptr, nullptr), &SelectionManager::shared());
    }
};

QTEST_MAIN(TestSelectionManager)
#include "tst_selection_manager.moc"
