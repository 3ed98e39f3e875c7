#pragma once

#include "core/NoteStore.h"
#include "sticky/StickyNoteManager.h"
#include "sticky/StickyWindow.h"

#include <QQmlEngine>

/// Makes the windows in which notes are written on the desktop. All three must outlive what it
/// makes.
[[nodiscard]] StickyWindowFactory stickyNoteFactory(QQmlEngine &engine, NoteStore &store,
                                                    StickyNoteManager &manager);
