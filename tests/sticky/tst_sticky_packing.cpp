#include "sticky/StickyPacking.h"
#include "tests/sticky/StickyFrameText.h"

#include <QTest>

namespace
{
using Sizes = QList<QSizeF>;
using Frames = QList<StickyFrame>;

/// Two columns of two full windows each: its usable height is 980.
constexpr StickyFrame area{100, 40, 1500, 1000};
} // namespace

class TestStickyPacking : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noWindowsAreNoFrames() { QVERIFY(StickyPacking::pack(area, {}).isEmpty()); }

    void theFirstIsAtTheUpperLeft()
    {
        QCOMPARE(StickyPacking::pack(area, Sizes{{300, 340}}),
                 (Frames{{110, 1030 - 340, 300, 340}}));
    }

    void theNextIsBelowWithAGap()
    {
        QCOMPARE(StickyPacking::pack(area, Sizes{{300, 340}, {300, 200}}),
                 (Frames{{110, 690, 300, 340}, {110, 690 - 8 - 200, 300, 200}}));
    }

    void aFullColumnIsFollowedByTheNext()
    {
        const Frames frames =
            StickyPacking::pack(area, Sizes{{300, 340}, {300, 340}, {300, 340}, {300, 340}});
        QCOMPARE(frames, (Frames{{110, 690, 300, 340},
                                 {110, 342, 300, 340},
                                 {422, 690, 300, 340},
                                 {422, 342, 300, 340}}));
    }

    void aColumnIsUsedDownToItsMargin_data()
    {
        QTest::addColumn<double>("height");
        QTest::addColumn<double>("x");
        QTest::newRow("reaches the margin") << 632.0 << 110.0;
        QTest::newRow("half a point more") << 632.5 << 422.0;
    }
    void aColumnIsUsedDownToItsMargin()
    {
        QFETCH(double, height);
        QFETCH(double, x);
        QCOMPARE(StickyPacking::pack(area, Sizes{{300, 340}, {300, height}})[1].x, x);
    }

    void theColumnsAreAsWideAsTheWidestWindow()
    {
        const Frames frames = StickyPacking::pack(area, Sizes{{300, 600}, {300, 600}, {420, 340}});
        QCOMPARE(frames, (Frames{{170, 430, 300, 600},
                                 {110 + 420 + 12 + 60, 430, 300, 600},
                                 {542, 82, 420, 340}}));
    }

    void aNarrowWindowIsCentred()
    {
        QCOMPARE(StickyPacking::pack(area, Sizes{{260, 340}})[0].x, 110.0 + 20);
        QCOMPARE(StickyPacking::pack(area, Sizes{{275, 340}})[0].x, 110.0 + 12.5);
    }

    void whatIsLowIsCollapsed_data()
    {
        QTest::addColumn<double>("height");
        QTest::addColumn<double>("packed");
        QTest::newRow("collapsed") << 56.0 << 56.0;
        QTest::newRow("the lowest there is") << 52.0 << 56.0;
        QTest::newRow("90") << 90.0 << 56.0;
        QTest::newRow("just below") << 99.5 << 56.0;
        QTest::newRow("100") << 100.0 << 100.0;
    }
    void whatIsLowIsCollapsed()
    {
        QFETCH(double, height);
        QFETCH(double, packed);
        const Frames frames = StickyPacking::pack(area, Sizes{{300, height}, {300, 340}});
        QCOMPARE(frames[0], (StickyFrame{110, 1030 - packed, 300, packed}));
        QCOMPARE(frames[1].top(), 1030 - packed - 8);
    }

    void theStateMayBeForced()
    {
        const Sizes sizes{{300, 340}, {280, 56}};
        QCOMPARE(StickyPacking::pack(area, sizes, true),
                 (Frames{{110, 974, 300, 56}, {120, 910, 280, 56}}));
        QCOMPARE(StickyPacking::pack(area, sizes, false),
                 (Frames{{110, 690, 300, 340}, {120, 626, 280, 56}}));
    }

    void aWindowThatFitsInNoColumnStartsOne()
    {
        const Frames frames = StickyPacking::pack(area, Sizes{{300, 340}, {300, 2000}, {300, 340}});
        QCOMPARE(frames,
                 (Frames{{110, 690, 300, 340}, {422, -970, 300, 2000}, {734, 690, 300, 340}}));
    }

    void manyWindowsGoOnToTheRight()
    {
        const Frames frames = StickyPacking::pack(area, Sizes(100, {300, 340}));
        QCOMPARE(frames.size(), 100);
        QCOMPARE(frames[99], (StickyFrame{110 + 49 * 312.0, 342, 300, 340}));
    }
};

QTEST_GUILESS_MAIN(TestStickyPacking)
#include "tst_sticky_packing.moc"
