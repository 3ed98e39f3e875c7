#include "core/NoteEditing.h"

#include "core/NoteStore.h"
#include "tests/core/DataDirectory.h"

#include <QSignalSpy>
#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;

namespace
{
using Edit = std::function<bool(NoteStore &, const QUuid &)>;

/// Two notes of the time 1000, edited at 2000.
struct Fixture {
    Fixture()
    {
        NoteArray notes;
        for (int i = 0; i < 2; ++i) {
            Note note = Note::fresh({1000});
            note.body = u"<p>milk</p>"_s;
            note.color = u"blue"_s;
            notes.append(note);
        }
        store.setNotes(notes);
        before = store.notes();
    }
    [[nodiscard]] QUuid id() const { return before[1].id; }

    DataDirectory data;
    NoteStore store{data.path(), [] { return Timestamp{2000}; }};
    NoteArray before;
};
} // namespace

Q_DECLARE_METATYPE(Edit)

class TestNoteEditing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void oneThingIsChangedAndTheRestIsKept_data()
    {
        QTest::addColumn<Edit>("edit");
        QTest::addColumn<QString>("body");
        QTest::addColumn<QString>("color");
        QTest::addColumn<QString>("size");
        const auto body = [](const QString &html) {
            return Edit(
                [=](NoteStore &store, const QUuid &id) { return storeBody(store, id, html); });
        };
        const auto color = [](const QString &raw) {
            return Edit(
                [=](NoteStore &store, const QUuid &id) { return storeColor(store, id, raw); });
        };
        const auto size = [](const QString &raw) {
            return Edit(
                [=](NoteStore &store, const QUuid &id) { return storeTextSize(store, id, raw); });
        };
        const QString milk = u"<p>milk</p>"_s;
        const QString medium = rawValue(NoteTextSize::medium);
        QTest::newRow("words") << body(u"<p>tea</p>"_s) << u"<p>tea</p>"_s << u"blue"_s << medium;
        QTest::newRow("no words") << body({}) << QString() << u"blue"_s << medium;
        QTest::newRow("the same words") << body(milk) << milk << u"blue"_s << medium;
        QTest::newRow("colour") << color(u"red"_s) << milk << u"red"_s << medium;
        QTest::newRow("the same colour") << color(u"blue"_s) << milk << u"blue"_s << medium;
        const QString big = rawValue(NoteTextSize::big);
        QTest::newRow("size") << size(big) << milk << u"blue"_s << big;
        QTest::newRow("the same size") << size(medium) << milk << u"blue"_s << medium;
    }
    void oneThingIsChangedAndTheRestIsKept()
    {
        QFETCH(Edit, edit);
        Fixture f;
        QSignalSpy changed(&f.store, &NoteStore::notesChanged);
        QVERIFY(edit(f.store, f.id()));
        QCOMPARE(changed.size(), 1);
        const Note &note = f.store.notes()[1];
        QTEST(note.body, "body");
        QTEST(note.color, "color");
        QTEST(rawValue(note.textSize), "size");
        QCOMPARE(note.updatedAt, Timestamp{2000});
        QCOMPARE(note.createdAt, f.before[1].createdAt);
        QCOMPARE(f.store.notes()[0], f.before[0]);
    }

    void whatCannotBeStoredChangesNothing_data()
    {
        QTest::addColumn<Edit>("edit");
        const auto row = [](const char *name, const Edit &edit) { QTest::newRow(name) << edit; };
        const auto stranger = QUuid::createUuid();
        row("words of no note", [=](NoteStore &store, const QUuid &) {
            return storeBody(store, stranger, u"<p>tea</p>"_s);
        });
        row("colour of no note",
            [=](NoteStore &store, const QUuid &) { return storeColor(store, stranger, u"red"_s); });
        row("size of no note", [=](NoteStore &store, const QUuid &) {
            return storeTextSize(store, stranger, rawValue(NoteTextSize::big));
        });
        for (const QString &text : QStringList{u""_s, u"pink"_s, u"Red"_s})
            row(qPrintable(u"colour '"_s + text + u'\''),
                [=](NoteStore &store, const QUuid &id) { return storeColor(store, id, text); });
        for (const QString &text : QStringList{u""_s, u"huge"_s, u"17"_s})
            row(qPrintable(u"size '"_s + text + u'\''),
                [=](NoteStore &store, const QUuid &id) { return storeTextSize(store, id, text); });
    }
    void whatCannotBeStoredChangesNothing()
    {
        QFETCH(Edit, edit);
        Fixture f;
        QSignalSpy changed(&f.store, &NoteStore::notesChanged);
        QVERIFY(!edit(f.store, f.id()));
        QCOMPARE(changed.size(), 0);
        QCOMPARE(f.store.notes(), f.before);
    }
};

QTEST_GUILESS_MAIN(TestNoteEditing)
#include "tst_note_editing.moc"
