#pragma once

#include "core/NoteStore.h"
#include "editor/EditorController.h"
#include "editor/RichTextEditor.h"
#include "sticky/WindowTraits.h"

#include <QColor>
#include <QObject>
#include <QTimer>
#include <QUuid>
#include <QWindow>
#include <qqmlregistration.h>

class StickyNoteManager;

/// The decisions of one sticky window's view: what it shows of its note, which of its two forms it
/// has, and what its controls do.
class StickyNoteController : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Each sticky window is given one.")
    Q_PROPERTY(bool hasNote READ hasNote NOTIFY noteChanged)
    Q_PROPERTY(RichTextEditor editedNote READ editedNote NOTIFY noteChanged)
    Q_PROPERTY(QColor tint READ tint NOTIFY noteChanged)
    Q_PROPERTY(QString color READ color NOTIFY noteChanged)
    Q_PROPERTY(QString textSize READ textSize NOTIFY noteChanged)
    Q_PROPERTY(QString title READ title NOTIFY titleChanged)
    Q_PROPERTY(bool isActive READ isActive NOTIFY isActiveChanged)
    Q_PROPERTY(bool isPinned READ isPinned NOTIFY isPinnedChanged)
    Q_PROPERTY(bool isCollapsed READ isCollapsed NOTIFY isCollapsedChanged)
    Q_PROPERTY(bool isUnfolded READ isUnfolded NOTIFY isUnfoldedChanged)
    Q_PROPERTY(bool showsEditor READ showsEditor NOTIFY showsEditorChanged)
    Q_PROPERTY(bool canPin READ canPin CONSTANT)
    Q_PROPERTY(EditorController *controller READ controller CONSTANT)

public:
    /// The least height, in points, at which there is room for a line of the editor.
    static constexpr int leastEditorHeight = 80;

    /// `canPin`: whether the window system can keep the window above others.
    StickyNoteController(const QUuid &noteID, NoteTextSize initialTextSize, NoteStore &store,
                         StickyNoteManager &manager, bool canPin = canKeepAbove());

    [[nodiscard]] const QUuid &noteID() const { return m_noteID; }
    [[nodiscard]] bool hasNote() const { return note() != nullptr; }
    [[nodiscard]] RichTextEditor editedNote() const;
    [[nodiscard]] QColor tint() const;      ///< what the note's colour is painted in
    [[nodiscard]] QString color() const;    ///< as the note stores it
    [[nodiscard]] QString textSize() const; ///< a NoteTextSize's raw value
    [[nodiscard]] QString title() const;    ///< plain text, never empty
    /// Its window, or one that belongs to it, has the keyboard.
    [[nodiscard]] bool isActive() const { return m_isActive; }
    void setIsActive(bool isActive);
    [[nodiscard]] bool isPinned() const { return m_isPinned; }
    [[nodiscard]] bool isCollapsed() const { return m_isCollapsed; }
    [[nodiscard]] bool canPin() const { return m_canPin; }
    /// Neither collapsed nor as low as if it were: there is something to collapse.
    [[nodiscard]] bool isUnfolded() const;
    /// It is not collapsed, and there is room.
    [[nodiscard]] bool showsEditor() const;
    [[nodiscard]] EditorController *controller() { return &m_controller; }

    /// Changes the form without asking for a frame that goes with it.
    void setCollapsed(bool isCollapsed);
    /// The window's height, points.
    void setHeight(int height);

    // What the controls ask for
    Q_INVOKABLE void togglePin();
    /// Collapses the note or expands it; one that is as low as if collapsed is expanded in any
    /// case.
    Q_INVOKABLE void toggleCollapse();
    /// The user has taken hold of an edge.
    Q_INVOKABLE void beginResizing();
    Q_INVOKABLE void requestClose();
    /// The main window comes to the front and shows the note.
    Q_INVOKABLE void openNotebook();
    /// A new note, in a sticky window beside the one given.
    Q_INVOKABLE void newSticky(QWindow *beside);
    Q_INVOKABLE void sortByColor();
    Q_INVOKABLE void setColor(const QString &rawValue);
    Q_INVOKABLE void setTextSize(const QString &rawValue);
    /// The editor reports a note's new HTML.
    Q_INVOKABLE void applyEdit(const QUuid &noteID, const QString &html);

Q_SIGNALS:
    void noteChanged();
    void titleChanged();
    void isActiveChanged();
    void isPinnedChanged();
    void isCollapsedChanged();
    void isUnfoldedChanged();
    void showsEditorChanged();

    void pinChanged(bool isPinned);
    /// It wants the height of that form.
    void collapseChanged(bool isCollapsed);
    void closeRequested();
    void resizingByUser();
    /// The last words of a note that is no longer there.
    void editedAfterDeletion(const QUuid &noteID, const QString &html);

private:
    [[nodiscard]] const Note *note() const;
    void follow(const NotesChange &change);
    void collapse(bool isCollapsed);
    void changeForm(bool isCollapsed, int height);
    void layOutSoon();

    QUuid m_noteID;
    NoteTextSize m_initialTextSize;
    NoteStore &m_store;
    StickyNoteManager &m_manager;
    EditorController m_controller;
    QTimer m_layOut;
    int m_height;
    bool m_canPin;
    bool m_isActive = false;
    bool m_isPinned = false;
    bool m_isCollapsed = false;
};
