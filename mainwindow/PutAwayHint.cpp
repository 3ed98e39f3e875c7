#include "mainwindow/PutAwayHint.h"

#include "mainwindow/WindowState.h"

#include <QSettings>

#include <utility>

using namespace Qt::StringLiterals;

namespace
{
// What the user has seen is the program's state, and lies where the window's place does.
constexpr auto shownKey = "hints/putAwayIsShown"_L1;

bool canBeSeen(const QWindow *window)
{
    return window && window->isVisible() && !(window->windowStates() & Qt::WindowMinimized);
}
} // namespace

PutAwayHint::PutAwayHint(const StickyNoteManager &stickyNotes, const NoteListModel &list,
                         std::function<const QWindow *()> window, QObject *parent)
    : QObject(parent), m_list(list), m_window(std::move(window))
{
    connect(&stickyNotes, &StickyNoteManager::stickyPutAway, this, &PutAwayHint::consider);
}

void PutAwayHint::consider(const QUuid &noteID)
{
    const int row = m_list.rowOf(noteID);
    if (row < 0 || !canBeSeen(m_window()))
        return;
    QSettings state(WindowState::stateFile(), QSettings::IniFormat);
    if (state.value(shownKey).toBool())
        return;
    state.setValue(shownKey, true);
    Q_EMIT pointedOut(row, noteID.toString());
}
