#pragma once

#include "core/NoteStore.h"
#include "mainwindow/NoteListModel.h"
#include "mainwindow/SelectionManager.h"
#include "shell/LanguageManager.h"
#include "tests/ThrowAwayHome.h"

#include <QString>
#include <QStringList>

[[nodiscard]] inline Note noteNamed(const QString &heading, bool isArchived = false)
{
    Note note = Note::fresh({1000});
    note.body = QStringLiteral("<h1>%1</h1><p>about %1</p>").arg(heading);
    note.isArchived = isArchived;
    return note;
}

/// A note for each word: in capitals it is in the notes tab, else in the archive.
[[nodiscard]] inline NoteArray notesOf(const QString &words)
{
    NoteArray notes;
    for (const QString &word : words.split(u' ', Qt::SkipEmptyParts))
        notes.append(noteNamed(word, word == word.toLower()));
    return notes;
}

/// A store in a home of its own, and a selection.
struct NoteListFixture {
    explicit NoteListFixture(const QString &words = {})
    {
        LanguageManager::shared().setLanguage(AppLanguage::en);
        store.setNotes(notesOf(words));
    }

    /// The id of the note with the heading.
    [[nodiscard]] QUuid id(const QString &heading) const
    {
        for (const Note &note : store.notes()) {
            if (note.headingText() == heading)
                return note.id;
        }
        qFatal("The test has no note %s", qPrintable(heading));
    }

    ThrowAwayHome home;
    NoteStore store{home.data()};
    SelectionManager selection{nullptr};
};

/// The list's headings, separated by spaces.
[[nodiscard]] inline QString headings(const NoteListModel &model)
{
    QStringList headings;
    for (int row = 0; row < model.rowCount(); ++row)
        headings << model.index(row).data(NoteListModel::TitleRole).toString();
    return headings.join(u' ');
}
