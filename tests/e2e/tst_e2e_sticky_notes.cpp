#include "tests/Patience.h"
#include "tests/e2e/PlimRun.h"
#include "tests/e2e/StoredLayout.h"
#include "tests/e2e/StoredNotes.h"

#include <QTest>

#include <csignal>
#include <functional>

using namespace Qt::StringLiterals;

namespace
{
const QPoint closeMain(24, 24);

QPoint row(int number)
{
    return {220, 120 + 70 * number};
}
} // namespace

/// What becomes of the notes that are out in sticky windows, and of the program behind them.
class TestEndToEndStickyNotes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whateverClosesItKeepsTheLastWords();
    void twoWindowsShowOneNote();
    void deletingTheNoteClosesItsCard();
    void theProgramGoesOnWithoutItsMainWindow();
    void aDeadRendererTakesNobodyAlong();
};

void TestEndToEndStickyNotes::whateverClosesItKeepsTheLastWords()
{
    const ThrowAwayHome home;
    const QStringList names{u"A"_s, u"B"_s, u"C"_s};
    storeNotesCalled(home, names);
    PlimRun plim(home);
    QVERIFY(plim.open());
    const auto closeByButton = [](const StickyOnScreen &sticky) {
        sticky.clickControl(StickyOnScreen::Close);
    };
    const auto closeByKeys = [](const StickyOnScreen &) { XTools::press({u"ctrl+w"_s}); };
    const auto closeByDesktop = [](const StickyOnScreen &sticky) { sticky.close(); };
    const std::function<void(const StickyOnScreen &)> ways[]{closeByKeys, closeByButton,
                                                             closeByDesktop};
    for (int note = 0; note < 3; ++note) {
        QVERIFY(plim.mainWindow().waitUntilActive());
        QVERIFY(plim.openSticky(note, storedID(note)));
        const StickyOnScreen sticky = plim.stickies().constLast();
        sticky.pull(StickyOnScreen::grip(), StickyOnScreen::grip() + QPoint(330 * (note - 1), 390));
        QTRY_COMPARE(StoredLayout(home).frames().value(note), sticky.frame());
    }
    QStringList left{storedID(0), storedID(1), storedID(2)};
    QCOMPARE(StoredLayout(home).noteIDs(), left);
    for (int note = 0; note < 3; ++note) {
        const StickyOnScreen sticky = plim.stickies().constFirst();
        sticky.click(StickyOnScreen::page());
        QTRY_VERIFY(sticky.isActive());
        plim.type(u"last words"_s);
        ways[note](sticky);
        left.removeFirst();
        QTRY_COMPARE(plim.stickies().size(), left.size());
        QTRY_COMPARE(StoredLayout(home).noteIDs(), left);
        QTRY_VERIFY2(plim.bodyOnDisk(note).contains(u"last words"),
                     qPrintable(plim.bodyOnDisk(note)));
    }
    QVERIFY(plim.isRunning());
    QCOMPARE(plim.notesOnDisk().size(), 3);
    QCOMPARE(plim.warnings().join(u'\n'), QString());
}

void TestEndToEndStickyNotes::twoWindowsShowOneNote()
{
    const ThrowAwayHome home;
    storeNotesCalled(home, {u"A"_s});
    PlimRun plim(home);
    QVERIFY(plim.open());
    QVERIFY(plim.selectRow(0, storedID(0)));
    QVERIFY(plim.openSticky(0, storedID(0)));
    const StickyOnScreen sticky = plim.stickies().constFirst();
    const WindowOnScreen main = plim.mainWindow();
    sticky.pull(StickyOnScreen::grip(), QPoint(-720, -300)); // off the other one's text
    QTRY_VERIFY(!main.geometry().intersects(sticky.geometry()));
    QTRY_COMPARE(StoredLayout(home).frames(), QStringList{sticky.frame()});
    const QRect mainPage(464, 60, 500, 300);
    const QRect stickyPage(12, 40, 270, 280);
    constexpr int lineOfInk = 150; // more than a caret has
    const auto write = [&](const WindowOnScreen &window, QPoint place, const QString &words) {
        window.click(place);
        if (!QTest::qWaitFor([&] { return window.isActive(); }, longEnough))
            return false;
        plim.press({u"ctrl+End"_s, u"Return"_s});
        plim.type(words);
        return QTest::qWaitFor([&] { return plim.bodyOnDisk().contains(words); }, longEnough);
    };
    const int inMain = inkIn(main.pixels(mainPage));
    QVERIFY(write(sticky, StickyOnScreen::page(), u"in the sticky"_s));
    QTRY_VERIFY(inkIn(main.pixels(mainPage)) > inMain + lineOfInk);
    const int inSticky = inkIn(sticky.pixels(stickyPage));
    QVERIFY(write(main, QPoint(700, 300), u"in the main window"_s));
    QTRY_VERIFY(inkIn(sticky.pixels(stickyPage)) > inSticky + lineOfInk);
    QVERIFY(write(sticky, StickyOnScreen::page(), u"and again"_s));
    QCOMPARE(
        plim.bodyOnDisk(),
        u"<h1>A</h1><p>about A</p><p>in the sticky</p><p>in the main window</p><p>and again</p>"_s);
    QCOMPARE(plim.warnings().join(u'\n'), QString());
}

