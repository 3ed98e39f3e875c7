#include "mainwindow/DragOverlayManager.h"

#include "core/NoteColor.h"
#include "tests/mainwindow/NoteListFixture.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
struct Fixture {
    ThrowAwayHome home;
    DragOverlayManager manager{nullptr};
    QSignalSpy shown{&manager, &DragOverlayManager::isShownChanged};
    QSignalSpy card{&manager, &DragOverlayManager::cardChanged};
    QSignalSpy corner{&manager, &DragOverlayManager::cornerChanged};
};
} // namespace

class TestDragOverlayManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { LanguageManager::shared().setLanguage(AppLanguage::en); }

    void atFirstThereIsNoCard()
    {
        Fixture f;
        QVERIFY(!f.manager.isShown());
        QVERIFY(!f.manager.isWanted());
        QVERIFY(!f.manager.currentNoteID());
        f.manager.hide();
        QCOMPARE(f.shown.count(), 0);
    }

    void theCardIsTheNotes()
    {
        Fixture f;
        Note note = noteNamed(u"Milk"_s);
        note.color = rawValue(NoteColor::blue);
        f.manager.show(note, 412);
        QVERIFY(f.manager.isShown());
        QVERIFY(f.manager.isWanted());
        QVERIFY(f.manager.currentNoteID() == note.id);
        QCOMPARE(f.manager.title(), u"Milk"_s);
        QCOMPARE(f.manager.color(), displayColor(NoteColor::blue));
        QCOMPARE(f.manager.width(), 412.0);
        QCOMPARE(f.shown.count(), 1);
        QCOMPARE(f.card.count(), 1);
    }

    void anUnknownColorIsDrawnAsItsRowIs()
    {
        Fixture f;
        Note note = noteNamed(u"Milk"_s);
        note.color = u"pink"_s;
        f.manager.show(note, 400);
        QCOMPARE(f.manager.color(), displayNoteColor(u"pink"));
    }

    void hidingKeepsTheCard()
    {
        Fixture f;
        const Note note = noteNamed(u"Milk"_s);
        f.manager.show(note, 400);
        f.manager.hide();
        f.manager.hide();
        QVERIFY(!f.manager.isShown());
        QVERIFY(f.manager.isWanted());
        QVERIFY(f.manager.currentNoteID() == note.id);
        QCOMPARE(f.manager.title(), u"Milk"_s);
        QCOMPARE(f.shown.count(), 2);
    }

    void theSameNoteAgainKeepsTheCard()
    {
        Fixture f;
        const Note note = noteNamed(u"Milk"_s);
        f.manager.show(note, 400);
        f.manager.show(note, 400);
        f.manager.hide();
        f.manager.show(note, 400);
        QCOMPARE(f.card.count(), 1);
        QCOMPARE(f.shown.count(), 3);
    }

    void anotherCardIsTold_data()
    {
        QTest::addColumn<QString>("heading");
        QTest::addColumn<QString>("color");
        QTest::addColumn<qreal>("width");
        QTest::addColumn<bool>("isSameNote");
        QTest::newRow("another note") << u"Milk"_s << u"YELLOW"_s << 400.0 << false;
        QTest::newRow("another heading") << u"Bread"_s << u"YELLOW"_s << 400.0 << true;
        QTest::newRow("another colour") << u"Milk"_s << rawValue(NoteColor::red) << 400.0 << true;
        QTest::newRow("another width") << u"Milk"_s << u"YELLOW"_s << 500.0 << true;
    }
    void anotherCardIsTold()
    {
        QFETCH(QString, heading);
        QFETCH(QString, color);
        QFETCH(qreal, width);
        QFETCH(bool, isSameNote);
        Fixture f;
        Note note = noteNamed(u"Milk"_s);
        note.color = u"YELLOW"_s;
        f.manager.show(note, 400);
        f.manager.hide();
        Note other = noteNamed(heading);
        other.color = color;
        if (isSameNote)
            other.id = note.id;
        f.manager.show(other, width);
        QCOMPARE(f.card.count(), 2);
        QVERIFY(f.manager.currentNoteID() == other.id);
        QCOMPARE(f.manager.title(), heading);
        QCOMPARE(f.manager.width(), width);
    }

    void aNoteWithoutHeadingIsUntitledInEveryLanguage()
    {
        Fixture f;
        Note note = Note::fresh({1000});
        note.body = u"<h1><br></h1><p>words</p>"_s;
        f.manager.show(note, 400);
        QCOMPARE(f.manager.title(), u"Untitled"_s);
        f.card.clear();
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QCOMPARE(f.card.count(), 1);
        QCOMPARE(f.manager.title(), u"Bez tytułu"_s);
    }

    void theCornerIsAnnouncedWhenItMoves()
    {
        Fixture f;
        f.manager.setCorner({0, 0});
        QCOMPARE(f.corner.count(), 0);
        f.manager.setCorner({-30, 12.5});
        f.manager.setCorner({-30, 12.5});
        QCOMPARE(f.manager.corner(), QPointF(-30, 12.5));
        QCOMPARE(f.corner.count(), 1);
        QCOMPARE(f.card.count(), 0);
    }

    void thereIsOneForAll()
    {
        QCOMPARE(DragOverlayManager::create(nullptr, nullptr), &DragOverlayManager::shared());
    }
};

QTEST_GUILESS_MAIN(TestDragOverlayManager)
#include "tst_drag_overlay_manager.moc"
