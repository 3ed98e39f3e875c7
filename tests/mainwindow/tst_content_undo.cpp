#include "mainwindow/ContentController.h"

#include "core/NotesJson.h"
#include "core/NotificationCenter.h"
#include "editor/EditorCommand.h"
#include "tests/mainwindow/ContentFixture.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace
{
using Fixture = ContentFixture;

/// A backup of these notes on the disk, which it answers the path of.
QString writtenBackup(const Fixture &f, const QString &headings)
{
    QDir().mkpath(f.home.data());
    const QString path = f.home.data() + u"/notes.json.bak.1"_s;
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(*encodeNotes(notesOf(headings))) <= 0)
        qFatal("The test's own backup could not be written");
    return path;
}

void restoreFirst(Fixture &f)
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^Restore failed: .*exists"_s));
    f.content.versionRestore()->begin();
    f.content.versionRestore()->replaceNotes(0);
}
} // namespace

// Deleted notes and restored versions, and the way back.
class TestContentUndo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void aDeletedNoteIsOnOfferAndComesBackOpen()
    {
        Fixture f(u"A B C"_s);
        f.select(u"B"_s);
        f.content.deleteNote(f.id(u"B"_s));
        QCOMPARE(f.order(), u"A C"_s);
        QVERIFY(!f.selection.selectedNoteID());
        QVERIFY(f.content.deletionUndo()->isOffered());
        QCOMPARE(f.content.deletionUndo()->text(), u"Note deleted"_s);
        f.content.deletionUndo()->undo();
        QCOMPARE(f.order(), u"A B C"_s);
        QVERIFY(f.selection.selectedNoteID() == f.id(u"B"_s));
        QVERIFY(f.store.hasPendingSave());
    }

    void whatIsOpenByThenStaysOpen()
    {
        Fixture f(u"A B C"_s);
        f.select(u"B"_s);
        f.content.deleteNote(f.id(u"B"_s));
        f.select(u"C"_s);
        f.content.deletionUndo()->undo();
        QVERIFY(f.selection.selectedNoteID() == f.id(u"C"_s));
    }

    void aNoteThatWasNotOpenComesBackUnopened()
    {
        Fixture f(u"A B C"_s);
        f.select(u"B"_s);
        f.content.deleteNote(f.id(u"B"_s));
        f.content.deleteNote(f.id(u"A"_s)); // takes the offer's place
        f.content.deletionUndo()->undo();
        QCOMPARE(f.order(), u"A C"_s);
        QVERIFY(!f.selection.selectedNoteID());
    }

    void deletingNothingOffersNothing()
    {
        Fixture f(u"A B"_s);
        f.content.deleteNote(f.id(u"A"_s));
        const QString offered = f.content.deletionUndo()->text();
        f.content.deleteNote(QUuid::createUuid());
        f.content.deleteSelection();
        QCOMPARE(f.order(), u"B"_s);
        QCOMPARE(f.content.deletionUndo()->text(), offered);
        f.content.deletionUndo()->undo();
        QCOMPARE(f.order(), u"A B"_s);
    }

    // The editor hands over its last words when it is given another note.
    void wordsReportedAfterTheDeletionAreNotLost()
    {
        Fixture f(u"A B"_s);
        const QUuid note = f.id(u"A"_s);
        f.select(u"A"_s);
        f.content.deleteNote(note);
        f.content.applyEdit(note, u"<h1>A</h1><p>the last words</p>"_s);
        QCOMPARE(f.order(), u"B"_s);
        f.content.deletionUndo()->undo();
        QCOMPARE(f.body(u"A"_s), u"<h1>A</h1><p>the last words</p>"_s);
        QCOMPARE(f.content.editedNote().html, f.body(u"A"_s));
    }

    void theLastWordsOfAStickyWindowComeBackWithItsNote()
    {
        Fixture f(u"A B"_s);
        const QUuid note = f.id(u"A"_s);
        f.content.deleteNote(note);
        Q_EMIT f.sticky.editedAfterDeletion(note, u"<h1>A</h1><p>the last words</p>"_s);
        QCOMPARE(f.order(), u"B"_s);
        f.content.deletionUndo()->undo();
        QCOMPARE(f.body(u"A"_s), u"<h1>A</h1><p>the last words</p>"_s);
    }

    // Who is quick with the undo has the note back before its window has said everything.
    void lastWordsThatComeAfterTheUndoAreStored()
    {
        Fixture f(u"A B"_s);
        const QUuid note = f.id(u"A"_s);
        f.content.deleteNote(note);
        f.content.deletionUndo()->undo();
        Q_EMIT f.sticky.editedAfterDeletion(note, u"<h1>A</h1><p>the last words</p>"_s);
        QCOMPARE(f.body(u"A"_s), u"<h1>A</h1><p>the last words</p>"_s);
    }

    // Earlier versions

    void undoTakesBackWhatWasDoneLast()
    {
        Fixture f(u"A B C"_s);
        QVERIFY(QFile::copy(writtenBackup(f, u"X"_s), f.home.data() + u"/notes.json"_s));
        f.content.deleteNote(f.id(u"A"_s));
        QCOMPARE(f.content.undoOffer(), f.content.deletionUndo());
        restoreFirst(f);
        QCOMPARE(f.order(), u"X"_s);
        QCOMPARE(f.content.undoOffer(), f.content.versionRestore());
        QVERIFY(!f.content.deletionUndo()->isOffered()); // of two at most one
        f.content.undo();
        QCOMPARE(f.order(), u"B C"_s);
        f.content.undo(); // there is nothing more
        QCOMPARE(f.order(), u"B C"_s);

        restoreFirst(f);
        f.content.deleteNote(f.id(u"X"_s));
        QCOMPARE(f.content.undoOffer(), f.content.deletionUndo());
        QVERIFY(!f.content.versionRestore()->isOffered());
        f.content.undo();
        QCOMPARE(f.order(), u"X"_s);
    }

    void undoIsForTheTextWhileItIsWritten()
    {
        Fixture f(u"A B"_s);
        QList<EditorCommand> told;
        connect(&NotificationCenter::shared(), &NotificationCenter::plimFormat, &f.content,
                [&](const EditorCommand &command) { told << command; });
        f.content.deleteNote(f.id(u"A"_s));
        f.content.setIsWriting(true);
        f.content.undo();
        QCOMPARE(f.order(), u"B"_s);
        QVERIFY(told == QList<EditorCommand>{EditorCommand::Kind::undo});
        f.content.setIsWriting(false);
        f.content.undo();
        QCOMPARE(f.order(), u"A B"_s);
    }

    void aRestoredVersionIsSavedAndWhatIsGoneIsNotOpen()
    {
        Fixture f(u"A B"_s);
        QVERIFY(QFile::copy(writtenBackup(f, u"X"_s), f.home.data() + u"/notes.json"_s));
        f.select(u"A"_s);
        f.store.flush();
        restoreFirst(f);
        QVERIFY(!f.selection.selectedNoteID());
        QVERIFY(f.store.hasPendingSave());
        QCOMPARE(f.list(), u"X"_s);
        f.content.undo();
        QVERIFY(f.store.hasPendingSave());
        QCOMPARE(f.list(), u"A B"_s);
    }

    void anEarlierVersionOfTheOpenNoteIsShown()
    {
        Fixture f(u"A B"_s);
        Note note = f.store.notes()[0];
        note.body = u"<h1>A</h1><p>as it was</p>"_s;
        const NoteArray earlier{note};
        QDir().mkpath(f.home.data());
        for (const QString &name : {u"/notes.json"_s, u"/notes.json.bak.1"_s}) {
            QFile file(f.home.data() + name);
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(*encodeNotes(earlier)) > 0);
        }
        f.select(u"A"_s);
        f.edited.clear();
        restoreFirst(f);
        QVERIFY(f.selection.selectedNoteID() == f.id(u"A"_s));
        QVERIFY(f.edited.count() > 0);
        QCOMPARE(f.content.editedNote().html, u"<h1>A</h1><p>as it was</p>"_s);
    }
};

QTEST_MAIN(TestContentUndo)
#include "tst_content_undo.moc"
