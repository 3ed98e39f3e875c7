#pragma once

#include "core/NoteStore.h"
#include "tests/core/DataDirectory.h"

inline constexpr Timestamp loaded{1000};

inline Note named(const QString &title)
{
    Note note = Note::fresh(loaded);
    note.body = QStringLiteral("<h1>") + title + QStringLiteral("</h1>");
    return note;
}

/// A store of the notes A, B, C … in a directory of its own, with a clock the test sets.
struct NoteStoreFixture {
    explicit NoteStoreFixture(int count = 3)
    {
        NoteArray notes;
        for (int i = 0; i < count; ++i)
            notes.append(named(QString(QChar(u'A' + i))));
        store.setNotes(notes);
    }

    [[nodiscard]] QUuid id(qsizetype row) const { return store.notes()[row].id; }
    [[nodiscard]] QString order() const
    {
        QString order;
        for (const Note &note : store.notes())
            order += note.headingText();
        return order;
    }

    DataDirectory data;
    Timestamp now = loaded;
    NoteStore store{data.path(), [this] { return now; }};
};
