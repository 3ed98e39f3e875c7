#include "core/NotesFile.h"

#include "core/NotesJson.h"
#include "core/ThreadJob.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>
#include <filesystem>
#include <utility>

#ifdef Q_OS_UNIX
#include <cerrno>
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

/// Takes the place of the target, unlike QFile::rename.
void move(const QString &source, const QString &target)
{
    std::error_code ignored;
    std::filesystem::rename(QFile(source).filesystemFileName(), QFile(target).filesystemFileName(),
                            ignored);
}

/// Whether what was written is on the disk. A disk may only say here that it is full or broken, and
/// QSaveFile, which does this as well, does not listen.
bool isOnDisk([[maybe_unused]] int descriptor)
{
#ifdef Q_OS_UNIX
    while (::fsync(descriptor) != 0) {
        if (errno != EINTR) // not every file system can; those that cannot say so like this
            return errno == EINVAL || errno == ENOSYS || errno == ENOTSUP;
    }
#endif
    return true;
}

bool copyWithDate(const QString &source, const QString &target)
{
    const QDateTime modified = QFileInfo(source).lastModified();
    if (!QFile::copy(source, target))
        return false;
    QFile copy(target);
    if (!copy.open(QIODevice::ReadWrite)) // as protected as its source
        return true;
    copy.setFileTime(modified, QFileDevice::FileModificationTime);
    if (isOnDisk(copy.handle()))
        return true;
    copy.remove();
    return false;
}

/// Has the disk begin with what is written, so that there is little left to wait for at the end.
/// What goes wrong is told there, too.
void beginWriteBack([[maybe_unused]] int descriptor, [[maybe_unused]] qint64 from,
                    [[maybe_unused]] qint64 size)
{
#ifdef Q_OS_LINUX
    ::sync_file_range(descriptor, from, size, SYNC_FILE_RANGE_WRITE);
#endif
}

/// Everything of a write that may want for room, so that only a new name is left to be done.
std::optional<QString> writeTemporary(QSaveFile &file, const NoteArray &notes,
                                      ContentDigest &digest)
{
    const auto write = [&](QByteArrayView piece) {
        const qint64 start = file.pos();
        if (file.write(piece.data(), piece.size()) != piece.size())
            return false;
        beginWriteBack(file.handle(), start, piece.size());
        digest.add(piece);
        return true;
    };
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return file.errorString();
    // Of a part that was taken of a piece, and nothing more then, the file itself knows no error.
    if (!writeNotes(notes, write))
        return file.error() == QFileDevice::NoError ? qt_error_string(errno) : file.errorString();
    if (!isOnDisk(file.handle()))
        return qt_error_string(errno);
    return std::nullopt;
}

/// Keeps the bytes of a file that may lose its name meanwhile. To take back those of a large one
/// keeps the system as long as a quarter of their writing, and whoever waits for the writing need
/// not wait for that: a thread beside does it, after everything else.
class HeldBytes
{
public:
    Q_DISABLE_COPY_MOVE(HeldBytes)

    /// The thread is one of the pool, which must outlive this.
    HeldBytes([[maybe_unused]] const QString &path, QThreadPool &pool) : m_pool(pool)
    {
#ifdef Q_OS_UNIX
        m_descriptor = ::open(QFile::encodeName(path).constData(),
                              O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC);
#endif
    }

    ~HeldBytes()
    {
#ifdef Q_OS_UNIX
        if (m_descriptor < 0)
            return;
        constexpr qint64 large = 1 << 20; // below, a thread costs more than it spares
        const std::optional<FileIdentity> file = FileIdentity::of(m_descriptor);
        if (file && file->size >= large)
            startJob(m_pool, [descriptor = m_descriptor] { ::close(descriptor); });
        else
            ::close(m_descriptor);
#endif
    }

private:
    [[maybe_unused]] QThreadPool &m_pool;
    int m_descriptor = -1;
};

/// Whether both are names of the same bytes.
bool areLinked(const QString &one, const QString &other)
{
    std::error_code error;
    return std::filesystem::equivalent(QFile(one).filesystemFileName(),
                                       QFile(other).filesystemFileName(), error);
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
    : m_dataDirectory(std::move(dataDirectory)), m_state(std::make_shared<State>())
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
    m_state->isDamaged = isDamaged;
}

void NotesFile::setSeen(const FileContent &content)
{
    m_state->isWatched = true;
    m_state->identity = content.identity;
    m_state->digest.reset();
    if (content.error.isEmpty())
        m_state->digest = ContentDigest(content.bytes);
}

QString NotesFile::takeKeptConflict() const
{
    return std::exchange(m_state->keptConflict, {});
}

std::optional<QString> NotesFile::write(const NoteArray &notes) const
{
    if (!QFileInfo::exists(m_dataDirectory)) // somebody has taken it away
        createDirectories();
    const std::optional<FileLook> before = lookAt(fileURL());
    if (!before)
        return qt_error_string(errno);
    if (std::optional<QString> error = keepWhatIsThere(*before, notes))
        return error;
    QSaveFile file(fileURL());
    ContentDigest digest;
    if (std::optional<QString> error = writeTemporary(file, notes, digest))
        return error;
    const std::optional<FileIdentity> identity = FileIdentity::of(file.handle());
    // Not before: a write that fails is tried again and again, and no try may cost a backup.
    const std::optional<FileLook> replaced = lookAt(fileURL());
    if (!replaced)
        return qt_error_string(errno);
    const HeldBytes oldest(backupURLs().back(), m_state->leftovers); // rotation deletes it
    if (replaced->exists)
        rotate();
    if (!file.commit())
        return file.errorString();
    m_state->identity = identity;
    m_state->digest = digest;
    if (identity)
        m_state->written.push_back(*identity);
    if (m_state->written.size() > backupURLs().size() + 1) // what is older is nowhere any more
        m_state->written.erase(m_state->written.begin());
    syncDirectory(m_dataDirectory);
    return std::nullopt;
}

