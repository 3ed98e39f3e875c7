#include "mainwindow/ContentController.h"

#include "core/NoteColor.h"
#include "core/NoteEditing.h"
#include "core/NotificationCenter.h"
#include "editor/BodyFontSize.h"
#include "editor/EditorCommand.h"
#include "mainwindow/DragOverlayManager.h"
#include "shell/L10n.h"
#include "sticky/WindowFront.h"
#include "sticky/WindowHolder.h"

#include <QFileInfo>
#include <QGuiApplication>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
constexpr double pagePadding = 50.0;      ///< px, keeps the text clear of the toolbar
constexpr auto restingTime = 400ms;       ///< until the pages of the sticky windows are there
constexpr double typicalRowWidth = 340.0; ///< points
} // namespace

ContentController::ContentController(NoteStore &store, SelectionManager &selection,
                                     StickyNoteManager &stickyNotes, QObject *parent)
    : QObject(parent), m_store(store), m_selection(selection), m_stickyNotes(stickyNotes),
      m_filteredNotes(store, selection),
      m_reordering([this] { return m_filteredNotes.noteIDs(); },
                   [this] { return m_multiSelection.isSelectionMode(); }),
      m_deletionUndo(store), m_versionRestore(store), m_importUndo(store),
      m_undoOffer(&m_deletionUndo), m_putAwayHint(stickyNotes, m_filteredNotes, &mainWindow)
{
    connect(&m_store, &NoteStore::notesChanged, this, &ContentController::follow);
    connect(&m_selection, &SelectionManager::selectedNoteIDChanged, this, [this] {
        if (selectedNote())
            setEditorWanted();
        Q_EMIT editedNoteChanged();
        Q_EMIT selectedRowChanged();
    });
    connect(&m_selection, &SelectionManager::selectedTabChanged, this,
            &ContentController::selectedRowChanged);
    for (const auto signal : {&NoteListModel::rowsInserted, &NoteListModel::rowsRemoved})
        connect(&m_filteredNotes, signal, this, &ContentController::selectedRowChanged);
    connect(&m_filteredNotes, &NoteListModel::rowsMoved, this,
            &ContentController::selectedRowChanged);
    connect(&m_filteredNotes, &NoteListModel::modelReset, this,
            &ContentController::selectedRowChanged);

    connect(&m_multiSelection, &MultiSelection::selectedIDsChanged, this,
            &ContentController::selectedCountTextChanged);
    connect(&L10n::shared(), &L10n::changed, this, &ContentController::selectedCountTextChanged);
    connect(&m_deletionUndo, &DeletionUndo::restored, this, &ContentController::takeBack);
    connect(&m_store, &NoteStore::savingFailsSinceChanged, this,
            &ContentController::savingFailsTextChanged);
    connect(&L10n::shared(), &L10n::changed, this, &ContentController::savingFailsTextChanged);
    connect(&m_store, &NoteStore::conflictKept, this, [this](const QString &path) {
        notify(L10n::conflictTitle(), L10n::conflictMessage() + u'\n' + QFileInfo(path).fileName());
    });
    followOffer(m_deletionUndo);
    followOffer(m_versionRestore);
    followOffer(m_importUndo);
    followOffer(m_exportedOffer);
    connect(&m_stickyNotes, &StickyNoteManager::editedAfterDeletion, this,
            &ContentController::applyEdit);

    connect(&m_reordering, &SidebarReordering::moveRequested, &m_store, &NoteStore::moveNote);
    connect(&m_reordering, &SidebarReordering::moveToEndRequested, &m_store,
            &NoteStore::moveNoteToEnd);
    connect(m_reordering.state(), &SidebarDragState::draggedIDChanged, this,
            &ContentController::placeCard);

    auto &center = NotificationCenter::shared();
    connect(&center, &NotificationCenter::plimSelectNote, this, &ContentController::showRequested);
    connect(&center, &NotificationCenter::plimFocusSearch, this,
            &ContentController::searchFocusRequested);
    if (qGuiApp)
        connect(qGuiApp, &QGuiApplication::focusWindowChanged, this,
                &ContentController::selectPending);
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

QString ContentController::editedColor() const
{
    const Note *note = selectedNote();
    return note ? note->color : QString();
}

QString ContentController::editedTextSize() const
{
    const Note *note = selectedNote();
    return note ? rawValue(note->textSize) : QString();
}

int ContentController::selectedRow() const
{
    const auto id = m_selection.selectedNoteID();
    return id ? m_filteredNotes.rowOf(*id) : -1;
}

QString ContentController::selectedCountText() const
{
    return L10n::contentSelectedCount(m_multiSelection.selectedIDs().count());
}

void ContentController::selectTab(SidebarTab tab)
{
    m_multiSelection.end();
    m_selection.setSelectedTab(tab);
}

// A note that is opened gets the keyboard; one that is open already is meant to have it, too.
void ContentController::selectNote(const QUuid &noteID)
{
    if (m_selection.selectedNoteID() == noteID)
        Q_EMIT editorFocusRequested();
    m_selection.setSelectedNoteID(noteID);
}

void ContentController::selectRow(int row)
{
    const QModelIndex index = m_filteredNotes.index(row);
    if (index.isValid())
        selectNote(index.data(NoteListModel::NoteIDRole).toUuid());
}

// An empty note matches no search; who adds one wants to see it in the list.
void ContentController::addNote()
{
    selectTab(SidebarTab::Notes);
    m_filteredNotes.setSearchText({});
    m_selection.setSelectedNoteID(m_store.addNote());
}

void ContentController::archiveNote(const QUuid &noteID)
{
    if (const Note *note = m_store.note(noteID))
        m_store.setArchived(!note->isArchived, {noteID});
}

void ContentController::deleteNote(const QUuid &noteID)
{
    deleteNotes({noteID});
}

void ContentController::makeSticky(const QUuid &noteID)
{
    m_stickyNotes.open(noteID, m_store, nullptr, std::nullopt);
}

void ContentController::makeAllSticky()
{
    m_stickyNotes.openAll(m_filteredNotes.noteIDs(), m_store, mainWindow());
}

void ContentController::moveNoteBy(const QUuid &noteID, int rows)
{
    if (m_multiSelection.isSelectionMode())
        return;
    QList<QUuid> others = m_filteredNotes.noteIDs();
    const auto row = others.indexOf(noteID);
    if (row < 0)
        return;
    others.removeAt(row);
    const auto target = std::clamp<qsizetype>(row + rows, 0, others.size());
    if (target == row)
        return;
    if (target < others.size())
        m_store.moveNote(noteID, others[target]);
    else
        m_store.moveNoteToEnd(noteID);
}

void ContentController::selectAll()
{
    const QList<QUuid> noteIDs = m_filteredNotes.noteIDs();
    m_multiSelection.setSelectedIDs({QSet<QUuid>(noteIDs.begin(), noteIDs.end())});
}

// What was to be done is done: the notes are in the other tab, and nothing there stays ticked.
void ContentController::archiveSelection()
{
    const QSet<QUuid> noteIDs = m_multiSelection.selectedIDs().ids;
    m_store.setArchived(m_selection.selectedTab() == SidebarTab::Notes, noteIDs);
    if (!noteIDs.isEmpty())
        m_multiSelection.end();
}

void ContentController::deleteSelection()
{
    const QSet<QUuid> noteIDs = m_multiSelection.selectedIDs().ids;
    deleteNotes(noteIDs);
    if (!noteIDs.isEmpty())
        m_multiSelection.end();
}

void ContentController::applyEdit(const QUuid &noteID, const QString &html)
{
    if (!storeBody(m_store, noteID, html))
        m_deletionUndo.applyEdit(noteID, html);
}

void ContentController::setEditedColor(const QString &rawValue)
{
    if (const auto noteID = m_selection.selectedNoteID())
        storeColor(m_store, *noteID, rawValue);
}

void ContentController::setEditedTextSize(const QString &rawValue)
{
    if (const auto noteID = m_selection.selectedNoteID())
        storeTextSize(m_store, *noteID, rawValue);
}

void ContentController::prepareEditor()
{
    // The sticky windows have something to show; this one has not before a note is opened.
    if (m_stickyNotes.isRestoring())
        connect(
            &m_stickyNotes, &StickyNoteManager::restored, this,
            [this] { QTimer::singleShot(restingTime, this, &ContentController::setEditorWanted); },
            Qt::SingleShotConnection);
    else if (!m_isEditorWanted)
        QTimer::singleShot(0, this, &ContentController::setEditorWanted);
}

// The one place from which ordinary saves are asked for.
void ContentController::follow(const NotesChange &change)
{
    m_store.save();
    if (change.kind == NotesChange::Kind::Deleted || change.kind == NotesChange::Kind::Reset)
        untickDeleted();
    const auto selected = m_selection.selectedNoteID();
    if (!selected)
        return;
    if (!selectedNote())
        m_selection.setSelectedNoteID(std::nullopt);
    else if (change.kind == NotesChange::Kind::Reset ||
             (change.kind == NotesChange::Kind::Updated && change.ids.contains(*selected)))
        Q_EMIT editedNoteChanged();
}

void ContentController::showRequested(const QUuid &noteID)
{
    const Note *note = m_store.note(noteID);
    if (!note)
        return;
    showInItsTab(*note);
    m_selection.setSelectedNoteID(noteID);
    bringToFront();
}

void ContentController::bringToFront()
{
    if (QWindow *window = mainWindow())
        ::bringToFront(*window);
}

void ContentController::addImported(const std::vector<Note> &notes)
{
    if (notes.empty())
        return;
    const QUuid firstID = m_store.notes().isEmpty() ? QUuid() : m_store.notes()[0].id;
    QList<PlacedNote> placed;
    QSet<QUuid> noteIDs;
    for (const Note &note : notes) {
        placed.append({.note = note, .nextID = firstID, .row = 0});
        noteIDs.insert(note.id);
    }
    selectTab(SidebarTab::Notes);
    m_filteredNotes.setSearchText({});
    m_store.reinsertNotes(placed);
    m_selection.setSelectedNoteID(notes.front().id);
    m_importUndo.offer(noteIDs);
}

void ContentController::notify(const QString &title, const QString &message)
{
    bringToFront();
    Q_EMIT noticeRequested(title, message);
}

QString ContentController::savingFailsText() const
{
    const auto since = m_store.savingFailsSince();
    if (!since)
        return {};
    const bool isToday = since->date() == QDate::currentDate();
    return L10n::savingFailsSince() + u' ' +
           since->toString(isToday ? u"HH:mm"_s : u"yyyy-MM-dd HH:mm"_s) + u". "_s +
           L10n::savingFailsHint();
}

void ContentController::undo()
{
    Q_EMIT NotificationCenter::shared().plimFormat(EditorCommand::Kind::undo);
    if (m_isWriting)
        return;
    if (m_undoOffer->isOffered() && m_undoOffer->takesBack())
        m_undoOffer->undo();
    else
        m_stickyNotes.undoArrange();
}

void ContentController::setIsAsking(bool isAsking)
{
    if (m_isAsking == isAsking)
        return;
    m_isAsking = isAsking;
    Q_EMIT isAskingChanged();
}

void ContentController::setIsWriting(bool isWriting)
{
    if (m_isWriting == isWriting)
        return;
    m_isWriting = isWriting;
    Q_EMIT isWritingChanged();
}

// There is one place where a way back is offered, and the last one has it.
void ContentController::followOffer(UndoOffer &offer)
{
    connect(&offer, &UndoOffer::isOfferedChanged, this, [this, &offer] {
        if (!offer.isOffered() || m_undoOffer == &offer)
            return;
        m_undoOffer->dismiss();
        m_undoOffer = &offer;
        Q_EMIT undoOfferChanged();
    });
}

void ContentController::selectPending()
{
    auto &pending = WindowHolder::shared().pendingSelectedID;
    if (!pending || !QGuiApplication::focusWindow())
        return;
    const auto noteID = std::exchange(pending, std::nullopt);
    const Note *note = m_store.note(*noteID);
    if (!note)
        return;
    showInItsTab(*note);
    m_selection.setSelectedNoteID(noteID);
}

void ContentController::showInItsTab(const Note &note)
{
    selectTab(note.isArchived ? SidebarTab::Archive : SidebarTab::Notes);
}

void ContentController::deleteNotes(const QSet<QUuid> &noteIDs)
{
    const QList<PlacedNote> notes = m_store.placedNotes(noteIDs);
    if (notes.isEmpty())
        return;
    const auto selected = m_selection.selectedNoteID();
    m_deletedSelection = selected && noteIDs.contains(*selected) ? selected : std::nullopt;
    m_deletionUndo.offer(notes);
    m_store.deleteNotes(noteIDs);
}

void ContentController::untickDeleted()
{
    NoteIDSet ticked = m_multiSelection.selectedIDs();
    ticked.ids.removeIf([this](const QUuid &noteID) { return !m_store.note(noteID); });
    m_multiSelection.setSelectedIDs(ticked);
}

void ContentController::takeBack(const QList<QUuid> &noteIDs)
{
    const auto deleted = std::exchange(m_deletedSelection, std::nullopt);
    if (deleted && noteIDs.contains(*deleted) && !m_selection.selectedNoteID())
        m_selection.setSelectedNoteID(deleted);
}

void ContentController::placeCard()
{
    auto &card = DragOverlayManager::shared();
    const auto draggedID = m_reordering.state()->draggedID();
    if (!draggedID) {
        card.hide();
        return;
    }
    if (const Note *note = m_store.note(*draggedID)) {
        const auto &frames = m_reordering.state()->rowFrames();
        card.show(*note,
                  frames.contains(*draggedID) ? frames[*draggedID].width() : typicalRowWidth);
    }
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

QWindow *ContentController::mainWindow()
{
    return WindowHolder::shared().window;
}
