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
using Gesture = std::function<void(const PlimRun &, const StickyOnScreen &)>;

QStringList framesOf(const PlimRun &plim)
{
    QStringList frames;
    for (const StickyOnScreen &sticky : plim.stickies())
        frames << sticky.frame();
    return frames;
}
} // namespace

/// Where the sticky windows are from one start of the built program to the next, on a screen of
/// 1920 × 1200.
class TestEndToEndStickyLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theyAreWhereTheyWereLeft();
    void oneThatWasCollapsedIsOneStepAway_data();
    void oneThatWasCollapsedIsOneStepAway();
    void theyLeaveTheKeyboardWhereItIs();
    void anythingMayBeSaved_data();
    void anythingMayBeSaved();
};

// Three are moved, resized and collapsed, a fourth one is closed.
void TestEndToEndStickyLayout::theyAreWhereTheyWereLeft()
{
    const ThrowAwayHome home;
    const StoredLayout layout(home);
    storeNotesCalled(home, {u"A"_s, u"B"_s, u"C"_s, u"D"_s});
    QStringList left;
    {
        PlimRun plim(home);
        QVERIFY(plim.open());
        const QPoint ways[]{
            {-780, -300}, {780, -300}, {-780, 300}, {780, 300}}; // off the main window
        for (int note = 0; note < 4; ++note) {
            QVERIFY(plim.mainWindow().waitUntilActive());
            QVERIFY(plim.openSticky(note, storedID(note)));
            const StickyOnScreen sticky = plim.stickies().constLast();
            const QString middle = sticky.frame();
            sticky.pull(StickyOnScreen::grip(), StickyOnScreen::grip() + ways[note]);
            QTRY_VERIFY(sticky.frame() != middle);
            QTRY_COMPARE(layout.frames().value(note), sticky.frame());
        }
        const QList<StickyOnScreen> stickies = plim.stickies();
        stickies[1].pull(QPoint(299, 339), QPoint(319, 399));
        QTRY_VERIFY(stickies[1].geometry().height() > 380);
        QTRY_COMPARE(layout.frames()[1], stickies[1].frame());
        stickies[2].clickControl(StickyOnScreen::Fold);
        QTRY_COMPARE(stickies[2].geometry().height(), 56);
        stickies[3].clickControl(StickyOnScreen::Close);
        QTRY_COMPARE(plim.stickies().size(), 3);
        left = framesOf(plim);
        plim.sendSignal(SIGTERM);
        QCOMPARE(plim.exitCode(), 0);
        QCOMPARE(layout.frames(), left);
    }
    const QByteArray bytes = layout.read();
    for (int start = 0; start < 2; ++start) {
        PlimRun plim(home);
        QVERIFY(plim.open());
        QTRY_COMPARE(framesOf(plim), left);
        QCOMPARE(layout.read(), bytes);
        if (start == 0) { // with nothing but them on the screen
            plim.closeWindow();
            QTRY_COMPARE(plim.mainWindow().id(), xcb_window_t(XCB_NONE));
        }
        plim.sendSignal(start == 0 ? SIGINT : SIGTERM);
        QCOMPARE(plim.exitCode(), 0);
        QCOMPARE(layout.read(), bytes);
        QCOMPARE(plim.warnings().join(u'\n'), QString());
    }
}

void TestEndToEndStickyLayout::oneThatWasCollapsedIsOneStepAway_data()
{
    QTest::addColumn<Gesture>("expand");
    QTest::newRow("its button") << Gesture([](const PlimRun &, const StickyOnScreen &sticky) {
        sticky.clickControl(StickyOnScreen::Fold);
    });
    QTest::newRow("a double click") << Gesture(
        [](const PlimRun &, const StickyOnScreen &sticky) { sticky.doubleClick(QPoint(100, 28)); });
    QTest::newRow("the keyboard") << Gesture([](const PlimRun &plim, const StickyOnScreen &sticky) {
        const auto isExpanded = [&] { return sticky.geometry().height() > 56; };
        QVERIFY(sticky.waitUntilActive());
        QVERIFY(plim.pressUntil(u"ctrl+m"_s, isExpanded));
    });
}

void TestEndToEndStickyLayout::oneThatWasCollapsedIsOneStepAway()
{
    QFETCH(Gesture, expand);
    const ThrowAwayHome home;
    const StoredLayout layout(home);
    storeNotesCalled(home, {u"A"_s});
    layout.write('[' + StoredLayout::entry(storedID(0), 20, 500, 310, 56) + ']');
    PlimRun plim(home);
    QVERIFY(plim.open());
    QTRY_COMPARE(framesOf(plim), QStringList{u"20,500 310x56"_s});
    const StickyOnScreen sticky = plim.stickies().constFirst();
    QVERIFY(plim.waitUntilSaid(u"plim.editor: shown"_s));
    expand(plim, sticky);
    if (QTest::currentTestFailed())
        return;
    QTRY_COMPARE(sticky.frame(), u"20,216 310x340"_s);
    QTRY_COMPARE(layout.frames(), QStringList{sticky.frame()});
    QTRY_VERIFY(sticky.showsText());
    plim.type(u"typed at once"_s);
    QTRY_VERIFY(plim.bodyOnDisk().contains(u"typed at once"));
    QCOMPARE(plim.warnings().join(u'\n'), QString());
}

