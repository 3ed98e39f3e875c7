#pragma once

#include <QHash>
#include <QObject>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QUuid>
#include <qqmlregistration.h>

#include <optional>

/// One note being dragged through the list. Positions are in the list's content, so that they hold
/// while it scrolls. Between drags the note, the index and the position are absent.
class SidebarDragState : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The main window has one.")
    Q_PROPERTY(bool isDragging READ isDragging NOTIFY draggedIDChanged)
    Q_PROPERTY(QString draggedID READ draggedIDText NOTIFY draggedIDChanged)

public:
    using QObject::QObject;

    [[nodiscard]] bool isDragging() const { return m_draggedID.has_value(); }
    [[nodiscard]] std::optional<QUuid> draggedID() const { return m_draggedID; }
    void setDraggedID(std::optional<QUuid> id);
    /// Where among the other rows it would land.
    [[nodiscard]] std::optional<int> hoverIndex() const { return m_hoverIndex; }
    void setHoverIndex(std::optional<int> index);
    [[nodiscard]] const QHash<QUuid, QRectF> &rowFrames() const { return m_rowFrames; }
    void setRowFrames(const QHash<QUuid, QRectF> &frames);
    [[nodiscard]] std::optional<QPointF> dragLocation() const { return m_dragLocation; }
    void setDragLocation(std::optional<QPointF> location);
    /// From the upper left corner of the row to where it was grabbed.
    [[nodiscard]] QSizeF dragGrabOffset() const { return m_dragGrabOffset; }
    void setDragGrabOffset(QSizeF offset);

Q_SIGNALS:
    void draggedIDChanged();
    void hoverIndexChanged();
    void rowFramesChanged();
    void dragLocationChanged();
    void dragGrabOffsetChanged();

private:
    [[nodiscard]] QString draggedIDText() const { return m_draggedID.value_or(QUuid()).toString(); }
    template <typename T>
    void set(T &member, const T &value, void (SidebarDragState::*changed)());

    std::optional<QUuid> m_draggedID;
    std::optional<int> m_hoverIndex;
    QHash<QUuid, QRectF> m_rowFrames;
    std::optional<QPointF> m_dragLocation;
    QSizeF m_dragGrabOffset{0, 0};
};
