#include "mainwindow/TransferOffers.h"
#include "tests/mainwindow/ContentFixture.h"

#include <QDesktopServices>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
/// Takes the place of the desktop's file manager.
class FileManager : public QObject
{
    Q_OBJECT

public:
    FileManager() { QDesktopServices::setUrlHandler(u"file"_s, this, "open"); }
    ~FileManager() override { QDesktopServices::unsetUrlHandler(u"file"_s); }

    QList<QUrl> opened;

public Q_SLOTS:
    void open(const QUrl &url) { opened << url; }
};
} // namespace

/// What is offered once notes were imported or exported.
class TestTransferOffers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void importsAreTakenOutAgain()
    {
        NoteListFixture f(u"A B C"_s);
        ImportUndo undo(f.store);
        QSignalSpy changed(&f.store, &NoteStore::notesChanged);
        undo.offer({f.id(u"A"_s), f.id(u"C"_s)});
        QVERIFY(undo.isOffered());
        QCOMPARE(changed.size(), 0);
        undo.undo();
        QCOMPARE(f.store.notes().size(), 1);
        QCOMPARE(f.store.notes()[0].headingText(), u"B"_s);
        QVERIFY(!undo.isOffered());
        undo.undo();
        QCOMPARE(changed.size(), 1);
    }

    void whatSomebodyHasWrittenInStays()
    {
        NoteListFixture f(u"A B"_s);
        ImportUndo undo(f.store);
        undo.offer({f.id(u"A"_s), f.id(u"B"_s)});
        Note note = *f.store.note(f.id(u"A"_s));
        note.body += u"<p>more</p>"_s;
        f.store.updateNote(note);
        Note tidied = *f.store.note(f.id(u"B"_s)); // by the page, as it opens a note
        tidied.body += u"<p></p>"_s;
        f.store.updateNote(tidied);
        undo.undo();
        QCOMPARE(f.store.notes().size(), 1);
        QCOMPARE(f.store.notes()[0].headingText(), u"A"_s);
    }

    void anOfferThatIsOverTakesNothingOut()
    {
        NoteListFixture f(u"A"_s);
        ImportUndo undo(f.store, 10ms);
        undo.offer({f.id(u"A"_s)});
        QTRY_VERIFY(!undo.isOffered());
        undo.undo();
        QCOMPARE(f.store.notes().size(), 1);
    }

    void aNoteThatIsGoneAlreadyIsNoMatter()
    {
        NoteListFixture f(u"A B"_s);
        ImportUndo undo(f.store);
        undo.offer({f.id(u"A"_s), f.id(u"B"_s)});
        f.store.deleteNote(f.id(u"A"_s));
        undo.undo();
        QCOMPARE(f.store.notes().size(), 0);
    }

    void theyCountInBothLanguages_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("english");
        QTest::addColumn<QString>("polish");
        QTest::newRow("one") << 1 << u"1 note"_s << u"1 notatka"_s;
        QTest::newRow("some") << 3 << u"3 notes"_s << u"3 notatki"_s;
        QTest::newRow("many") << 8 << u"8 notes"_s << u"8 notatek"_s;
        QTest::newRow("twelve") << 12 << u"12 notes"_s << u"12 notatek"_s;
    }
    void theyCountInBothLanguages()
    {
        QFETCH(int, count);
        QFETCH(QString, english);
        QFETCH(QString, polish);
        NoteListFixture f;
        QSet<QUuid> noteIDs;
        while (noteIDs.size() < count)
            noteIDs.insert(QUuid::createUuid());
        ImportUndo undo(f.store);
        undo.offer(noteIDs);
        ExportedOffer exported;
        exported.offer(count, f.home.documents());
        QCOMPARE(undo.text(), u"Imported: "_s + english);
        QCOMPARE(undo.actionText(), u"Undo"_s);
        QCOMPARE(exported.text(), u"Exported: "_s + english);
        QCOMPARE(exported.actionText(), u"Open folder"_s);
        QSignalSpy retold(&exported, &UndoOffer::textChanged);
        LanguageManager::shared().setLanguage(AppLanguage::pl);
        QCOMPARE(retold.size(), 1);
        QCOMPARE(undo.text(), u"Zaimportowano: "_s + polish);
        QCOMPARE(undo.actionText(), u"Cofnij"_s);
        QCOMPARE(exported.text(), u"Wyeksportowano: "_s + polish);
        QCOMPARE(exported.actionText(), u"Otwórz folder"_s);
    }

    void theFolderIsOpened_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("of a file") << u"Documents/a.md"_s;
        QTest::newRow("itself") << u"Documents"_s;
    }
    void theFolderIsOpened()
    {
        QFETCH(QString, path);
        const NoteListFixture f;
        FileManager files;
        ExportedOffer offer;
        offer.offer(1, f.home.path(path));
        QCOMPARE(files.opened.size(), 0);
        offer.undo();
        QCOMPARE(files.opened, QList<QUrl>{QUrl::fromLocalFile(f.home.documents())});
        QVERIFY(!offer.isOffered());
    }

    // Among the other offers

    void theLastOfferHasTheBar()
    {
        ContentFixture f(u"A B"_s);
        f.content.deleteNote(f.id(u"A"_s));
        QCOMPARE(f.content.undoOffer(), f.content.deletionUndo());
        f.content.offerExported(1, f.home.documents());
        QVERIFY(f.content.undoOffer() != f.content.deletionUndo());
        QVERIFY(!f.content.deletionUndo()->isOffered());
        QCOMPARE(f.content.undoOffer()->text(), u"Exported: 1 note"_s);
        f.content.addImported({noteNamed(u"C"_s), noteNamed(u"D"_s)});
        QCOMPARE(f.content.undoOffer()->text(), u"Imported: 2 notes"_s);
        QCOMPARE(f.order(), u"C D B"_s);
        QCOMPARE(f.content.editedNoteID(), f.id(u"C"_s));
        f.content.undoOffer()->undo();
        QCOMPARE(f.order(), u"B"_s);
        QVERIFY(!f.content.editedNoteID());
    }

    void theKeysOfUndoOpenNoFolder()
    {
        ContentFixture f(u"A"_s);
        FileManager files;
        f.content.offerExported(1, f.home.documents());
        f.content.undo();
        QCOMPARE(files.opened.size(), 0);
        QVERIFY(f.content.undoOffer()->isOffered());
    }

    void noNotesAreNoImport()
    {
        ContentFixture f(u"A"_s);
        f.content.addImported({});
        QVERIFY(!f.content.undoOffer()->isOffered());
        QCOMPARE(f.order(), u"A"_s);
    }

    void aNoticeIsPassedOn()
    {
        ContentFixture f;
        QSignalSpy told(&f.content, &ContentController::noticeRequested);
        f.content.notify(u"a"_s, u"b"_s);
        QCOMPARE(told, (QList<QVariantList>{{u"a"_s, u"b"_s}}));
    }
};

QTEST_MAIN(TestTransferOffers)
#include "tst_transfer_offers.moc"
