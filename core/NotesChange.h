#pragma once

#include <QList>
#include <QUuid>

/// What one change did to the list of notes, exactly enough for a list model to follow it.
struct NotesChange {
    enum class Kind {
        Reset,    ///< everything may differ; the lists are empty
        Inserted, ///< `rows`: where the new notes are now
        Updated,  ///< `rows`: of the notes whose values changed
        Deleted,  ///< `rows`: where the notes were, ascending
        Moved,    ///< one note went from row `from` to row `to`
    };

    Kind kind = Kind::Reset;
    QList<QUuid> ids;      ///< the notes concerned, in the order of `rows`
    QList<qsizetype> rows; ///< ascending; empty for moves and resets
    qsizetype from = -1;   ///< of a move: the row before it
    qsizetype to = -1;     ///< of a move: the row after it, in the new list

    [[nodiscard]] bool operator==(const NotesChange &) const = default;
};
