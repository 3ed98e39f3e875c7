#include "mainwindow/NoteListModel.h"

#include "core/NoteColor.h"
#include "tests/core/Duration.h"
#include "tests/mainwindow/ModelSpy.h"
#include "tests/mainwindow/NoteListFixture.h"

#include <QAbstractItemModelTester>
#include <QColor>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
struct Fixture : NoteListFixture {
    using NoteListFixture::NoteListFixture;

    NoteListModel model{store, selection};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

using Operation = std::function<void(NoteListFixture &)>;

void edit(NoteListFixture &f, const QString &heading, const QString &newHeading)
{
    Note note = *f.store.note(f.id(heading));
    note.body = noteNamed(newHeading).body;
    f.store.updateNote(note);
}

void setArchived(NoteListFixture &f, bool isArchived, const QStringList &headings)
{
    QSet<QUuid> ids;
    for (const QString &heading : headings)
        ids << f.id(heading);
    f.store.setArchived(isArchived, ids);
}
} // namespace

Q_DECLARE_METATYPE(Operation)

class TestNoteListModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void eachTabHasItsNotesInTheStoresOrder()
    {
        Fixture f(u"A b C d E"_s);
        QCOMPARE(headings(f.model), u"A C E"_s);
        f.selection.setSelectedTab(SidebarTab::Archive);
        QCOMPARE(headings(f.model), u"b d"_s);
        f.selection.setSelectedTab(SidebarTab::Notes);
        QCOMPARE(headings(f.model), u"A C E"_s);
    }

    void aRowHoldsItsNotesTexts()
    {
        Fixture f;
        Note note = Note::fresh({1000});
        note.color = u"green"_s;
        note.body = u"<h1>Fish &amp; chips</h1><p>one <b>two</b></p>"_s;
        f.store.setNotes({note});
        const QModelIndex row = f.model.index(0);
        QCOMPARE(row.data(NoteListModel::NoteIDRole).toUuid(), note.id);
        QCOMPARE(row.data(NoteListModel::TitleRole).toString(), u"Fish & chips"_s);
        QCOMPARE(row.data(Qt::DisplayRole).toString(), u"Fish & chips"_s);
        QCOMPARE(row.data(NoteListModel::PreviewRole).toString(), u"one two"_s);
        QCOMPARE(row.data(NoteListModel::ColorRole).value<QColor>(), displayNoteColor(u"green"_s));
        QCOMPARE(row.data(NoteListModel::ColorNameRole).toString(), u"green"_s);
        QCOMPARE(row.data(NoteListModel::IsArchivedRole), QVariant(false));
        QCOMPARE(row.data(NoteListModel::TitleMarkupRole), QVariant(QString()));
        QCOMPARE(row.data(NoteListModel::PreviewMarkupRole), QVariant(QString()));
        QVERIFY(!row.data(Qt::DecorationRole).isValid());
    }

    void anArchivedNoteOfAnUnknownColour()
    {
        Fixture f(u"a"_s);
        f.selection.setSelectedTab(SidebarTab::Archive);
        Note note = f.store.notes()[0];
        note.color = u"mauve"_s;
        f.store.updateNote(note);
        const QModelIndex row = f.model.index(0);
        QCOMPARE(row.data(NoteListModel::ColorRole).value<QColor>(),
                 displayColor(NoteColor::yellow));
        QCOMPARE(row.data(NoteListModel::ColorNameRole).toString(), u"yellow"_s);
        QCOMPARE(row.data(NoteListModel::IsArchivedRole), QVariant(true));
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QCOMPARE(row.data(NoteListModel::ColorNameRole).toString(), u"żółty"_s);
    }

    void everyRoleHasAName()
    {
        const Fixture f;
        QCOMPARE(f.model.roleNames(),
                 (QHash<int, QByteArray>{{NoteListModel::NoteIDRole, "noteID"},
                                         {NoteListModel::TitleRole, "titleText"},
                                         {NoteListModel::TitleMarkupRole, "titleMarkup"},
                                         {NoteListModel::PreviewRole, "previewText"},
                                         {NoteListModel::PreviewMarkupRole, "previewMarkup"},
                                         {NoteListModel::TimestampRole, "timestampText"},
                                         {NoteListModel::ColorRole, "noteColor"},
                                         {NoteListModel::ColorNameRole, "colorName"},
                                         {NoteListModel::IsArchivedRole, "isArchived"}}));
    }

    void everyNoteHasItsRow()
    {
        Fixture f(u"A b C"_s);
        QCOMPARE(f.model.rowOf(f.id(u"A"_s)), 0);
        QCOMPARE(f.model.rowOf(f.id(u"C"_s)), 1);
        QCOMPARE(f.model.rowOf(f.id(u"b"_s)), -1);
        QCOMPARE(f.model.rowOf(QUuid()), -1);
        f.store.deleteNote(f.id(u"A"_s));
        QCOMPARE(f.model.rowOf(f.id(u"C"_s)), 0);
        QCOMPARE(f.model.noteIDs(), QList{f.id(u"C"_s)});
    }

    // Whoever listens asks for rows while the list is changing.
    void everyNoteHasItsRowAmidAChange()
    {
        Fixture f(u"A B C D E F"_s);
        int asked = 0;
        const auto check = [&] {
            for (int row = 0; row < f.model.rowCount(); ++row, ++asked)
                QCOMPARE(f.model.rowOf(f.model.noteIDs().at(row)), row);
        };
        connect(&f.model, &NoteListModel::rowsRemoved, this, check);
        connect(&f.model, &NoteListModel::rowsInserted, this, check);
        connect(&f.model, &NoteListModel::rowsAboutToBeMoved, this, check);
        connect(&f.model, &NoteListModel::rowsMoved, this, check);
        f.store.deleteNotes({f.id(u"A"_s), f.id(u"C"_s), f.id(u"E"_s)});
        f.store.moveNoteToEnd(f.id(u"B"_s));
        setArchived(f, true, {u"B"_s, u"D"_s});
        f.store.addNote();
        QCOMPARE(asked, 5 + 4 + 3 + 3 + 3 + 2 + 1 + 2);
    }

    void theTimesAreThoseOfTheClock()
    {
        NoteListFixture f(u"A"_s);
        QDateTime now = f.store.notes()[0].updatedAt.toDateTime();
        now.setTime(QTime(23, 30));
        const QString today =
            u"today, "_s + f.store.notes()[0].updatedAt.toDateTime().toString(u"HH:mm"_s);
        NoteListModel model(f.store, f.selection, [&] { return now; });
        const auto time = [&] {
            return model.index(0).data(NoteListModel::TimestampRole).toString();
        };
        QCOMPARE(time(), today);
        QSignalSpy changed(&model, &NoteListModel::dataChanged);
        now = now.addSecs(3600);
        model.checkDay();
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed[0][0].toModelIndex().row(), 0);
        QCOMPARE(changed[0][2].value<QList<int>>(), QList<int>{NoteListModel::TimestampRole});
        QCOMPARE(time(), u"yesterday"_s);
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QCOMPARE(changed.count(), 2);
        QVERIFY(changed[1][2].value<QList<int>>().contains(NoteListModel::TimestampRole));
        QCOMPARE(time(), u"wczoraj"_s);
        now = now.addDays(1);
        model.checkDay();
        QCOMPARE(time(), u"1 sty"_s);
        now = now.addYears(1);
        model.checkDay();
        QCOMPARE(changed.count(), 4);
        QCOMPARE(time(), u"1 sty 01"_s);
    }

    void theListSaysExactlyWhatChanged_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<Operation>("operation");
        QTest::addColumn<QString>("after");
        QTest::addColumn<QStringList>("told");
        const auto row = [](const char *name, const QString &before, const Operation &operation,
                            const QString &after, const QStringList &told) {
            QTest::newRow(name) << before << operation << after << told;
        };

        row("a new note", u"A B"_s, [](auto &f) { f.store.addNote(); }, u"Untitled A B"_s,
            {u"insert 0-0"_s});
        row("an edit", u"A b C"_s, [](auto &f) { edit(f, u"C"_s, u"D"_s); }, u"A D"_s,
            {u"change 1-1"_s});
        row("an edit in the other tab", u"A b C"_s, [](auto &f) { edit(f, u"b"_s, u"x"_s); },
            u"A C"_s, {});
        row("archiving", u"A b C D"_s, [](auto &f) { setArchived(f, true, {u"C"_s}); }, u"A D"_s,
            {u"remove 1-1"_s});
        row("archiving what is archived", u"A b"_s, [](auto &f) { setArchived(f, true, {u"b"_s}); },
            u"A"_s, {});
        row("archiving two", u"A B C D"_s,
            [](auto &f) {
                setArchived(f, true, {u"A"_s, u"C"_s});
            },
            u"B D"_s, {u"remove 2-2"_s, u"remove 0-0"_s});
        row("restoring", u"A b C d"_s, [](auto &f) { setArchived(f, false, {u"b"_s}); }, u"A b C"_s,
            {u"insert 1-1"_s});
        row("restoring neighbours", u"A b c D e"_s,
            [](auto &f) {
                setArchived(f, false, {u"c"_s, u"b"_s});
            },
            u"A b c D"_s, {u"insert 1-2"_s});
        row("archiving neighbours", u"A B c D"_s,
            [](auto &f) {
                setArchived(f, true, {u"A"_s, u"B"_s, u"D"_s});
            },
            u""_s, {u"remove 0-2"_s});
        row("restoring two", u"a B c"_s,
            [](auto &f) {
                setArchived(f, false, {u"c"_s, u"a"_s});
            },
            u"a B c"_s, {u"insert 0-0"_s, u"insert 2-2"_s});
        row("restoring what is there", u"A B"_s, [](auto &f) { setArchived(f, false, {u"B"_s}); },
            u"A B"_s, {u"change 1-1"_s});
        row("deleting", u"A b C"_s, [](auto &f) { f.store.deleteNote(f.id(u"C"_s)); }, u"A"_s,
            {u"remove 1-1"_s});
        row("deleting in the other tab", u"A b C"_s,
            [](auto &f) { f.store.deleteNote(f.id(u"b"_s)); }, u"A C"_s, {});
        row("deleting several", u"A b C D"_s,
            [](auto &f) {
                f.store.deleteNotes({f.id(u"b"_s), f.id(u"C"_s), f.id(u"A"_s)});
            },
            u"D"_s, {u"remove 0-1"_s});
        row("moving up", u"A b C D"_s,
            [](auto &f) { f.store.moveNote(f.id(u"D"_s), f.id(u"A"_s)); }, u"D A C"_s,
            {u"move 2-2 to 0"_s});
        row("moving down", u"A b C D"_s,
            [](auto &f) { f.store.moveNote(f.id(u"A"_s), f.id(u"D"_s)); }, u"C A D"_s,
            {u"move 0-0 to 2"_s});
        row("moving to the end", u"A B C"_s, [](auto &f) { f.store.moveNoteToEnd(f.id(u"A"_s)); },
            u"B C A"_s, {u"move 0-0 to 3"_s});
        row("moving among the hidden", u"A b c D"_s,
            [](auto &f) { f.store.moveNote(f.id(u"D"_s), f.id(u"b"_s)); }, u"A D"_s, {});
        row("moving a hidden one", u"A b C"_s, [](auto &f) { f.store.moveNoteToEnd(f.id(u"b"_s)); },
            u"A C"_s, {});
        row("other notes", u"A B"_s, [](auto &f) { f.store.setNotes(notesOf(u"X y Z"_s)); },
            u"X Z"_s, {u"reset"_s});
        row("the same notes", u"A B"_s,
            [](auto &f) { f.store.setNotes(NoteArray(f.store.notes())); }, u"A B"_s, {});
        row("the other tab", u"A b"_s,
            [](auto &f) { f.selection.setSelectedTab(SidebarTab::Archive); }, u"b"_s, {u"reset"_s});
        row("another selected note", u"A b"_s,
            [](auto &f) { f.selection.setSelectedNoteID(f.id(u"A"_s)); }, u"A"_s, {});
        row("another language", u"A b C"_s,
            [](auto &) { LanguageManager::shared().setLanguage(AppLanguage::pl); }, u"A C"_s,
            {u"change 0-1"_s});
        row("another language for nobody", u"b"_s,
            [](auto &) { LanguageManager::shared().setLanguage(AppLanguage::pl); }, u""_s, {});
    }
    void theListSaysExactlyWhatChanged()
    {
        QFETCH(QString, before);
        QFETCH(Operation, operation);
        Fixture f(before);
        const ModelSpy spy(f.model);
        operation(f);
        QTEST(headings(f.model), "after");
        QTEST(spy.told, "told");
    }

    void anEditIsShown()
    {
        Fixture f(u"A"_s);
        QCOMPARE(headings(f.model), u"A"_s);
        edit(f, u"A"_s, u"B"_s);
        QCOMPARE(f.model.index(0).data(NoteListModel::TitleRole).toString(), u"B"_s);
        QCOMPARE(f.model.index(0).data(NoteListModel::PreviewRole).toString(), u"about B"_s);
        Note note = f.store.notes()[0];
        note.color = u"blue"_s;
        f.store.updateNote(note);
        QCOMPARE(f.model.index(0).data(NoteListModel::ColorRole).value<QColor>(),
                 displayNoteColor(u"blue"_s));
    }

    void anEditInTheOtherTabIsShownThere()
    {
        Fixture f(u"a"_s);
        f.selection.setSelectedTab(SidebarTab::Archive);
        QCOMPARE(headings(f.model), u"a"_s);
        f.selection.setSelectedTab(SidebarTab::Notes);
        edit(f, u"a"_s, u"b"_s);
        f.selection.setSelectedTab(SidebarTab::Archive);
        QCOMPARE(headings(f.model), u"b"_s);
    }

    void aRestoredBackupIsShown()
    {
        Fixture f(u"A b C"_s);
        f.store.flush();
        edit(f, u"A"_s, u"Anew"_s);
        f.store.deleteNote(f.id(u"C"_s));
        f.store.flush();
        QCOMPARE(headings(f.model), u"Anew"_s);
        QVERIFY(QFile::remove(f.home.data() + u"/notes.json"_s));
        const ModelSpy spy(f.model);
        QVERIFY(f.store.restore(f.store.availableBackups().at(0).url));
        QCOMPARE(headings(f.model), u"A C"_s);
        QCOMPARE(f.model.index(0).data(NoteListModel::PreviewRole).toString(), u"about A"_s);
        QCOMPARE(spy.told, QStringList{u"reset"_s});
    }

    void placeholdersFollowTheLanguage()
    {
        Fixture f;
        f.store.addNote();
        const QModelIndex row = f.model.index(0);
        QCOMPARE(row.data(NoteListModel::TitleRole).toString(), u"Untitled"_s);
        QCOMPARE(row.data(NoteListModel::PreviewRole).toString(), u"No content"_s);
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QCOMPARE(row.data(NoteListModel::TitleRole).toString(), u"Bez tytułu"_s);
        QCOMPARE(row.data(NoteListModel::PreviewRole).toString(), u"Brak treści"_s);
    }

    void ofTenThousandNotesAnEditTouchesItsRow()
    {
        NoteListFixture f;
        NoteArray notes;
        for (int i = 0; i < 10'000; ++i)
            notes.append(noteNamed(u"note %1"_s.arg(i)));
        f.store.setNotes(notes);
        const NoteListModel model(f.store, f.selection);
        QCOMPARE(model.rowCount(), 10'000);
        const ModelSpy spy(model);
        edit(f, u"note 7000"_s, u"edited"_s);
        QCOMPARE(spy.told, QStringList{u"change 7000-7000"_s});
    }

    // Texts with styles cost hundreds of times what looking them up costs, so that the difference
    // is plain.
    void anEditDerivesItsOwnTextsAlone()
    {
        NoteListFixture f;
        NoteArray notes;
        const QString filler =
            u"<p style=\"color: red\">many &amp; <b>various</b> words</p>"_s.repeated(100);
        for (int i = 0; i < 300; ++i) {
            Note note = noteNamed(u"note %1"_s.arg(i));
            note.body += filler;
            notes.append(note);
        }
        f.store.setNotes(notes);
        NoteListModel model(f.store, f.selection);
        const auto readAll = [&] {
            for (int row = 0; row < model.rowCount(); ++row) {
                (void)model.index(row).data(NoteListModel::TitleRole);
                (void)model.index(row).data(NoteListModel::PreviewRole);
            }
        };
        const double derived = duration(readAll);
        const double afterEdit = bestDuration([&] {
            edit(f, u"note 150"_s, u"note 150"_s);
            readAll();
        });
        QVERIFY2(afterEdit * 10 < derived,
                 qPrintable(u"%1 ns, %2 ns"_s.arg(derived).arg(afterEdit)));
        const double afterTabs = bestDuration([&] {
            f.selection.setSelectedTab(SidebarTab::Archive);
            f.selection.setSelectedTab(SidebarTab::Notes);
            readAll();
        });
        QVERIFY2(afterTabs * 10 < derived,
                 qPrintable(u"%1 ns, %2 ns"_s.arg(derived).arg(afterTabs)));
    }

    void manyNotesAtOnce_data()
    {
        QTest::addColumn<Operation>("operation");
        // Of every second note, so that no two rows make a run.
        const auto everyOther = [](const NoteStore &store) {
            QSet<QUuid> ids;
            bool isChosen = false;
            for (const Note &note : store.notes()) {
                if ((isChosen = !isChosen))
                    ids << note.id;
            }
            return ids;
        };
        QTest::newRow("archived and restored") << Operation([=](auto &f) {
            const QSet<QUuid> ids = everyOther(f.store);
            f.store.setArchived(true, ids);
            f.store.setArchived(false, ids);
        });
        QTest::newRow("deleted") << Operation(
            [=](auto &f) { f.store.deleteNotes(everyOther(f.store)); });
    }
    void manyNotesAtOnce()
    {
        QFETCH(Operation, operation);
        const auto work = [&](qsizetype count) {
            NoteListFixture f;
            NoteArray notes;
            for (qsizetype i = 0; i < count; ++i)
                notes.append(noteNamed(u"x"_s));
            f.store.setNotes(notes);
            const NoteListModel model(f.store, f.selection);
            operation(f);
        };
        const double factor = growth(work, 2500);
        QVERIFY2(factor < linearGrowthBound, qPrintable(QString::number(factor)));
    }

    void aListWithAnIdTwiceStaysTrue()
    {
        Fixture f;
        NoteArray notes = notesOf(u"A B C D e"_s);
        Note twin = notes[0];
        twin.body = noteNamed(u"A2"_s).body;
        notes.append(twin);
        f.store.setNotes(notes);
        const auto check = [&] {
            QList<QUuid> shown;
            for (int row = 0; row < f.model.rowCount(); ++row)
                shown << f.model.index(row).data(NoteListModel::NoteIDRole).toUuid();
            QList<QUuid> wanted;
            for (const Note &note : f.store.notes()) {
                if (!note.isArchived)
                    wanted << note.id;
            }
            QCOMPARE(shown, wanted);
        };
        check();
        f.store.moveNoteToEnd(twin.id);
        check();
        setArchived(f, true, {u"A"_s});
        check();
        setArchived(f, false, {u"A"_s, u"e"_s});
        check();
        f.store.deleteNote(twin.id);
        check();
        f.store.addNote();
        check();
        f.store.deleteNote(twin.id);
        check();
    }
};

QTEST_MAIN(TestNoteListModel)
#include "tst_note_list_model.moc"
