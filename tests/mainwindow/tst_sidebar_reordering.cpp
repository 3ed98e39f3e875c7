#include "mainwindow/SidebarReordering.h"

#include "tests/core/Duration.h"

#include <QHash>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace
{
constexpr qreal rowHeight = 70;
constexpr qreal rowWidth = 300;

/// A list whose notes are called by letters, laid out from the height 0.
struct Fixture {
    explicit Fixture(const QString &letters) { setList(letters); }

    void setList(const QString &letters)
    {
        list.clear();
        for (const QChar letter : letters)
            list << id(letter);
        reordering.layOutRows(0, rowHeight, rowWidth);
    }
    [[nodiscard]] QUuid id(QChar letter)
    {
        if (!ids.contains(letter))
            ids.insert(letter, QUuid::createUuid());
        return ids[letter];
    }
    [[nodiscard]] QString letter(const QUuid &noteID) const
    {
        return noteID.isNull() ? QString() : QString(ids.key(noteID, u'?'));
    }
    /// Middle of the row in the list.
    [[nodiscard]] static QPointF middle(int row) { return {50, (row + 0.5) * rowHeight}; }
    /// Drags the note from the middle of its row to that height.
    void drag(QChar letter, qreal y)
    {
        reordering.drag(id(letter), middle(int(list.indexOf(id(letter)))), {50, y});
    }
    [[nodiscard]] std::optional<int> index() { return reordering.state()->hoverIndex(); }
    /// "^C" for a line above C, "_C" for one below it.
    [[nodiscard]] QString line() const
    {
        QString line;
        for (const QUuid &note : ids) {
            const auto [top, bottom] = reordering.dropIndicator(note);
            if (top)
                line += u'^' + letter(note);
            if (bottom)
                line += u'_' + letter(note);
        }
        return line;
    }

    QHash<QChar, QUuid> ids;
    QList<QUuid> list;
    bool isSelectionMode = false;
    SidebarReordering reordering{[this] { return list; }, [this] { return isSelectionMode; }};
    QStringList moves = [this] {
        QObject::connect(&reordering, &SidebarReordering::moveRequested, &reordering,
                         [this](const QUuid &dragged, const QUuid &target) {
                             moves << letter(dragged) + u" before "_s + letter(target);
                         });
        QObject::connect(
            &reordering, &SidebarReordering::moveToEndRequested, &reordering,
            [this](const QUuid &dragged) { moves << letter(dragged) + u" to the end"_s; });
        return QStringList();
    }();
};
} // namespace

