#include "tests/Patience.h"
#include "tests/e2e/PlimRun.h"
#include "tests/e2e/StoredNotes.h"

#include <QDir>
#include <QJsonDocument>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;

namespace
{
const QPoint page(700, 300);
const QRect besideTheQuestion(330, 300, 1, 1); ///< in a dialog amid the window
constexpr QRgb sheet = 0x2f333b;

const QString plain = u"<p>line</p>"_s;

/// A line that gets its format by a key, in the X server's names, and what the file has then.
struct Format {
    const char *key;
    const char *word;
    const char *written;
};
constexpr Format formats[]{
    {"ctrl+b", "one", "<b>one</b>"},
    {"ctrl+i", "two", "<i>two</i>"},
    {"ctrl+u", "three", "<u>three</u>"},
    {"ctrl+alt+1", "four", "<h1>four</h1>"},
    {"ctrl+alt+2", "five", "<h2>five</h2>"},
    {"ctrl+alt+3", "six", "<h3>six</h3>"},
    {"ctrl+alt+0", "six", "<h2>five</h2><p>six</p>"}, // the same line again
    {"ctrl+shift+l", "eight", "<ul><li>eight</li></ul>"},
    {"ctrl+shift+c", "nine", "nine</li></ul>"},
};

QString lineOf(const PlimRun &plim)
{
    return plim.bodyOnDisk().section(u"</h1>"_s, 1);
}

/// Where the menu's title is in the main window, in English.
QPoint menuTitle(int index)
{
    constexpr int middles[]{474, 517, 558, 607, 668, 737};
    return {middles[index], 23};
}
} // namespace

/// The built program's menus and keys, by a real keyboard and mouse.
class TestEndToEndMenus : public QObject
{
    Q_OBJECT

    /// Below the note's last line, one line for each format; a command goes to the page by another
    /// way than the keys, so it is waited for.
    static QString useEveryFormat(const PlimRun &plim, int note)
    {
        QString last;
        for (const Format &format : formats) {
            const QString word = QString::fromLatin1(format.word);
            if (word != last) {
                plim.press({u"ctrl+End"_s, u"Return"_s});
                if (last == "eight"_L1)
                    plim.press({u"Return"_s}); // out of the list
                plim.type(word);
            }
            last = word;
            plim.press({u"shift+Home"_s, QString::fromLatin1(format.key)});
            const auto isWritten = [&] {
                return plim.bodyOnDisk(note).contains(QLatin1StringView(format.written));
            };
            if (!QTest::qWaitFor(isWritten, longEnough))
                return QLatin1StringView(format.key) + u": "_s + plim.bodyOnDisk(note);
            if (format.written[2] != '>') // a block's
                continue;
            plim.press({QString::fromLatin1(format.key)}); // or the next line has it as well
            if (!QTest::qWaitFor([&] { return !isWritten(); }, longEnough))
                return QLatin1StringView(format.key) + u" again: "_s + plim.bodyOnDisk(note);
        }
        return {};
    }

private Q_SLOTS:
    void everyFormattingKeyWorks_data()
    {
        QTest::addColumn<QString>("language");
        QTest::newRow("pl") << u"pl"_s;
        QTest::newRow("en") << u"en"_s;
    }
    void everyFormattingKeyWorks()
    {
        QFETCH(QString, language);
        const ThrowAwayHome home;
        storeLanguage(home, language);
        const QString body = u"<h1>A</h1>"_s + plain;
        storeNotes(home, {storedNote(storedID(0), body), storedNote(storedID(1), body)});
        PlimRun plim(home);
        QVERIFY(plim.open());
        QVERIFY(plim.selectRow(0, storedID(0)));
        plim.click(page);
        QCOMPARE(useEveryFormat(plim, 0), QString());
        QVERIFY(plim.openSticky(1, storedID(1)));
        plim.stickies().constFirst().click(StickyOnScreen::page());
        QCOMPARE(useEveryFormat(plim, 1), QString());
        QCOMPARE(plim.warnings().join(u'\n'), QString());
    }

