#include "tests/Patience.h"
#include "tests/e2e/PlimRun.h"
#include "tests/e2e/StoredLayout.h"
#include "tests/e2e/StoredNotes.h"

#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;

namespace
{
const QPoint extractAll(385, 24);
const QPoint header(300, 24);

// Of the options, from their upper left corner.
const QPoint bigText(250, 59);
const QPoint lastColour(273, 23);
const QPoint newSticky(100, 137);
const QPoint sorting(100, 173);
const QPoint sortRandomly(100, 208);
const QPoint sortByColour(100, 242);
const QPoint collapseAll(100, 209);
const QPoint expandAll(100, 245);

QStringList allIDs(int count)
{
    QStringList noteIDs;
    for (int note = 0; note < count; ++note)
        noteIDs << storedID(note);
    return noteIDs;
}

/// Notes that are out in windows when the program starts, side by side in the lower half of the
/// screen.
struct Desk {
    explicit Desk(const QStringList &colours) : plim(home)
    {
        QJsonArray notes;
        QByteArrayList entries;
        for (int note = 0; note < colours.size(); ++note) {
            QJsonObject stored = storedNote(storedID(note), u"<h1>N%1</h1>"_s.arg(note));
            stored[u"color"_s] = colours[note];
            notes << stored;
            entries << StoredLayout::entry(storedID(note), 30 + 310 * note, 40, 300,
                                           340 - 20 * note);
            before << frameText(30 + 310 * note, 40, 300, 340 - 20 * note);
        }
        storeNotes(home, notes);
        layout.write('[' + entries.join(',') + ']');
    }

    [[nodiscard]] bool open()
    {
        return plim.open() && QTest::qWaitFor([this] { return frames() == before; }, longEnough);
    }

    [[nodiscard]] QStringList frames() const
    {
        QStringList frames;
        for (const StickyOnScreen &sticky : plim.stickies())
            frames << sticky.frame();
        return frames;
    }

    [[nodiscard]] bool openOptions(const StickyOnScreen &sticky) const
    {
        sticky.clickControl(StickyOnScreen::Colour);
        return QTest::qWaitFor([&] { return plim.optionsOf(sticky).has_value(); }, longEnough);
    }

    /// Empty while they are not open.
    [[nodiscard]] QRect optionsPlace(const StickyOnScreen &sticky) const
    {
        const auto options = plim.optionsOf(sticky);
        return options ? options->geometry() : QRect();
    }

    [[nodiscard]] bool choose(const StickyOnScreen &sticky, const QList<QPoint> &places) const
    {
        if (!openOptions(sticky))
            return false;
        for (const QPoint place : places) {
            const QRect before = optionsPlace(sticky);
            plim.optionsOf(sticky)->click(place);
            // What is clicked next is there when the options have grown by it.
            if (place == sorting &&
                !QTest::qWaitFor([&] { return optionsPlace(sticky).height() > before.height(); },
                                 longEnough))
                return false;
        }
        return QTest::qWaitFor([&] { return !plim.optionsOf(sticky) && sticky.isActive(); },
                               longEnough);
    }

    ThrowAwayHome home;
    StoredLayout layout{home};
    PlimRun plim;
    QStringList before;
};
} // namespace

/// What is done with all sticky windows at once, in the built program on a screen of 1920 × 1200.
class TestEndToEndStickyArranging : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void allNotesComeOutInColumns();
    void theOptionsArrangeAndCtrlZTakesBack();
    void theOptionsChangeTheNoteAndAddOneBeside();
};

void TestEndToEndStickyArranging::allNotesComeOutInColumns()
{
    const ThrowAwayHome home;
    storeNotesCalled(home, {u"A"_s, u"B"_s, u"C"_s, u"D"_s});
    const StoredLayout layout(home);
    PlimRun plim(home);
    QVERIFY(plim.open());
    plim.click(extractAll);
    QTRY_COMPARE_WITH_TIMEOUT(plim.stickies().size(), 4, XTools::patience);
    const QStringList packed{u"10,850 300x340"_s, u"10,502 300x340"_s, u"10,154 300x340"_s,
                             u"322,850 300x340"_s};
    QTRY_COMPARE(layout.frames(), packed);
    QCOMPARE(layout.noteIDs(), allIDs(4));
    const auto frames = [&] {
        QStringList frames;
        for (const StickyOnScreen &sticky : plim.stickies())
            frames << sticky.frame();
        return frames;
    };
    QTRY_COMPARE(frames(), packed);

    // They had come up in a pile beside the main window; nobody writes there, so it is taken back.
    const QRect main = plim.geometry();
    plim.click(header);
    QTRY_VERIFY(plim.mainWindow().isActive());
    const QString pile = frameText(main.x() + 36, 1200 - main.bottom() - 1 - 36, 300, 340);
    const QStringList piled{pile, pile, pile, pile};
    (void)plim.pressUntil(u"ctrl+z"_s, [&] { return frames() == piled; });
    QCOMPARE(frames(), piled);
    QTRY_COMPARE(layout.frames(), frames());
    plim.sendSignal(SIGTERM);
    QCOMPARE(plim.exitCode(), 0);
    QCOMPARE(layout.frames(), QStringList({pile, pile, pile, pile}));
    QCOMPARE(plim.warnings().join(u'\n'), QString());
}

