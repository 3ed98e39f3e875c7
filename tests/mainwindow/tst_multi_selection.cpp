#include "mainwindow/MultiSelection.h"

#include <QSignalSpy>
#include <QTest>

class TestMultiSelection : public QObject
{
    Q_OBJECT

    const QUuid m_first = QUuid::createUuid();
    const QUuid m_second = QUuid::createUuid();

private Q_SLOTS:
    void atFirstNothingIsTicked()
    {
        const MultiSelection selection;
        QVERIFY(!selection.isSelectionMode());
        QCOMPARE(selection.selectedIDs().count(), 0);
    }

    void theModeIsAnnouncedWhenItIsTheOther()
    {
        MultiSelection selection;
        QSignalSpy mode(&selection, &MultiSelection::isSelectionModeChanged);
        QSignalSpy ticked(&selection, &MultiSelection::selectedIDsChanged);
        const struct {
            bool isSelectionMode;
            int changes;
        } steps[] = {{false, 0}, {true, 1}, {true, 1}, {false, 2}, {false, 2}};
        for (const auto &[isSelectionMode, changes] : steps) {
            selection.setIsSelectionMode(isSelectionMode);
            QCOMPARE(selection.isSelectionMode(), isSelectionMode);
            QCOMPARE(mode.count(), changes);
        }
        QCOMPARE(ticked.count(), 0); // nothing was ticked, so nothing was unticked
    }

    void aNoteIsTickedAndUnticked()
    {
        MultiSelection selection;
        QSignalSpy ticked(&selection, &MultiSelection::selectedIDsChanged);
        selection.toggleSelection(m_first);
        selection.toggleSelection(m_second);
        QCOMPARE(selection.selectedIDs().ids, (QSet<QUuid>{m_first, m_second}));
        selection.toggleSelection(m_first);
        QCOMPARE(selection.selectedIDs().ids, QSet<QUuid>{m_second});
        QVERIFY(selection.selectedIDs().contains(m_second));
        QVERIFY(!selection.selectedIDs().contains(m_first));
        QCOMPARE(ticked.count(), 3);
    }

    void theTickedNotesAreAnnouncedWhenTheyAreOthers()
    {
        MultiSelection selection;
        QSignalSpy ticked(&selection, &MultiSelection::selectedIDsChanged);
        selection.setSelectedIDs({});
        QCOMPARE(ticked.count(), 0);
        selection.setSelectedIDs({{m_first, m_second}});
        selection.setSelectedIDs({{m_second, m_first}});
        QCOMPARE(ticked.count(), 1);
        selection.setSelectedIDs({{m_first}});
        QCOMPARE(ticked.count(), 2);
    }

    void beginningKeepsWhatIsTicked()
    {
        MultiSelection selection;
        selection.setSelectedIDs({{m_first}});
        selection.setIsSelectionMode(true);
        QCOMPARE(selection.selectedIDs().count(), 1);
    }

    void endingUnticksEverything()
    {
        MultiSelection selection;
        selection.setIsSelectionMode(true);
        selection.setSelectedIDs({{m_first, m_second}});
        QSignalSpy mode(&selection, &MultiSelection::isSelectionModeChanged);
        QSignalSpy ticked(&selection, &MultiSelection::selectedIDsChanged);
        int stillTicked = -1;
        connect(&selection, &MultiSelection::isSelectionModeChanged, this,
                [&] { stillTicked = selection.selectedIDs().count(); });
        selection.end();
        QVERIFY(!selection.isSelectionMode());
        QCOMPARE(selection.selectedIDs().count(), 0);
        QCOMPARE(stillTicked, 0); // who hears of the end finds nothing ticked
        QCOMPARE(mode.count(), 1);
        QCOMPARE(ticked.count(), 1);
        selection.end();
        QCOMPARE(mode.count(), 1);
    }
};

QTEST_GUILESS_MAIN(TestMultiSelection)
#include "tst_multi_selection.moc"
