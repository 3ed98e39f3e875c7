#pragma once

#include "core/Note.h"

#include <QStringList>

#include <variant>
#include <vector>

/// Larger files are no notes; the page would not be able to show them.
constexpr qint64 largestImport = 20LL * 1024 * 1024;

struct ImportFailure {
    enum class Reason {
        unreadable, ///< absent, a folder, or not allowed; `detail` has the system's words
        tooLarge,
        notText,
        unknownKind, ///< the name ends like none of the kinds that can be imported
    };
    QString fileName; ///< without its folder
    Reason reason = Reason::unreadable;
    QString detail = {};

    [[nodiscard]] bool operator==(const ImportFailure &) const = default;
};

/// What a file dialog may offer: "*.md" and so on.
[[nodiscard]] QStringList importNameFilters();

/// Makes a note of a text, Markdown or HTML file, created now. Its pictures go into the images
/// directory. A file without a heading gives the note its own name where no first line does.
[[nodiscard]] std::variant<Note, ImportFailure>
importNote(const QString &path, const QString &imagesDirectory, Timestamp now);

struct ImportedNotes {
    std::vector<Note> notes; ///< in the order of the files
    std::vector<ImportFailure> failures;
};
[[nodiscard]] ImportedNotes importNotes(const QStringList &paths, const QString &imagesDirectory,
                                        Timestamp now);
