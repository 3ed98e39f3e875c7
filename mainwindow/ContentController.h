#pragma once

#include "core/NoteStore.h"
#include "editor/RichTextEditor.h"
#include "mainwindow/DeletionUndo.h"
#include "mainwindow/MultiSelection.h"
#include "mainwindow/NoteListModel.h"
#include "mainwindow/PutAwayHint.h"
#include "mainwindow/SelectionManager.h"
#include "mainwindow/SidebarReordering.h"
#include "mainwindow/TransferOffers.h"
#include "mainwindow/TransferProgress.h"
#include "mainwindow/VersionRestore.h"
#include "sticky/StickyNoteManager.h"

#include <QColor>
#include <QObject>
#include <QWindow>
#include <qqmlregistration.h>

/// The decisions of the main window: what its list and its editor show, and what a user's action
/// does to the store, the selection and the sticky windows.
class ContentController : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes one.")
    Q_PROPERTY(NoteListModel *filteredNotes READ filteredNotes CONSTANT)
    Q_PROPERTY(MultiSelection *multiSelection READ multiSelection CONSTANT)
    Q_PROPERTY(SidebarReordering *reordering READ reordering CONSTANT)
    Q_PROPERTY(DeletionUndo *deletionUndo READ deletionUndo CONSTANT)
    Q_PROPERTY(VersionRestore *versionRestore READ versionRestore CONSTANT)
    Q_PROPERTY(TransferProgress *transferProgress READ transferProgress CONSTANT)
    Q_PROPERTY(UndoOffer *undoOffer READ undoOffer NOTIFY undoOfferChanged)
    Q_PROPERTY(QString savingFailsText READ savingFailsText NOTIFY savingFailsTextChanged)
    Q_PROPERTY(bool isAsking READ isAsking WRITE setIsAsking NOTIFY isAskingChanged)
    Q_PROPERTY(bool isWriting READ isWriting WRITE setIsWriting NOTIFY isWritingChanged)
    Q_PROPERTY(PutAwayHint *putAwayHint READ putAwayHint CONSTANT)
    Q_PROPERTY(RichTextEditor editedNote READ editedNote NOTIFY editedNoteChanged)
    Q_PROPERTY(bool hasEditedNote READ hasEditedNote NOTIFY editedNoteChanged)
    Q_PROPERTY(QColor paneColor READ paneColor NOTIFY editedNoteChanged)
    Q_PROPERTY(QString editedColor READ editedColor NOTIFY editedNoteChanged)
    Q_PROPERTY(QString editedTextSize READ editedTextSize NOTIFY editedNoteChanged)
    Q_PROPERTY(int selectedRow READ selectedRow NOTIFY selectedRowChanged)
    Q_PROPERTY(QString selectedCountText READ selectedCountText NOTIFY selectedCountTextChanged)
    Q_PROPERTY(bool isEditorWanted READ isEditorWanted NOTIFY isEditorWantedChanged)

