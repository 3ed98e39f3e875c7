#include "mainwindow/ContentController.h"

#include "core/NoteColor.h"
#include "core/NotesJson.h"
#include "tests/mainwindow/ContentFixture.h"

#include <QElapsedTimer>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
using Fixture = ContentFixture;
using Operation = std::function<void(Fixture &)>;
} // namespace

Q_DECLARE_METATYPE(Operation)

class TestContentController : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void aNewNoteIsSelectedInTheNotes_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<bool>("fromArchive");
        QTest::newRow("the first") << u""_s << false;
        QTest::newRow("one more") << u"A b C"_s << false;
        QTest::newRow("from the archive") << u"A b C"_s << true;
    }
    void aNewNoteIsSelectedInTheNotes()
    {
        QFETCH(QString, before);
        QFETCH(bool, fromArchive);
        Fixture f(before);
        if (fromArchive)
            f.selection.setSelectedTab(SidebarTab::Archive);
        const qsizetype count = f.store.notes().size();
        f.content.addNote();
        QCOMPARE(f.store.notes().size(), count + 1);
        QVERIFY(f.selection.selectedTab() == SidebarTab::Notes);
        QVERIFY(f.selection.selectedNoteID() == f.store.notes()[0].id);
        QCOMPARE(f.content.selectedRow(), 0);
        QCOMPARE(f.content.editedNote().html, u"<h1><br></h1>"_s);
        QVERIFY(f.content.hasEditedNote());
        QCOMPARE(f.edited.count(), 1);
    }

    void theOpenNoteSelectedAgainGetsTheKeyboard()
    {
        Fixture f(u"A b"_s);
        QSignalSpy wanted(&f.content, &ContentController::editorFocusRequested);
        f.content.selectNote(f.id(u"A"_s));
        QCOMPARE(wanted.count(), 0); // the editor takes it when it shows the note
        f.content.selectNote(f.id(u"A"_s));
        QCOMPARE(wanted.count(), 1);
    }

    void aRowIsSelected_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("selected");
        QTest::newRow("the first") << 0 << u"A"_s;
        QTest::newRow("the last") << 1 << u"C"_s;
        QTest::newRow("behind the last") << 2 << QString();
        QTest::newRow("before the first") << -1 << QString();
    }
    void aRowIsSelected()
    {
        QFETCH(int, row);
        QFETCH(QString, selected);
        Fixture f(u"A b C"_s);
        f.content.selectRow(row);
        QCOMPARE(f.selection.selectedNoteID().has_value(), !selected.isNull());
        QCOMPARE(f.content.selectedRow(), selected.isNull() ? -1 : row);
        if (!selected.isNull())
            QVERIFY(f.selection.selectedNoteID() == f.id(selected));
    }

    void aWrongRowKeepsTheSelection()
    {
        Fixture f(u"A B"_s);
        f.content.selectRow(1);
        f.content.selectRow(7);
        QCOMPARE(f.content.selectedRow(), 1);
    }

    void theSelectedRowFollowsTheList_data()
    {
        QTest::addColumn<Operation>("operation");
        QTest::addColumn<int>("row");
        const auto row = [](const char *name, const Operation &operation, int after) {
            QTest::newRow(name) << operation << after;
        };
        row(
            "a note above comes", [](auto &f) { f.store.addNote(); }, 3);
        row(
            "a note above goes", [](auto &f) { f.store.deleteNote(f.id(u"A"_s)); }, 1);
        row(
            "it moves", [](auto &f) { f.store.moveNote(f.id(u"C"_s), f.id(u"A"_s)); }, 0);
        row(
            "another one moves", [](auto &f) { f.store.moveNoteToEnd(f.id(u"A"_s)); }, 1);
        row(
            "it is archived", [](auto &f) { f.store.setArchived(true, {f.id(u"C"_s)}); }, -1);
        row(
            "the other tab", [](auto &f) { f.selection.setSelectedTab(SidebarTab::Archive); }, -1);
        row(
            "no note", [](auto &f) { f.selection.setSelectedNoteID(std::nullopt); }, -1);
        row(
            "other notes", [](auto &f) { f.store.setNotes(notesOf(u"X"_s)); }, -1);
    }
    void theSelectedRowFollowsTheList()
    {
        QFETCH(Operation, operation);
        QFETCH(int, row);
        Fixture f(u"A B C D"_s);
        f.select(u"C"_s);
        QCOMPARE(f.content.selectedRow(), 2);
        f.rowChanged.clear();
        int last = 2;
        connect(&f.content, &ContentController::selectedRowChanged, &f.content,
                [&] { last = f.content.selectedRow(); });
        operation(f);
        QCOMPARE(f.content.selectedRow(), row);
        QCOMPARE(last, row); // and a view knows it
    }

    void anArchivedNoteStaysInTheEditor()
    {
        Fixture f(u"A B"_s);
        f.select(u"A"_s);
        f.store.setArchived(true, {f.id(u"A"_s)});
        QVERIFY(f.content.hasEditedNote());
        f.selection.setSelectedTab(SidebarTab::Archive);
        QCOMPARE(f.content.selectedRow(), 0);
    }

    void anEditGoesToItsNote()
    {
        Fixture f(u"A b C"_s);
        const NoteArray before = f.store.notes();
        f.select(u"A"_s);
        f.content.applyEdit(before[1].id, u"<h1>b</h1>new"_s);
        QCOMPARE(f.store.notes()[1].body, u"<h1>b</h1>new"_s);
        QVERIFY(f.store.notes()[1].isArchived);
        QVERIFY(f.store.notes()[1].updatedAt != before[1].updatedAt);
        QVERIFY(f.store.notes()[0] == before[0]);
        QVERIFY(f.store.notes()[2] == before[2]);
        QVERIFY(f.selection.selectedNoteID() == before[0].id);
    }

    void anEditOfANoteThatIsGoneGoesNowhere()
    {
        Fixture f(u"A B"_s);
        const QUuid gone = f.id(u"A"_s);
        f.store.deleteNote(gone);
        const NoteArray before = f.store.notes();
        QSignalSpy changed(&f.store, &NoteStore::notesChanged);
        f.content.applyEdit(gone, u"<h1>late</h1>"_s);
        f.content.applyEdit(QUuid(), u"<h1>nobody's</h1>"_s);
        QVERIFY(f.store.notes() == before);
        QCOMPARE(changed.count(), 0);
    }

    void theEditorIsToldOfItsNoteAlone_data()
    {
        QTest::addColumn<Operation>("operation");
        QTest::addColumn<int>("told");
        const auto row = [](const char *name, const Operation &operation, int told) {
            QTest::newRow(name) << operation << told;
        };
        row(
            "an edit", [](auto &f) { f.content.applyEdit(f.id(u"B"_s), u"<h1>x</h1>"_s); }, 1);
        row(
            "an edit of another",
            [](auto &f) { f.content.applyEdit(f.id(u"A"_s), u"<h1>x</h1>"_s); }, 0);
        row(
            "a new note elsewhere", [](auto &f) { f.store.addNote(); }, 0);
        row(
            "another one is deleted", [](auto &f) { f.store.deleteNote(f.id(u"A"_s)); }, 0);
        row(
            "another one is archived", [](auto &f) { f.store.setArchived(true, {f.id(u"A"_s)}); },
            0);
        row(
            "both are archived",
            [](auto &f) {
                f.store.setArchived(true, {f.id(u"A"_s), f.id(u"B"_s)});
            },
            1);
        row(
            "it moves", [](auto &f) { f.store.moveNoteToEnd(f.id(u"B"_s)); }, 0);
        row(
            "the other tab", [](auto &f) { f.selection.setSelectedTab(SidebarTab::Archive); }, 0);
        row(
            "another language",
            [](auto &) { LanguageManager::shared().setLanguage(AppLanguage::pl); }, 0);
        row(
            "another note", [](auto &f) { f.select(u"A"_s); }, 1);
        row(
            "the same note", [](auto &f) { f.select(u"B"_s); }, 0);
        row(
            "it is deleted", [](auto &f) { f.store.deleteNote(f.id(u"B"_s)); }, 1);
        row(
            "other notes", [](auto &f) { f.store.setNotes(notesOf(u"X"_s)); }, 1);
        row(
            "the same note among others",
            [](auto &f) {
                NoteArray notes = f.store.notes();
                notes.append(noteNamed(u"X"_s));
                f.store.setNotes(notes);
            },
            1);
    }
    void theEditorIsToldOfItsNoteAlone()
    {
        QFETCH(Operation, operation);
        QFETCH(int, told);
        Fixture f(u"A B C"_s);
        f.select(u"B"_s);
        f.edited.clear();
        operation(f);
        QCOMPARE(f.edited.count(), told);
    }

    void aDeletedNoteLeavesTheSelection_data()
    {
        QTest::addColumn<Operation>("operation");
        QTest::newRow("alone") << Operation([](auto &f) { f.store.deleteNote(f.id(u"B"_s)); });
        QTest::newRow("among others") << Operation([](auto &f) {
            f.store.deleteNotes({f.id(u"A"_s), f.id(u"B"_s)});
        });
        QTest::newRow("other notes")
            << Operation([](auto &f) { f.store.setNotes(notesOf(u"X"_s)); });
        QTest::newRow("in the other tab") << Operation([](auto &f) {
            f.selection.setSelectedTab(SidebarTab::Archive);
            f.store.deleteNote(f.id(u"B"_s));
        });
    }
    void aDeletedNoteLeavesTheSelection()
    {
        QFETCH(Operation, operation);
        Fixture f(u"A B C"_s);
        f.select(u"B"_s);
        operation(f);
        QVERIFY(!f.selection.selectedNoteID());
        QVERIFY(!f.content.hasEditedNote());
        QVERIFY(!f.content.editedNote().noteID);
        QVERIFY(f.content.editedNote().html.isEmpty());
        QCOMPARE(f.content.selectedRow(), -1);
        QVERIFY(!f.content.paneColor().isValid());
    }

    void everyChangeAsksForASave_data()
    {
        QTest::addColumn<Operation>("operation");
        QTest::newRow("a new note") << Operation([](auto &f) { f.content.addNote(); });
        QTest::newRow("an edit") << Operation(
            [](auto &f) { f.content.applyEdit(f.id(u"A"_s), u"x"_s); });
        QTest::newRow("archiving")
            << Operation([](auto &f) { f.store.setArchived(true, {f.id(u"A"_s)}); });
        QTest::newRow("deleting") << Operation([](auto &f) { f.store.deleteNote(f.id(u"B"_s)); });
        QTest::newRow("moving") << Operation([](auto &f) { f.store.moveNoteToEnd(f.id(u"A"_s)); });
        QTest::newRow("other notes")
            << Operation([](auto &f) { f.store.setNotes(notesOf(u"X"_s)); });
    }
    void everyChangeAsksForASave()
    {
        QFETCH(Operation, operation);
        Fixture f(u"A B"_s);
        QElapsedTimer timer;
        timer.start();
        operation(f);
        QVERIFY(f.store.hasPendingSave());
        QVERIFY(!QFile::exists(f.home.data() + u"/notes.json"_s));
        QTRY_COMPARE(f.saved.count(), 1);
        QVERIFY2(timer.elapsed() >= 499, qPrintable(QString::number(timer.elapsed())));
        QVERIFY(decodeNotes(f.home.read(u"data/Plim/notes.json"_s), {}) == f.store.notes());
    }

    void lookingAroundSavesNothing()
    {
        Fixture f(u"A b C"_s);
        f.content.selectRow(0);
        f.content.selectRow(1);
        f.selection.setSelectedTab(SidebarTab::Archive);
        f.content.selectRow(0);
        f.content.prepareEditor();
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QVERIFY(!f.store.hasPendingSave());
    }

    void theEditorIsWantedOnceTheListIsDrawn()
    {
        Fixture f(u"A"_s);
        QSignalSpy wanted(&f.content, &ContentController::isEditorWantedChanged);
        QVERIFY(!f.content.isEditorWanted());
        f.content.prepareEditor();
        f.content.prepareEditor();
        QVERIFY(!f.content.isEditorWanted()); // what is under way comes first
        QTRY_VERIFY(f.content.isEditorWanted());
        f.content.prepareEditor();
        f.select(u"A"_s);
        QCoreApplication::processEvents();
        QCOMPARE(wanted.count(), 1);
    }

    void theEditorIsWantedAtOnceForANote()
    {
        Fixture f(u"A"_s);
        bool wasWantedFirst = false;
        connect(&f.content, &ContentController::editedNoteChanged, &f.content,
                [&] { wasWantedFirst = f.content.isEditorWanted(); });
        QSignalSpy wanted(&f.content, &ContentController::isEditorWantedChanged);
        f.selection.setSelectedNoteID(QUuid::createUuid());
        QVERIFY(!f.content.isEditorWanted());
        f.content.prepareEditor();
        f.select(u"A"_s);
        QVERIFY(f.content.isEditorWanted());
        QVERIFY(wasWantedFirst);
        QCoreApplication::processEvents();
        QCOMPARE(wanted.count(), 1);
    }

    void theEditedNoteIsTheSelectedOne()
    {
        Fixture f(u"A b"_s);
        QVERIFY(!f.content.hasEditedNote());
        QVERIFY(!f.content.editedNote().noteID);
        f.select(u"b"_s);
        const RichTextEditor editor = f.content.editedNote();
        QVERIFY(editor.noteID == f.id(u"b"_s));
        QCOMPARE(editor.html, f.body(u"b"_s));
        QVERIFY(editor.rightPadding > 0);
        f.selection.setSelectedNoteID(QUuid::createUuid());
        QVERIFY(!f.content.hasEditedNote());
    }

    void textSizes_data()
    {
        QTest::addColumn<NoteTextSize>("size");
        QTest::addColumn<double>("pixels");
        QTest::newRow("extra small") << NoteTextSize::extraSmall << 12.0;
        QTest::newRow("small") << NoteTextSize::small << 14.0;
        QTest::newRow("medium") << NoteTextSize::medium << 16.0;
        QTest::newRow("big") << NoteTextSize::big << 19.0;
    }
    void textSizes()
    {
        QFETCH(NoteTextSize, size);
        Fixture f(u"A"_s);
        f.select(u"A"_s);
        f.edited.clear();
        Note note = f.store.notes()[0];
        note.textSize = size;
        f.store.updateNote(note);
        QTEST(f.content.editedNote().bodyFontSize, "pixels");
        QCOMPARE(f.edited.count(), 1);
    }

    void colorAndSizeAreStored()
    {
        Fixture f(u"A B"_s);
        f.select(u"A"_s);
        const Note other = *f.store.note(f.id(u"B"_s));
        f.content.setEditedColor(rawValue(NoteColor::blue));
        f.content.setEditedTextSize(rawValue(NoteTextSize::big));
        QCOMPARE(f.content.editedColor(), rawValue(NoteColor::blue));
        QCOMPARE(f.content.paneColor(), displayColor(NoteColor::blue));
        QCOMPARE(f.content.editedTextSize(), rawValue(NoteTextSize::big));
        QCOMPARE(f.content.editedNote().bodyFontSize, 19.0);
        QVERIFY(*f.store.note(f.id(u"B"_s)) == other);
        QVERIFY(f.store.hasPendingSave());
        QCOMPARE(f.store.note(f.id(u"A"_s))->color, rawValue(NoteColor::blue));
    }

    void theSameColorIsStoredOnceMore()
    {
        Fixture f(u"A"_s);
        f.select(u"A"_s);
        QSignalSpy changed(&f.store, &NoteStore::notesChanged);
        f.content.setEditedColor(f.content.editedColor());
        f.content.setEditedTextSize(f.content.editedTextSize());
        QCOMPARE(changed.count(), 2);
    }

    void whatIsNoColorOrSizeIsNotStored()
    {
        Fixture f(u"A"_s);
        f.content.setEditedColor(rawValue(NoteColor::red)); // no note is open
        f.content.setEditedTextSize(rawValue(NoteTextSize::big));
        QVERIFY(f.content.editedColor().isNull());
        QVERIFY(f.content.editedTextSize().isNull());
        f.select(u"A"_s);
        for (const QString &text : {u""_s, u"pink"_s, u"red "_s}) {
            f.content.setEditedColor(text);
            f.content.setEditedTextSize(text);
        }
        QVERIFY(!f.store.hasPendingSave());
    }

    void colors_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QColor>("color");
        for (const NoteColor color : allNoteColors)
            QTest::newRow(qPrintable(rawValue(color))) << rawValue(color) << displayColor(color);
        QTest::newRow("an unknown one") << u"pink"_s << displayColor(NoteColor::yellow);
        QTest::newRow("none") << u""_s << displayColor(NoteColor::yellow);
    }
    void colors()
    {
        QFETCH(QString, stored);
        Fixture f(u"A"_s);
        f.select(u"A"_s);
        Note note = f.store.notes()[0];
        note.color = stored;
        f.store.updateNote(note);
        QTEST(f.content.paneColor(), "color");
        QCOMPARE(f.store.notes()[0].color, stored);
    }
};

QTEST_MAIN(TestContentController)
#include "tst_content_controller.moc"
