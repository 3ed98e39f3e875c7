#include "core/NotesFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>
#include <filesystem>
#include <utility>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <unistd.h>
#endif

using namespace Qt::Literals::StringLiterals;

namespace
{
/// A second name for the same bytes: free for any size, and possible on a full disk.
bool link(const QString &source, const QString &target)
{
    // Of a symbolic link the file is meant, or the copy would change with the original.
    const QString file = QFileInfo(source).canonicalFilePath();
    std::error_code error;
    std::filesystem::create_hard_link(QFile(file).filesystemFileName(),
                                      QFile(target).filesystemFileName(), error);
    return !error;
}

bool copyWithDate(const QString &source, const QString &target)
{
    const QDateTime modified = QFileInfo(source).lastModified();
    if (!QFile::copy(source, target))
        return false;
    QFile copy(target);
    if (copy.open(QIODevice::ReadWrite))
        copy.setFileTime(modified, QFileDevice::FileModificationTime);
    return true;
}

void syncDirectory([[maybe_unused]] const QString &directory)
{
#ifdef Q_OS_UNIX
    // The rename itself survives a power cut only once the directory is on disk.
    const int descriptor =
        ::open(QFile::encodeName(directory).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    ::fsync(descriptor);
    ::close(descriptor);
#endif
}
} // namespace

NotesFile::NotesFile(QString dataDirectory)
    : m_dataDirectory(std::move(dataDirectory)),
      m_isDamaged(std::make_shared<std::atomic_bool>(false))
{
}

QString NotesFile::fileURL() const
{
    return path(u"notes.json"_s);
}

QString NotesFile::backupURL() const
{
    return path(u"notes.json.bak"_s);
}

std::array<QString, 3> NotesFile::backupURLs() const
{
    return {path(u"notes.json.bak.1"_s), path(u"notes.json.bak.2"_s), path(u"notes.json.bak.3"_s)};
}

QString NotesFile::restoreCopyURL() const
{
    return path(u"notes.json.tmp.restore"_s);
}

QString NotesFile::imagesDirectory() const
{
    return path(u"images"_s);
}

void NotesFile::createDirectories() const
{
    QDir().mkpath(imagesDirectory());
}

std::vector<NotesBackup> NotesFile::availableBackups() const
{
    std::vector<NotesBackup> backups;
    for (const QString &url : backupURLs()) {
        const QFileInfo info(url);
        if (info.isFile() && info.lastModified().isValid())
            backups.push_back({url, info.lastModified()});
    }
    std::ranges::stable_sort(backups, std::ranges::greater(), &NotesBackup::date);
    return backups;
}

void NotesFile::setDamaged(bool isDamaged)
{
    *m_isDamaged = isDamaged;
}

std::optional<QString> NotesFile::write(const QByteArray &bytes) const
{
    if (*m_isDamaged) {
        if (!keepDamaged())
            return u"the damaged notes.json could not be kept"_s;
        *m_isDamaged = false;
    }
    if (QFileInfo::exists(fileURL()))
        rotate();
    QSaveFile file(fileURL());
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        return file.errorString();
    syncDirectory(m_dataDirectory);
    return std::nullopt;
}

QString NotesFile::path(const QString &name) const
{
    return m_dataDirectory + u'/' + name;
}

bool NotesFile::keepDamaged() const
{
    const QFileInfo damaged(fileURL());
    if (!damaged.exists())
        return true; // somebody has taken it away meanwhile
    const QString stem =
        fileURL() + QDateTime::currentDateTime().toString(u"'.damaged-'yyyyMMdd-HHmmss"_s);
    QString kept = stem;
    for (int number = 2; QFileInfo::exists(kept); ++number)
        kept = stem + u'-' + QString::number(number);
    // What cannot be written in place would refuse the new notes too: that one has to move.
    const bool canStay = damaged.isFile() && damaged.isWritable();
    return (canStay && (link(fileURL(), kept) || copyWithDate(fileURL(), kept))) ||
           QDir().rename(fileURL(), kept);
}

void NotesFile::rotate() const
{
    // Every step may fail without stopping the next: a backup must never cost the notes themselves.
    const auto [newest, middle, oldest] = backupURLs();
    if (!QFileInfo::exists(newest))
        QFile::rename(backupURL(), newest);
    QFile::remove(oldest);
    QFile::rename(middle, oldest);
    QFile::rename(newest, middle);
    // The notes file is only ever replaced, never written in place, so a link is as good as a copy.
    if (!link(fileURL(), newest))
        copyWithDate(fileURL(), newest);
    QFile::remove(backupURL());
}