std::optional<QString> NotesFile::writeReplaced(const NoteArray &notes) const
{
    const QString url = freeName(u"replaced"_s);
    QSaveFile file(url);
    ContentDigest unused;
    if (writeTemporary(file, notes, unused) || !file.commit())
        return std::nullopt;
    syncDirectory(m_dataDirectory);
    return url;
}

/// A name beside the notes file that says why the file is there, and since when.
QString NotesFile::freeName(const QString &reason) const
{
    const QString stem =
        fileURL() + u'.' + reason + QDateTime::currentDateTime().toString(u"'-'yyyyMMdd-HHmmss"_s);
    QString name = stem;
    for (int number = 2; QFileInfo::exists(name); ++number)
        name = stem + u'-' + QString::number(number);
    return name;
}

QString NotesFile::path(const QString &name) const
{
    return m_dataDirectory + u'/' + name;
}

/// Whether there is a notes file that neither this program has read or written nor is what is to be
/// written now. Who merely touches the file, or writes the same again, has changed nothing.
bool NotesFile::hasForeignContent(const FileLook &there, const NoteArray &notes) const
{
    if (!m_state->isWatched || !there.exists)
        return false;
    if (there.identity && there.identity == m_state->identity)
        return false;
    const FileContent content = readFile(fileURL());
    return !content.error.isEmpty() ||
           (ContentDigest(content.bytes) != m_state->digest && content.bytes != encodeNotes(notes));
}

/// Before something takes its place. Returns the reason when that must not happen.
std::optional<QString> NotesFile::keepWhatIsThere(const FileLook &there,
                                                  const NoteArray &notes) const
{
    const bool isForeign = hasForeignContent(there, notes);
    if (there.exists && (isForeign || m_state->isDamaged)) {
        const QString kept = freeName(isForeign ? u"conflict"_s : u"damaged"_s);
        if (!keepAs(kept))
            return isForeign ? u"the notes.json of another program could not be kept"_s
                             : u"the damaged notes.json could not be kept"_s;
        if (isForeign) {
            m_state->keptConflict = kept;
            m_state->identity = there.identity; // it is kept once, also when writing fails now
        }
    }
    m_state->isDamaged = false;
    return std::nullopt;
}

bool NotesFile::keepAs(const QString &kept) const
{
    const QFileInfo file(fileURL());
    // What cannot be written in place would refuse the new notes too: that one has to move.
    const bool canStay = file.isFile() && file.isWritable();
    return (canStay && (link(fileURL(), kept) || copyWithDate(fileURL(), kept))) ||
           QDir().rename(fileURL(), kept);
}

/// Whether the bytes are in one of the files that no rotation touches.
bool NotesFile::isKept(const QByteArray &bytes) const
{
    const QString name = QFileInfo(fileURL()).fileName();
    const QFileInfoList kept =
        QDir(m_dataDirectory)
            .entryInfoList({name + u".damaged-*"_s, name + u".conflict-*"_s}, QDir::Files);
    return std::ranges::any_of(kept, [&bytes](const QFileInfo &file) {
        return file.size() == bytes.size() && readFile(file.filePath()).bytes == bytes;
    });
}

/// Deletes a backup, but puts aside one that cannot be understood, as it does with the notes file:
/// somebody may still make sense of it. False when that one is in its place still.
bool NotesFile::makeRoom(const QString &backup) const
{
    const std::optional<FileLook> there = lookAt(backup);
    if (there && !there->exists)
        return true;
    const bool isOwn = there && there->identity &&
                       std::ranges::find(m_state->written, *there->identity) !=
                           m_state->written.end(); // so there is no need to read it
    if (!isOwn) {
        const FileContent content = readFile(backup);
        const bool isReadable = content.error.isEmpty();
        const bool isSound = isReadable && decodeNotes(content.bytes, {});
        if (!isSound && !(isReadable && isKept(content.bytes)))
            return QFile::rename(backup, freeName(u"damaged"_s));
    }
    QFile::remove(backup);
    return true;
}

void NotesFile::rotate() const
{
    // Every step may fail without stopping the next: a backup must never cost the notes themselves.
    const auto [newest, middle, oldest] = backupURLs();
    if (areLinked(fileURL(), newest))
        return; // by a write that failed after this
    if (!QFileInfo::exists(newest))
        QFile::rename(backupURL(), newest);
    if (!makeRoom(oldest))
        return;
    move(middle, oldest);
    move(newest, middle);
    // The notes file is only ever replaced, never written in place, so a link is as good as a copy.
    if (!link(fileURL(), newest))
        copyWithDate(fileURL(), newest);
    static_cast<void>(makeRoom(backupURL()));
}