void TestEndToEndStickyArranging::theOptionsArrangeAndCtrlZTakesBack()
{
    Desk desk({u"purple"_s, u"yellow"_s, u"red"_s, u"green"_s});
    QVERIFY(desk.open());
    const StickyOnScreen sticky = desk.plim.stickies().constFirst();
    const auto takesBack = [&] {
        const auto isBack = [&] {
            return desk.frames() == desk.before && desk.layout.frames() == desk.before;
        };
        return desk.plim.pressUntil(u"ctrl+z"_s, isBack);
    };

    // Red, yellow, green, purple: the third, the second, the fourth, the first.
    QVERIFY(desk.choose(sticky, {sorting, sortByColour}));
    const QStringList byColour{u"322,850 300x340"_s, u"10,562 300x320"_s, u"10,890 300x300"_s,
                               u"10,274 300x280"_s};
    QTRY_COMPARE(desk.frames(), byColour);
    QTRY_COMPARE(desk.layout.frames(), byColour);
    QVERIFY(takesBack());
    QVERIFY(sticky.isActive());

    QVERIFY(desk.choose(sticky, {sorting, sortRandomly}));
    const auto isInColumns = [&] {
        const QStringList frames = desk.frames();
        return std::ranges::all_of(frames, [](const QString &frame) {
            return frame.startsWith(u"10,") || frame.startsWith(u"322,");
        });
    };
    QTRY_VERIFY(isInColumns());
    QTRY_COMPARE(desk.layout.frames(), desk.frames());
    QVERIFY(takesBack());

    QVERIFY(desk.choose(sticky, {collapseAll}));
    const QStringList capsules{u"10,1134 300x56"_s, u"10,1070 300x56"_s, u"10,1006 300x56"_s,
                               u"10,942 300x56"_s};
    QTRY_COMPARE(desk.frames(), capsules);
    QTRY_COMPARE(desk.layout.frames(), capsules);
    QVERIFY(takesBack());
    for (const StickyOnScreen &each : desk.plim.stickies())
        QTRY_VERIFY(each.showsText());

    QVERIFY(desk.choose(sticky, {expandAll}));
    const QStringList expanded{u"10,850 300x340"_s, u"10,502 300x340"_s, u"10,154 300x340"_s,
                               u"322,850 300x340"_s};
    QTRY_COMPARE(desk.frames(), expanded);
    QTRY_COMPARE(desk.layout.frames(), expanded);
    QVERIFY(takesBack());

    // Once only: what its user does afterwards is not taken back.
    sticky.pull(StickyOnScreen::grip(), StickyOnScreen::grip() + QPoint(100, -300));
    QTRY_VERIFY(sticky.frame() != desk.before[0]);
    QTRY_COMPARE(desk.layout.frames()[0], sticky.frame());
    const QStringList after = desk.frames();
    desk.plim.press({u"ctrl+z"_s});
    desk.plim.sendSignal(SIGTERM);
    QCOMPARE(desk.plim.exitCode(), 0);
    QCOMPARE(desk.layout.frames(), after);
    QCOMPARE(desk.plim.warnings().join(u'\n'), QString());
}

void TestEndToEndStickyArranging::theOptionsChangeTheNoteAndAddOneBeside()
{
    Desk desk({u"yellow"_s});
    QVERIFY(desk.open());
    const StickyOnScreen sticky = desk.plim.stickies().constFirst();
    const QImage before = sticky.pixels(QRect(100, 250, 20, 20));
    QVERIFY(desk.openOptions(sticky));
    const WindowOnScreen options = desk.plim.optionsOf(sticky).value();
    options.click(lastColour);
    QTRY_COMPARE(desk.plim.notesOnDisk()[0][u"color"_s].toString(), u"brown"_s);
    QTRY_VERIFY(sticky.pixels(QRect(100, 250, 20, 20)) != before);
    options.click(bigText);
    QTRY_COMPARE(desk.plim.notesOnDisk()[0][u"textSize"_s].toString(), u"big"_s);
    options.click(newSticky);
    QTRY_COMPARE(desk.plim.stickies().size(), 2);
    const StickyOnScreen beside = desk.plim.stickies().constLast();
    QTRY_COMPARE(beside.frame(), u"66,4 300x340"_s);
    QTRY_VERIFY(beside.isActive());
    QVERIFY(!desk.plim.optionsOf(sticky));
    QVERIFY(desk.plim.waitUntilSaid(u"plim.editor: shown"_s, 2));
    desk.plim.type(u"beside"_s);
    QTRY_COMPARE(desk.plim.notesOnDisk().size(), 2);
    const auto isOnDisk = [&] {
        return desk.plim.bodyOnDisk(0).contains(u"beside") ||
               desk.plim.bodyOnDisk(1).contains(u"beside");
    };
    QTRY_VERIFY(isOnDisk());
    QTRY_COMPARE(desk.layout.frames(), desk.before + QStringList{beside.frame()});
    QCOMPARE(desk.plim.warnings().join(u'\n'), QString());
}

QTEST_GUILESS_MAIN(TestEndToEndStickyArranging)
#include "tst_e2e_sticky_arranging.moc"