    void whatIsChosenInAMenuIsDoneToTheSelection()
    {
        const ThrowAwayHome home;
        storeLanguage(home, u"en"_s);
        storeNotes(home, {storedNote(storedID(0), u"<h1>A</h1>"_s + plain)});
        PlimRun plim(home);
        QVERIFY(plim.open());
        QVERIFY(plim.selectRow(0, storedID(0)));
        plim.click(page);
        plim.press({u"ctrl+End"_s, u"shift+Home"_s});
        // By keys: the first item of the format menu
        plim.press({u"alt+f"_s});
        QTRY_VERIFY(plim.menu());
        plim.press({u"Return"_s});
        QTRY_VERIFY2(lineOf(plim).contains(u"<b>line</b>"_s), qPrintable(plim.bodyOnDisk()));
        QTRY_VERIFY(!plim.menu());
        // What was selected still is, and the next key goes there.
        plim.press({u"ctrl+b"_s});
        QTRY_COMPARE(lineOf(plim), plain);
        // By the mouse: italic is the second.
        plim.click(menuTitle(3));
        QTRY_VERIFY(plim.menu());
        const QRect menu = plim.menu()->geometry();
        XTools::xdotool(
            {u"mousemove"_s, QString::number(menu.left() + 40), QString::number(menu.top() + 46)});
        XTools::xdotool({u"click"_s, u"1"_s});
        QTRY_VERIFY2(lineOf(plim).contains(u"<i>line</i>"_s), qPrintable(plim.bodyOnDisk()));
        plim.type(u"new"_s); // takes the place of what is selected
        QTRY_VERIFY2(!lineOf(plim).contains(u"line"_s) && lineOf(plim).contains(u"new"_s),
                     qPrintable(plim.bodyOnDisk()));
        QCOMPARE(plim.warnings().join(u'\n'), QString());
    }

    void aMenuIsClosedAsItWasOpened()
    {
        const ThrowAwayHome home;
        storeLanguage(home, u"en"_s);
        storeNotesCalled(home, {u"A"_s});
        PlimRun plim(home);
        QVERIFY(plim.open());
        plim.click(menuTitle(1));
        // Looked at once each time: one menu goes before the next one comes.
        QRect second;
        const auto isOpen = [&] {
            const auto menu = plim.menu();
            second = menu ? menu->geometry() : QRect();
            return menu.has_value();
        };
        QTRY_VERIFY(isOpen());
        plim.point(menuTitle(3)); // hovering goes on
        const auto nextIsOpen = [&] {
            const auto menu = plim.menu();
            return menu && menu->geometry().left() > second.left();
        };
        QTRY_VERIFY(nextIsOpen());
        plim.click(menuTitle(3));
        QTRY_VERIFY(!plim.menu());
        plim.press({u"F10"_s});
        QTRY_VERIFY(plim.menu());
        plim.press({u"Escape"_s});
        QTRY_VERIFY(!plim.menu());
        QVERIFY(plim.isRunning());
        QCOMPARE(plim.warnings().join(u'\n'), QString());
    }

    void aStickysKeysReachTheMainWindow()
    {
        const ThrowAwayHome home;
        storeNotesCalled(home, {u"A"_s, u"B"_s});
        PlimRun plim(home);
        QVERIFY(plim.open());
        QVERIFY(plim.openSticky(0, storedID(0)));
        const StickyOnScreen sticky = plim.stickies().constFirst();
        XTools::xdotool({u"windowminimize"_s, QString::number(plim.mainWindow().id())});
        QTRY_VERIFY(plim.mainWindow().id() == XCB_NONE);
        QVERIFY(sticky.waitUntilActive());
        sticky.click(StickyOnScreen::page());
        QVERIFY(plim.pressUntil(u"ctrl+f"_s, [&] {
            return plim.mainWindow().id() != XCB_NONE && plim.mainWindow().isActive();
        }));
        QTRY_VERIFY(plim.isSearching());
        plim.type(u"zzz"_s); // into the search, and into no note
        plim.press({u"Escape"_s});
        QVERIFY(sticky.waitUntilActive());
        QVERIFY(plim.waitUntilWriting(0)); // again: where it was before
        plim.press({u"ctrl+n"_s});
        QTRY_COMPARE(plim.notesOnDisk().size(), 3);
        QTRY_VERIFY(plim.mainWindow().isActive());
        for (int note = 0; note < 3; ++note)
            QVERIFY(!plim.bodyOnDisk(note).contains(u"zzz"_s));
        QCOMPARE(plim.warnings().join(u'\n'), QString());
    }

