#include "mainwindow/ContentController.h"

#include "core/NoteColor.h"

#include <QTimer>

namespace
{
constexpr double pagePadding = 24.0; ///< px

/// px, the page's base font size.
double bodyFontSize(NoteTextSize size)
{
    switch (size) {
    case NoteTextSize::extraSmall:
        return 12.0;
    case NoteTextSize::small:
        return 14.0;
    case NoteTextSize::medium:
        return 16.0;
    case NoteTextSize::big:
        return 19.0;
    }
    Q_UNREACHABLE();
}
} // namespace

ContentController::ContentController(NoteStore &store, SelectionManager &selection, QObject *parent)
    : QObject(parent), m_store(store), m_selection(selection), m_notes(store, selection)
{
    connect(&m_store, &NoteStore::notesChanged, this, &ContentController::follow);
    connect(&m_selection, &SelectionManager::selectedNoteIDChanged, this, [this] {
        if (selectedNote())
            setEditorWanted();
        Q_EMIT editedNoteChanged();
        Q_EMIT selectedRowChanged();
    });
    connect(&m_selection, &SelectionManager::selectedTabChanged, this, &ContentController::selectedRowChanged);
    for (const auto signal : {&NoteListModel::rowsInserted, &NoteListModel::rowsRemoved})
        connect(&m_notes, signal, this, &ContentController::selectedRowChanged);
    connect(&m_notes, &NoteListModel::rowsMoved, this, &ContentController::selectedRowChanged);
    connect(&m_notes, &NoteListModel::modelReset, this, &ContentController::selectedRowChanged);
}

RichTextEditor ContentController::editedNote() const
{
    RichTextEditor editor;
    editor.rightPadding = pagePadding;
    if (const Note *note = selectedNote()) {
        editor.noteID = note->id;
        editor.html = note->body;
        editor.bodyFontSize = bodyFontSize(note->textSize);
    }
    return editor;
}

bool ContentController::hasEditedNote() const
{
    return selectedNote() != nullptr;
}

QColor ContentController::paneColor() const
{
    const Note *note = selectedNote();
    return note ? displayNoteColor(note->color) : QColor();
}

int ContentController::selectedRow() const
{
    const auto id = m_selection.selectedNoteID();
    return id ? m_notes.rowOf(*id) : -1;
}

void ContentController::addNote()
{
    m_selection.setSelectedTab(SidebarTab::Notes);
    m_selection.setSelectedNoteID(m_store.addNote());
}

void ContentController::selectRow(int row)
{
    const QModelIndex index = m_notes.index(row);
    if (index.isValid())
        m_selection.setSelectedNoteID(index.data(NoteListModel::NoteIDRole).toUuid());
}

void ContentController::applyEdit(const QUuid &noteID, const QString &html)
{
    const Note *note = m_store.note(noteID);
    if (!note)
        return;
    Note edited = *note;
    edited.body = html;
    m_store.updateNote(edited);
}

void ContentController::prepareEditor()
{
    if (!m_isEditorWanted)
        QTimer::singleShot(0, this, &ContentController::setEditorWanted);
}

// The one place from which ordinary saves are asked for.
void ContentController::follow(const NotesChange &change)
{
    m_store.save();
    const auto selected = m_selection.selectedNoteID();
    if (!selected)
        return;
    if (!selectedNote())
        m_selection.setSelectedNoteID(std::nullopt);
    else if (change.kind == NotesChange::Kind::Reset
             || (change.kind == NotesChange::Kind::Updated && change.ids.contains(*selected)))
        Q_EMIT editedNoteChanged();
}

void ContentController::setEditorWanted()
{
    if (m_isEditorWanted)
        return;
    m_isEditorWanted = true;
    Q_EMIT isEditorWantedChanged();
}

const Note *ContentController::selectedNote() const
{
    const auto id = m_selection.selectedNoteID();
    return id ? m_store.note(*id) : nullptr;
}
