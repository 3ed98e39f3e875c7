#pragma once

#include <QDir>
#include <QFileInfo>

#include <algorithm>

/// Whether this process still has a file open that had its name below the directory and has lost
/// it. Where the system does not say so: no.
inline bool holdsDeletedFile(const QString &directory)
{
    using namespace Qt::Literals::StringLiterals;
    const QFileInfoList open = QDir(u"/proc/self/fd"_s).entryInfoList(QDir::System | QDir::Files);
    return std::ranges::any_of(open, [&directory](const QFileInfo &descriptor) {
        const QString target = descriptor.symLinkTarget();
        return target.startsWith(directory) && target.endsWith(" (deleted)"_L1);
    });
}
