#pragma once

#include <QDir>
#include <QFile>
#include <QString>

#include <memory>

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

// Data directories that cannot be written to while such an object lives. Some need the rights of
// root; then `isEffective` says whether they were granted.

/// Mounts that end with the program, and that nobody else sees. To be called before there are
/// threads.
inline bool hidesMounts()
{
    static const bool hides = unshare(CLONE_NEWNS) == 0 &&
                              mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    return hides;
}

class BrokenDisk
{
public:
    BrokenDisk() = default;
    virtual ~BrokenDisk() = default;
    Q_DISABLE_COPY_MOVE(BrokenDisk)

    bool isEffective = true;
};

/// A file system without a free byte.
class FullDisk : public BrokenDisk
{
public:
    /// The directory lies on a small file system of its own.
    static bool prepare(const QString &directory)
    {
        return hidesMounts() && mount("tmpfs", QFile::encodeName(directory).constData(), "tmpfs", 0,
                                      "size=256k") == 0;
    }
    explicit FullDisk(const QString &directory) : m_ballast(directory + QStringLiteral("/ballast"))
    {
        isEffective = m_ballast.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
        while (m_ballast.write(QByteArray(4096, 'x')) > 0) {
        }
    }
    ~FullDisk() override { m_ballast.remove(); }

private:
    QFile m_ballast;
};

class ReadOnlyDisk : public BrokenDisk
{
public:
    explicit ReadOnlyDisk(const QString &directory) : m_directory(QFile::encodeName(directory))
    {
        isEffective = remount(MS_RDONLY);
    }
    ~ReadOnlyDisk() override { remount(0); }

private:
    bool remount(unsigned long flags)
    {
        return mount("tmpfs", m_directory.constData(), "tmpfs", MS_REMOUNT | flags, "size=256k") ==
               0;
    }

    QByteArray m_directory;
};

/// A directory of somebody else's: root is nobody meanwhile.
class ForeignDirectory : public BrokenDisk
{
public:
    explicit ForeignDirectory(const QString &directory)
        : m_directory(directory), m_user(geteuid()), m_before(QFile::permissions(directory))
    {
        constexpr QFile::Permissions readable = QFile::ReadOwner | QFile::ExeOwner |
                                                QFile::ReadGroup | QFile::ExeGroup |
                                                QFile::ReadOther | QFile::ExeOther;
        QFile::setPermissions(QFileInfo(directory).path(), readable | QFile::WriteOwner);
        QFile::setPermissions(directory, readable);
        constexpr uid_t nobody = 65534;
        isEffective = m_user != 0 || seteuid(nobody) == 0;
    }
    ~ForeignDirectory() override
    {
        isEffective = seteuid(m_user) == 0;
        QFile::setPermissions(m_directory, m_before);
    }

private:
    QString m_directory;
    uid_t m_user;
    QFile::Permissions m_before;
};

/// A file in the place of the directory, which is somewhere else meanwhile.
class TakenPlace : public BrokenDisk
{
public:
    explicit TakenPlace(const QString &directory) : m_directory(directory)
    {
        isEffective =
            QDir().rename(directory, elsewhere()) && QFile(directory).open(QIODevice::WriteOnly);
    }
    ~TakenPlace() override
    {
        QFile::remove(m_directory);
        QDir().rename(elsewhere(), m_directory);
    }

private:
    [[nodiscard]] QString elsewhere() const { return m_directory + QStringLiteral(".elsewhere"); }

    QString m_directory;
};
