#include "tests/e2e/ProcessFamily.h"

#include <QDir>
#include <QFile>
#include <QHash>

using namespace Qt::StringLiterals;

namespace
{
QByteArray content(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList entries(const QString &directory)
{
    return QDir(directory).entryList(QDir::AllEntries | QDir::System | QDir::Hidden |
                                     QDir::NoDotAndDotDot);
}

/// The number in the line of that name, of a file like /proc/1/status.
double number(const QByteArray &lines, const QByteArray &name)
{
    const qsizetype at = lines.indexOf(name);
    return at < 0 ? 0 : lines.mid(at + name.size(), 40).simplified().split(' ').value(0).toDouble();
}
} // namespace

QList<qint64> ProcessFamily::members(qint64 processId)
{
    QMultiHash<qint64, qint64> children;
    const QStringList all = entries(u"/proc"_s);
    for (const QString &entry : all) {
        const qint64 id = entry.toLongLong();
        if (id > 0)
            children.insert(qint64(number(content(u"/proc/"_s + entry + u"/status"_s), "PPid:")),
                            id);
    }
    QList<qint64> family{processId};
    for (qsizetype i = 0; i < family.size(); ++i)
        family += children.values(family[i]);
    return family;
}

ProcessFamily ProcessFamily::of(qint64 processId)
{
    constexpr double kilobytesInMegabyte = 1024;
    ProcessFamily sum;
    for (const qint64 id : members(processId)) {
        const QString directory = u"/proc/"_s + QString::number(id);
        sum.megabytes +=
            number(content(directory + u"/smaps_rollup"_s), "Pss:") / kilobytesInMegabyte;
        sum.descriptors += entries(directory + u"/fd"_s).size();
        sum.threads += entries(directory + u"/task"_s).size();
        ++sum.processes;
    }
    return sum;
}
