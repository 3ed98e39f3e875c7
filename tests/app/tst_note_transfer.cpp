#include "core/app/NotePrinting.h"
#include "core/app/Platform.h"
#include "core/app/TransferReasons.h"
#include "tests/app/TransferFixture.h"

#include <QFileDialog>
#include <QPrinter>

#include <cerrno>
#include <cstring>
#include <memory>

using namespace Qt::StringLiterals;

namespace
{
using Fixture = TransferFixture;

/// Once, when some of it is done and some is not.
void cancelAmid(TransferProgress &progress)
{
    auto *context = new QObject(&progress);
    QObject::connect(&progress, &TransferProgress::shareChanged, context, [&progress, context] {
        if (progress.share() < 0.2)
            return;
        context->deleteLater();
        QObject::disconnect(&progress, nullptr, context, nullptr);
        progress.cancel();
    });
}
} // namespace

/// Notes that leave the program and come in; tst_transfer_dialogs has what their user is asked.
class TestNoteTransfer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // A note into a file

    void aNoteBecomesAFile_data()
    {
        QTest::addColumn<ExportFormat>("format");
        QTest::addColumn<QByteArray>("start");
        QTest::newRow("Markdown") << ExportFormat::markdown << QByteArray("# A\n\nabout A\n");
        QTest::newRow("HTML") << ExportFormat::html << QByteArray("<!DOCTYPE html>");
        QTest::newRow("PDF") << ExportFormat::pdf << QByteArray("%PDF-");
    }
    void aNoteBecomesAFile()
    {
        QFETCH(ExportFormat, format);
        QFETCH(QByteArray, start);
        Fixture f(u"A B"_s);
        f.transfer->exportNoteTo(f.id(u"A"_s), f.path(u"a"_s), format);
        QVERIFY(f.ends());
        QVERIFY2(f.read(u"a"_s).startsWith(start), f.read(u"a"_s).left(80));
        QCOMPARE(f.names(), QStringList{u"a"_s});
        QCOMPARE(f.offer(), u"Exported: 1 note"_s);
        QCOMPARE(f.content.undoOffer()->actionText(), u"Open folder"_s);
        QCOMPARE(f.told.size(), 0);
    }

    void theWordsTypedLastAreInTheFile()
    {
        Fixture f(u"A"_s);
        f.lastWords = u"<h1>A</h1><p>typed last</p>"_s;
        f.transfer->exportNoteTo(f.id(u"A"_s), f.path(u"a.md"_s), ExportFormat::markdown);
        QVERIFY(f.ends());
        QCOMPARE(f.read(u"a.md"_s), "# A\n\ntyped last\n");
        QCOMPARE(f.collections, 1);
    }

    void picturesAreCopiedBeside()
    {
        Fixture f(u"A"_s);
        QDir().mkpath(f.store.imagesDirectory());
        QFile picture(f.store.imagesDirectory() + u"/p.png"_s);
        QVERIFY(picture.open(QIODevice::WriteOnly) && picture.write("picture") == 7);
        picture.close();
        f.lastWords = u"<h1>A</h1><p><img src=\"%1\"></p>"_s.arg(
            QUrl::fromLocalFile(picture.fileName()).toString(QUrl::FullyEncoded));
        f.transfer->exportNoteTo(f.id(u"A"_s), f.path(u"a.md"_s), ExportFormat::markdown);
        QVERIFY(f.ends());
        QCOMPARE(f.names(), (QStringList{u"a.md"_s, u"a_files"_s}));
        QCOMPARE(f.read(u"a_files/p.png"_s), "picture");
    }

    void aNoteThatIsGoneIsNotExported()
    {
        Fixture f(u"A"_s);
        f.transfer->exportNoteTo(QUuid::createUuid(), f.path(u"a.md"_s), ExportFormat::markdown);
        QVERIFY(!f.transfer->isBusy());
        QCOMPARE(f.names(), QStringList());
    }

    // All of them

    void allNotesBecomeANewFolder()
    {
        Fixture f(u"A b C"_s);
        f.write(u"Notes/mine.txt"_s, "mine");
        f.transfer->exportAllTo(f.path(u"Notes"_s), ExportFormat::markdown);
        QVERIFY(f.ends());
        QCOMPARE(f.names(), (QStringList{u"Notes"_s, u"Notes 2"_s}));
        QCOMPARE(f.names(u"Notes"_s), QStringList{u"mine.txt"_s});
        QCOMPARE(f.names(u"Notes 2"_s), (QStringList{u"A.md"_s, u"C.md"_s, u"b.md"_s}));
        QCOMPARE(f.offer(), u"Exported: 3 notes"_s);
        speak(AppLanguage::pl);
        QCOMPARE(f.offer(), u"Wyeksportowano: 3 notatki"_s);
        QCOMPARE(f.content.undoOffer()->actionText(), u"Otwórz folder"_s);
    }

    void whatIsCanceledLeavesNothing_data()
    {
        QTest::addColumn<ExportFormat>("format");
        QTest::newRow("Markdown") << ExportFormat::markdown;
        QTest::newRow("PDF") << ExportFormat::pdf;
    }
    void whatIsCanceledLeavesNothing()
    {
        QFETCH(ExportFormat, format);
        Fixture f(u"A B C D E F G"_s);
        TransferProgress &progress = *f.content.transferProgress();
        cancelAmid(progress);
        f.transfer->exportAllTo(f.path(u"Notes"_s), format);
        QVERIFY(f.ends());
        QVERIFY(!f.transfer->isBusy());
        QCOMPARE(f.names(), QStringList());
        // The next one is as good as ever.
        f.transfer->exportAllTo(f.path(u"Notes"_s), ExportFormat::markdown);
        QVERIFY(f.ends());
        QCOMPARE(f.names(u"Notes"_s).size(), 7);
        QCOMPARE(f.offer(), u"Exported: 7 notes"_s);
        QCOMPARE(f.told.size(), 0);
    }

    void theEndOfTheProgramLeavesNothingHalf_data() { whatIsCanceledLeavesNothing_data(); }
    void theEndOfTheProgramLeavesNothingHalf()
    {
        QFETCH(ExportFormat, format);
        Fixture f(u"A B C D E F G"_s);
        f.transfer->exportAllTo(f.path(u"Notes"_s), format);
        while (f.content.transferProgress()->share() < 0.2)
            QCoreApplication::processEvents(); // QTest's own waiting does too many turns
        f.transfer.reset();
        QCOMPARE(f.names(), QStringList());
    }

    void oneThingAtATime()
    {
        Fixture f(u"A B C"_s);
        f.write(u"in.txt"_s, "in");
        f.transfer->exportAllTo(f.path(u"Notes"_s), ExportFormat::markdown);
        f.transfer->exportNoteTo(f.id(u"A"_s), f.path(u"a.md"_s), ExportFormat::markdown);
        f.transfer->exportAllTo(f.path(u"More"_s), ExportFormat::markdown);
        f.transfer->importFrom({f.path(u"in.txt"_s)});
        f.transfer->exportAll();
        f.transfer->importNotes();
        QVERIFY(!dialog<QFileDialog>());
        QVERIFY(f.ends());
        QCOMPARE(f.names(), (QStringList{u"Notes"_s, u"in.txt"_s}));
        QCOMPARE(f.order(), u"A B C"_s);
    }

    // What fails

    void aFailureIsToldOnceInTheUsersLanguage_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<QString>("english");
        QTest::addColumn<QString>("polish");
        QTest::newRow("no such folder")
            << u"gone/a.md"_s << u"There is no such folder."_s << u"Takiego folderu nie ma."_s;
        QTest::newRow("a file where the folder should be")
            << u"file/a.md"_s << u"There is no such folder."_s << u"Takiego folderu nie ma."_s;
        QTest::newRow("a folder of that name")
            << u"folder"_s << u"A folder has this name already."_s << u"Tę nazwę ma już folder."_s;
    }
    void aFailureIsToldOnceInTheUsersLanguage()
    {
        QFETCH(QString, target);
        QFETCH(QString, english);
        QFETCH(QString, polish);
        for (const bool isPolish : {false, true}) {
            Fixture f(u"A"_s);
            speak(isPolish ? AppLanguage::pl : AppLanguage::en);
            f.write(u"file"_s, "mine");
            f.write(u"folder/mine.txt"_s, "mine");
            const QString path = target.startsWith(u'/') ? target : f.path(target);
            f.transfer->exportNoteTo(f.id(u"A"_s), path, ExportFormat::markdown);
            QVERIFY(f.ends());
            QCOMPARE(f.notice(),
                     (QStringList{isPolish ? u"Eksport się nie udał"_s : u"The export failed"_s,
                                  isPolish ? u"Nie można zapisać:"_s : u"This cannot be written:"_s,
                                  path, QString(), isPolish ? polish : english}));
            QCOMPARE(f.names(), (QStringList{u"file"_s, u"folder"_s}));
            QCOMPARE(f.names(u"folder"_s), QStringList{u"mine.txt"_s});
            QCOMPARE(f.offer(), QString());
            QVERIFY(!f.content.transferProgress()->isShown());
        }
    }

    void aFolderThatIsNotOnesOwnIsCalledSo()
    {
        Fixture f;
        QFile::setPermissions(f.path({}), QFile::ReadOwner | QFile::ExeOwner);
        if (QFileInfo(f.path({})).isWritable())
            QSKIP("root may write anywhere");
        QVERIFY(unwrittenText(f.path(u"a"_s), u"Permission denied"_s)
                    .endsWith(u"Writing there is not allowed."_s));
    }

    void aFullDiskIsCalledSo()
    {
        Fixture f;
        for (const int error : {ENOSPC, EDQUOT}) {
            for (const QString &detail :
                 // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread is there
                 {QString::fromLocal8Bit(std::strerror(error)), qt_error_string(error)})
                QVERIFY2(
                    unwrittenText(f.path(u"a"_s), detail).endsWith(u"The disk has no room left."_s),
                    qPrintable(detail));
        }
        QVERIFY(unwrittenText(f.path(u"a"_s), u"Odd."_s).endsWith(u"\n\nOdd."_s));
        QVERIFY(unwrittenText(f.path(u"a"_s)).endsWith(f.path(u"a"_s)));
    }

    void aFailureOfPrintingIsTold()
    {
        Fixture f(u"A"_s);
        const auto printer = std::make_shared<QPrinter>();
        printer->setOutputFormat(QPrinter::PdfFormat);
        printer->setOutputFileName(f.path(u"gone/a.pdf"_s));
        f.transfer->printTo(*f.store.note(f.id(u"A"_s)), printer);
        QVERIFY(f.ends());
        QCOMPARE(f.notice(),
                 (QStringList{u"Printing failed"_s, u"This cannot be written:"_s,
                              f.path(u"gone/a.pdf"_s), QString(), u"There is no such folder."_s}));
    }

    void everyFailureOfPrintingHasItsWords()
    {
        Fixture f;
        for (const auto language : {AppLanguage::pl, AppLanguage::en}) {
            speak(language);
            QSet<QString> texts;
            for (const auto failure :
                 {NotePrinting::Failure::cannotMakePage, NotePrinting::Failure::cannotPrint,
                  NotePrinting::Failure::cannotWrite})
                texts << failureText(failure, f.path(u"a"_s));
            QCOMPARE(texts.size(), 3);
        }
    }

    // Files into notes

    void filesBecomeNotesOnTop()
    {
        Fixture f(u"A b"_s);
        f.selection.setSelectedTab(SidebarTab::Archive);
        f.content.filteredNotes()->setSearchText(u"b"_s);
        f.write(u"1.md"_s, "# M\n\n- one\n");
        f.write(u"2.txt"_s, "T\nplain\n");
        f.write(u"3.html"_s, "<h1>H</h1><p>page</p>");
        f.transfer->importFrom({f.path(u"2.txt"_s), f.path(u"3.html"_s), f.path(u"1.md"_s)});
        QVERIFY(f.ends());
        QCOMPARE(f.order(), u"T H M A b"_s);
        QCOMPARE(f.selection.selectedTab(), SidebarTab::Notes);
        QCOMPARE(f.content.filteredNotes()->searchText(), QString());
        QCOMPARE(f.content.editedNoteID(), f.id(u"T"_s));
        QCOMPARE(f.list(), u"T H M A"_s);
        QCOMPARE(f.offer(), u"Imported: 3 notes"_s);
        QCOMPARE(f.told.size(), 0);
        QTRY_COMPARE(f.notesOnDisk().size(), 5);
        QCOMPARE(f.notesOnDisk()[0].headingText(), u"T"_s);

        f.content.undoOffer()->undo();
        QCOMPARE(f.order(), u"A b"_s);
        QTRY_COMPARE(f.notesOnDisk().size(), 2);
        QVERIFY(!f.content.undoOffer()->isOffered());
    }

    void theFirstNotesMayBeImportedOnes()
    {
        Fixture f;
        f.write(u"1.md"_s, "# M\n");
        f.write(u"2.md"_s, "# N\n");
        f.transfer->importFrom({f.path(u"1.md"_s), f.path(u"2.md"_s)});
        QVERIFY(f.ends());
        QCOMPARE(f.order(), u"M N"_s);
        f.content.undoOffer()->undo();
        QCOMPARE(f.order(), QString());
    }

    void whatCannotBeImportedIsListed()
    {
        for (const bool isPolish : {false, true}) {
            Fixture f(u"A"_s);
            speak(isPolish ? AppLanguage::pl : AppLanguage::en);
            f.write(u"1.md"_s, "# M\n");
            f.write(u"2.txt"_s, QByteArray(200, '\0'));
            f.write(u"3.odt"_s, "odt");
            f.transfer->importFrom(
                {f.path(u"2.txt"_s), f.path(u"1.md"_s), f.path(u"3.odt"_s), f.path(u"4.md"_s)});
            QVERIFY(f.ends());
            QCOMPARE(f.order(), u"M A"_s);
            if (isPolish)
                QCOMPARE(f.notice(), (QStringList{u"Nie udało się zaimportować wszystkiego"_s,
                                                  u"2.txt — to nie jest tekst"_s,
                                                  u"3.odt — nieznany rodzaj pliku"_s,
                                                  u"4.md — nie można odczytać"_s}));
            else
                QCOMPARE(f.notice(), (QStringList{u"Not everything could be imported"_s,
                                                  u"2.txt — this is not text"_s,
                                                  u"3.odt — unknown kind of file"_s,
                                                  u"4.md — cannot be read"_s}));
        }
    }

    void manyFailuresAreNotAllListed()
    {
        Fixture f;
        const std::vector<ImportFailure> failures(30, {u"a.odt"_s});
        const QStringList lines = failureText(failures).split(u'\n');
        QCOMPARE(lines.size(), 7);
        QCOMPARE(lines.last(), u"and more: 24"_s);
        QCOMPARE(failureText(std::vector<ImportFailure>(7, {u"a.odt"_s})).count(u'\n'), 6);
    }

    void anImportThatIsCanceledLeavesNoNotes()
    {
        Fixture f(u"A"_s);
        QStringList files;
        for (int i = 0; i < 30; ++i) {
            f.write(QString::number(i) + u".txt"_s, "x");
            files << f.path(QString::number(i) + u".txt"_s);
        }
        cancelAmid(*f.content.transferProgress());
        f.transfer->importFrom(files);
        QVERIFY(f.ends());
        QTest::qWait(0);
        QCOMPARE(f.order(), u"A"_s);
        QCOMPARE(f.offer(), QString());
        // What was read before does not come back with the next one.
        f.transfer->importFrom({files[0]});
        QVERIFY(f.ends());
        QCOMPARE(f.order(), u"x A"_s);
    }

    void noFilesAreNothing()
    {
        Fixture f(u"A"_s);
        f.transfer->importFrom({});
        QVERIFY(!f.transfer->isBusy());
        QCOMPARE(f.order(), u"A"_s);
    }
};

int main(int argc, char **argv)
{
    preparePlatform(); // before the web engine
    const QApplication application(argc, argv);
    TestNoteTransfer test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_note_transfer.moc"
