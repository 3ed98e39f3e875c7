#pragma once

#include "mainwindow/NoteListModel.h"
#include "sticky/StickyNoteManager.h"

#include <QObject>
#include <QString>
#include <QWindow>
#include <qqmlregistration.h>

#include <functional>

/// The first time ever that a sticky window is put away, the list is to show where its note went.
/// Only where that can be seen without changing anything in the main window; until it could be, the
/// first time is still to come.
class PutAwayHint : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The main window has one.")

public:
    /// The window is asked for anew each time; it may be nullptr.
    PutAwayHint(const StickyNoteManager &stickyNotes, const NoteListModel &list,
                std::function<const QWindow *()> window, QObject *parent = nullptr);

Q_SIGNALS:
    /// The row of the list is to be shown, and what it is of.
    void pointedOut(int row, const QString &noteID);

private:
    void consider(const QUuid &noteID);

    const NoteListModel &m_list;
    std::function<const QWindow *()> m_window;
};
