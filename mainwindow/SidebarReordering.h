#pragma once

#include "mainwindow/SidebarDragState.h"

#include <QList>
#include <QObject>
#include <QPointF>
#include <QUuid>
#include <qqmlregistration.h>

#include <functional>
#include <optional>

/// Reordering by dragging a row: what the gesture means, where the note would land, and what the
/// drop does.
class SidebarReordering : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The main window has one.")
    Q_PROPERTY(SidebarDragState *state READ state CONSTANT)
    Q_PROPERTY(QString topLineID READ topLineIDText NOTIFY dropIndicatorChanged)
    Q_PROPERTY(QString bottomLineID READ bottomLineIDText NOTIFY dropIndicatorChanged)

public:
    struct DropIndicator {
        bool top = false;
        bool bottom = false;
        [[nodiscard]] bool operator==(const DropIndicator &) const = default;
    };
    /// The notes shown in the list, in its order.
    using Notes = std::function<QList<QUuid>()>;
    /// Whether notes are being ticked, so that none can be dragged.
    using IsSelectionMode = std::function<bool()>;

    SidebarReordering(Notes notes, IsSelectionMode isSelectionMode, QObject *parent = nullptr);

    [[nodiscard]] SidebarDragState *state() { return &m_state; }

    /// Rows of one height, the first at `top`, in the list's content.
    Q_INVOKABLE void layOutRows(qreal top, qreal rowHeight, qreal width);
    /// The gesture on a note's row began at `start` and is at `location` now.
    Q_INVOKABLE void drag(const QUuid &noteID, QPointF start, QPointF location);
    /// The gesture has ended: the note is dropped.
    Q_INVOKABLE void endDrag();
    /// The gesture was given up: nothing moves.
    Q_INVOKABLE void cancelDrag();

    /// Upper left corner of the floating card, so that it is held where the row was grabbed.
    [[nodiscard]] Q_INVOKABLE QPointF cardCorner() const;

    /// How fast a list of that height scrolls by itself, in points a second, downwards, while a
    /// note is held at `y` of its visible part: the faster the nearer to an edge.
    [[nodiscard]] Q_INVOKABLE static qreal scrollSpeed(qreal y, qreal height);

    /// Position of the first other row whose middle is below the point; a row whose frame is
    /// unknown is passed over.
    [[nodiscard]] std::optional<int> insertionIndex(QPointF point) const;
    [[nodiscard]] DropIndicator dropIndicator(const QUuid &noteID) const;
    void commitDrop(int index);

    /// The notes above and below which the drop line is drawn; null when it is not.
    [[nodiscard]] QUuid topLineID() const { return m_topLineID; }
    [[nodiscard]] QUuid bottomLineID() const { return m_bottomLineID; }

Q_SIGNALS:
    void moveRequested(const QUuid &draggedID, const QUuid &targetID);
    void moveToEndRequested(const QUuid &draggedID);
    void dropIndicatorChanged();

private:
    [[nodiscard]] QString topLineIDText() const { return m_topLineID.toString(); }
    [[nodiscard]] QString bottomLineIDText() const { return m_bottomLineID.toString(); }
    [[nodiscard]] QList<QUuid> others() const;
    void placeLine();
    void clear();

    Notes m_notes;
    IsSelectionMode m_isSelectionMode;
    SidebarDragState m_state;
    QUuid m_topLineID;
    QUuid m_bottomLineID;
};
