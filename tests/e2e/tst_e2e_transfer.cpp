#include "tests/Patience.h"
#include "tests/e2e/PlimRun.h"
#include "tests/e2e/StoredNotes.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTest>
#include <QUuid>

#include <csignal>

using namespace Qt::StringLiterals;

namespace
{
const QPoint page(700, 300);

// Places in the menu "Note"
constexpr int importNotes = 2;
constexpr int exportNote = 3;
constexpr int exportAll = 4;
constexpr int printNote = 5;

// Places in the list of formats
constexpr int pages = 1;
constexpr int paper = 2;

/// Chooses in the menu "Note" by keys, and waits until the dialog has the keyboard.
bool choose(const PlimRun &plim, int place, const QString &title)
{
    // A dialog that has just closed gives the keyboard back a moment later.
    if (!QTest::qWaitFor([&] { return plim.mainWindow().isActive(); }, longEnough))
        return false;
    // The window manager says so before the program knows, and a key that comes between is lost.
    const auto isOpen = [&] { return plim.menu().has_value(); };
    for (int attempt = 0; attempt < 5 && !isOpen(); ++attempt) {
        plim.press({u"alt+n"_s});
        (void)QTest::qWaitFor(isOpen, longEnough / 6);
    }
    if (!isOpen())
        return false;
    plim.press(QStringList(place, u"Down"_s) << u"Return"_s);
    return QTest::qWaitFor(
        [&] {
            const WindowOnScreen window = plim.windowTitled(title);
            return window.id() != XCB_NONE && window.isActive();
        },
        longEnough);
}

/// In the dialog that exports all: as the format at that place of the list, into the folder. The
/// name comes last, for what the dialog proposes while it is written would take the other keys.
void exportInto(const PlimRun &plim, int format, const QString &folder)
{
    plim.press(QStringList{u"Tab"_s} + QStringList(format, u"Down"_s) +
               QStringList{u"shift+Tab"_s, u"ctrl+a"_s});
    plim.type(folder);
    plim.press({u"Return"_s});
}

QString words(const QString &pdf)
{
    QProcess reader;
    reader.start(u"pdftotext"_s, {u"-enc"_s, u"UTF-8"_s, pdf, u"-"_s});
    reader.waitForFinished(XTools::patience);
    return QString::fromUtf8(reader.readAllStandardOutput()).simplified();
}
} // namespace

