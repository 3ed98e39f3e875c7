#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// What tells a file from every other, and from itself when somebody has written to it.
struct FileIdentity {
    quint64 device = 0;
    quint64 inode = 0;
    qint64 size = 0;
    qint64 modified = 0; ///< in nanoseconds

    [[nodiscard]] bool operator==(const FileIdentity &) const = default;
    /// nullopt when there is no such file, or the system has no word for it.
    [[nodiscard]] static std::optional<FileIdentity> of(const QString &path);
    [[nodiscard]] static std::optional<FileIdentity> of(int descriptor);
};

struct FileContent {
    QString path;
    QByteArray bytes;
    QString error;                        ///< why there are no bytes; empty when the file was read
    std::optional<FileIdentity> identity; ///< from before it was read
};

/// Reads a file, and nothing that is none.
[[nodiscard]] FileContent readFile(const QString &path);
