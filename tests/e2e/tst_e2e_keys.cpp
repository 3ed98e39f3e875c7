#include "tests/Patience.h"
#include "tests/e2e/PlimRun.h"
#include "tests/e2e/StoredLayout.h"
#include "tests/e2e/StoredNotes.h"

#include <QProcess>
#include <QScopeGuard>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QPoint page(700, 300);
} // namespace

/// The commands' keys as real keyboards send them: in the main window and in a sticky, in both
/// languages.
class TestEndToEndKeys : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thePageOfShortcutsComes_data()
    {
        QTest::addColumn<QString>("keyboard");
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("key");
        const QString polish = u"Skróty klawiszowe"_s;
        const QString english = u"Keyboard shortcuts"_s;
        const QString questionMark = u"ctrl+shift+slash"_s; // it is typed with Shift
        QTest::newRow("pl, F1") << u"us"_s << u"pl"_s << polish << u"F1"_s;
        QTest::newRow("en, F1") << u"us"_s << u"en"_s << english << u"F1"_s;
        QTest::newRow("pl, Ctrl+?") << u"us"_s << u"pl"_s << polish << questionMark;
        QTest::newRow("en, Ctrl+?") << u"us"_s << u"en"_s << english << questionMark;
        QTest::newRow("Ctrl+? of a Polish keyboard")
            << u"pl"_s << u"pl"_s << polish << questionMark;
    }
    void thePageOfShortcutsComes()
    {
        QFETCH(QString, keyboard);
        QFETCH(QString, language);
        QFETCH(QString, title);
        QFETCH(QString, key);
        QCOMPARE(QProcess::execute(u"setxkbmap"_s, {keyboard}), 0);
        const auto restore = qScopeGuard([] { QProcess::execute(u"setxkbmap"_s, {u"us"_s}); });
        const ThrowAwayHome home;
        storeLanguage(home, language);
        storeNotesCalled(home, {u"A"_s});
        PlimRun plim(home);
        QVERIFY(plim.open());
        const auto isThere = [&] {
            const WindowOnScreen window = plim.windowTitled(title);
            return window.id() != XCB_NONE && window.isActive();
        };
        const auto isGone = [&] { return plim.windowTitled(title).id() == XCB_NONE; };
        QVERIFY(plim.pressUntil(key, isThere));
        QVERIFY(plim.pressUntil(u"Escape"_s, isGone));
        // Also while there is something to type into, which takes nothing of it.
        QVERIFY(plim.mainWindow().waitUntilActive());
        QVERIFY(plim.openSticky(0, storedID(0)));
        QVERIFY(plim.waitUntilWriting(0));
        const QString body = plim.bodyOnDisk();
        QVERIFY(plim.pressUntil(key, isThere));
        QVERIFY(plim.pressUntil(u"Escape"_s, isGone));
        (void)plim.pressUntil(u"ctrl+q"_s, [&] { return !plim.isRunning(); });
        QCOMPARE(plim.exitCode(), 0);
        QCOMPARE(plim.bodyOnDisk(), body);
        QCOMPARE(plim.warnings().join(u'\n'), QString());
    }

    void whatWasTakenBackIsDoneAgain_data() { languages(); }
    void whatWasTakenBackIsDoneAgain()
    {
        QFETCH(QString, language);
        const ThrowAwayHome home;
        storeLanguage(home, language);
        storeNotesCalled(home, {u"A"_s, u"B"_s});
        PlimRun plim(home);
        QVERIFY(plim.open());
        QVERIFY(plim.selectRow(0, storedID(0)));
        plim.click(page);
        takeBackAndDoAgain(plim, 0);
        QVERIFY(plim.openSticky(1, storedID(1)));
        takeBackAndDoAgain(plim, 1);
        QCOMPARE(plim.warnings().join(u'\n'), QString());
    }

    void allNotesComeOut_data() { languages(); }
    void allNotesComeOut()
    {
        QFETCH(QString, language);
        const ThrowAwayHome home;
        storeLanguage(home, language);
        storeNotesCalled(home, {u"A"_s, u"B"_s, u"C"_s});
        PlimRun plim(home);
        QVERIFY(plim.open());
        QVERIFY(plim.pressUntil(u"ctrl+shift+n"_s, [&] { return plim.stickies().size() == 3; }));
        QTRY_COMPARE(StoredLayout(home).noteIDs(),
                     QStringList({storedID(0), storedID(1), storedID(2)}));
        QCOMPARE(plim.notesOnDisk().size(), 3);

        // From a sticky, too: the one that has been closed.
        const StickyOnScreen last = plim.stickies().constLast();
        QVERIFY(last.waitUntilActive());
        last.clickControl(StickyOnScreen::Close);
        QTRY_COMPARE(plim.stickies().size(), 2);
        QVERIFY(plim.stickies().constFirst().waitUntilActive());
        QVERIFY(plim.pressUntil(u"ctrl+shift+n"_s, [&] { return plim.stickies().size() == 3; }));
        QCOMPARE(plim.notesOnDisk().size(), 3);
        QCOMPARE(plim.warnings().join(u'\n'), QString());
    }

    void theMainWindowIsClosed_data() { languages(); }
    void theMainWindowIsClosed()
    {
        QFETCH(QString, language);
        const ThrowAwayHome home;
        storeLanguage(home, language);
        storeNotesCalled(home, {u"A"_s});
        const auto isClosed = [](const PlimRun &plim) {
            return plim.pressUntil(u"ctrl+w"_s, [&] { return plim.mainWindow().id() == XCB_NONE; });
        };
        {
            PlimRun plim(home);
            QVERIFY(plim.open());
            QVERIFY(plim.openSticky(0, storedID(0)));
            QVERIFY(plim.mainWindow().waitUntilActive());
            QVERIFY(isClosed(plim));
            const StickyOnScreen sticky = plim.stickies().constFirst();
            QVERIFY(sticky.waitUntilActive());
            QVERIFY(plim.isRunning());
            // The sticky's own key closes that, and nothing is left.
            (void)plim.pressUntil(u"ctrl+w"_s, [&] { return !plim.isRunning(); });
            QCOMPARE(plim.exitCode(), 0);
            QCOMPARE(plim.warnings().join(u'\n'), QString());
        }
        PlimRun plim(home); // with no sticky it is the end
        QVERIFY(plim.open());
        QVERIFY(isClosed(plim));
        QCOMPARE(plim.exitCode(), 0);
        QCOMPARE(plim.warnings().join(u'\n'), QString());
    }

private:
    static void languages()
    {
        QTest::addColumn<QString>("language");
        QTest::newRow("pl") << u"pl"_s;
        QTest::newRow("en") << u"en"_s;
    }

    /// In the editor that has the keyboard, which is that note's.
    static void takeBackAndDoAgain(const PlimRun &plim, int note)
    {
        QVERIFY(plim.waitUntilWriting(note));
        const auto hasWords = [&] { return plim.bodyOnDisk(note).contains(u"one two"_s); };
        plim.press({u"ctrl+End"_s, u"Return"_s});
        plim.type(u"one two"_s);
        QTRY_VERIFY2(hasWords(), qPrintable(plim.bodyOnDisk(note)));
        const QString written = plim.bodyOnDisk(note);
        plim.press({u"ctrl+z"_s});
        QTRY_VERIFY2(!hasWords(), qPrintable(plim.bodyOnDisk(note)));
        plim.press({u"ctrl+shift+z"_s});
        QTRY_COMPARE(plim.bodyOnDisk(note), written);
    }
};

QTEST_GUILESS_MAIN(TestEndToEndKeys)
#include "tst_e2e_keys.moc"
