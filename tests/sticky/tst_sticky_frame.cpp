#include "sticky/StickyFrame.h"
#include "tests/sticky/StickyFrameText.h"

#include <QTest>

#include <array>
#include <limits>

namespace
{
constexpr QRect primary(0, 0, 1600, 1000);
constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();
/// A primary screen with a panel of 40 points at its bottom, and a second one on its right.
constexpr std::array areas{StickyFrame{0, 40, 1600, 960}, StickyFrame{1600, 0, 800, 600}};
} // namespace

Q_DECLARE_METATYPE(StickyFrame)

class TestStickyFrame : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void yIsTurnedOver_data()
    {
        QTest::addColumn<QRect>("window");
        QTest::addColumn<QRect>("primaryScreen");
        QTest::addColumn<StickyFrame>("frame");
        QTest::newRow("the lower left corner")
            << QRect(0, 660, 300, 340) << primary << StickyFrame{0, 0, 300, 340};
        QTest::newRow("the upper left corner")
            << QRect(0, 0, 300, 340) << primary << StickyFrame{0, 660, 300, 340};
        QTest::newRow("anywhere") << QRect(120, 80, 300, 56) << primary
                                  << StickyFrame{120, 864, 300, 56};
        QTest::newRow("above and left of the primary screen")
            << QRect(-500, -400, 300, 340) << primary << StickyFrame{-500, 1060, 300, 340};
        QTest::newRow("below it") << QRect(10, 1100, 300, 340) << primary
                                  << StickyFrame{10, -440, 300, 340};
        QTest::newRow("a primary screen that is not the first")
            << QRect(1930, 210, 300, 340) << QRect(1920, 200, 1280, 720)
            << StickyFrame{10, 370, 300, 340};
    }
    void yIsTurnedOver()
    {
        QFETCH(QRect, window);
        QFETCH(QRect, primaryScreen);
        QFETCH(StickyFrame, frame);
        QCOMPARE(StickyFrame::fromScreen(window, primaryScreen), frame);
        QCOMPARE(frame.toScreen(primaryScreen), window);
    }

    void fractionsAreRoundedAtTheEdge()
    {
        QCOMPARE((StickyFrame{10.6, 20.4, 300.4, 340.2}.toScreen(primary)),
                 QRect(11, 1000 - 361, 300, 340));
    }

    void noNumberIsTooLargeForAWindow_data()
    {
        QTest::addColumn<StickyFrame>("frame");
        QTest::newRow("huge") << StickyFrame{1e300, 1e300, 1e300, 1e300};
        QTest::newRow("far below") << StickyFrame{-1e300, -1e300, 300, 340};
        QTest::newRow("infinite") << StickyFrame{infinite, -infinite, infinite, 1};
        QTest::newRow("no number") << StickyFrame{noNumber, noNumber, noNumber, noNumber};
    }
    void noNumberIsTooLargeForAWindow()
    {
        QFETCH(StickyFrame, frame);
        const QRect window = frame.toScreen(primary);
        QVERIFY(std::abs(window.x()) <= 100'000 && std::abs(window.y()) <= 100'000);
        QVERIFY(window.width() <= 100'000 && window.height() <= 100'000);
    }

    void resizingKeepsTheTopEdge()
    {
        const StickyFrame frame{100, 200, 320, 340};
        const StickyFrame collapsed = frame.resizedKeepingTop(300, 56);
        QCOMPARE(collapsed, (StickyFrame{100, 484, 300, 56}));
        QCOMPARE(collapsed.top(), frame.top());
    }

    void impossibleSizesBecomePossible_data()
    {
        QTest::addColumn<StickyFrame>("frame");
        QTest::addColumn<StickyFrame>("expected");
        QTest::newRow("possible") << StickyFrame{1, 2, 260, 52} << StickyFrame{1, 2, 260, 52};
        QTest::newRow("possible, between two points")
            << StickyFrame{0.1, 0.2, 260.3, 52.7} << StickyFrame{0.1, 0.2, 260.3, 52.7};
        QTest::newRow("none") << StickyFrame{1, 2, 0, 0} << StickyFrame{1, 2, 300, 340};
        QTest::newRow("negative") << StickyFrame{1, 2, -300, 340} << StickyFrame{1, 2, 300, 340};
        QTest::newRow("no number")
            << StickyFrame{1, 2, 300, noNumber} << StickyFrame{1, 2, 300, 340};
        QTest::newRow("infinite") << StickyFrame{1, 2, infinite, 9} << StickyFrame{1, 2, 300, 340};
        QTest::newRow("huge") << StickyFrame{1, 2, 300, 40'000} << StickyFrame{1, 2, 300, 340};
        QTest::newRow("too narrow") << StickyFrame{1, 2, 100, 340} << StickyFrame{1, 2, 260, 340};
        QTest::newRow("too low grows downwards")
            << StickyFrame{1, 100, 300, 12} << StickyFrame{1, 60, 300, 52};
    }
    void impossibleSizesBecomePossible()
    {
        QFETCH(StickyFrame, frame);
        QFETCH(StickyFrame, expected);
        QCOMPARE(frame.withPossibleSize(), expected);
    }

    void whatCanBeSeenStaysWhereItIs_data()
    {
        QTest::addColumn<StickyFrame>("frame");
        QTest::newRow("inside") << StickyFrame{10.25, 50.5, 300, 340};
        QTest::newRow("on the second screen") << StickyFrame{1700, 10, 300, 340};
        QTest::newRow("on both") << StickyFrame{1450, 100, 300, 340};
        QTest::newRow("hangs out on the left") << StickyFrame{-276, 100, 300, 340};
        QTest::newRow("hangs out at the bottom") << StickyFrame{100, -276, 300, 340};
        QTest::newRow("hangs out at the top") << StickyFrame{100, 976, 300, 340};
        QTest::newRow("larger than the screen") << StickyFrame{-100, -100, 1900, 1200};
        QTest::newRow("a capsule") << StickyFrame{100, 900, 300, 56};
    }
    void whatCanBeSeenStaysWhereItIs()
    {
        QFETCH(StickyFrame, frame);
        QVERIFY(frame.isInView(areas));
        QCOMPARE(frame.broughtIntoView(areas), frame);
    }

    void whatCannotBeSeenIsBroughtIntoView_data()
    {
        QTest::addColumn<StickyFrame>("frame");
        QTest::addColumn<StickyFrame>("expected");
        QTest::newRow("left") << StickyFrame{-5000, 100, 300, 340} << StickyFrame{0, 100, 300, 340};
        QTest::newRow("a sliver on the left")
            << StickyFrame{-277, 100, 300, 340} << StickyFrame{0, 100, 300, 340};
        QTest::newRow("right of the second screen")
            << StickyFrame{2600, 100, 300, 340} << StickyFrame{2100, 100, 300, 340};
        QTest::newRow("below, behind the panel")
            << StickyFrame{100, -310, 300, 340} << StickyFrame{100, 40, 300, 340};
        QTest::newRow("above") << StickyFrame{100, 3000, 300, 340}
                               << StickyFrame{100, 660, 300, 340};
        QTest::newRow("above the second screen")
            << StickyFrame{2000, 700, 300, 340} << StickyFrame{2000, 260, 300, 340};
        QTest::newRow("outside of numbers")
            << StickyFrame{1e300, -1e300, 300, 340} << StickyFrame{1300, 40, 300, 340};
        QTest::newRow("larger than its screen")
            << StickyFrame{2500, 100, 1000, 900} << StickyFrame{1600, 0, 800, 600};
        QTest::newRow("outside, without a size")
            << StickyFrame{-900, 100, 0, 0} << StickyFrame{0, 100, 300, 340};
        QTest::newRow("nowhere") << StickyFrame{noNumber, infinite, 300, 340}
                                 << StickyFrame{650, 350, 300, 340};
    }
    void whatCannotBeSeenIsBroughtIntoView()
    {
        QFETCH(StickyFrame, frame);
        QFETCH(StickyFrame, expected);
        const StickyFrame moved = frame.broughtIntoView(areas);
        QCOMPARE(moved, expected);
        QVERIFY(moved.isInView(areas));
        QCOMPARE(moved.broughtIntoView(areas), moved);
    }

    void aScreenSmallerThanAnyWindowStillShowsIt()
    {
        const std::array tiny{StickyFrame{0, 0, 200, 40}};
        QCOMPARE((StickyFrame{900, 900, 300, 340}.broughtIntoView(tiny)),
                 (StickyFrame{0, 0, 260, 52}));
    }

    void withoutAScreenNothingMoves()
    {
        QCOMPARE((StickyFrame{-5000, 0, 300, 0}.broughtIntoView({})),
                 (StickyFrame{-5000, 0, 300, 340}));
    }
};

QTEST_GUILESS_MAIN(TestStickyFrame)
#include "tst_sticky_frame.moc"
