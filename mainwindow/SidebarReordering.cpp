#include "mainwindow/SidebarReordering.h"

#include <algorithm>
#include <utility>

SidebarReordering::SidebarReordering(Notes notes, IsSelectionMode isSelectionMode, QObject *parent)
    : QObject(parent), m_notes(std::move(notes)), m_isSelectionMode(std::move(isSelectionMode))
{
    connect(&m_state, &SidebarDragState::rowFramesChanged, this, &SidebarReordering::sortMidpoints);
    connect(&m_state, &SidebarDragState::draggedIDChanged, this, &SidebarReordering::sortMidpoints);
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
    if (m_isSelectionMode())
        return;
    if (const auto index = m_state.hoverIndex())
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
    if (!m_state.draggedID() || m_midpoints.empty())
        return std::nullopt;
    const auto below = std::ranges::upper_bound(m_midpoints, point.y());
    return int(below - m_midpoints.begin());
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
    if (index >= 1 && index >= others.size())
        Q_EMIT
    moveToEndRequested(*draggedID);
    else Q_EMIT
    moveRequested(*draggedID, others[std::max(index, 0)]);
}

QList<QUuid> SidebarReordering::others() const
{
    QList<QUuid> others = m_notes();
    if (const auto draggedID = m_state.draggedID())
        others.removeOne(*draggedID);
    return others;
}

void SidebarReordering::sortMidpoints()
{
    m_midpoints.clear();
    if (!m_state.draggedID())
        return;
    const auto &frames = m_state.rowFrames();
    m_midpoints.reserve(std::size_t(frames.size()));
    for (auto frame = frames.cbegin(); frame != frames.cend(); ++frame) {
        if (frame.key() != m_state.draggedID())
            m_midpoints.push_back(frame->center().y());
    }
    std::ranges::sort(m_midpoints);
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
    Q_EMIT
    dropIndicatorChanged();
}

void SidebarReordering::clear()
{
    m_state.setDraggedID(std::nullopt);
    m_state.setHoverIndex(std::nullopt);
    m_state.setDragLocation(std::nullopt);
}