void TestEndToEndStickyLayout::theyLeaveTheKeyboardWhereItIs()
{
    const ThrowAwayHome home;
    constexpr int count = 8;
    QJsonArray notes;
    QByteArrayList entries;
    for (int note = 0; note < count; ++note) {
        notes << storedNote(storedID(note), u"<h1>N</h1>"_s);
        entries << StoredLayout::entry(storedID(note), 100 + 200 * note, 400, 300, 340);
    }
    storeNotes(home, notes);
    StoredLayout(home).write('[' + entries.join(',') + ']');
    PlimRun plim(home);
    // The test may be the slower one of the two, and has to be there before some of the windows.
    for (int attempt = 0; attempt < 20; ++attempt) {
        QVERIFY(plim.open());
        QVERIFY(plim.goToSearch());
        if (plim.stickies().size() < count)
            break;
        plim.sendSignal(SIGTERM);
        QCOMPARE(plim.exitCode(), 0);
    }
    QVERIFY(plim.isRunning() && plim.stickies().size() < count);
    QString typed;
    while (plim.stickies().size() < count) {
        plim.type(u"word "_s);
        typed += u"word ";
        QVERIFY(plim.isRunning() && typed.size() < 500);
    }
    plim.type(u"end"_s);
    typed += u"end";
    QVERIFY(plim.waitUntilSaid(u"plim.editor: shown"_s, count));
    QVERIFY(plim.mainWindow().isActive());

    // What is in the search field goes into a note, and with it into the file.
    plim.press({u"ctrl+a"_s, u"ctrl+x"_s});
    QVERIFY(plim.selectRow(0, storedID(0)));
    plim.press({u"ctrl+End"_s, u"ctrl+v"_s});
    QTRY_COMPARE(plim.bodyOnDisk(), u"<h1>N</h1>"_s + typed);
    QCOMPARE(plim.warnings().join(u'\n'), QString());
}

void TestEndToEndStickyLayout::anythingMayBeSaved_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QStringList>("shown"); ///< on a screen of 1920 × 1200
    QTest::addColumn<QStringList>("kept");
    const QString id = storedID(0);
    const auto whole = [](const QByteArrayList &entries) { return '[' + entries.join(',') + ']'; };
    const auto entry = [&](double x, double y, double width, double height) {
        return StoredLayout::entry(id, x, y, width, height);
    };
    const QByteArray good = entry(100, 200, 300, 340);
    const QStringList asSaved{u"100,200 300x340"_s};
    const QStringList none;
    QTest::newRow("right of every screen")
        << whole({entry(5000, 200, 300, 340)}) << QStringList{u"1620,200 300x340"_s}
        << QStringList{u"5000,200 300x340"_s};
    QTest::newRow("below every screen")
        << whole({entry(100, -3000, 300, 340)}) << QStringList{u"100,0 300x340"_s}
        << QStringList{u"100,-3000 300x340"_s};
    QTest::newRow("farther than windows go")
        << whole({entry(-1e300, 1e300, 300, 340)}) << QStringList{u"0,860 300x340"_s}
        << QStringList{u"-1e+300,1e+300 300x340"_s};
    QTest::newRow("no size") << whole({entry(100, 200, 0, 0)}) << asSaved
                             << QStringList{u"100,200 0x0"_s};
    QTest::newRow("less than no size")
        << whole({entry(100, 200, -300, -340)}) << asSaved << QStringList{u"100,200 -300x-340"_s};
    QTest::newRow("fractions") << whole({entry(100.2, 200.2, 300.2, 340.2)}) << asSaved
                               << QStringList{u"100.2,200.2 300.2x340.2"_s};
    QTest::newRow("text for a number")
        << whole({R"({"noteID":")" + id.toLatin1() +
                  R"(","x":"100","y":200,"width":300,"height":340})"})
        << none << none;
    QTest::newRow("twice") << whole({good, entry(900, 300, 300, 340)}) << asSaved << asSaved;
    QTest::newRow("a note that is gone")
        << whole({StoredLayout::entry(storedID(6), 1, 1, 300, 340), good}) << asSaved << asSaved;
    QTest::newRow("other things") << whole({"null", "[]", "7", good}) << asSaved << asSaved;
    QTest::newRow("cut off") << whole({good}).chopped(4) << none << none;
    QTest::newRow("bytes") << QByteArray("\x00\xff\xfe[{", 5) << none << none;
}

// A window that its user has not touched stays saved as it was, wherever it had to be shown.
void TestEndToEndStickyLayout::anythingMayBeSaved()
{
    QFETCH(QByteArray, text);
    QFETCH(QStringList, shown);
    QFETCH(QStringList, kept);
    const ThrowAwayHome home;
    const StoredLayout layout(home);
    storeNotesCalled(home, {u"A"_s});
    layout.write(text);
    PlimRun plim(home);
    QVERIFY(plim.open());
    QVERIFY(plim.waitUntilSaid(u"plim.sticky: loadLayout"_s,
                               2)); // when it knows them, and to restore them
    QTRY_COMPARE(framesOf(plim), shown);
    plim.sendSignal(SIGTERM);
    QCOMPARE(plim.exitCode(), 0);
    QCOMPARE(layout.frames(), kept);
    QCOMPARE(plim.warnings().join(u'\n'), QString());
}

QTEST_GUILESS_MAIN(TestEndToEndStickyLayout)
#include "tst_e2e_sticky_layout.moc"
