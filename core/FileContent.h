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
    /// nullopt when it cannot be told, or the system has no word for it.
    [[nodiscard]] static std::optional<FileIdentity> of(int descriptor);
};

/// What a name stands for.
struct FileLook {
    bool exists = false;
    bool isFile = false;                  ///< and no directory, nor a pipe
    std::optional<FileIdentity> identity; ///< nullopt when the system has no word for it
};

/// nullopt when that cannot be told: then something may be there all the same. The reason is in
/// errno.
[[nodiscard]] std::optional<FileLook> lookAt(const QString &path);

struct FileContent {
    QString path;
    QByteArray bytes;
    QString error;                        ///< why there are no bytes; empty when the file was read
    std::optional<FileIdentity> identity; ///< from before it was read
};

/// Reads a file, and nothing that is none.
[[nodiscard]] FileContent readFile(const QString &path);