public:
    ContentController(NoteStore &store, SelectionManager &selection,
                      StickyNoteManager &stickyNotes = StickyNoteManager::shared(),
                      QObject *parent = nullptr);

    [[nodiscard]] NoteListModel *filteredNotes() { return &m_filteredNotes; }
    [[nodiscard]] MultiSelection *multiSelection() { return &m_multiSelection; }
    [[nodiscard]] SidebarReordering *reordering() { return &m_reordering; }
    [[nodiscard]] DeletionUndo *deletionUndo() { return &m_deletionUndo; }
    [[nodiscard]] VersionRestore *versionRestore() { return &m_versionRestore; }
    [[nodiscard]] TransferProgress *transferProgress() { return &m_transferProgress; }
    /// Notes that came from files; they are put on top, and the first of them is opened.
    void addImported(const std::vector<Note> &notes);
    /// Says where so many notes went.
    void offerExported(int count, const QString &path) { m_exportedOffer.offer(count, path); }
    /// Tells the user something that needs nothing but to be known.
    void notify(const QString &title, const QString &message);
    [[nodiscard]] std::optional<QUuid> editedNoteID() const { return m_selection.selectedNoteID(); }
    /// The way back from what was done last.
    [[nodiscard]] UndoOffer *undoOffer() const { return m_undoOffer; }
    /// Says that the notes cannot be written, and since when; empty as long as they can.
    [[nodiscard]] QString savingFailsText() const;
    /// The main window waits for an answer, and nothing else is to happen in it.
    [[nodiscard]] bool isAsking() const { return m_isAsking; }
    void setIsAsking(bool isAsking);
    /// The keyboard is where text is written; what was written is undone there.
    [[nodiscard]] bool isWriting() const { return m_isWriting; }
    void setIsWriting(bool isWriting);
    [[nodiscard]] PutAwayHint *putAwayHint() { return &m_putAwayHint; }

    [[nodiscard]] RichTextEditor editedNote() const;
    [[nodiscard]] bool hasEditedNote() const;
    [[nodiscard]] QColor paneColor() const;
    [[nodiscard]] QString editedColor() const;    ///< as the note stores it
    [[nodiscard]] QString editedTextSize() const; ///< a NoteTextSize's raw value
    [[nodiscard]] int selectedRow() const;
    [[nodiscard]] QString selectedCountText() const;
    /// The web engine is started when the first note is opened, or once the list is on screen and
    /// there is nothing else to do.
    [[nodiscard]] bool isEditorWanted() const { return m_isEditorWanted; }

    // What the sidebar asks for
    Q_INVOKABLE void selectTab(SidebarTabs::SidebarTab tab);
    Q_INVOKABLE void selectNote(const QUuid &noteID);
    Q_INVOKABLE void selectRow(int row);
    Q_INVOKABLE void addNote();
    /// Archives the note, or restores it.
    Q_INVOKABLE void archiveNote(const QUuid &noteID);
    Q_INVOKABLE void deleteNote(const QUuid &noteID);
    Q_INVOKABLE void makeSticky(const QUuid &noteID);
    Q_INVOKABLE void makeAllSticky();
    /// Moves the note by that many rows of the list, as far as it goes.
    Q_INVOKABLE void moveNoteBy(const QUuid &noteID, int rows);

    // What the selection panel asks for
    Q_INVOKABLE void selectAll();
    Q_INVOKABLE void archiveSelection();
    Q_INVOKABLE void deleteSelection();

    // What the editor pane asks for
    /// The editor reports a note's new HTML.
    Q_INVOKABLE void applyEdit(const QUuid &noteID, const QString &html);
    Q_INVOKABLE void setEditedColor(const QString &rawValue);
    Q_INVOKABLE void setEditedTextSize(const QString &rawValue);

    /// Takes back what was written last where the keyboard is; elsewhere what was done last, as long
    /// as there is a way back: deleting, restoring, arranging.
    Q_INVOKABLE void undo();
    /// Shows the main window, in front of the others and with the keyboard.
    void bringToFront();

    /// A note will soon be opened.
    Q_INVOKABLE void prepareEditor();

Q_SIGNALS:
    void editedNoteChanged();
    void selectedRowChanged();
    void selectedCountTextChanged();
    void isEditorWantedChanged();
    void undoOfferChanged();
    void noticeRequested(const QString &title, const QString &message);
    void isAskingChanged();
    void isWritingChanged();
    void savingFailsTextChanged();
    /// The keyboard is wanted in the search field.
    void searchFocusRequested();
    void editorFocusRequested();

private:
    void follow(const NotesChange &change);
    void showRequested(const QUuid &noteID);
    void selectPending();
    void deleteNotes(const QSet<QUuid> &noteIDs);
    void untickDeleted();
    void takeBack(const QList<QUuid> &noteIDs);
    void showInItsTab(const Note &note);
    void placeCard();
    void setEditorWanted();
    void followOffer(UndoOffer &offer);
    [[nodiscard]] const Note *selectedNote() const;
    [[nodiscard]] static QWindow *mainWindow();

    NoteStore &m_store;
    SelectionManager &m_selection;
    StickyNoteManager &m_stickyNotes;
    NoteListModel m_filteredNotes;
    MultiSelection m_multiSelection;
    SidebarReordering m_reordering;
    DeletionUndo m_deletionUndo;
    VersionRestore m_versionRestore;
    ImportUndo m_importUndo;
    ExportedOffer m_exportedOffer;
    TransferProgress m_transferProgress;
    UndoOffer *m_undoOffer;
    PutAwayHint m_putAwayHint;
    std::optional<QUuid> m_deletedSelection; ///< was open in the editor when it was deleted
    bool m_isEditorWanted = false;
    bool m_isAsking = false;
    bool m_isWriting = false;
};
