#pragma once

#include "shell/NoteIDSet.h"

#include <QObject>
#include <QRect>
#include <QUuid>
#include <QWindow>
#include <qqmlregistration.h>

#include <optional>

class NoteStore;
class QJSEngine;
class QQmlEngine;

/// The notes that are out in windows of their own.
class StickyNoteManager : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(NoteIDSet activeNoteIDs READ activeNoteIDs NOTIFY activeNoteIDsChanged)

public:
    [[nodiscard]] static StickyNoteManager &shared();
    static StickyNoteManager *create(QQmlEngine *, QJSEngine *);

    /// Without a default parent: of a class that it can make by itself QML makes one of its own.
    explicit StickyNoteManager(QObject *parent) : QObject(parent) {}

    /// The notes whose window is open.
    [[nodiscard]] const NoteIDSet &activeNoteIDs() const { return m_activeNoteIDs; }

    /// Shows the note's window, and brings it to the front when there is one already. A new one is
    /// put into the frame, else beside the source window, else in the middle of the screen.
    virtual void open(const QUuid &noteID, NoteStore &store, QWindow *sourceWindow,
                      std::optional<QRect> frame);
    /// Opens those of the notes that have no window, in this order, and packs the windows.
    virtual void openAll(const QList<QUuid> &noteIDs, NoteStore &store, QWindow *sourceWindow);

Q_SIGNALS:
    void activeNoteIDsChanged();

protected:
    void setActiveNoteIDs(const NoteIDSet &noteIDs);

private:
    NoteIDSet m_activeNoteIDs;
};
