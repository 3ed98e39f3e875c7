#include "mainwindow/DragOverlayManager.h"

#include "core/NoteColor.h"
#include "core/NoteLines.h"
#include "shell/L10n.h"

#include <QQmlEngine>

DragOverlayManager::DragOverlayManager(QObject *parent) : QObject(parent)
{
    connect(&L10n::shared(), &L10n::changed, this, &DragOverlayManager::cardChanged);
}

DragOverlayManager &DragOverlayManager::shared()
{
    static DragOverlayManager manager(nullptr);
    return manager;
}

DragOverlayManager *DragOverlayManager::create(QQmlEngine *, QJSEngine *)
{
    QQmlEngine::setObjectOwnership(&shared(), QQmlEngine::CppOwnership);
    return &shared();
}

void DragOverlayManager::show(const Note &note, qreal width)
{
    const QString heading = headingLine(note);
    const QColor color = displayNoteColor(note.color);
    if (m_currentNoteID != note.id || m_heading != heading || m_color != color ||
        m_width != width) {
        m_currentNoteID = note.id;
        m_heading = heading;
        m_color = color;
        m_width = width;
        Q_EMIT cardChanged();
    }
    if (m_isShown)
        return;
    m_isShown = true;
    Q_EMIT isShownChanged();
}

void DragOverlayManager::hide()
{
    if (!m_isShown)
        return;
    m_isShown = false;
    Q_EMIT isShownChanged();
}

void DragOverlayManager::setCorner(QPointF corner)
{
    if (m_corner == corner)
        return;
    m_corner = corner;
    Q_EMIT cornerChanged();
}

QString DragOverlayManager::title() const
{
    return m_heading.isEmpty() ? L10n::untitled() : m_heading;
}
