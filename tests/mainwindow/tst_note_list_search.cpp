#include "mainwindow/NoteListModel.h"

#include "shell/L10n.h"
#include "tests/Patience.h"
#include "tests/core/Duration.h"
#include "tests/mainwindow/ModelSpy.h"
#include "tests/mainwindow/NoteListFixture.h"

#include <QAbstractItemModelTester>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
Note noteOf(const QString &body, const QString &title = {})
{
    Note note = Note::fresh({1000});
    note.title = title;
    note.body = body;
    return note;
}

struct Fixture : NoteListFixture {
    explicit Fixture(const QString &words = {}) : NoteListFixture(words) {}
    explicit Fixture(const NoteArray &notes) { store.setNotes(notes); }

    void search(const QString &text)
    {
        model.setSearchText(text);
        QTRY_VERIFY(model.isSearchComplete());
    }
    /// Until the edits' texts are there.
    void settle() const { QTRY_VERIFY(model.isSearchComplete()); }
    void edit(const QString &heading, const QString &newHeading)
    {
        Note note = *store.note(id(heading));
        note.body = noteNamed(newHeading).body;
        store.updateNote(note);
    }
    [[nodiscard]] QString text(int row, NoteListModel::Role role) const
    {
        return model.index(row).data(role).toString();
    }

    NoteListModel model{store, selection};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

NoteArray manyNotes(int count)
{
    NoteArray notes;
    for (int i = 0; i < count; ++i)
        notes.append(noteNamed(u"note%1 %2"_s.arg(i).arg(i % 2 == 0 ? u"even"_s : u"odd"_s)));
    return notes;
}

QStringList only(const QStringList &told, const QString &beginning)
{
    return told.filter(QRegularExpression(u'^' + beginning));
}
} // namespace

