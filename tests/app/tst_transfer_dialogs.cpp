#include "core/app/Platform.h"
#include "shell/L10n.h"
#include "tests/app/TransferFixture.h"
#include "tests/sticky/FakeStickyWindow.h"

#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPrintDialog>
#include <QPrinter>

#include <memory>

using namespace Qt::StringLiterals;

namespace
{
using Fixture = TransferFixture;

template <typename Dialog>
Dialog *openedDialog()
{
    if (!QTest::qWaitFor([] { return dialog<Dialog>() && dialog<Dialog>()->isActiveWindow(); },
                         longEnough))
        qFatal("There is no dialog, but %s",
               qPrintable(QDebug::toString(QApplication::topLevelWidgets())));
    return dialog<Dialog>();
}

QLineEdit *nameField(QFileDialog *dialog)
{
    return dialog->findChild<QLineEdit *>(u"fileNameEdit"_s);
}

void enterName(QFileDialog *dialog, const QString &name)
{
    nameField(dialog)->selectAll();
    QTest::keyClicks(nameField(dialog), name);
    QTest::keyClick(nameField(dialog), Qt::Key_Return);
}

/// As its user chooses a kind in the list.
void chooseKind(QFileDialog *dialog, int index)
{
    auto *kinds = dialog->findChild<QComboBox *>(u"fileTypeCombo"_s);
    kinds->setCurrentIndex(index);
    Q_EMIT kinds->activated(index);
}
} // namespace

