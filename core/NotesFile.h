#pragma once

#include "core/ContentDigest.h"
#include "core/FileContent.h"
#include "core/NoteArray.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QThreadPool>

#include <array>
#include <atomic>
#include <memory>
#include <optional>
#include <vector>

/// A rotating backup that exists.
struct NotesBackup {
    QString url;
    QDateTime date; ///< when the notes in it were written

    [[nodiscard]] bool operator==(const NotesBackup &) const = default;
};

/// The files of a data directory, and how a new notes file takes the place of the last. A value:
/// save jobs carry a copy to the save queue.
class NotesFile
{
public:
    explicit NotesFile(QString dataDirectory);

    [[nodiscard]] QString fileURL() const;
    [[nodiscard]] QString
    backupURL() const; ///< of older versions: read and migrated, never written
    [[nodiscard]] std::array<QString, 3> backupURLs() const; ///< newest first
    [[nodiscard]] QString restoreCopyURL() const; ///< where restoring keeps the replaced notes
    [[nodiscard]] QString imagesDirectory() const;

    void createDirectories() const; ///< a failure shows when the first write fails

    /// The rotating backups there are, newest first.
    [[nodiscard]] std::vector<NotesBackup> availableBackups() const;

    /// Says whether the notes file there now exists but could not be understood. A damaged file is
    /// put aside, as `notes.json.damaged-…`, before the next write: it may be all there is of
    /// somebody's notes, and rotation would delete it after three saves.
    void setDamaged(bool isDamaged);

    /// Says what was found as the notes file. From then on a file that somebody else has written
    /// meanwhile is kept, as `notes.json.conflict-…`, before the next write takes its place.
    void setSeen(const FileContent &content);
    /// Where the last such file went; empty when there was none since the last call.
    [[nodiscard]] QString takeKeptConflict() const;

    /// Rotates the backups and replaces the notes file. Returns the reason when the notes are not
    /// on disk afterwards; backups that could not be rotated are no reason.
    [[nodiscard]] std::optional<QString> write(const NoteArray &notes) const;

    /// Writes notes that others take the place of, as `notes.json.replaced-…` with the time in its
    /// name. Returns its path; nullopt when it was refused.
    [[nodiscard]] std::optional<QString> writeReplaced(const NoteArray &notes) const;

private:
    /// What is known of the file, and so shared by all copies. Only the flag is used by two threads
    /// at a time.
    struct State {
        std::atomic_bool isDamaged = false;
        bool isWatched = false; ///< whether the next two say what to expect
        std::optional<FileIdentity> identity;
        std::optional<ContentDigest> digest; ///< nullopt when there were no bytes to be had
        QString keptConflict;
        std::vector<FileIdentity> written; ///< by this program; the last ones
        QThreadPool leftovers; ///< what a write need not wait for; ends before this does
    };

    [[nodiscard]] QString freeName(const QString &reason) const;
    [[nodiscard]] QString path(const QString &name) const;
    [[nodiscard]] bool hasForeignContent(const FileLook &there, const NoteArray &notes) const;
    [[nodiscard]] std::optional<QString> keepWhatIsThere(const FileLook &there,
                                                         const NoteArray &notes) const;
    [[nodiscard]] bool keepAs(const QString &kept) const;
    [[nodiscard]] bool isKept(const QByteArray &bytes) const;
    [[nodiscard]] bool makeRoom(const QString &backup) const;
    void rotate() const;

    QString m_dataDirectory;
    std::shared_ptr<State> m_state;
};
