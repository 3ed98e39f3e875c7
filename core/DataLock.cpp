#include "core/DataLock.h"

#include <QDir>
#include <QFile>

#include <utility>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

using namespace Qt::Literals::StringLiterals;

DataLock::DataLock(QString dataDirectory) : m_dataDirectory(std::move(dataDirectory)) {}

DataLock::~DataLock()
{
    giveBack();
}

QString DataLock::file() const
{
    return m_dataDirectory + u"/notes.json.lock"_s;
}

#ifdef Q_OS_UNIX
namespace
{
/// Somebody may have deleted the file between its opening and its locking.
bool isStillThere(int descriptor, const QByteArray &path)
{
    struct stat opened = {};
    struct stat named = {};
    return ::fstat(descriptor, &opened) == 0 && ::stat(path.constData(), &named) == 0 &&
           opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

/// A signal may interrupt it.
int lock(int descriptor)
{
    int result = 0;
    do {
        result = ::flock(descriptor, LOCK_EX | LOCK_NB);
    } while (result != 0 && errno == EINTR);
    return result;
}
} // namespace

DataLock::State DataLock::take()
{
    if (m_descriptor >= 0)
        return State::Taken;
    QDir().mkpath(m_dataDirectory);
    const QByteArray path = QFile::encodeName(file());
    // For writing: network file systems lock nothing else. No child process is to inherit it.
    m_descriptor = ::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (m_descriptor < 0) {
        m_reason = qt_error_string(errno);
        return State::Unavailable;
    }
    if (lock(m_descriptor) == 0) {
        if (isStillThere(m_descriptor, path))
            return State::Taken;
        giveBack();
        return State::HeldElsewhere; // by whoever deleted it, as far as one can know
    }
    const int error = errno;
    giveBack();
    if (error == EWOULDBLOCK || error == EACCES)
        return State::HeldElsewhere;
    m_reason = qt_error_string(error);
    return State::Unavailable;
}

void DataLock::giveBack()
{
    if (m_descriptor >= 0)
        ::close(std::exchange(m_descriptor, -1));
}
#else
DataLock::State DataLock::take()
{
    QDir().mkpath(m_dataDirectory);
    m_reason = u"not on this system"_s;
    return State::Unavailable;
}

void DataLock::giveBack() {}
#endif