/// Notes leave the built program and come in, through the dialogs as its user sees them.
class TestEndToEndTransfer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNoteIsExportedAsItWasTyped_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("title");
        QTest::newRow("en") << u"en"_s << u"Export note"_s;
        QTest::newRow("pl") << u"pl"_s << u"Eksportuj notatkę"_s;
    }
    void aNoteIsExportedAsItWasTyped()
    {
        QFETCH(QString, language);
        QFETCH(QString, title);
        const ThrowAwayHome home;
        storeLanguage(home, language);
        storeNotesCalled(home, {u"Tea"_s});
        PlimRun plim(home);
        QVERIFY(plim.open());
        QVERIFY(plim.selectRow(0, storedID(0)));
        plim.click(page);
        plim.press({u"ctrl+End"_s});
        plim.type(u" typed last"_s);
        QVERIFY(choose(plim, exportNote, title));
        plim.type(home.path(u"a.md"_s));
        plim.press({u"Return"_s});
        QTRY_VERIFY(!home.read(u"a.md"_s).isEmpty());
        QVERIFY2(home.read(u"a.md"_s).startsWith("# Tea\n") &&
                     home.read(u"a.md"_s).contains("typed last"),
                 home.read(u"a.md"_s));
        // Esc changes nothing, and the program is quit while a dialog is open.
        QVERIFY(choose(plim, exportNote, title));
        plim.press({u"Escape"_s});
        QTRY_COMPARE(plim.windowTitled(title).id(), xcb_window_t(XCB_NONE));
        QVERIFY(choose(plim, exportNote, title));
        plim.sendSignal(SIGTERM);
        QCOMPARE(plim.exitCode(), 0);
        QCOMPARE(plim.warnings().join(u'\n'), QString());
    }

    void allNotesAreExportedAndComeBack()
    {
        const ThrowAwayHome home;
        storeLanguage(home, u"en"_s);
        storeNotesCalled(home, {u"Tea"_s, u"Milk"_s});
        PlimRun plim(home);
        QVERIFY(plim.open());
        const auto files = [&](const QString &folder) {
            return QDir(home.path(folder)).entryList(QDir::Files, QDir::Name);
        };
        QVERIFY(choose(plim, exportAll, u"Export all notes into a folder"_s));
        exportInto(plim, pages, home.path(u"page"_s));
        QTRY_COMPARE(files(u"page"_s), (QStringList{u"Milk.html"_s, u"Tea.html"_s}));
        QVERIFY(home.read(u"page/Tea.html"_s).startsWith("<!DOCTYPE html>"));

        QVERIFY(choose(plim, exportAll, u"Export all notes into a folder"_s));
        exportInto(plim, paper, home.path(u"paper"_s));
        QTRY_COMPARE_WITH_TIMEOUT(files(u"paper"_s), (QStringList{u"Milk.pdf"_s, u"Tea.pdf"_s}),
                                  XTools::patience);
        QVERIFY2(words(home.path(u"paper/Tea.pdf"_s)).startsWith(u"Tea"_s),
                 qPrintable(words(home.path(u"paper/Tea.pdf"_s))));

        QVERIFY(choose(plim, importNotes, u"Import notes"_s));
        plim.type(
            u"\"%1\" \"%2\""_s.arg(home.path(u"page/Milk.html"_s), home.path(u"page/Tea.html"_s)));
        plim.press({u"Return"_s});
        QTRY_COMPARE(plim.notesOnDisk().size(), 4);
        QVERIFY(plim.bodyOnDisk(0).startsWith(u"<h1>Milk</h1>"_s));
        QVERIFY(plim.bodyOnDisk(1).startsWith(u"<h1>Tea</h1>"_s));
        plim.closeWindow();
        QCOMPARE(plim.exitCode(), 0);
        QCOMPARE(plim.warnings().join(u'\n'), QString());
    }

    void aStickyWindowsNoteIsPrinted()
    {
        const ThrowAwayHome home;
        storeLanguage(home, u"en"_s);
        storeNotesCalled(home, {u"Tea"_s, u"Milk"_s});
        PlimRun plim(home);
        QVERIFY(plim.open());
        QVERIFY(plim.openSticky(1, storedID(1)));
        plim.stickies().constFirst().click(StickyOnScreen::page());
        plim.press({u"ctrl+p"_s});
        QTRY_VERIFY(plim.windowTitled(u"Print note"_s).id() != XCB_NONE);
        QTRY_VERIFY(plim.windowTitled(u"Print note"_s).isActive());
        plim.press({u"Return"_s});
        const QString file = home.path(u"Milk.pdf"_s);
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(file), XTools::patience);
        QVERIFY2(words(file).startsWith(u"Milk"_s), qPrintable(words(file)));
        QCOMPARE(plim.warnings().join(u'\n'), QString());
    }

    void theEndAmidAnExportLeavesNothingHalf()
    {
        const ThrowAwayHome home;
        storeLanguage(home, u"en"_s);
        constexpr int count = 2000; // it must not be through before it is told to end
        QJsonArray notes;
        for (int i = 0; i < count; ++i)
            notes << storedNote(QUuid::createUuid().toString(QUuid::WithoutBraces),
                                u"<h1>Tea %1</h1>"_s.arg(i));
        storeNotes(home, notes);
        QDir().mkpath(home.path(u"out"_s));
        PlimRun plim(home);
        QVERIFY(plim.open());
        QVERIFY(choose(plim, exportAll, u"Export all notes into a folder"_s));
        exportInto(plim, paper, home.path(u"out/paper"_s));
        const auto names = [&] {
            return QDir(home.path(u"out"_s))
                .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
        };
        QTRY_COMPARE(names().size(), 1); // it is at work
        plim.sendSignal(SIGTERM);
        QCOMPARE(plim.exitCode(), 0);
        QCOMPARE(names(), QStringList());
        QCOMPARE(plim.notesOnDisk().size(), count);
    }
};

QTEST_GUILESS_MAIN(TestEndToEndTransfer)
#include "tst_e2e_transfer.moc"
