#include "tests/Patience.h"
#include "tests/e2e/PlimRun.h"
#include "tests/e2e/StoredLayout.h"
#include "tests/e2e/StoredNotes.h"

#include <QScopeGuard>
#include <QTest>

#include <csignal>
#include <functional>

using namespace Qt::StringLiterals;
using XTools::patience;

namespace
{
const QPoint search(200, 64);
const QPoint english(361, 680);

QPoint row(int number)
{
    return {220, 120 + 70 * number};
}

bool isAbout(const QRect &place, const QRect &expected)
{
    constexpr int tolerance = 50; // pixels: a drag begins a little later than the press
    return (place.topLeft() - expected.topLeft()).manhattanLength() <= tolerance &&
           (place.bottomRight() - expected.bottomRight()).manhattanLength() <= tolerance;
}
} // namespace

/// A sticky window of the built program under a real window manager, by real mouse and keys.
class TestEndToEndStickies : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aRowsButtonOpensItsCard();
    void theCardIsMovedAndResized();
    void theCardIsCollapsedAndExpanded();
    void onlyAPinnedCardStaysInFront();
};

// In the middle of the screen, and what is typed at once is already its note's.
void TestEndToEndStickies::aRowsButtonOpensItsCard()
{
    const ThrowAwayHome home;
    storeNotesCalled(home, {u"A"_s, u"B"_s});
    PlimRun plim(home);
    QVERIFY(plim.open());
    const QRect firstButton(row(0) + QPoint(122, -15), QSize(30, 30));
    const QRect secondButton = firstButton.translated(row(1) - row(0));
    plim.point(search);
    QTRY_VERIFY(isFlat(plim.mainWindow().pixels(firstButton)));

    QVERIFY(plim.openSticky(0, storedID(0)));
    const StickyOnScreen sticky = plim.stickies().constFirst();
    QCOMPARE(sticky.frame(), u"810,430 300x340"_s);
    plim.type(u"first"_s);
    QTRY_VERIFY(plim.bodyOnDisk(0).contains(u"first"));
    QVERIFY(!plim.bodyOnDisk(1).contains(u"first"));
    QTRY_COMPARE(StoredLayout(home).frames(), QStringList{u"810,430 300x340"_s});
    QCOMPARE(StoredLayout(home).noteIDs(), QStringList{storedID(0)});
    QTRY_VERIFY(sticky.showsText());

    QVERIFY(sticky.hasState("_NET_WM_STATE_SKIP_TASKBAR"));
    QVERIFY(!plim.mainWindow().hasState("_NET_WM_STATE_SKIP_TASKBAR"));

    // Its row says that it is out, and brings it to the front.
    QVERIFY(plim.mainWindow().waitUntilActive());
    plim.point(search);
    QTRY_VERIFY(!isFlat(plim.mainWindow().pixels(firstButton)));
    QVERIFY(isFlat(plim.mainWindow().pixels(secondButton)));
    plim.click(firstButton.center());
    QTRY_VERIFY(sticky.isActive());
    QCOMPARE(plim.stickies(), {sticky});
    QTRY_VERIFY(sticky.showsText());

    // Help tips come whatever language was chosen meanwhile.
    plim.click(english);
    QTRY_VERIFY(home.read(u".config/Plim/Plim.conf"_s).contains("plimLanguage=en"));
    sticky.activate();
    QTRY_VERIFY(sticky.showsText());
    for (const auto control : {StickyOnScreen::Colour, StickyOnScreen::Pin, StickyOnScreen::Fold,
                               StickyOnScreen::Close}) {
        plim.point(search);
        QTRY_VERIFY(!plim.showsHelpTip());
        sticky.pointAtControl(control);
        QTRY_VERIFY(plim.showsHelpTip());
    }
    plim.sendSignal(SIGTERM);
    QCOMPARE(plim.exitCode(), 0);
    QCOMPARE(plim.warnings().join(u'\n'), QString());
}

