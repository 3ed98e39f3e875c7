#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

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

    /// Rotates the backups and replaces the notes file. Returns the reason when the notes are not
    /// on disk afterwards; backups that could not be rotated are no reason.
    [[nodiscard]] std::optional<QString> write(const QByteArray &bytes) const;

private:
    [[nodiscard]] QString path(const QString &name) const;
    [[nodiscard]] bool keepDamaged() const;
    void rotate() const;

    QString m_dataDirectory;
    std::shared_ptr<std::atomic_bool> m_isDamaged; ///< of the file, so shared by all copies
};
