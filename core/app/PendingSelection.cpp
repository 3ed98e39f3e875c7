#include "core/app/PendingSelection.h"

#include "core/NoteStore.h"
#include "mainwindow/SelectionManager.h"
#include "sticky/WindowHolder.h"

#include <optional>
#include <utility>

void selectPending(WindowHolder &holder, SelectionManager &selection, const NoteStore &store)
{
    const auto pending = std::exchange(holder.pendingSelectedID, std::nullopt);
    if (!pending)
        return;
    selection.setSelectedNoteID(pending);
    if (const Note *note = store.note(*pending))
        selection.setSelectedTab(note->isArchived ? SidebarTab::Archive : SidebarTab::Notes);
}
