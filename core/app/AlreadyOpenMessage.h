#pragma once

/// Tells the user, in a window and in the user's language, that these notes are open in a Plim that
/// cannot be reached, and waits until that is read. Does nothing without a display. Makes its own
/// application.
void showAlreadyOpen(int argc, char **argv);
