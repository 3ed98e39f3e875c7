#include "mainwindow/MultiSelection.h"

void MultiSelection::setIsSelectionMode(bool isSelectionMode)
{
    if (m_isSelectionMode == isSelectionMode)
        return;
    m_isSelectionMode = isSelectionMode;
    if (!isSelectionMode)
        setSelectedIDs({});
    Q_EMIT isSelectionModeChanged();
}

void MultiSelection::setSelectedIDs(const NoteIDSet &noteIDs)
{
    if (m_selectedIDs == noteIDs)
        return;
    m_selectedIDs = noteIDs;
    Q_EMIT selectedIDsChanged();
}

void MultiSelection::toggleSelection(const QUuid &noteID)
{
    NoteIDSet noteIDs = m_selectedIDs;
    if (!noteIDs.ids.remove(noteID))
        noteIDs.ids.insert(noteID);
    setSelectedIDs(noteIDs);
}
