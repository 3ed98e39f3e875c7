#pragma once

// The texts of the user interface, one row each: name, Polish, English.
// clang-format off
#define PLIM_TEXTS(TEXT) \
    /* the list and what is around it */ \
    TEXT(notesTab, u"NOTATKI", u"NOTES") \
    TEXT(archiveTab, u"ARCHIWUM", u"ARCHIVE") \
    TEXT(showNotes, u"Pokaż notatki", u"Show notes") \
    TEXT(showArchive, u"Pokaż archiwum", u"Show archive") \
    TEXT(searchNotes, u"Szukaj notatek…", u"Search notes…") \
    TEXT(clearSearch, u"Wyczyść wyszukiwanie (Esc)", u"Clear search (Esc)") \
    TEXT(newNoteHelp, u"Nowa notatka (Cmd+N)", u"New note (Cmd+N)") \
    TEXT(selectSeveral, u"Zaznacz kilka notatek", u"Select multiple notes") \
    TEXT(endSelection, u"Zakończ zaznaczanie", u"End selection") \
    TEXT(extractAll, u"Wyciągnij wszystkie (niewyciągnięte) jako sticky", u"Extract all (unpinned) as sticky") \
    TEXT(closeWindow, u"Zamknij okno", u"Close window") \
    TEXT(noResults, u"Brak wyników", u"No results") \
    TEXT(noNotes, u"Brak notatek", u"No notes") \
    TEXT(language, u"Język", u"Language") \
    /* a row */ \
    TEXT(untitled, u"Bez tytułu", u"Untitled") \
    TEXT(noContent, u"Brak treści", u"No content") \
    TEXT(today, u"dzisiaj", u"today") \
    TEXT(yesterday, u"wczoraj", u"yesterday") \
    TEXT(makeSticky, u"Zamień w sticky note", u"Convert to sticky note") \
    TEXT(stickyIsOpen, u"Wysunięta notatka jest otwarta", u"Sticky note is open") \
    TEXT(archiveNote, u"Archiwizuj notatkę", u"Archive note") \
    TEXT(restoreNote, u"Przywróć notatkę", u"Restore note") \
    TEXT(deleteNote, u"Usuń notatkę na stałe", u"Delete note permanently") \
    /* deleting */ \
    TEXT(deleteNoteTitle, u"Usunąć notatkę na stałe?", u"Delete note permanently?") \
    TEXT(deleteNoteMessage, \
         u"Ta operacja jest nieodwracalna. Może zamiast tego chcesz zarchiwizować notatkę?", \
         u"This action is irreversible. Maybe you want to archive the note instead?") \
    TEXT(deleteNotesTitle, u"Usunąć zaznaczone notatki na stałe?", u"Delete selected notes permanently?") \
    TEXT(deleteNotesMessage, u"Ta operacja jest nieodwracalna.", u"This action is irreversible.") \
    TEXT(deletePermanently, u"Usuń na stałe", u"Delete permanently") \
    TEXT(remove, u"Usuń", u"Delete") \
    TEXT(undo, u"Cofnij", u"Undo") \
    /* several notes, and none */ \
    TEXT(selectNotes, u"Zaznacz notatki", u"Select notes") \
    TEXT(selectAll, u"Zaznacz wszystkie", u"Select all") \
    TEXT(archive, u"Archiwizuj", u"Archive") \
    TEXT(restore, u"Przywróć", u"Restore") \
    TEXT(selectOrAddNote, u"Wybierz lub dodaj notatkę", u"Select or add a note") \
    /* the editor pane */ \
    TEXT(noteText, u"Treść notatki", u"Note text") \
    TEXT(formatting, u"Formatowanie", u"Formatting") \
    TEXT(activeSuffix, u" • aktywne", u" • active") \
    TEXT(heading1, u"Nagłówek 1", u"Heading 1") \
    TEXT(heading2, u"Nagłówek 2", u"Heading 2") \
    TEXT(heading3, u"Nagłówek 3", u"Heading 3") \
    TEXT(paragraph, u"Akapit", u"Paragraph") \
    TEXT(bold, u"Pogrubienie", u"Bold") \
    TEXT(italic, u"Kursywa", u"Italic") \
    TEXT(underline, u"Podkreślenie", u"Underline") \
    TEXT(strikethrough, u"Przekreślenie", u"Strikethrough") \
    TEXT(bulletList, u"Lista punktowana", u"Bulleted list") \
    TEXT(numberedList, u"Lista numerowana", u"Numbered list") \
    TEXT(checklist, u"Checklista", u"Checklist") \
    TEXT(divider, u"Linia oddzielająca", u"Divider") \
    TEXT(insertLink, u"Wstaw link", u"Insert link") \
    TEXT(enterURL, u"Podaj adres URL", u"Enter URL") \
    TEXT(insert, u"Wstaw", u"Insert") \
    TEXT(cancel, u"Anuluj", u"Cancel") \
    TEXT(openLinkHint, u"Ctrl+klik otwiera link", u"Ctrl+click opens the link") \
    /* the options of a note */ \
    TEXT(noteColor, u"Kolor notatki", u"Note color") \
    TEXT(textSize, u"Rozmiar tekstu", u"Text size") \
    TEXT(notebook, u"NOTATNIK", u"NOTEBOOK") \
    TEXT(newSticky, u"NOWE PLIM", u"NEW PLIM") \
    TEXT(sort, u"SORTUJ", u"SORT") \
    TEXT(sortRandomly, u"LOSOWO", u"RANDOM") \
    TEXT(sortByColor, u"KOLORAMI", u"BY COLOR") \
    TEXT(collapse, u"ZWIŃ", u"COLLAPSE") \
    TEXT(expand, u"ROZWIŃ", u"EXPAND") \
    /* a sticky window */ \
    TEXT(pinOnTop, u"Przypnij na górze", u"Pin on top") \
    TEXT(unpin, u"Odepnij", u"Unpin") \
    TEXT(cannotPin, u"Ten pulpit nie pozwala przypinać okien", u"This desktop does not let windows be pinned") \
    TEXT(collapseNote, u"Zwiń notatkę", u"Collapse note") \
    TEXT(expandNote, u"Rozwiń notatkę", u"Expand note") \
    TEXT(close, u"Zamknij", u"Close") \
    /* the colours */ \
    TEXT(red, u"czerwony", u"red") \
    TEXT(orange, u"pomarańczowy", u"orange") \
    TEXT(yellow, u"żółty", u"yellow") \
    TEXT(green, u"zielony", u"green") \
    TEXT(blue, u"niebieski", u"blue") \
    TEXT(purple, u"fioletowy", u"purple") \
    TEXT(brown, u"brązowy", u"brown")
// clang-format on
