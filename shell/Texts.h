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
    /* earlier versions of the notes */ \
    TEXT(backupRestored, u"Przywrócono backup", u"Backup restored") \
    TEXT(replaceNotesTitle, u"Zastąpić bieżące notatki?", u"Replace the current notes?") \
    TEXT(replaceNotesMessage, \
         u"Wybierz wersję, która ma wrócić. Bieżące notatki zostaną zachowane w osobnym pliku obok kopii.", \
         u"Choose the version to bring back. The current notes are kept in a file of their own beside the backups.") \
    TEXT(replaceNotes, u"Zastąp", u"Replace") \
    TEXT(restoreFailedTitle, u"Nie można przywrócić", u"Nothing could be restored") \
    TEXT(restoreFailedMessage, \
         u"Bieżące notatki pozostały bez zmian. Sprawdź, czy na dysku jest miejsce i czy kopie dają się odczytać.", \
         u"The current notes are as they were. Please see whether the disk has room and the backups can be read.") \
    TEXT(ok, u"OK", u"OK") \
    /* the file with the notes */ \
    TEXT(savingFailsSince, u"Zapisywanie nie udaje się od", u"Saving has been failing since") \
    TEXT(savingFailsHint, \
         u"Plim próbuje dalej. Sprawdź, czy na dysku jest miejsce.", \
         u"Plim keeps trying. Please see whether the disk has room.") \
    TEXT(conflictTitle, u"Notatki zmienił ktoś jeszcze", u"Something else has changed the notes") \
    TEXT(conflictMessage, \
         u"Plik z notatkami zmienił się poza programem. Zapisano notatki, które tu widzisz; tamte są obok, w pliku", \
         u"The file with the notes was changed outside of Plim. What you see here was saved; the other version is beside it, in the file") \
    /* notes that leave the program or come in */ \
    TEXT(exporting, u"Eksportowanie…", u"Exporting…") \
    TEXT(importing, u"Importowanie…", u"Importing…") \
    TEXT(exported, u"Wyeksportowano", u"Exported") \
    TEXT(imported, u"Zaimportowano", u"Imported") \
    TEXT(exportNoteTitle, u"Eksportuj notatkę", u"Export note") \
    TEXT(exportAllTitle, u"Eksportuj wszystkie notatki do folderu", u"Export all notes into a folder") \
    TEXT(importTitle, u"Importuj notatki", u"Import notes") \
    TEXT(notesToImport, u"Teksty, Markdown i HTML", u"Texts, Markdown and HTML") \
    TEXT(exportFailed, u"Eksport się nie udał", u"The export failed") \
    TEXT(importFailed, u"Nie udało się zaimportować wszystkiego", u"Not everything could be imported") \
    TEXT(printFailed, u"Drukowanie się nie udało", u"Printing failed") \
    TEXT(cannotWriteTo, u"Nie można zapisać:", u"This cannot be written:") \
    TEXT(cannotMakePage, u"Nie udało się przygotować strony.", u"The page could not be prepared.") \
    TEXT(noRoomOnDisk, u"Na dysku brakuje miejsca.", u"The disk has no room left.") \
    TEXT(noSuchFolder, u"Takiego folderu nie ma.", u"There is no such folder.") \
    TEXT(notAllowedToWrite, u"Brak prawa do zapisu w tym miejscu.", u"Writing there is not allowed.") \
    TEXT(isFolder, u"Tę nazwę ma już folder.", u"A folder has this name already.") \
    TEXT(noSuchPage, u"Notatka nie ma takiej strony.", u"The note has no such page.") \
    TEXT(printerRefused, u"Drukarka nie przyjęła wydruku.", u"The printer did not take it.") \
    TEXT(printTitle, u"Drukuj notatkę", u"Print note") \
    TEXT(folderName, u"Nazwa folderu:", u"Folder name:") \
    TEXT(andMore, u"i jeszcze:", u"and more:") \
    TEXT(cannotRead, u"nie można odczytać", u"cannot be read") \
    TEXT(tooLargeToImport, u"plik jest za duży (ponad 20 MB)", u"the file is too large (over 20 MB)") \
    TEXT(notTextToImport, u"to nie jest tekst", u"this is not text") \
    TEXT(unknownKindToImport, u"nieznany rodzaj pliku", u"unknown kind of file") \
    TEXT(startAtLoginFailed, u"Nie udało się tego ustawić", u"This could not be set") \
    /* about the program */ \
    TEXT(about, u"O programie Plim", u"About Plim") \
    TEXT(tagline, u"Krótkie notatki, na lata.", u"Short notes, to keep.") \
    TEXT(version, u"Wersja", u"Version") \
    TEXT(notesLieIn, u"Twoje notatki są w folderze", u"Your notes are in the folder") \
    TEXT(openFolder, u"Otwórz folder", u"Open folder") \
    TEXT(cannotOpenFolder, u"Ten pulpit nie ma czym otworzyć folderu.", u"This desktop has nothing to open folders with.") \
    TEXT(whatIsInside, u"Co jest w środku", u"What is inside") \
    TEXT(keyboardShortcuts, u"Skróty klawiszowe", u"Keyboard shortcuts") \
    TEXT(menuBar, u"Menu", u"Menu") \
    /* groups of keys that are in no menu */ \
    TEXT(mainWindowKeys, u"Okno główne", u"Main window") \
    TEXT(listKeys, u"Lista", u"List") \
    TEXT(stickyKeys, u"Sticky", u"Sticky") \
    /* the colours */ \
    TEXT(red, u"czerwony", u"red") \
    TEXT(orange, u"pomarańczowy", u"orange") \
    TEXT(yellow, u"żółty", u"yellow") \
    TEXT(green, u"zielony", u"green") \
    TEXT(blue, u"niebieski", u"blue") \
    TEXT(purple, u"fioletowy", u"purple") \
    TEXT(brown, u"brązowy", u"brown") \
    /* another Plim has the notes */ \
    TEXT(alreadyOpen, u"Plim jest już otwarty gdzie indziej", u"Plim is already open elsewhere") \
    TEXT(alreadyOpenAdvice, \
         u"Tamten Plim nie odpowiada, a notatki może zmieniać tylko jeden naraz. Zamknij go i spróbuj ponownie.", \
         u"That Plim does not answer, and only one at a time can change the notes. Close it and try again.") \
    /* the status item */ \
    TEXT(statusItemHelp, u"Plim — notatki", u"Plim — notes")
// clang-format on