    void anEarlierVersionComesBackOnTheDisk()
    {
        const ThrowAwayHome home;
        storeLanguage(home, u"en"_s);
        storeNotesCalled(home, {u"Old"_s});
        QVERIFY(QFile::rename(home.path(u"data/Plim/notes.json"_s),
                              home.path(u"data/Plim/notes.json.bak.1"_s)));
        storeNotes(home, {storedNote(storedID(4), u"<h1>New</h1>"_s + plain)});
        PlimRun plim(home);
        QVERIFY(plim.open());
        QVERIFY(plim.openSticky(0, storedID(4)));
        QVERIFY(plim.mainWindow().waitUntilActive());
        QVERIFY(plim.selectRow(0, storedID(4)));
        plim.click(page);
        plim.press({u"ctrl+End"_s});
        plim.type(u" last"_s);
        // The window may get the keyboard back only after the key that was meant for the dialog:
        // then it is asked once more.
        const auto replaces = [&] {
            plim.press({u"alt+w"_s});
            if (!QTest::qWaitFor([&] { return plim.menu().has_value(); }, longEnough / 6))
                return false;
            plim.press({u"Up"_s, u"Return"_s}); // the last item
            if (!QTest::qWaitFor([&] { return !plim.menu(); }, longEnough))
                return false;
            // It has the keyboard when it has faded in, which only its own colour tells.
            const auto isAsked = [&] {
                return (plim.mainWindow().pixels(besideTheQuestion).pixel(0, 0) & 0xffffff) ==
                       sheet;
            };
            if (!QTest::qWaitFor(isAsked, longEnough))
                return false;
            plim.press({u"shift+Tab"_s, u"Return"_s}); // from "Cancel"
            return QTest::qWaitFor([&] { return plim.bodyOnDisk().contains(u"Old"_s); },
                                   longEnough / 4);
        };
        const auto asksAgain = [&] { return plim.press({u"Escape"_s}), replaces(); };
        QVERIFY(replaces() || asksAgain() || asksAgain());
        QTRY_COMPARE(plim.bodyOnDisk(), u"<h1>Old</h1><p>about Old</p>"_s);
        QTRY_VERIFY(plim.stickies().isEmpty());
        const QStringList kept =
            QDir(home.data()).entryList({u"notes.json.replaced-*"_s}, QDir::Files);
        QCOMPARE(kept.size(), 1);
        const QByteArray bytes = home.read(u"data/Plim/"_s + kept[0]);
        QVERIFY2(bytes.contains("line last"), bytes.constData());
        plim.press({u"ctrl+z"_s}); // nobody writes: the offer is taken
        QTRY_VERIFY(plim.bodyOnDisk().contains(u"line last"_s));
        QCOMPARE(plim.notesOnDisk().size(), 1);
        plim.press({u"ctrl+q"_s});
        QCOMPARE(plim.exitCode(), 0);
        QVERIFY(plim.bodyOnDisk().contains(u"line last"_s));
    }

    void quittingByKeyKeepsTheLastWords()
    {
        const ThrowAwayHome home;
        storeNotes(home, {storedNote(storedID(0), u"<h1>A</h1>"_s)});
        PlimRun plim(home);
        QVERIFY(plim.open());
        QVERIFY(plim.selectRow(0, storedID(0)));
        plim.type(u"last words"_s);
        plim.press({u"ctrl+q"_s});
        QCOMPARE(plim.exitCode(), 0);
        QCOMPARE(plim.bodyOnDisk(), u"<h1>A</h1>last words"_s);
        QCOMPARE(plim.warnings().join(u'\n'), QString());
    }
};

QTEST_GUILESS_MAIN(TestEndToEndMenus)
#include "tst_e2e_menus.moc"