void TestEndToEndStickies::theCardIsMovedAndResized()
{
    const ThrowAwayHome home;
    storeNotesCalled(home, {u"A"_s});
    PlimRun plim(home);
    QVERIFY(plim.open());
    QVERIFY(plim.openSticky(0, storedID(0)));
    const StickyOnScreen sticky = plim.stickies().constFirst();
    QRect wanted = sticky.geometry();

    struct {
        const char *edge;
        QPoint grip; ///< of 100 × 100
        QPoint way;
        QMargins growth;
    } const edges[]{
        {"left", {0, 50}, {-40, 0}, {40, 0, 0, 0}},
        {"right", {100, 50}, {40, 0}, {0, 0, 40, 0}},
        {"top", {50, 0}, {0, -40}, {0, 40, 0, 0}},
        {"bottom", {50, 100}, {0, 40}, {0, 0, 0, 40}},
        {"up left", {0, 0}, {-40, -40}, {40, 40, 0, 0}},
        {"up right", {100, 0}, {40, -40}, {0, 40, 40, 0}},
        {"down left", {0, 100}, {-40, 40}, {40, 0, 0, 40}},
        {"down right", {100, 100}, {40, 40}, {0, 0, 40, 40}},
    };
    for (const auto &[edge, grip, way, growth] : edges) {
        const QSize size = sticky.geometry().size() - QSize(1, 1);
        const QPoint from(size.width() * grip.x() / 100, size.height() * grip.y() / 100);
        wanted = sticky.geometry() + growth;
        sticky.pull(from, from + way);
        QTRY_VERIFY2(isAbout(sticky.geometry(), wanted), edge);
        QTRY_COMPARE(StoredLayout(home).frames(), QStringList{sticky.frame()});
    }

    wanted.translate(-300, -150);
    sticky.pull(StickyOnScreen::grip(), StickyOnScreen::grip() + QPoint(-300, -150));
    QTRY_VERIFY(isAbout(sticky.geometry(), wanted));
    QTRY_COMPARE(StoredLayout(home).frames(), QStringList{sticky.frame()});

    // As small as it gets; then there is its title to move it by.
    const QPoint corner(sticky.geometry().width() - 1, sticky.geometry().height() - 1);
    const QPoint upperLeft = sticky.geometry().topLeft();
    sticky.pull(corner, QPoint(20, 10));
    QTRY_COMPARE(sticky.geometry(), QRect(upperLeft, QSize(260, 52)));
    QTRY_COMPARE(StoredLayout(home).frames(), QStringList{sticky.frame()});
    sticky.pull(QPoint(24, 26), QPoint(424, 226));
    QTRY_VERIFY(isAbout(sticky.geometry(), QRect(upperLeft + QPoint(400, 200), QSize(260, 52))));
    QTRY_COMPARE(StoredLayout(home).frames(), QStringList{sticky.frame()});
    QCOMPARE(plim.warnings().join(u'\n'), QString());
}