class TestSidebarReordering : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whereTheNoteWouldLand_data()
    {
        QTest::addColumn<QString>("dragged");
        QTest::addColumn<qreal>("y");
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("move");
        const auto row = [](const char *name, const QString &dragged, qreal y, int index,
                            const QString &line, const QString &move) {
            QTest::newRow(name) << dragged << y << index << line << move;
        };
        // The middles of A B C D are at 35, 105, 175 and 245.
        row("above all", u"C"_s, -500, 0, u"^A"_s, u"C before A"_s);
        row("just above a middle", u"C"_s, 34.9, 0, u"^A"_s, u"C before A"_s);
        row("on a middle", u"C"_s, 35, 1, u"^B"_s, u"C before B"_s);
        row("just below a middle", u"C"_s, 35.1, 1, u"^B"_s, u"C before B"_s);
        row("in its own place, from above", u"C"_s, 140, 2, u"^D"_s, u"C before D"_s);
        row("in its own place, on its middle", u"C"_s, 175, 2, u"^D"_s, u"C before D"_s);
        row("in its own place, from below", u"C"_s, 210, 2, u"^D"_s, u"C before D"_s);
        row("above the last one's middle", u"C"_s, 244.9, 2, u"^D"_s, u"C before D"_s);
        row("on the last one's middle", u"C"_s, 245, 3, u"_D"_s, u"C to the end"_s);
        row("below all", u"C"_s, 5000, 3, u"_D"_s, u"C to the end"_s);
        row("the first in its own place", u"A"_s, 10, 0, u"^B"_s, u"A before B"_s);
        row("the first one row down", u"A"_s, 110, 1, u"^C"_s, u"A before C"_s);
        row("the last in its own place", u"D"_s, 250, 3, u"_C"_s, u"D to the end"_s);
        row("the last to the top", u"D"_s, 0, 0, u"^A"_s, u"D before A"_s);
    }
    void whereTheNoteWouldLand()
    {
        QFETCH(QString, dragged);
        QFETCH(qreal, y);
        QFETCH(int, index);
        QFETCH(QString, line);
        QFETCH(QString, move);
        Fixture f(u"ABCD"_s);
        f.drag(dragged[0], y);
        QVERIFY(f.index() == index);
        QCOMPARE(f.line(), line);
        QVERIFY(f.moves.isEmpty()); // nothing moves before the drop
        f.reordering.endDrag();
        QCOMPARE(f.moves, QStringList{move});
        QCOMPARE(f.line(), QString());
    }

    void sidewaysMakesNoDifference()
    {
        Fixture f(u"ABC"_s);
        f.reordering.drag(f.id(u'A'), Fixture::middle(0), {-1000, 110});
        QVERIFY(f.index() == 1);
        f.reordering.drag(f.id(u'A'), Fixture::middle(0), {4000, 110});
        QVERIFY(f.index() == 1);
    }

    void aScrolledListHasItsRowsElsewhere()
    {
        Fixture f(u"ABC"_s);
        f.reordering.layOutRows(-1000, rowHeight, rowWidth);
        f.reordering.drag(f.id(u'A'), {50, -990}, {50, -890});
        QVERIFY(f.index() == 1);
        QCOMPARE(f.reordering.state()->dragGrabOffset(), QSizeF(50, 10));
    }

    void aSingleRowHasNowhereToGo()
    {
        Fixture f(u"A"_s);
        f.drag(u'A', 500);
        QVERIFY(f.reordering.state()->isDragging());
        QVERIFY(!f.index());
        QCOMPARE(f.line(), QString());
        f.reordering.commitDrop(0);
        f.reordering.commitDrop(1);
        f.reordering.endDrag();
        QVERIFY(f.moves.isEmpty());
        QVERIFY(!f.reordering.state()->isDragging());
    }

    void withoutADragThereIsNoPlaceAndNoDrop()
    {
        Fixture f(u"ABC"_s);
        QVERIFY(!f.reordering.insertionIndex({50, 100}));
        f.reordering.state()->setHoverIndex(1);
        QCOMPARE(f.line(), QString());
        f.reordering.commitDrop(1);
        f.reordering.endDrag();
        QVERIFY(f.moves.isEmpty());
        QVERIFY(!f.index());
    }

    void anyIndexHasItsLineAndItsMove_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("move");
        QTest::newRow("before the first") << -5 << u"^A"_s << u"B before A"_s;
        QTest::newRow("the first") << 0 << u"^A"_s << u"B before A"_s;
        QTest::newRow("the second") << 1 << u"^C"_s << u"B before C"_s;
        QTest::newRow("behind the last") << 2 << u"_C"_s << u"B to the end"_s;
        QTest::newRow("far behind") << 99 << u"_C"_s << u"B to the end"_s;
    }
    void anyIndexHasItsLineAndItsMove()
    {
        QFETCH(int, index);
        Fixture f(u"ABC"_s);
        f.drag(u'B', 100);
        f.reordering.state()->setHoverIndex(index);
        QTEST(f.line(), "line");
        f.reordering.commitDrop(index);
        QCOMPARE(f.moves.size(), 1);
        QTEST(f.moves[0], "move");
    }

    void theNoteIsHeldWhereItWasGrabbed()
    {
        Fixture f(u"ABC"_s);
        f.reordering.drag(f.id(u'B'), {120, 75}, {130, 90});
        QCOMPARE(f.reordering.state()->dragGrabOffset(), QSizeF(120, 5));
        QVERIFY(f.reordering.state()->dragLocation() == QPointF(130, 90));
        QCOMPARE(f.reordering.cardCorner(), QPointF(10, 85));
        // Where it is grabbed is settled at the beginning.
        f.reordering.drag(f.id(u'B'), {0, 0}, {230, 100});
        QCOMPARE(f.reordering.state()->dragGrabOffset(), QSizeF(120, 5));
        QCOMPARE(f.reordering.cardCorner(), QPointF(110, 95));
    }

    void aRowWithoutAFrameIsGrabbedAsIfAtTheOrigin()
    {
        Fixture f(u"ABC"_s);
        f.reordering.state()->setRowFrames({});
        f.reordering.drag(f.id(u'B'), {120, 75}, {130, 90});
        QCOMPARE(f.reordering.state()->dragGrabOffset(), QSizeF(120, 75));
        QVERIFY(f.index() == 2); // no row is known to be below the pointer
    }

    void rowsWithoutAFrameKeepTheirPlaceInTheCount()
    {
        Fixture f(u"ABCDE"_s);
        auto frames = f.reordering.state()->rowFrames();
        frames.remove(f.id(u'A'));
        frames.remove(f.id(u'C'));
        f.reordering.state()->setRowFrames(frames);
        f.drag(u'E', 80);
        QVERIFY(f.index() == 1); // before B
        f.drag(u'E', 200);
        QVERIFY(f.index() == 3); // before D
    }

    void framesOfOtherNotesDoNotCount()
    {
        Fixture f(u"ABC"_s);
        auto frames = f.reordering.state()->rowFrames();
        frames.insert(f.id(u'X'), QRectF(0, -200, rowWidth, rowHeight));
        f.reordering.state()->setRowFrames(frames);
        f.drag(u'C', 40);
        QVERIFY(f.index() == 1);
    }

    void theEndClearsTheDragInOrder()
    {
        Fixture f(u"ABC"_s);
        auto *state = f.reordering.state();
        f.drag(u'B', 10);
        const auto frames = state->rowFrames();
        const QSizeF offset = state->dragGrabOffset();
        QStringList order;
        connect(&f.reordering, &SidebarReordering::moveRequested, this,
                [&] { order << u"move"_s; });
        connect(state, &SidebarDragState::draggedIDChanged, this, [&] { order << u"note"_s; });
        connect(state, &SidebarDragState::hoverIndexChanged, this, [&] { order << u"index"_s; });
        connect(state, &SidebarDragState::dragLocationChanged, this,
                [&] { order << u"location"_s; });
        f.reordering.endDrag();
        QCOMPARE(order.join(u' '), u"move note index location"_s);
        QVERIFY(!state->isDragging());
        QVERIFY(!state->hoverIndex());
        QVERIFY(!state->dragLocation());
        QCOMPARE(state->rowFrames(), frames);
        QCOMPARE(state->dragGrabOffset(), offset);
        f.reordering.endDrag();
        QCOMPARE(f.moves.size(), 1);
    }

    void aDragGivenUpMovesNothing()
    {
        Fixture f(u"ABC"_s);
        f.drag(u'B', 10);
        f.reordering.cancelDrag();
        QVERIFY(!f.reordering.state()->isDragging());
        QVERIFY(!f.index());
        QCOMPARE(f.line(), QString());
        f.reordering.endDrag();
        QVERIFY(f.moves.isEmpty());
    }

    void nothingIsDraggedWhileNotesAreTicked()
    {
        Fixture f(u"ABC"_s);
        f.isSelectionMode = true;
        QSignalSpy changed(f.reordering.state(), &SidebarDragState::draggedIDChanged);
        f.drag(u'B', 10);
        f.reordering.endDrag();
        QCOMPARE(changed.count(), 0);
        QVERIFY(f.moves.isEmpty());
    }

    void aDragThatEndsAmongTickedNotesMovesNothing()
    {
        Fixture f(u"ABC"_s);
        f.drag(u'B', 10);
        f.isSelectionMode = true;
        f.reordering.endDrag();
        QVERIFY(f.moves.isEmpty());
        QVERIFY(!f.reordering.state()->isDragging());
        QCOMPARE(f.line(), QString());
    }

    void theListMayChangeUnderADrag()
    {
        Fixture f(u"ABC"_s);
        f.drag(u'A', 110);
        QCOMPARE(f.line(), u"^C"_s);
        f.setList(u"NMABC"_s); // two notes came above
        f.drag(u'A', 110);
        QCOMPARE(f.line(), u"^B"_s);
        f.setList(u"A"_s);
        f.drag(u'A', 110);
        QVERIFY(!f.index());
        QCOMPARE(f.line(), QString());
        f.reordering.endDrag();
        QVERIFY(f.moves.isEmpty());
    }

    void aNoteHeldAtAnEdgeScrollsTheList_data()
    {
        QTest::addColumn<qreal>("y");
        QTest::addColumn<qreal>("speed");
        QTest::newRow("far from the edges") << 250.0 << 0.0;
        QTest::newRow("just outside the upper edge") << 36.0 << 0.0;
        QTest::newRow("just inside the upper edge") << 35.0 << -14.0;
        QTest::newRow("on the upper edge") << 0.0 << -504.0;
        QTest::newRow("above the list") << -300.0 << -504.0;
        QTest::newRow("just outside the lower edge") << 464.0 << 0.0;
        QTest::newRow("just inside the lower edge") << 465.0 << 14.0;
        QTest::newRow("on the lower edge") << 500.0 << 504.0;
        QTest::newRow("below the list") << 900.0 << 504.0;
    }
    void aNoteHeldAtAnEdgeScrollsTheList()
    {
        QFETCH(qreal, y);
        QTEST(SidebarReordering::scrollSpeed(y, 500), "speed");
    }

    void theLineIsToldWhenItMoves()
    {
        Fixture f(u"ABCD"_s);
        QSignalSpy told(&f.reordering, &SidebarReordering::dropIndicatorChanged);
        f.drag(u'A', 10);
        QCOMPARE(told.count(), 1);
        f.drag(u'A', 20);
        QCOMPARE(told.count(), 1);
        QCOMPARE(f.reordering.property("topLineID").toUuid(), f.id(u'B'));
        QCOMPARE(f.reordering.property("bottomLineID").toUuid(), QUuid());
        f.drag(u'A', 1000);
        QCOMPARE(told.count(), 2);
        QCOMPARE(f.reordering.property("topLineID").toUuid(), QUuid());
        QCOMPARE(f.reordering.property("bottomLineID").toUuid(), f.id(u'D'));
        f.reordering.cancelDrag();
        QCOMPARE(told.count(), 3);
        QVERIFY(!f.reordering.dropIndicator(QUuid()).top);
        QVERIFY(!f.reordering.dropIndicator(QUuid()).bottom);
    }

    void aStepOfADragIsCheapInALongList()
    {
        QList<QUuid> list;
        for (int row = 0; row < 10000; ++row)
            list << QUuid::createUuid();
        SidebarReordering reordering([&] { return list; }, [] { return false; });
        std::array<double, 21> times{};
        int step = 0;
        for (double &time : times) {
            time = duration([&] {
                reordering.layOutRows(0, rowHeight, rowWidth);
                reordering.drag(list[5000], {50, 5000 * rowHeight + 1}, {50, step * 30000.0});
            });
            QVERIFY(reordering.state()->hoverIndex());
            ++step;
        }
        // Half a frame at 60 pictures a second; the middle of the times.
        std::ranges::nth_element(times, times.begin() + times.size() / 2);
        const double milliseconds = times[times.size() / 2] / 1e6;
        QVERIFY2(milliseconds < 8 * slowness, qPrintable(QString::number(milliseconds)));
        qInfo("a step takes %.2f ms", milliseconds);
    }
};

QTEST_GUILESS_MAIN(TestSidebarReordering)
#include "tst_sidebar_reordering.moc"
