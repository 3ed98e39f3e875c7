#include "bench/floor/ReadyPages.h"

#include <QFile>

#include <cstdio>

#ifdef Q_OS_LINUX
#include <ctime>
#include <unistd.h>
#endif

namespace
{
/// To a hundredth, which is how the system keeps it; 0 where it does not tell.
double secondsSinceStart()
{
#ifdef Q_OS_LINUX
    QFile file(QStringLiteral("/proc/self/stat"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray line = file.readAll();
    // The second field is the name in parentheses and may hold spaces; the 22nd is the start.
    const QList<QByteArray> fields = line.sliced(line.lastIndexOf(')') + 2).split(' ');
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return double(now.tv_sec) + double(now.tv_nsec) / 1e9 -
           fields.value(22 - 3).toDouble() / double(sysconf(_SC_CLK_TCK));
#else
    return 0;
#endif
}
} // namespace

ReadyPages::ReadyPages(int count, QObject *parent) : QObject(parent), m_count(count) {}

void ReadyPages::receive(int page, const QString &word)
{
    std::printf("page %d %s\n", page + 1, qPrintable(word));
    if (word == u"ready") {
        m_ready.insert(page);
        if (m_ready.size() == m_count)
            std::printf("all %d pages ready %.2f s after the start\n", m_count,
                        secondsSinceStart());
    }
    std::fflush(stdout);
}
