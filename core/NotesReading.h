#pragma once

#include "core/FileContent.h"
#include "core/NoteArray.h"
#include "core/Timestamp.h"

#include <QString>

#include <optional>
#include <thread>

/// A file of notes, and what was found in it.
struct ReadNotes {
    FileContent content;
    std::optional<NoteArray> notes; ///< as this version keeps them; nullopt when there are none to
                                    ///< be understood
    bool isRepaired = false;        ///< they differ from those in the file
};

/// Understands what was read. Pictures that stand in the notes themselves go into the directory of
/// pictures; notes without a date get `now`.
[[nodiscard]] ReadNotes understood(FileContent content, const QString &imagesDirectory,
                                   const Timestamp &now);

/// The notes file, read and understood by a thread of its own while the program comes up.
class NotesAhead
{
public:
    explicit NotesAhead(const QString &dataDirectory);
    ~NotesAhead();
    Q_DISABLE_COPY_MOVE(NotesAhead)

    /// Waits for them. Only once.
    [[nodiscard]] ReadNotes take();

private:
    ReadNotes m_notes;
    std::thread m_thread; ///< what it writes is there before it starts
};
