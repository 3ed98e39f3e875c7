#include "mainwindow/SidebarDragState.h"

template <typename T>
void SidebarDragState::set(T &member, const T &value, void (SidebarDragState::*changed)())
{
    if (member == value)
        return;
    member = value;
    Q_EMIT(this->*changed)();
}

void SidebarDragState::setDraggedID(std::optional<QUuid> id)
{
    set(m_draggedID, id, &SidebarDragState::draggedIDChanged);
}

void SidebarDragState::setHoverIndex(std::optional<int> index)
{
    set(m_hoverIndex, index, &SidebarDragState::hoverIndexChanged);
}

void SidebarDragState::setRowFrames(const QHash<QUuid, QRectF> &frames)
{
    set(m_rowFrames, frames, &SidebarDragState::rowFramesChanged);
}

void SidebarDragState::setDragLocation(std::optional<QPointF> location)
{
    set(m_dragLocation, location, &SidebarDragState::dragLocationChanged);
}

void SidebarDragState::setDragGrabOffset(QSizeF offset)
{
    set(m_dragGrabOffset, offset, &SidebarDragState::dragGrabOffsetChanged);
}
