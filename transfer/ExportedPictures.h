#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include <optional>
#include <vector>

/// The pictures of exported notes: which are needed, what they are called beside the notes, and
/// their copies.
class ExportedPictures
{
public:
    /// Only pictures in the images directory, and inline ones, are given away: whatever else lies
    /// on the disk is none of a note's.
    ExportedPictures(const QString &imagesDirectory, QString folderName);

    /// Where a note beside the folder finds its picture; empty when there is none to be had.
    [[nodiscard]] QString addressOf(const QString &source);

    [[nodiscard]] bool isEmpty() const { return m_pending.empty(); }
    [[nodiscard]] QString folderName() const { return m_folderName; }
    /// Copies what has been asked for since the last time into the folder below `directory`.
    /// Returns the reason when that fails.
    [[nodiscard]] std::optional<QString> copyTo(const QString &directory);

private:
    struct Picture {
        QString name;
        QString path;     ///< of the file, or
        QByteArray bytes; ///< of an inline one
    };
    [[nodiscard]] std::optional<Picture> pictureOf(const QString &source);

    QString m_root; ///< of the images directory, links resolved
    QString m_folderName;
    QHash<QString, QString> m_addresses;
    std::vector<Picture> m_pending;
    int m_inlineCount = 0;
};