/// What somebody is asked whose notes leave the program or come in, in the real dialogs.
class TestTransferDialogs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutANoteItsUserIsTold()
    {
        Fixture f(u"A"_s);
        f.transfer->exportNote();
        QVERIFY(!dialog<QFileDialog>());
        QCOMPARE(f.notice().constFirst(), u"Select or add a note"_s);
        speak(AppLanguage::pl);
        f.transfer->printNote();
        QVERIFY(!dialog<QPrintDialog>());
        QCOMPARE(f.told.size(), 2);
        QCOMPARE(f.told[1][0].toString(), u"Wybierz lub dodaj notatkę"_s);
    }

    void withoutAnyNoteItsUserIsTold()
    {
        Fixture f;
        f.transfer->exportAll();
        QVERIFY(!dialog<QFileDialog>());
        QCOMPARE(f.notice().constFirst(), u"Select or add a note"_s);
    }

    void escChangesNothing()
    {
        Fixture f(u"A"_s);
        f.select(u"A"_s);
        for (const auto &ask : {&NoteTransfer::exportNote, &NoteTransfer::exportAll,
                                &NoteTransfer::importNotes, &NoteTransfer::printNote}) {
            (*f.transfer.*ask)();
            auto *asked = openedDialog<QDialog>();
            QTest::keyClick(asked, Qt::Key_Escape);
            QTRY_VERIFY(!dialog<QDialog>());
            QVERIFY(!f.transfer->isBusy());
        }
        QCOMPARE(f.names(), QStringList());
        QCOMPARE(QDir(f.home.documents()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                 QStringList());
        QCOMPARE(f.order(), u"A"_s);
        QCOMPARE(f.told.size(), 0);
        QCOMPARE(f.offer(), QString());
    }

    void oneDialogAtATime()
    {
        Fixture f(u"A"_s);
        f.select(u"A"_s);
        f.transfer->exportNote();
        openedDialog<QFileDialog>();
        for (const auto &ask : {&NoteTransfer::exportNote, &NoteTransfer::exportAll,
                                &NoteTransfer::importNotes, &NoteTransfer::printNote})
            (*f.transfer.*ask)();
        QCOMPARE(openedDialog<QDialog>()->windowTitle(), u"Export note"_s);
    }

    // Exporting

    void theNoteInFrontIsExported()
    {
        Fixture f(u"A B"_s);
        f.select(u"B"_s);
        f.transfer->exportNote();
        auto *files = openedDialog<QFileDialog>();
        QCOMPARE(files->windowTitle(), u"Export note"_s);
        QCOMPARE(files->directory().absolutePath(), QDir(f.home.documents()).absolutePath());
        QCOMPARE(nameField(files)->text(), u"B.md"_s);
        QCOMPARE(files->nameFilters(),
                 (QStringList{u"Markdown (*.md)"_s, u"HTML (*.html)"_s, u"PDF (*.pdf)"_s}));
        enterName(files, f.path(u"b.md"_s));
        QTRY_COMPARE(f.read(u"b.md"_s), "# B\n\nabout B\n");
        QTRY_VERIFY(!dialog<QFileDialog>());
    }

    void aStickyWindowsNoteComesFirst()
    {
        Fixture f(u"A B"_s);
        f.select(u"B"_s);
        QWindow card;
        card.show();
        card.requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(&card, longEnough));
        auto &manager = StickyNoteManager::shared();
        manager.setFactory([&card](const QUuid &, NoteTextSize) {
            auto window = std::make_unique<FakeStickyWindow>();
            window->host = &card;
            return window;
        });
        manager.open(f.id(u"A"_s), f.store, nullptr, std::nullopt);
        f.transfer->exportNote();
        auto *files = openedDialog<QFileDialog>();
        QCOMPARE(nameField(files)->text(), u"A.md"_s);
        QCOMPARE(files->windowHandle()->transientParent(), &card); // a pinned one would hide it
        QTest::keyClick(files, Qt::Key_Escape);
        QTRY_VERIFY(!dialog<QFileDialog>());
    }

    void theNameIsMadeOfTheHeadingAsItIsNow()
    {
        Fixture f(u"A"_s);
        f.select(u"A"_s);
        f.lastWords = u"<h1>Tea / coffee: 1?</h1>"_s;
        f.transfer->exportNote();
        const QString name = nameField(openedDialog<QFileDialog>())->text();
        QVERIFY2(name.startsWith(u"Tea"_s) && name.endsWith(u".md"_s) && !name.contains(u'/'),
                 qPrintable(name));
    }

    void aNoteWithoutAHeadingIsCalledSo()
    {
        Fixture f(u"A"_s);
        f.select(u"A"_s);
        speak(AppLanguage::pl);
        f.lastWords = u"<h1><br></h1>"_s;
        f.transfer->exportNote();
        auto *files = openedDialog<QFileDialog>();
        QCOMPARE(files->windowTitle(), u"Eksportuj notatkę"_s);
        QCOMPARE(nameField(files)->text(), L10n::untitled() + u".md"_s);
    }

    void theNameFollowsTheKind_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("file");
        QTest::newRow("as proposed") << 1 << QString() << u"A.html"_s;
        QTest::newRow("without a suffix") << 1 << u"tea"_s << u"tea.html"_s;
        QTest::newRow("with another kind's") << 1 << u"tea.md"_s << u"tea.html"_s;
        QTest::newRow("with its own, in capitals") << 1 << u"tea.HTML"_s << u"tea.HTML"_s;
        QTest::newRow("with a dot") << 0 << u"tea 1.2"_s << u"tea 1.2.md"_s;
        QTest::newRow("PDF") << 2 << u"tea"_s << u"tea.pdf"_s;
    }
    void theNameFollowsTheKind()
    {
        QFETCH(int, kind);
        QFETCH(QString, typed);
        QFETCH(QString, file);
        Fixture f(u"A"_s);
        f.select(u"A"_s);
        f.transfer->exportNote();
        auto *files = openedDialog<QFileDialog>();
        files->setDirectory(f.path({}));
        chooseKind(files, kind);
        if (typed.isEmpty())
            QTest::keyClick(nameField(files), Qt::Key_Return);
        else
            enterName(files, f.path(typed));
        QTRY_COMPARE_WITH_TIMEOUT(f.names(), QStringList{file}, longEnough);
        const QByteArray starts[] = {"# A", "<!DOCTYPE html>", "%PDF-"};
        QVERIFY(f.read(file).startsWith(starts[kind]));
    }

    void whatWasNotNamedIsNotReplaced()
    {
        Fixture f(u"A"_s);
        f.select(u"A"_s);
        f.write(u"tea.md"_s, "mine");
        f.transfer->exportNote();
        enterName(openedDialog<QFileDialog>(), f.path(u"tea.html"_s));
        QTRY_COMPARE(f.names(), (QStringList{u"tea 2.md"_s, u"tea.md"_s}));
        QCOMPARE(f.read(u"tea.md"_s), "mine");
        QVERIFY(f.ends());
    }

    void aNoteDeletedMeanwhileIsNotExported()
    {
        Fixture f(u"A"_s);
        f.select(u"A"_s);
        f.transfer->exportNote();
        f.store.deleteNote(f.id(u"A"_s));
        enterName(openedDialog<QFileDialog>(), f.path(u"a.md"_s));
        QTRY_VERIFY(!dialog<QFileDialog>());
        QVERIFY(!f.transfer->isBusy());
        QCOMPARE(f.names(), QStringList());
    }

    void allNotesAreAskedAPlaceFor()
    {
        Fixture f(u"A b"_s);
        const QString name = u"Plim "_s + QDate::currentDate().toString(Qt::ISODate);
        QDir(f.home.documents()).mkdir(name);
        f.transfer->exportAll();
        auto *files = openedDialog<QFileDialog>();
        QCOMPARE(files->windowTitle(), u"Export all notes into a folder"_s);
        QCOMPARE(nameField(files)->text(), name + u" 2"_s);
        chooseKind(files, 1);
        QTest::keyClick(nameField(files), Qt::Key_Return);
        QVERIFY(QTest::qWaitFor([&] { return !f.offer().isEmpty(); }, longEnough));
        QCOMPARE(QDir(f.home.documents() + u'/' + name + u" 2"_s).entryList(QDir::Files),
                 (QStringList{u"A.html"_s, u"b.html"_s}));
    }

    // Importing, printing

    void severalFilesAreChosen()
    {
        Fixture f(u"A"_s);
        f.write(u"1.md"_s, "# M\n");
        f.write(u"2.md"_s, "# N\n");
        f.transfer->importNotes();
        auto *files = openedDialog<QFileDialog>();
        QCOMPARE(files->windowTitle(), u"Import notes"_s);
        QVERIFY(files->nameFilters().constFirst().contains(u"*.md"_s));
        enterName(files, u"\"%1\" \"%2\""_s.arg(f.path(u"1.md"_s), f.path(u"2.md"_s)));
        QTRY_COMPARE(f.order(), u"M N A"_s);
    }

    void theNoteInFrontIsPrinted()
    {
        Fixture f(u"A"_s);
        f.select(u"A"_s);
        f.lastWords = u"<h1>A/B</h1>"_s;
        f.transfer->printNote();
        auto *printing = openedDialog<QPrintDialog>();
        QCOMPARE(printing->windowTitle(), u"Print note"_s);
        QVERIFY(!printing->printer()->docName().contains(u'/'));
        printing->printer()->setOutputFormat(QPrinter::PdfFormat);
        printing->printer()->setOutputFileName(f.path(u"a.pdf"_s));
        QCOMPARE(f.collections, 1);
        Q_EMIT printing->accepted();
        QVERIFY(f.transfer->isBusy());
        QVERIFY(f.ends());
        QVERIFY(f.read(u"a.pdf"_s).startsWith("%PDF-"));
        QCOMPARE(f.told.size(), 0);
    }
};

int main(int argc, char **argv)
{
    preparePlatform(); // before the web engine
    const QApplication application(argc, argv);
    TestTransferDialogs test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_transfer_dialogs.moc"
