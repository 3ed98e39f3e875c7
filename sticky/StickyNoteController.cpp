#include "sticky/StickyNoteController.h"

#include "core/NoteColor.h"
#include "core/NoteEditing.h"
#include "core/NoteLines.h"
#include "core/NotificationCenter.h"
#include "editor/BodyFontSize.h"
#include "shell/L10n.h"
#include "sticky/StickyFrame.h"
#include "sticky/StickyNoteManager.h"
#include "sticky/StickyPacking.h"
#include "sticky/WindowHolder.h"

#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace
{
constexpr auto layOutDelay = 50ms;         ///< until the window has its new height
constexpr auto secondRequestDelay = 150ms; ///< until a hidden main window is there to hear it
constexpr double pagePadding = 10;         ///< px
} // namespace

StickyNoteController::StickyNoteController(const QUuid &noteID, NoteTextSize initialTextSize,
                                           NoteStore &store, StickyNoteManager &manager,
                                           bool canPin)
    : m_noteID(noteID), m_initialTextSize(initialTextSize), m_store(store), m_manager(manager),
      m_height(int(StickyFrame::expandedHeight)), m_canPin(canPin)
{
    m_layOut.setSingleShot(true);
    m_layOut.setInterval(layOutDelay);
    connect(&m_layOut, &QTimer::timeout, &m_controller, &EditorController::layOutAgain);
    connect(&m_store, &NoteStore::notesChanged, this, &StickyNoteController::follow);
    connect(&L10n::shared(), &L10n::changed, this, &StickyNoteController::titleChanged);
    const auto &center = NotificationCenter::shared();
    connect(&center, &NotificationCenter::plimCollapseAll, this, [this] {
        if (!m_isCollapsed)
            collapse(true);
    });
    connect(&center, &NotificationCenter::plimExpandAll, this, [this] {
        if (m_isCollapsed)
            collapse(false);
        layOutSoon();
    });
}

RichTextEditor StickyNoteController::editedNote() const
{
    RichTextEditor editor;
    editor.rightPadding = pagePadding;
    if (const Note *shown = note()) {
        editor.noteID = shown->id;
        editor.html = shown->body;
        editor.bodyFontSize = bodyFontSize(shown->textSize);
    } else {
        editor.bodyFontSize = bodyFontSize(m_initialTextSize);
    }
    return editor;
}

QColor StickyNoteController::tint() const
{
    const Note *shown = note();
    return displayNoteColor(shown ? QStringView(shown->color) : QStringView());
}

QString StickyNoteController::color() const
{
    const Note *shown = note();
    return shown ? shown->color : QString();
}

QString StickyNoteController::textSize() const
{
    const Note *shown = note();
    return rawValue(shown ? shown->textSize : m_initialTextSize);
}

QString StickyNoteController::title() const
{
    const Note *shown = note();
    const QString heading = shown ? headingLine(*shown) : QString();
    return heading.isEmpty() ? L10n::untitled() : heading;
}

void StickyNoteController::setIsActive(bool isActive)
{
    if (m_isActive == isActive)
        return;
    m_isActive = isActive;
    Q_EMIT isActiveChanged();
}

bool StickyNoteController::isUnfolded() const
{
    return !m_isCollapsed && !StickyPacking::isCollapsed(m_height, std::nullopt);
}

bool StickyNoteController::showsEditor() const
{
    return !m_isCollapsed && m_height >= leastEditorHeight;
}

void StickyNoteController::setCollapsed(bool isCollapsed)
{
    changeForm(isCollapsed, m_height);
}

void StickyNoteController::setHeight(int height)
{
    changeForm(m_isCollapsed, height);
}

void StickyNoteController::changeForm(bool isCollapsed, int height)
{
    const bool wasUnfolded = isUnfolded();
    const bool showedEditor = showsEditor();
    const bool wasCollapsed = std::exchange(m_isCollapsed, isCollapsed);
    m_height = height;
    if (wasCollapsed && !isCollapsed)
        layOutSoon();
    if (wasCollapsed != isCollapsed)
        Q_EMIT isCollapsedChanged();
    if (wasUnfolded != isUnfolded())
        Q_EMIT isUnfoldedChanged();
    if (showedEditor != showsEditor())
        Q_EMIT showsEditorChanged();
}

void StickyNoteController::togglePin()
{
    m_isPinned = !m_isPinned;
    Q_EMIT isPinnedChanged();
    Q_EMIT pinChanged(m_isPinned);
}

void StickyNoteController::toggleCollapse()
{
    collapse(isUnfolded());
}

void StickyNoteController::beginResizing()
{
    Q_EMIT resizingByUser();
}

void StickyNoteController::requestClose()
{
    Q_EMIT closeRequested();
}

// The main window may have been hidden: it hears the first request and may lose what it selected
// while it comes up, so it is asked once more.
void StickyNoteController::openNotebook()
{
    auto &holder = WindowHolder::shared();
    if (!holder.window) {
        holder.pendingSelectedID = m_noteID;
        return;
    }
    const auto request = [noteID = m_noteID] {
        Q_EMIT NotificationCenter::shared().plimSelectNote(noteID);
    };
    request();
    QTimer::singleShot(secondRequestDelay, &m_store, request);
}

void StickyNoteController::newSticky(QWindow *beside)
{
    m_manager.open(m_store.addNote(), m_store, beside, std::nullopt);
}

void StickyNoteController::sortByColor()
{
    m_manager.sortWindowsByColor(m_store);
}

void StickyNoteController::setColor(const QString &rawValue)
{
    storeColor(m_store, m_noteID, rawValue);
}

void StickyNoteController::setTextSize(const QString &rawValue)
{
    storeTextSize(m_store, m_noteID, rawValue);
}

void StickyNoteController::applyEdit(const QUuid &noteID, const QString &html)
{
    if (!storeBody(m_store, noteID, html))
        Q_EMIT editedAfterDeletion(noteID, html);
}

const Note *StickyNoteController::note() const
{
    return m_store.note(m_noteID);
}

void StickyNoteController::follow(const NotesChange &change)
{
    if (change.kind != NotesChange::Kind::Reset && !change.ids.contains(m_noteID))
        return;
    Q_EMIT noteChanged();
    Q_EMIT titleChanged();
}

void StickyNoteController::collapse(bool isCollapsed)
{
    setCollapsed(isCollapsed);
    if (!isCollapsed)
        layOutSoon();
    Q_EMIT collapseChanged(isCollapsed);
}

// A view that has grown out of next to nothing may stay blank.
void StickyNoteController::layOutSoon()
{
    m_layOut.start();
}
