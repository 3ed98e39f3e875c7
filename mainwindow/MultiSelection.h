#pragma once

#include "shell/NoteIDSet.h"

#include <QObject>
#include <QUuid>
#include <qqmlregistration.h>

/// Several notes ticked at once, for doing one thing to all of them.
class MultiSelection : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The main window has one.")
    Q_PROPERTY(bool isSelectionMode READ isSelectionMode WRITE setIsSelectionMode NOTIFY
                   isSelectionModeChanged)
    Q_PROPERTY(NoteIDSet selectedIDs READ selectedIDs NOTIFY selectedIDsChanged)

public:
    using QObject::QObject;

    [[nodiscard]] bool isSelectionMode() const { return m_isSelectionMode; }
    /// Leaving selection mode unticks every note.
    void setIsSelectionMode(bool isSelectionMode);
    [[nodiscard]] const NoteIDSet &selectedIDs() const { return m_selectedIDs; }
    void setSelectedIDs(const NoteIDSet &noteIDs);

    /// Ticks the note, or unticks it.
    Q_INVOKABLE void toggleSelection(const QUuid &noteID);
    Q_INVOKABLE void end() { setIsSelectionMode(false); }

Q_SIGNALS:
    void isSelectionModeChanged();
    void selectedIDsChanged();

private:
    bool m_isSelectionMode = false;
    NoteIDSet m_selectedIDs;
};
