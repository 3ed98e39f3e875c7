#pragma once

class NoteStore;
class SelectionManager;
struct WindowHolder;

/// Selects the note that was asked for while there was no main window, and the tab it is in; an id
/// that names no note leaves the tab. Each request is served once.
void selectPending(WindowHolder &holder, SelectionManager &selection, const NoteStore &store);