class TestNoteListSearch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void whatIsFound_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("found");
        QTest::newRow("no search") << u""_s << u"Plan Tea Empty Żółw Tags"_s;
        QTest::newRow("only spaces") << u"  \n "_s << u"Plan Tea Empty Żółw Tags"_s;
        QTest::newRow("space around") << u" Milk "_s << u"Tea"_s;
        QTest::newRow("capitals") << u"mILK"_s << u"Tea"_s;
        QTest::newRow("a heading") << u"plan"_s << u"Plan"_s;
        QTest::newRow("a stale title") << u"stale"_s << u""_s;
        QTest::newRow("a title without a heading") << u"empt"_s << u"Empty"_s;
        QTest::newRow("a preview") << u"the week"_s << u"Plan"_s;
        QTest::newRow("only the body") << u"hidden"_s << u"Plan"_s;
        QTest::newRow("several") << u"e"_s << u"Plan Tea Empty Tags"_s;
        QTest::newRow("in the order of the store") << u"a"_s << u"Plan Tea Tags"_s;
        QTest::newRow("the placeholder") << u"no content"_s << u"Empty"_s;
        QTest::newRow("the placeholder of another language") << u"brak"_s << u""_s;
        QTest::newRow("the placeholder of a title") << u"untitled"_s << u""_s;
        QTest::newRow("accents") << u"ŻÓŁW"_s << u"Żółw"_s;
        QTest::newRow("no accents") << u"zolw"_s << u""_s;
        QTest::newRow("emoji") << u"🐢"_s << u"Żółw"_s;
        QTest::newRow("right to left") << u"שלום"_s << u"Żółw"_s;
        QTest::newRow("words apart") << u"milk week"_s << u""_s;
        QTest::newRow("inside markup") << u"secret"_s << u""_s;
        QTest::newRow("a tag") << u"<b>"_s << u"Tags"_s;
        QTest::newRow("a reference's character") << u"&"_s << u"Tags"_s;
        QTest::newRow("a pattern") << u".*"_s << u"Tags"_s;
        QTest::newRow("the other tab") << u"archived"_s << u""_s;
        QTest::newRow("nothing") << u"xyzzy"_s << u""_s;
    }
    void whatIsFound()
    {
        QFETCH(QString, typed);
        Note archived = noteNamed(u"Archived"_s, true);
        const QString filler = u"word "_s.repeated(30);
        Fixture f(NoteArray{
            noteOf(u"<h1>Plan</h1><p>of the week %1 hidden</p>"_s.arg(filler), u"Stale"_s),
            noteOf(u"<h1>Tea</h1><p>with <b class=\"secret\">milk</b></p>"_s), archived,
            noteOf(u""_s, u"Empty"_s), noteOf(u"<h1>Żółw</h1><p>🐢 i שלום</p>"_s),
            noteOf(u"<h1>Tags</h1><p>&lt;b&gt; &amp; .* end</p>"_s)});
        f.search(typed);
        QTEST(headings(f.model), "found");
        QCOMPARE(f.model.noteIDs().size(), f.model.rowCount());
        QCOMPARE(f.model.isSearching(), !typed.trimmed().isEmpty());
        f.search(u""_s);
        QCOMPARE(headings(f.model), u"Plan Tea Empty Żółw Tags"_s);
    }

    void theTextIsKeptAsItWasTyped()
    {
        Fixture f(u"Milk Tea"_s);
        QSignalSpy textChanged(&f.model, &NoteListModel::searchTextChanged);
        QSignalSpy searching(&f.model, &NoteListModel::isSearchingChanged);
        f.search(u"milk"_s);
        QCOMPARE(textChanged.count(), 1);
        QCOMPARE(searching.count(), 1);
        const ModelSpy spy(f.model);
        f.model.setSearchText(u"milk "_s);
        QCOMPARE(f.model.searchText(), u"milk "_s);
        QCOMPARE(textChanged.count(), 2);
        f.model.setSearchText(u"milk "_s);
        QCOMPARE(textChanged.count(), 2);
        QCOMPARE(searching.count(), 1);
        QCOMPARE(spy.told, QStringList()); // the same search
        f.model.setSearchText(u" "_s);
        QCOMPARE(searching.count(), 2);
    }

    void aTabKeepsTheSearch()
    {
        Fixture f(u"Alpha alpine Beta best"_s);
        f.search(u"al"_s);
        QCOMPARE(headings(f.model), u"Alpha"_s);
        f.selection.setSelectedTab(SidebarTab::Archive);
        f.settle();
        QCOMPARE(headings(f.model), u"alpine"_s);
        QCOMPARE(f.model.searchText(), u"al"_s);
        f.search(u"be"_s);
        QCOMPARE(headings(f.model), u"best"_s);
    }

    void anEmptyTabStaysEmpty()
    {
        Fixture f(u"a b"_s);
        for (const QString &typed : {u""_s, u"a"_s, u"no content"_s}) {
            f.search(typed);
            QCOMPARE(f.model.rowCount(), 0);
            QVERIFY(f.model.isSearchComplete());
        }
    }

    void thePlaceholderIsFoundInTheCurrentLanguage()
    {
        Fixture f(NoteArray{noteOf(u"<h1>Bare</h1>"_s), noteOf(u"<h1>A</h1><p>brak</p>"_s)});
        f.search(u"Brak"_s);
        QCOMPARE(headings(f.model), u"A"_s);
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QCOMPARE(headings(f.model), u"Bare A"_s);
        LanguageManager::shared().setLanguage(AppLanguage::en);
        QCOMPARE(headings(f.model), u"A"_s);
    }

    void hitsAreMarked()
    {
        Fixture f(NoteArray{noteOf(u"<h1>Fish &amp; Tea</h1><p>for two</p>"_s),
                            noteOf(u"<h1>Cup</h1><p>of &lt;tea&gt;</p>"_s), noteOf(u""_s),
                            noteOf(u"<p>%1 tea</p>"_s.arg(u"word "_s.repeated(30)), u"Long"_s)});
        f.search(u"TEA"_s);
        QCOMPARE(headings(f.model), u"Fish & Tea Cup Long"_s);
        QCOMPARE(f.text(0, NoteListModel::TitleMarkupRole),
                 u"Fish &amp; <font color=\"#ffd66b\"><b>Tea</b></font>"_s);
        QCOMPARE(f.text(0, NoteListModel::PreviewMarkupRole), QString());
        QCOMPARE(f.text(1, NoteListModel::TitleMarkupRole), QString());
        QCOMPARE(f.text(1, NoteListModel::PreviewMarkupRole),
                 u"of &lt;<font color=\"#ffd66b\"><b>tea</b></font>&gt;"_s);
        QCOMPARE(f.text(2, NoteListModel::TitleMarkupRole), QString());
        QCOMPARE(f.text(2, NoteListModel::PreviewMarkupRole), QString());
        f.search(u"t"_s); // also of "Untitled", where nothing is looked for
        QCOMPARE(f.model.rowCount(), 4);
        QCOMPARE(f.text(2, NoteListModel::TitleRole), u"Untitled"_s);
        QCOMPARE(f.text(2, NoteListModel::TitleMarkupRole), QString());
        QVERIFY(f.text(2, NoteListModel::PreviewMarkupRole).startsWith(u"No con<font"_s));
    }

    void marksChangeWithTheirColourAndTheSearch()
    {
        Fixture f(u"Tea"_s);
        QSignalSpy colorChanged(&f.model, &NoteListModel::hitColorChanged);
        QSignalSpy changed(&f.model, &NoteListModel::dataChanged);
        const QList<int> markups{NoteListModel::TitleMarkupRole, NoteListModel::PreviewMarkupRole};
        f.model.setHitColor(QColor(u"#123456"_s));
        QCOMPARE(colorChanged.count(), 1);
        QCOMPARE(changed.count(), 0);
        f.search(u"te"_s);
        QVERIFY(f.text(0, NoteListModel::TitleMarkupRole).contains(u"#123456"_s));
        changed.clear();
        f.model.setHitColor(QColor(u"#654321"_s));
        f.model.setHitColor(QColor(u"#654321"_s));
        QCOMPARE(colorChanged.count(), 2);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed[0][2].value<QList<int>>(), markups);
        f.search(u"tea"_s);
        QCOMPARE(changed.count(), 2);
        QCOMPARE(changed[1][2].value<QList<int>>(), markups);
        f.search(u""_s);
        QCOMPARE(changed.count(), 3);
        QCOMPARE(f.text(0, NoteListModel::TitleMarkupRole), QString());
    }

    void aSearchSaysExactlyWhatChanged()
    {
        Fixture f(u"Ab Ac Bb Bc x Ad"_s);
        f.search(u"b"_s); // every preview has one: "about"
        f.search(u""_s);
        const ModelSpy spy(f.model);
        f.search(u"about b"_s);
        QCOMPARE(headings(f.model), u"Bb Bc"_s);
        QCOMPARE(only(spy.told, u"remove|insert|reset|layout"_s),
                 (QStringList{u"remove 4-4"_s, u"remove 0-1"_s}));
        f.search(u"about"_s);
        QCOMPARE(headings(f.model), u"Ab Ac Bb Bc Ad"_s);
        QCOMPARE(only(spy.told, u"insert"_s), (QStringList{u"insert 0-1"_s, u"insert 4-4"_s}));
        QVERIFY(only(spy.told, u"reset|layout"_s).isEmpty());
    }

    void anEditedNoteEntersAndLeaves()
    {
        Fixture f(u"Tea Milk Team Rest"_s);
        f.search(u"tea"_s);
        QCOMPARE(headings(f.model), u"Tea Team"_s);
        const ModelSpy spy(f.model);
        f.edit(u"Milk"_s, u"Teapot"_s);
        f.settle();
        QCOMPARE(headings(f.model), u"Tea Teapot Team"_s);
        f.edit(u"Tea"_s, u"Coffee"_s);
        f.settle();
        QCOMPARE(headings(f.model), u"Teapot Team"_s);
        f.edit(u"Team"_s, u"Steam"_s);
        f.settle();
        QCOMPARE(headings(f.model), u"Teapot Steam"_s);
        f.edit(u"Rest"_s, u"Nothing"_s);
        f.settle();
        // A row that leaves has changed first: what is found in it is known a moment later.
        QCOMPARE(spy.told,
                 (QStringList{u"insert 1-1"_s, u"change 0-0"_s, u"remove 0-0"_s, u"change 1-1"_s}));
    }

    void operationsOnFoundNotes()
    {
        Fixture f(u"Tea Milk Team Rest teal Steam"_s);
        f.search(u"tea"_s);
        QCOMPARE(headings(f.model), u"Tea Team Steam"_s);
        const ModelSpy spy(f.model);
        f.store.moveNote(f.id(u"Steam"_s), f.id(u"Milk"_s));
        QCOMPARE(headings(f.model), u"Tea Steam Team"_s);
        f.store.moveNoteToEnd(f.id(u"Milk"_s));
        f.store.moveNoteToEnd(f.id(u"Tea"_s));
        QCOMPARE(headings(f.model), u"Steam Team Tea"_s);
        f.store.setArchived(true, {f.id(u"Steam"_s)});
        f.store.setArchived(true, {f.id(u"Rest"_s)});
        f.store.setArchived(false, {f.id(u"teal"_s)});
        f.settle();
        QCOMPARE(headings(f.model), u"Team teal Tea"_s);
        f.store.deleteNote(f.id(u"Team"_s));
        f.store.deleteNote(f.id(u"Milk"_s));
        QCOMPARE(headings(f.model), u"teal Tea"_s);
        const QUuid fresh = f.store.addNote();
        f.settle();
        QCOMPARE(f.model.rowOf(fresh), -1);
        QCOMPARE(spy.told, (QStringList{u"move 2-2 to 1"_s, u"move 0-0 to 3"_s, u"remove 0-0"_s,
                                        u"insert 1-1"_s, u"remove 0-0"_s}));
        f.store.setNotes(notesOf(u"Teak Oak"_s));
        f.settle();
        QCOMPARE(headings(f.model), u"Teak"_s);
    }

    void aSearchBeforeTheTextsAreThereCompletesItself()
    {
        Fixture f(manyNotes(400));
        QSignalSpy complete(&f.model, &NoteListModel::isSearchCompleteChanged);
        QVERIFY(f.model.isSearchComplete());
        f.model.setSearchText(u"odd"_s);
        QVERIFY(!f.model.isSearchComplete());
        QCOMPARE(f.model.rowCount(), 0);
        QCOMPARE(complete.count(), 1);
        const ModelSpy spy(f.model);
        QTRY_VERIFY(f.model.isSearchComplete());
        QCOMPARE(complete.count(), 2);
        QCOMPARE(f.model.rowCount(), 200);
        QVERIFY(only(spy.told, u"remove|reset|layout|move"_s).isEmpty());
        f.model.setSearchText(u"even"_s);
        QVERIFY(f.model.isSearchComplete());
        QCOMPARE(f.model.rowCount(), 200);
        QCOMPARE(complete.count(), 2);
    }

    void aSearchThatEndsEarlyIsComplete()
    {
        Fixture f(manyNotes(400));
        f.model.setSearchText(u"odd"_s);
        QVERIFY(!f.model.isSearchComplete());
        f.model.setSearchText(u""_s);
        QVERIFY(f.model.isSearchComplete());
        QCOMPARE(f.model.rowCount(), 400);
        f.model.setSearchText(u"odd"_s);
        f.selection.setSelectedTab(SidebarTab::Archive); // empty
        QVERIFY(f.model.isSearchComplete());
    }

    // Every other row of many: the first runs stay exact, so that a view keeps what it shows.
    void aKeystrokeThatPicksHereAndThereIsNoReset()
    {
        Fixture f(manyNotes(2000));
        f.search(u"note"_s);
        QCOMPARE(f.model.rowCount(), 2000);
        const QPersistentModelIndex first = f.model.index(0);
        const ModelSpy spy(f.model);
        f.search(u"even"_s);
        QCOMPARE(f.model.rowCount(), 1000);
        QVERIFY(only(spy.told, u"reset|layout"_s).isEmpty());
        QVERIFY2(spy.told.size() < 100, qPrintable(QString::number(spy.told.size())));
        QVERIFY(first.isValid());
        f.search(u"note"_s);
        QCOMPARE(f.model.rowCount(), 2000);
        QVERIFY(only(spy.told, u"reset|layout"_s).isEmpty());
        for (int row = 0; row < f.model.rowCount(); ++row)
            QCOMPARE(f.model.noteIDs().at(row), f.store.notes()[row].id);
    }

    void aListWithAnIdTwiceIsSearched()
    {
        NoteArray notes = notesOf(u"Tea Milk"_s);
        Note twin = notes[0];
        twin.body = noteNamed(u"Milk2"_s).body;
        notes.append(twin);
        Fixture f(notes);
        f.search(u"tea"_s);
        QCOMPARE(headings(f.model), u"Tea Tea"_s); // the store knows the first by its id
        f.search(u"milk"_s);
        QCOMPARE(headings(f.model), u"Milk"_s);
        f.store.deleteNote(twin.id);
        f.settle();
        QCOMPARE(headings(f.model), u"Milk Milk2"_s);
    }

    void theEndMayComeAmidASearch()
    {
        NoteListFixture f;
        f.store.setNotes(manyNotes(500));
        for (int round = 0; round < 10; ++round) {
            NoteListModel model(f.store, f.selection);
            model.setSearchText(u"odd"_s);
            QSignalSpy inserted(&model, &NoteListModel::rowsInserted);
            if (round % 2 == 0)
                QVERIFY(inserted.wait(longEnough));
        }
    }
};

QTEST_MAIN(TestNoteListSearch)
#include "tst_note_list_search.moc"
