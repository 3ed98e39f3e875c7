#include "core/FileContent.h"

#include <QFile>
#include <QFileInfo>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <sys/stat.h>
#endif

using namespace Qt::Literals::StringLiterals;

#ifdef Q_OS_UNIX
namespace
{
FileIdentity identityOf(const struct stat &status)
{
    constexpr qint64 nanoseconds = 1'000'000'000;
    return {.device = status.st_dev,
            .inode = status.st_ino,
            .size = status.st_size,
            .modified = status.st_mtim.tv_sec * nanoseconds + status.st_mtim.tv_nsec};
}
} // namespace
#endif

std::optional<FileIdentity> FileIdentity::of([[maybe_unused]] int descriptor)
{
#ifdef Q_OS_UNIX
    struct stat status {
    };
    if (::fstat(descriptor, &status) == 0)
        return identityOf(status);
#endif
    return std::nullopt;
}

std::optional<FileLook> lookAt(const QString &path)
{
#ifdef Q_OS_UNIX
    struct stat status {
    };
    if (::stat(QFile::encodeName(path).constData(), &status) == 0)
        return FileLook{
            .exists = true, .isFile = S_ISREG(status.st_mode), .identity = identityOf(status)};
    if (errno != ENOENT && errno != ENOTDIR) // nothing can be below what is no directory
        return std::nullopt;
    return FileLook{};
#else
    const QFileInfo info(path);
    return FileLook{.exists = info.exists(), .isFile = info.isFile(), .identity = std::nullopt};
#endif
}

FileContent readFile(const QString &path)
{
    const std::optional<FileLook> look = lookAt(path);
    FileContent content{path, {}, {}, look ? look->identity : std::nullopt};
    QFile file(path);
    if (look && look->exists &&
        !look->isFile) { // opening a pipe would wait for somebody to write to it
        content.error = u"not a file"_s;
    } else if (!file.open(QIODevice::ReadOnly)) {
        content.error = file.errorString();
    } else {
        content.identity = FileIdentity::of(file.handle());
        content.bytes = file.readAll();
    }
    if (content.error.isEmpty() && file.error() != QFileDevice::NoError)
        content.error = file.errorString();
    return content;
}