void TestEndToEndStickies::theCardIsCollapsedAndExpanded()
{
    const ThrowAwayHome home;
    storeNotesCalled(home, {u"A"_s});
    PlimRun plim(home);
    QVERIFY(plim.open());
    QVERIFY(plim.openSticky(0, storedID(0)));
    const StickyOnScreen sticky = plim.stickies().constFirst();
    const QPoint rightEdge(299, 170);
    sticky.pull(rightEdge, rightEdge + QPoint(80, 0));
    QTRY_VERIFY(sticky.geometry().width() > 340);
    QTRY_COMPARE(StoredLayout(home).frames(), QStringList{sticky.frame()});
    const QRect expanded = sticky.geometry();
    const QRect capsule(expanded.topLeft(), QSize(expanded.width(), 56));

    struct {
        const char *how;
        std::function<void()> collapse;
        std::function<void()> expand;
    } const ways[]{
        {"its button", [&] { sticky.clickControl(StickyOnScreen::Fold); },
         [&] { sticky.clickControl(StickyOnScreen::Fold); }},
        {"the keyboard", [&] { plim.press({u"ctrl+m"_s}); }, [&] { plim.press({u"ctrl+m"_s}); }},
        {"a double click", [&] { plim.press({u"ctrl+m"_s}); },
         [&] { sticky.doubleClick(QPoint(120, 28)); }},
    };
    int number = 0;
    for (const auto &[how, collapse, expand] : ways) {
        const QString words = u"word%1"_s.arg(++number);
        collapse();
        QTRY_COMPARE(sticky.geometry(), capsule);
        QTRY_COMPARE(StoredLayout(home).frames(), QStringList{sticky.frame()});
        expand();
        QTRY_COMPARE(sticky.geometry(), expanded);
        QTRY_COMPARE(StoredLayout(home).frames(), QStringList{sticky.frame()});
        QTRY_VERIFY2(sticky.showsText(), how);
        plim.type(words);
        QTRY_VERIFY2_WITH_TIMEOUT(plim.bodyOnDisk().contains(words), how, patience);
    }

    // One that is pulled open shows its page, too.
    plim.press({u"ctrl+m"_s});
    QTRY_COMPARE(sticky.geometry(), capsule);
    const QPoint bottom(150, 55);
    sticky.pull(bottom, bottom + QPoint(0, 200));
    QTRY_VERIFY(sticky.geometry().height() > 220);
    QTRY_VERIFY(sticky.showsText());
    plim.type(u"pulled open"_s);
    QTRY_VERIFY(plim.bodyOnDisk().contains(u"pulled open"));
    const QPoint newBottom(150, sticky.geometry().height() - 1);
    sticky.pull(newBottom, QPoint(150, 10));
    QTRY_COMPARE(sticky.geometry().height(), 52);
    QTRY_COMPARE(StoredLayout(home).frames(), QStringList{sticky.frame()});
    sticky.pull(QPoint(150, 51), QPoint(150, 251));
    QTRY_VERIFY(sticky.showsText());
    plim.type(u"and again"_s);
    QTRY_VERIFY(plim.bodyOnDisk().contains(u"and again"));
    QCOMPARE(plim.warnings().join(u'\n'), QString());
}

void TestEndToEndStickies::onlyAPinnedCardStaysInFront()
{
    const ThrowAwayHome home;
    storeNotesCalled(home, {u"A"_s});
    PlimRun plim(home);
    QVERIFY(plim.open());
    QVERIFY(plim.openSticky(0, storedID(0)));
    const StickyOnScreen sticky = plim.stickies().constFirst();
    constexpr QRgb blue = 0x0000ff;
    const QRect middle(140, 250, 20, 20);
    const auto isCovered = [&] { return (sticky.pixels(middle).pixel(10, 10) & 0xffffff) == blue; };
    QVERIFY(!isCovered());

    const XWitness &server = plim.server();
    const WindowOnScreen other(
        server, server.showPlainWindow(sticky.geometry() + QMargins(60, 60, 60, 60), blue));
    const auto remove = qScopeGuard([&] { server.destroyWindow(other.id()); });
    other.activate();
    QTRY_VERIFY(isCovered());

    const auto pinBy = [&](const std::function<void()> &gesture, bool isPinned) {
        if (!sticky.waitUntilActive() || !QTest::qWaitFor([&] { return !isCovered(); }, longEnough))
            return false;
        gesture();
        if (!QTest::qWaitFor([&] { return sticky.hasState("_NET_WM_STATE_ABOVE") == isPinned; },
                             longEnough))
            return false;
        return other.waitUntilActive() &&
               QTest::qWaitFor([&] { return isCovered() != isPinned; }, longEnough);
    };
    const auto button = [&] { sticky.clickControl(StickyOnScreen::Pin); };
    const auto keys = [&] {
        const bool wasPinned = sticky.hasState("_NET_WM_STATE_ABOVE");
        (void)plim.pressUntil(u"ctrl+shift+p"_s,
                              [&] { return sticky.hasState("_NET_WM_STATE_ABOVE") != wasPinned; });
    };
    QVERIFY(pinBy(button, true));
    QVERIFY(pinBy(button, false));
    QVERIFY(pinBy(keys, true));
    QVERIFY(pinBy(keys, false));
    QCOMPARE(plim.stickies(), {sticky});
    QVERIFY(sticky.hasState("_NET_WM_STATE_SKIP_TASKBAR"));
    QCOMPARE(plim.warnings().join(u'\n'), QString());
}

QTEST_GUILESS_MAIN(TestEndToEndStickies)
#include "tst_e2e_stickies.moc"
