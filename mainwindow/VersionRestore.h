#pragma once

#include "core/NoteStore.h"
#include "mainwindow/UndoOffer.h"

#include <QVariantList>

/// Bringing an earlier version of the notes back. Where there is a notes file, its user sees what
/// there is and chooses; what is replaced is kept in a file of its own, and can be taken back.
class VersionRestore : public UndoOffer
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The main window has one.")
    /// Of each version that can be restored, the newest first: date, count and headings, as text.
    Q_PROPERTY(QVariantList versions READ versions NOTIFY versionsChanged)

public:
    explicit VersionRestore(NoteStore &store,
                            std::chrono::milliseconds offerTime = defaultOfferTime,
                            QObject *parent = nullptr);

    [[nodiscard]] QString text() const override;
    [[nodiscard]] QVariantList versions() const;

    /// Restores the newest backup, or asks which one is wanted. Without a backup nothing happens.
    void begin();
    /// The user has chosen a version by its row. The notes stay as they are, and failed() says so,
    /// when they cannot be kept first.
    Q_INVOKABLE void replaceNotes(int row);

Q_SIGNALS:
    void versionsChanged();
    void asked(); ///< the versions are to be shown, and one of them chosen
    /// What came back, from when; in the current language.
    void restored(const QString &message);
    void failed();
    /// Whatever is being written has to be left: its text is about to change.
    void notesAboutToBeReplaced();

protected:
    void takeBack() override;
    void forget() override;

private:
    struct Version {
        NotesBackup backup;
        NoteArray notes;
    };

    void findVersions(const std::vector<NotesBackup> &backups);

    NoteStore &m_store;
    std::vector<Version> m_versions;
    NoteArray m_replaced;
    NoteArray m_restored; ///< in their place
};
