#include "core/NoteStore.h"

#include "tests/core/Duration.h"
#include "tests/core/NoteStoreFixture.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace
{
using Fixture = NoteStoreFixture;

class ChangeSpy : public QObject
{
public:
    explicit ChangeSpy(const NoteStore &store)
    {
        connect(&store, &NoteStore::notesChanged, this,
                [this](const NotesChange &change) { changes.push_back(change); });
    }
    std::vector<NotesChange> changes;
};
} // namespace

// The notes and what is done to them; tst_note_store_saving has the disk.
class TestNoteStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void newNotesComeFirst()
    {
        Fixture f(1);
        f.now = {2000};
        const ChangeSpy spy(f.store);
        const QUuid first = f.store.addNote();
        const QUuid second = f.store.addNote();
        QCOMPARE(f.store.notes().size(), 3);
        QCOMPARE(f.id(0), second);
        QCOMPARE(f.id(1), first);
        QCOMPARE(f.store.notes()[0].body, u"<h1><br></h1>"_s);
        QVERIFY(f.store.notes()[0].createdAt == f.now);
        QVERIFY(f.store.notes()[0].updatedAt == f.now);
        QCOMPARE(spy.changes.size(), 2U);
        QVERIFY((spy.changes[1] ==
                 NotesChange{.kind = NotesChange::Kind::Inserted, .ids = {second}, .rows = {0}}));
    }

    void updatingTakesTheValuesAndDatesThem()
    {
        Fixture f;
        const ChangeSpy spy(f.store);
        f.now = {2000};
        Note changed = f.store.notes()[1];
        changed.color = u"pink"_s;
        changed.updatedAt = {5};
        f.store.updateNote(changed);
        changed.updatedAt = f.now;
        QVERIFY(f.store.notes()[1] == changed);
        QVERIFY(f.store.notes()[1].createdAt == loaded);

        f.now = {3000};
        f.store.updateNote(changed);
        QVERIFY(f.store.notes()[1].updatedAt == f.now);
        QCOMPARE(spy.changes.size(), 2U);
        QVERIFY(
            (spy.changes[0] ==
             NotesChange{.kind = NotesChange::Kind::Updated, .ids = {changed.id}, .rows = {1}}));
    }

    void archivingDatesTheNotesNamed()
    {
        Fixture f;
        const ChangeSpy spy(f.store);
        f.now = {2000};
        f.store.setArchived(true, {f.id(0), QUuid::createUuid()});
        QVERIFY(f.store.notes()[0].isArchived);
        QVERIFY(f.store.notes()[0].updatedAt == f.now);
        for (const qsizetype row : {1, 2}) {
            QVERIFY(!f.store.notes()[row].isArchived);
            QVERIFY(f.store.notes()[row].updatedAt == loaded);
        }
        f.store.setArchived(false, {f.id(2), f.id(0)});
        QVERIFY(!f.store.notes()[0].isArchived);
        QCOMPARE(f.order(), u"ABC"_s);
        QCOMPARE(spy.changes.size(), 2U);
        QVERIFY((spy.changes[1] == NotesChange{.kind = NotesChange::Kind::Updated,
                                               .ids = {f.id(0), f.id(2)},
                                               .rows = {0, 2}}));
    }

    void deletingKeepsTheOthersInOrder()
    {
        Fixture f(5);
        const ChangeSpy spy(f.store);
        const QUuid b = f.id(1);
        const QUuid d = f.id(3);
        const QUuid e = f.id(4);
        f.store.deleteNotes({e, b, QUuid::createUuid()});
        QCOMPARE(f.order(), u"ACD"_s);
        f.store.deleteNote(d);
        QCOMPARE(f.order(), u"AC"_s);
        QVERIFY(!f.store.note(d));
        QCOMPARE(spy.changes.size(), 2U);
        QVERIFY((spy.changes[0] ==
                 NotesChange{.kind = NotesChange::Kind::Deleted, .ids = {b, e}, .rows = {1, 4}}));
        QVERIFY((spy.changes[1] ==
                 NotesChange{.kind = NotesChange::Kind::Deleted, .ids = {d}, .rows = {2}}));
    }

    void deletedNotesComeBackWhereTheyWere_data()
    {
        QTest::addColumn<QString>("deleted");
        QTest::addColumn<QString>("meanwhile"); ///< what else happens before they come back
        QTest::addColumn<QString>("order");
        const auto row = [](const char *name, const QString &deleted, const QString &meanwhile,
                            const QString &order) {
            QTest::newRow(name) << deleted << meanwhile << order;
        };
        row("one", u"C"_s, {}, u"ABCDEF"_s);
        row("the first", u"A"_s, {}, u"ABCDEF"_s);
        row("the last", u"F"_s, {}, u"ABCDEF"_s);
        row("several", u"BDE"_s, {}, u"ABCDEF"_s);
        row("the last two", u"EF"_s, {}, u"ABCDEF"_s);
        row("all", u"ABCDEF"_s, {}, u"ABCDEF"_s);
        row("a new note on top", u"BC"_s, u"new"_s, u"+ABCDEF"_s);
        row("the others in another order", u"C"_s, u"D to the end"_s, u"ABEFCD"_s);
        row("the follower is gone as well", u"B"_s, u"delete C"_s, u"ABDEF"_s);
        row("nobody is left", u"ABCDE"_s, u"delete F"_s, u"ABCDE"_s);
    }
    void deletedNotesComeBackWhereTheyWere()
    {
        QFETCH(QString, deleted);
        QFETCH(QString, meanwhile);
        Fixture f(6);
        const auto idOf = [&](QChar heading) { return f.id(f.order().indexOf(heading)); };
        QSet<QUuid> ids;
        for (const QChar heading : deleted)
            ids.insert(idOf(heading));
        const NoteArray before = f.store.notes();
        const QList<PlacedNote> placed = f.store.placedNotes(ids);
        QCOMPARE(placed.size(), deleted.size());
        f.store.deleteNotes(ids);
        QCOMPARE(f.store.notes().size(), before.size() - deleted.size());
        if (meanwhile == "new"_L1) {
            Note note = *f.store.note(f.store.addNote());
            note.body = u"<h1>+</h1>"_s;
            f.store.updateNote(note);
        } else if (meanwhile == "D to the end"_L1) {
            f.store.moveNoteToEnd(idOf(u'D'));
        } else if (meanwhile.startsWith("delete"_L1)) {
            f.store.deleteNote(idOf(meanwhile.back()));
        }
        f.now = {2000};
        const ChangeSpy spy(f.store);
        f.store.reinsertNotes(placed);
        QTEST(f.order(), "order");
        for (const PlacedNote &note : placed)
            QCOMPARE(*f.store.note(note.note.id), note.note); // also its dates
        QCOMPARE(spy.changes.size(), 1U);
        const NotesChange &change = spy.changes.front();
        QCOMPARE(int(change.kind), int(NotesChange::Kind::Inserted));
        QCOMPARE(change.rows.size(), deleted.size());
        for (qsizetype i = 0; i < change.rows.size(); ++i)
            QCOMPARE(f.id(change.rows[i]), change.ids[i]);
    }

    void aNoteThatIsThereIsNotPutBack()
    {
        Fixture f;
        const QList<PlacedNote> placed = f.store.placedNotes({f.id(0), f.id(1)});
        const ChangeSpy spy(f.store);
        f.store.reinsertNotes(placed);
        QCOMPARE(f.order(), u"ABC"_s);
        QVERIFY(spy.changes.empty());
        f.store.deleteNote(f.id(1));
        f.store.reinsertNotes(placed);
        f.store.reinsertNotes(placed);
        QCOMPARE(f.order(), u"ABC"_s);
        QCOMPARE(spy.changes.size(), 2U);
    }

    void moving_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("target");
        QTest::addColumn<QString>("order");
        QTest::addColumn<int>("to");
        QTest::newRow("A before A") << 0 << 0 << u"ABC"_s << -1;
        QTest::newRow("A before B") << 0 << 1 << u"ABC"_s << -1;
        QTest::newRow("A before C") << 0 << 2 << u"BAC"_s << 1;
        QTest::newRow("C before A") << 2 << 0 << u"CAB"_s << 0;
        QTest::newRow("C before B") << 2 << 1 << u"ACB"_s << 1;
        QTest::newRow("A to the end") << 0 << -1 << u"BCA"_s << 2;
        QTest::newRow("C to the end") << 2 << -1 << u"ABC"_s << -1;
    }
    void moving()
    {
        QFETCH(int, from);
        QFETCH(int, target);
        QFETCH(int, to);
        Fixture f;
        f.now = {2000};
        const ChangeSpy spy(f.store);
        const QUuid moved = f.id(from);
        if (target < 0)
            f.store.moveNoteToEnd(moved);
        else
            f.store.moveNote(moved, f.id(target));
        QTEST(f.order(), "order");
        for (const Note &note : f.store.notes())
            QVERIFY(note.updatedAt == loaded);
        QCOMPARE(spy.changes.size(), to < 0 ? 0U : 1U);
        if (to >= 0) {
            QVERIFY((spy.changes[0] == NotesChange{.kind = NotesChange::Kind::Moved,
                                                   .ids = {moved},
                                                   .rows = {},
                                                   .from = from,
                                                   .to = to}));
            QCOMPARE(f.store.indexOf(moved), to);
        }
    }

    void unknownIdsChangeNothing()
    {
        Fixture f;
        const ChangeSpy spy(f.store);
        const NoteArray before = f.store.notes();
        const QUuid unknown = QUuid::createUuid();
        f.store.updateNote(named(u"unknown"_s));
        f.store.setArchived(true, {unknown});
        f.store.setArchived(true, {});
        f.store.deleteNote(unknown);
        f.store.deleteNotes({unknown});
        f.store.deleteNotes({});
        f.store.moveNote(unknown, f.id(0));
        f.store.moveNote(f.id(0), unknown);
        f.store.moveNote(unknown, unknown);
        f.store.moveNoteToEnd(unknown);
        f.store.setNotes(before);
        QVERIFY(f.store.notes() == before);
        QVERIFY(spy.changes.empty());
        QVERIFY(!f.store.note(unknown));
        QCOMPARE(f.store.indexOf(unknown), -1);
    }

    void ofTwoNotesWithOneIdTheFirstIsMeant()
    {
        Fixture f(0);
        Note first = named(u"A"_s);
        Note second = named(u"B"_s);
        second.id = first.id;
        f.store.setNotes({first, named(u"C"_s), second});
        QCOMPARE(f.store.indexOf(first.id), 0);
        first.color = u"red"_s;
        f.store.updateNote(first);
        QCOMPARE(f.store.notes()[2].color, u"yellow"_s);
        f.store.setArchived(true, {first.id});
        QVERIFY(f.store.notes()[0].isArchived && f.store.notes()[2].isArchived);
        f.store.deleteNote(first.id);
        QCOMPARE(f.order(), u"CB"_s);
        f.store.deleteNotes({first.id});
        QCOMPARE(f.order(), u"C"_s);
    }

    void notesAreFoundAfterEveryChange()
    {
        Fixture f(5);
        const auto check = [&] {
            for (qsizetype row = 0; row < f.store.notes().size(); ++row) {
                QCOMPARE(f.store.indexOf(f.id(row)), row);
                QCOMPARE(f.store.note(f.id(row)), &f.store.notes()[row]);
            }
        };
        check();
        f.store.addNote();
        check();
        f.store.moveNote(f.id(0), f.id(3));
        check();
        f.store.deleteNotes({f.id(1), f.id(2)});
        check();
        f.store.updateNote(f.store.notes()[1]);
        check();
        f.store.setNotes({named(u"Z"_s)});
        check();
    }

    void anEditCostsTheSameInALongList()
    {
        const auto edits = [](int count) {
            Fixture f(0);
            NoteArray notes;
            for (int i = 0; i < count; ++i)
                notes.append(named(u"x"_s));
            f.store.setNotes(notes);
            return bestDuration([&] {
                for (int i = 0; i < 3000; ++i) {
                    Note note = *f.store.note(f.id(count / 2));
                    note.body = u"<h1>edited</h1>"_s;
                    f.store.updateNote(note);
                }
            });
        };
        const double few = edits(10);
        const double many = edits(10'000);
        QVERIFY2(many < 10 * few, qPrintable(u"%1 ns, %2 ns"_s.arg(few).arg(many)));
    }

    void theDefaultDirectoryIsThePlatforms()
    {
        QVERIFY(NoteStore::defaultDataDirectory().endsWith(u"/Plim"_s));
        QVERIFY(QDir::isAbsolutePath(NoteStore::defaultDataDirectory()));
    }
};

QTEST_MAIN(TestNoteStore)
#include "tst_note_store.moc"
