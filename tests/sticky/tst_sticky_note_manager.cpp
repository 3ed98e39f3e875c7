#include "sticky/StickyNoteManager.h"

#include <QSignalSpy>
#include <QTest>

namespace
{
/// Has the notes out that it is told to have.
class Manager : public StickyNoteManager
{
public:
    Manager() : StickyNoteManager(nullptr) {}
    using StickyNoteManager::setActiveNoteIDs;
};
} // namespace

class TestStickyNoteManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theNotesThatAreOutAreAnnouncedWhenTheyAreOthers()
    {
        Manager manager;
        QSignalSpy changed(&manager, &StickyNoteManager::activeNoteIDsChanged);
        const QUuid first = QUuid::createUuid();
        const QUuid second = QUuid::createUuid();
        QCOMPARE(manager.activeNoteIDs().count(), 0);
        manager.setActiveNoteIDs({});
        QCOMPARE(changed.count(), 0);
        manager.setActiveNoteIDs({{first, second}});
        manager.setActiveNoteIDs({{second, first}});
        QCOMPARE(changed.count(), 1);
        QVERIFY(manager.activeNoteIDs().contains(first));
        manager.setActiveNoteIDs({{second}});
        QCOMPARE(changed.count(), 2);
        QVERIFY(!manager.activeNoteIDs().contains(first));
    }

    void thereIsOneForAll()
    {
        QCOMPARE(StickyNoteManager::create(nullptr, nullptr), &StickyNoteManager::shared());
    }
};

QTEST_GUILESS_MAIN(TestStickyNoteManager)
#include "tst_sticky_note_manager.moc"
