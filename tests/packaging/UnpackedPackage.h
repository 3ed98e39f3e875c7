#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// What a program said, and how it ended.
struct Said {
    int exitCode = -1;
    QString output; ///< and errors
    [[nodiscard]] bool isSilentSuccess() const { return exitCode == 0 && output.isEmpty(); }
};
[[nodiscard]] Said run(const QString &program, const QStringList &arguments);

/// The package that scripts/package has made, unpacked into a directory of its own.
class UnpackedPackage
{
public:
    UnpackedPackage();

    [[nodiscard]] bool isValid() const { return m_isValid; }
    [[nodiscard]] QString file() const; ///< the package itself
    [[nodiscard]] QString root() const { return m_directory.path(); }
    [[nodiscard]] QString path(const QString &name) const { return root() + u'/' + name; }
    /// Null when there is no such file.
    [[nodiscard]] QByteArray read(const QString &name) const;
    /// All files, sorted, by their names from the root on.
    [[nodiscard]] QStringList files() const;
    /// A field of the package's description; empty when there is none.
    [[nodiscard]] QString field(const QString &name) const;

private:
    QTemporaryDir m_directory;
    bool m_isValid = false;
};
