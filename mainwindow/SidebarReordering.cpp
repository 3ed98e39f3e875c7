#include "mainwindow/SidebarReordering.h"

#include <algorithm>
#include <utility>

namespace
{
constexpr qreal scrollEdge = 36;         ///< points
constexpr qreal speedWithinTheEdge = 14; ///< points a second, for each point within the edge
} // namespace

SidebarReordering::SidebarReordering(Notes notes, IsSelectionMode isSelectionMode, QObject *parent)
    : QObject(parent), m_notes(std::move(notes)), m_isSelectionMode(std::move(isSelectionMode))
{
    connect(&m_state, &SidebarDragState::draggedIDChanged, this, &SidebarReordering::placeLine);
    connect(&m_state, &SidebarDragState::hoverIndexChanged, this, &SidebarReordering::placeLine);
}

void SidebarReordering::layOutRows(qreal top, qreal rowHeight, qreal width)
{
    QHash<QUuid, QRectF> frames;
    const QList<QUuid> noteIDs = m_notes();
    frames.reserve(noteIDs.size());
    for (const QUuid &noteID : noteIDs) {
        frames.insert(noteID, QRectF(0, top, width, rowHeight));
        top += rowHeight;
    }
    m_state.setRowFrames(frames);
}

void SidebarReordering::drag(const QUuid &noteID, QPointF start, QPointF location)
{
    if (m_isSelectionMode())
        return;
    if (m_state.draggedID() != noteID) {
        m_state.setDraggedID(noteID);
        const QPointF corner = m_state.rowFrames().value(noteID).topLeft();
        m_state.setDragGrabOffset({start.x() - corner.x(), start.y() - corner.y()});
    }
    m_state.setDragLocation(location);
    m_state.setHoverIndex(insertionIndex(location));
    placeLine(); // the same index may be before another row by now
}

void SidebarReordering::endDrag()
{
    if (const auto index = m_state.hoverIndex(); index && !m_isSelectionMode())
        commitDrop(*index);
    clear();
}

void SidebarReordering::cancelDrag()
{
    clear();
}

QPointF SidebarReordering::cardCorner() const
{
    const QSizeF offset = m_state.dragGrabOffset();
    return m_state.dragLocation().value_or(QPointF()) - QPointF(offset.width(), offset.height());
}

std::optional<int> SidebarReordering::insertionIndex(QPointF point) const
{
    if (!m_state.draggedID())
        return std::nullopt;
    const QList<QUuid> others = this->others();
    if (others.isEmpty())
        return std::nullopt;
    const auto &frames = m_state.rowFrames();
    const auto below = std::ranges::find_if(others, [&](const QUuid &noteID) {
        const auto frame = frames.constFind(noteID);
        return frame != frames.cend() && point.y() < frame->center().y();
    });
    return int(below - others.begin());
}

qreal SidebarReordering::scrollSpeed(qreal y, qreal height)
{
    const auto within = [](qreal distance) { return scrollEdge - std::max(0.0, distance); };
    if (y < scrollEdge)
        return -speedWithinTheEdge * within(y);
    if (height - y < scrollEdge)
        return speedWithinTheEdge * within(height - y);
    return 0;
}

SidebarReordering::DropIndicator SidebarReordering::dropIndicator(const QUuid &noteID) const
{
    return {.top = !noteID.isNull() && noteID == m_topLineID,
            .bottom = !noteID.isNull() && noteID == m_bottomLineID};
}

void SidebarReordering::commitDrop(int index)
{
    const auto draggedID = m_state.draggedID();
    if (!draggedID)
        return;
    const QList<QUuid> others = this->others();
    if (others.isEmpty())
        return;
    if (index >= others.size())
        Q_EMIT moveToEndRequested(*draggedID);
    else
        Q_EMIT moveRequested(*draggedID, others[std::max(index, 0)]);
}

QList<QUuid> SidebarReordering::others() const
{
    QList<QUuid> others = m_notes();
    if (const auto draggedID = m_state.draggedID())
        others.removeOne(*draggedID);
    return others;
}

void SidebarReordering::placeLine()
{
    QUuid top;
    QUuid bottom;
    const auto index = m_state.hoverIndex();
    if (const QList<QUuid> others = index && m_state.draggedID() ? this->others() : QList<QUuid>();
        !others.isEmpty()) {
        if (*index >= others.size())
            bottom = others.constLast();
        else
            top = others[std::max(*index, 0)];
    }
    if (top == m_topLineID && bottom == m_bottomLineID)
        return;
    m_topLineID = top;
    m_bottomLineID = bottom;
    Q_EMIT dropIndicatorChanged();
}

void SidebarReordering::clear()
{
    m_state.setDraggedID(std::nullopt);
    m_state.setHoverIndex(std::nullopt);
    m_state.setDragLocation(std::nullopt);
}
