#pragma once

#include "core/NoteStore.h"
#include "editor/RichTextEditor.h"
#include "mainwindow/NoteListModel.h"
#include "mainwindow/SelectionManager.h"

#include <QColor>
#include <QObject>
#include <qqmlregistration.h>

/// The decisions of the main window: what its list and its editor show, and what a user's action
/// does to the store and the selection.
class ContentController : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes one.")
    Q_PROPERTY(NoteListModel *notes READ notes CONSTANT)
    Q_PROPERTY(RichTextEditor editedNote READ editedNote NOTIFY editedNoteChanged)
    Q_PROPERTY(bool hasEditedNote READ hasEditedNote NOTIFY editedNoteChanged)
    Q_PROPERTY(QColor paneColor READ paneColor NOTIFY editedNoteChanged)
    Q_PROPERTY(int selectedRow READ selectedRow NOTIFY selectedRowChanged)
    Q_PROPERTY(bool isEditorWanted READ isEditorWanted NOTIFY isEditorWantedChanged)

public:
    ContentController(NoteStore &store, SelectionManager &selection, QObject *parent = nullptr);

    [[nodiscard]] NoteListModel *notes() { return &m_notes; }
    [[nodiscard]] RichTextEditor editedNote() const;
    [[nodiscard]] bool hasEditedNote() const;
    [[nodiscard]] QColor paneColor() const;
    [[nodiscard]] int selectedRow() const;
    /// The web engine is started when the first note is opened, or once the list is on screen and
    /// there is nothing else to do.
    [[nodiscard]] bool isEditorWanted() const { return m_isEditorWanted; }

    Q_INVOKABLE void addNote();
    Q_INVOKABLE void selectRow(int row);
    /// The editor reports a note's new HTML.
    Q_INVOKABLE void applyEdit(const QUuid &noteID, const QString &html);
    /// The list has been drawn.
    Q_INVOKABLE void prepareEditor();

Q_SIGNALS:
    void editedNoteChanged();
    void selectedRowChanged();
    void isEditorWantedChanged();

private:
    void follow(const NotesChange &change);
    void setEditorWanted();
    [[nodiscard]] const Note *selectedNote() const;

    NoteStore &m_store;
    SelectionManager &m_selection;
    NoteListModel m_notes;
    bool m_isEditorWanted = false;
};
