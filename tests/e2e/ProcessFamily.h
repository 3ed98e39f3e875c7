#pragma once

#include <QList>

/// What a process and all that it has started take of the machine.
struct ProcessFamily {
    double megabytes = 0; ///< each page of memory counted once, shared among its owners
    qsizetype descriptors = 0;
    qsizetype threads = 0;
    qsizetype processes = 0;

    [[nodiscard]] static ProcessFamily of(qint64 processId);
    /// The process and its children, and theirs.
    [[nodiscard]] static QList<qint64> members(qint64 processId);
};