void TestEndToEndStickyNotes::deletingTheNoteClosesItsCard()
{
    const ThrowAwayHome home;
    storeNotesCalled(home, {u"A"_s, u"B"_s});
    PlimRun plim(home);
    QVERIFY(plim.open());
    QVERIFY(plim.openSticky(1, storedID(1)));
    plim.stickies().constFirst().pull(StickyOnScreen::grip(),
                                      StickyOnScreen::grip() + QPoint(560, 300)); // off the buttons
    QTRY_COMPARE(StoredLayout(home).frames(), QStringList{plim.stickies().constFirst().frame()});
    const QJsonArray notes = plim.notesOnDisk();
    QVERIFY(plim.mainWindow().waitUntilActive());
    plim.point(row(1));
    plim.click(QPoint(412, row(1).y()));
    plim.press({u"shift+Tab"_s, u"shift+Tab"_s, u"Return"_s});
    QTRY_VERIFY(plim.stickies().isEmpty());
    QTRY_COMPARE(plim.notesOnDisk().size(), 1);
    QTRY_VERIFY(StoredLayout(home).noteIDs().isEmpty());
    plim.click(QPoint(830, 662)); // undo
    QTRY_COMPARE(plim.notesOnDisk(), notes);
    plim.sendSignal(SIGTERM);
    QCOMPARE(plim.exitCode(), 0);
    QVERIFY(StoredLayout(home).noteIDs().isEmpty());
    QCOMPARE(plim.warnings().join(u'\n'), QString());
}

void TestEndToEndStickyNotes::theProgramGoesOnWithoutItsMainWindow()
{
    const ThrowAwayHome home;
    storeNotesCalled(home, {u"A"_s, u"B"_s});
    PlimRun plim(home);
    QVERIFY(plim.open());
    QVERIFY(plim.selectRow(0, storedID(0)));
    QVERIFY(plim.openSticky(1, storedID(1)));
    const StickyOnScreen sticky = plim.stickies().constFirst();
    const QRect place = plim.geometry();
    QVERIFY(plim.mainWindow().waitUntilActive());
    plim.click(closeMain);
    QTRY_COMPARE(plim.mainWindow().id(), xcb_window_t(XCB_NONE));
    QVERIFY(sticky.waitUntilActive());
    sticky.click(StickyOnScreen::page());
    plim.type(u"alone"_s);
    QTRY_VERIFY(plim.bodyOnDisk(1).contains(u"alone"));

    // The notebook is where it was, and shows the sticky's note.
    const QString shown = u"plim.editor: shown \"%1\""_s.arg(storedID(1));
    const auto count = plim.said().count(shown);
    sticky.clickControl(StickyOnScreen::Colour);
    QTRY_VERIFY(plim.optionsOf(sticky));
    plim.optionsOf(sticky)->click(QPoint(100, 101));
    QTRY_VERIFY(plim.mainWindow().isActive());
    QTRY_COMPARE(plim.geometry(), place);
    QVERIFY(plim.waitUntilSaid(shown, int(count) + 1));
    plim.click(QPoint(700, 300));
    plim.press({u"ctrl+End"_s});
    plim.type(u" together"_s);
    QTRY_VERIFY(plim.bodyOnDisk(1).contains(u" together"));

    plim.closeWindow();
    QTRY_COMPARE(plim.mainWindow().id(), xcb_window_t(XCB_NONE));
    QVERIFY(plim.isRunning());
    sticky.clickControl(StickyOnScreen::Close);
    QCOMPARE(plim.exitCode(), 0);
    QCOMPARE(plim.warnings().join(u'\n'), QString());
}

// One page is in sight, one behind a capsule, and the main window's own shows nothing.
void TestEndToEndStickyNotes::aDeadRendererTakesNobodyAlong()
{
    const ThrowAwayHome home;
    storeNotesCalled(home, {u"A"_s, u"B"_s});
    PlimRun plim(home);
    QVERIFY(plim.open());
    QVERIFY(plim.openSticky(0, storedID(0)));
    const StickyOnScreen folded = plim.stickies().constLast();
    QVERIFY(plim.pressUntil(u"ctrl+m"_s, [&] { return folded.geometry().height() == 56; }));
    QVERIFY(plim.mainWindow().waitUntilActive());
    QVERIFY(plim.openSticky(1, storedID(1)));
    const StickyOnScreen open = plim.stickies().constLast();
    const qint64 renderer = plim.rendererId();
    QVERIFY(renderer > 0);
    ::kill(pid_t(renderer), SIGKILL);
    for (const int note : {0, 1})
        QVERIFY(
            plim.waitUntilSaid(u"plim.editor: shown \"%1\""_s.arg(storedID(note).toLower()), 2));
    QTRY_VERIFY(open.showsText());
    open.click(StickyOnScreen::page());
    QTRY_VERIFY(open.isActive());
    plim.type(u"after"_s);
    QTRY_VERIFY2(plim.bodyOnDisk(1).contains(u"after"), qPrintable(plim.bodyOnDisk(1)));
    plim.sendSignal(SIGTERM);
    QCOMPARE(plim.exitCode(), 0);
}

QTEST_GUILESS_MAIN(TestEndToEndStickyNotes)
#include "tst_e2e_sticky_notes.moc"
