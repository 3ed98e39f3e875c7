#include "mainwindow/SidebarDragState.h"

#include <QSignalSpy>
#include <QTest>

namespace
{
/// What a state has told of itself.
struct Told {
    explicit Told(const SidebarDragState &state)
        : draggedID(&state, &SidebarDragState::draggedIDChanged),
          hoverIndex(&state, &SidebarDragState::hoverIndexChanged),
          rowFrames(&state, &SidebarDragState::rowFramesChanged),
          dragLocation(&state, &SidebarDragState::dragLocationChanged),
          dragGrabOffset(&state, &SidebarDragState::dragGrabOffsetChanged)
    {
    }
    /// In the order above.
    [[nodiscard]] QList<qsizetype> counts() const
    {
        return {draggedID.count(), hoverIndex.count(), rowFrames.count(), dragLocation.count(),
                dragGrabOffset.count()};
    }

    QSignalSpy draggedID;
    QSignalSpy hoverIndex;
    QSignalSpy rowFrames;
    QSignalSpy dragLocation;
    QSignalSpy dragGrabOffset;
};
} // namespace

class TestSidebarDragState : public QObject
{
    Q_OBJECT

    const QUuid m_note = QUuid::createUuid();

private Q_SLOTS:
    void atFirstNothingIsDragged()
    {
        const SidebarDragState state;
        QVERIFY(!state.isDragging());
        QVERIFY(!state.draggedID());
        QVERIFY(!state.hoverIndex());
        QVERIFY(!state.dragLocation());
        QVERIFY(state.rowFrames().isEmpty());
        QCOMPARE(state.dragGrabOffset(), QSizeF(0, 0));
        QCOMPARE(state.property("draggedID").toUuid(), QUuid());
    }

    void eachValueIsAnnouncedByItselfAndOnceOnly()
    {
        SidebarDragState state;
        const Told told(state);
        using Counts = QList<qsizetype>;
        for (int again = 0; again < 2; ++again)
            state.setDraggedID(m_note);
        QCOMPARE(told.counts(), Counts({1, 0, 0, 0, 0}));
        for (int again = 0; again < 2; ++again)
            state.setHoverIndex(0);
        QCOMPARE(told.counts(), Counts({1, 1, 0, 0, 0}));
        for (int again = 0; again < 2; ++again)
            state.setRowFrames({{m_note, QRectF(0, 70, 300, 70)}});
        QCOMPARE(told.counts(), Counts({1, 1, 1, 0, 0}));
        for (int again = 0; again < 2; ++again)
            state.setDragLocation(QPointF(0, 0));
        QCOMPARE(told.counts(), Counts({1, 1, 1, 1, 0}));
        for (int again = 0; again < 2; ++again)
            state.setDragGrabOffset({3, 4});
        QCOMPARE(told.counts(), Counts({1, 1, 1, 1, 1}));

        QVERIFY(state.isDragging());
        QVERIFY(state.draggedID() == m_note);
        QCOMPARE(state.property("draggedID").toUuid(), m_note);
        QVERIFY(state.hoverIndex() == 0);
        QVERIFY(state.dragLocation() == QPointF(0, 0));
        QCOMPARE(state.dragGrabOffset(), QSizeF(3, 4));
    }

    void beingAbsentIsAValueOfItsOwn()
    {
        SidebarDragState state;
        const Told told(state);
        state.setDraggedID(std::nullopt);
        state.setHoverIndex(std::nullopt);
        state.setDragLocation(std::nullopt);
        QCOMPARE(told.counts(), QList<qsizetype>({0, 0, 0, 0, 0}));
        state.setHoverIndex(0);
        state.setDragLocation(QPointF());
        state.setHoverIndex(std::nullopt);
        state.setDragLocation(std::nullopt);
        QCOMPARE(told.counts(), QList<qsizetype>({0, 2, 0, 2, 0}));
    }
};

QTEST_GUILESS_MAIN(TestSidebarDragState)
#include "tst_sidebar_drag_state.moc"
