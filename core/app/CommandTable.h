#pragma once

// Every command, one row each. The menus, the keys, the status item, the command line, the desktop's
// own menu of the program and the page of shortcuts are all made from it.
//
// COMMAND(id, Polish title, English title, Polish help, English help, symbol, keys, where, option, action)
//   keys    in Qt's words, several parted by two spaces; the first is shown in menus
//   where   the keys work: Everywhere; only with the main window or a sticky in front; or handled by
//           the page itself, which is faster than any menu
//   option  of the command line, without its dashes
//   action  of MenuCommands; `none` where what has the keyboard does it
// clang-format off
#define PLIM_COMMANDS(COMMAND) \
    COMMAND(about, u"O programie Plim", u"About Plim", u"", u"", "info.circle", "", Everywhere, "", showAbout) \
    COMMAND(startAtLogin, u"Uruchamiaj przy logowaniu", u"Start at login", u"", u"", "", "", Everywhere, "", toggleStartAtLogin) \
    COMMAND(showShortcuts, u"Skróty klawiszowe", u"Keyboard shortcuts", u"", u"", "keyboard", "F1  Ctrl+?", Everywhere, "", showShortcuts) \
    COMMAND(quit, u"Zamknij Plim", u"Quit Plim", u"", u"", "power", "Ctrl+Q", Everywhere, "quit", quit) \
    \
    COMMAND(newNote, u"Nowa notatka", u"New note", u"", u"", "plus", "Ctrl+N", Everywhere, "new-note", newNote) \
    COMMAND(toggleWindow, u"Pokaż / ukryj okno", u"Show / hide window", u"", u"", "", "", Everywhere, "toggle-window", toggleWindow) \
    COMMAND(extractAll, u"Wyciągnij wszystkie jako sticky", u"Extract all as sticky", \
            u"Wyciągnij wszystkie niewyciągnięte notatki", u"Extract all unpinned notes", \
            "macwindow.badge.plus", "Ctrl+Shift+N", Everywhere, "", extractAll) \
    COMMAND(importNotes, u"Importuj…", u"Import…", u"", u"", "square.and.arrow.down", "", Everywhere, "", importNotes) \
    COMMAND(exportNote, u"Eksportuj notatkę…", u"Export note…", u"", u"", "square.and.arrow.up", "", Everywhere, "", exportNote) \
    COMMAND(exportAll, u"Eksportuj wszystkie…", u"Export all…", u"", u"", "", "", Everywhere, "", exportAll) \
    COMMAND(printNote, u"Drukuj…", u"Print…", u"", u"", "printer", "Ctrl+P", Everywhere, "", printNote) \
    \
    COMMAND(undo, u"Cofnij", u"Undo", u"", u"", "arrow.uturn.backward", "Ctrl+Z", Editor, "", undo) \
    COMMAND(redo, u"Ponów", u"Redo", u"", u"", "arrow.uturn.forward", "Ctrl+Shift+Z  Ctrl+Y", Editor, "", redo) \
    COMMAND(search, u"Szukaj w notatkach", u"Search in notes", u"", u"", "magnifyingglass", "Ctrl+F", Everywhere, "", search) \
    \
    COMMAND(bold, u"Pogrubienie", u"Bold", u"", u"", "bold", "Ctrl+B", Editor, "", bold) \
    COMMAND(italic, u"Kursywa", u"Italic", u"", u"", "italic", "Ctrl+I", Editor, "", italic) \
    COMMAND(underline, u"Podkreślenie", u"Underline", u"", u"", "underline", "Ctrl+U", Editor, "", underline) \
    COMMAND(heading1, u"Nagłówek 1", u"Heading 1", u"", u"", "h1", "Ctrl+Alt+1", Everywhere, "", heading1) \
    COMMAND(heading2, u"Nagłówek 2", u"Heading 2", u"", u"", "h2", "Ctrl+Alt+2", Everywhere, "", heading2) \
    COMMAND(heading3, u"Nagłówek 3", u"Heading 3", u"", u"", "h3", "Ctrl+Alt+3", Everywhere, "", heading3) \
    COMMAND(paragraph, u"Akapit", u"Paragraph", u"", u"", "paragraph", "Ctrl+Alt+0", Everywhere, "", paragraph) \
    COMMAND(bulletList, u"Lista punktowana", u"Bulleted list", u"", u"", "list.bullet", "Ctrl+Shift+L", Everywhere, "", bulletList) \
    COMMAND(numberedList, u"Lista numerowana", u"Numbered list", u"", u"", "list.number", "", Everywhere, "", numberedList) \
    COMMAND(checklist, u"Checklista", u"Checklist", u"", u"", "checklist", "Ctrl+Shift+C", Everywhere, "", checklist) \
    \
    COMMAND(closeWindow, u"Zamknij okno", u"Close window", u"", u"", "xmark", "Ctrl+W", MainWindow, "", closeWindow) \
    COMMAND(undoArrange, u"Cofnij układanie", u"Undo arrange", u"", u"", "", "", Everywhere, "", undoArrange) \
    COMMAND(restoreVersion, u"Przywróć poprzednią wersję…", u"Restore previous version…", \
            u"Przywraca ostatni backup rotacyjny (3 wersje)", u"Restores latest rotating backup (3 versions)", \
            "clock.arrow.circlepath", "", Everywhere, "", restoreVersion) \
    \
    COMMAND(polish, u"Polski", u"Polski", u"", u"", "", "", Everywhere, "", setPolish) \
    COMMAND(english, u"English", u"English", u"", u"", "", "", Everywhere, "", setEnglish) \
    \
    COMMAND(openMenu, u"Otwórz menu", u"Open the menu", u"", u"", "", "F10", MainWindow, "", none) \
    COMMAND(openNote, u"Otwórz notatkę do pisania", u"Open the note to write", u"", u"", "", "Return", List, "", none) \
    COMMAND(goToList, u"Wróć do listy", u"Back to the list", u"", u"", "", "Esc", List, "", none) \
    COMMAND(moveUp, u"Przesuń notatkę w górę", u"Move the note up", u"", u"", "", "Alt+Up", List, "", none) \
    COMMAND(moveDown, u"Przesuń notatkę w dół", u"Move the note down", u"", u"", "", "Alt+Down", List, "", none) \
    COMMAND(deleteNote, u"Usuń notatkę", u"Delete the note", u"", u"", "", "Del", List, "", none) \
    COMMAND(collapseSticky, u"Zwiń lub rozwiń notatkę", u"Collapse or expand the note", u"", u"", "", "Ctrl+M", Sticky, "", none) \
    COMMAND(pinSticky, u"Przypnij lub odepnij", u"Pin or unpin", u"", u"", "", "Ctrl+Shift+P", Sticky, "", none) \
    COMMAND(closeSticky, u"Zamknij sticky", u"Close the sticky", u"", u"", "", "Ctrl+W", Sticky, "", none)

// The menus: MENU(id, Polish title, English title, commands in their order; "-" is a line). Each
// opens with Alt and its first letter, so no two in one language begin alike.
#define PLIM_MENUS(MENU) \
    MENU(plim, u"Plim", u"Plim", "about showShortcuts - startAtLogin - quit") \
    MENU(note, u"Notatka", u"Note", "newNote - extractAll - importNotes exportNote exportAll - printNote") \
    MENU(edit, u"Edycja", u"Edit", "undo redo - search") \
    MENU(format, u"Format", u"Format", \
         "bold italic underline - heading1 heading2 heading3 paragraph - bulletList numberedList checklist") \
    MENU(window, u"Okno", u"Window", "closeWindow - undoArrange restoreVersion") \
    MENU(language, u"Język", u"Language", "polish english")
// clang-format on
