#pragma once

#include "tests/ThrowAwayHome.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>

/// A note as the file holds it.
[[nodiscard]] QJsonObject storedNote(const QString &id, const QString &body);
/// Of the note at that place, from 0, among those that storeNotesCalled() has written.
[[nodiscard]] QString storedID(qsizetype index);
/// Writes a file with a note below each of the headings; it must be there before the program
/// starts.
void storeNotesCalled(const ThrowAwayHome &home, const QStringList &headings);
void storeNotes(const ThrowAwayHome &home, const QJsonArray &notes);
/// "pl" or "en", as chosen in an earlier run.
void storeLanguage(const ThrowAwayHome &home, const QString &language);
