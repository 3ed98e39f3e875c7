#pragma once

#include <QHash>
#include <QList>

#include <chrono>
#include <vector>

/// How long the threads of a program and of all that it has started could have gone on, but had no
/// processor: what a busy machine costs it. Whoever sleeps, until a timer ends or another is done,
/// waits for none.
class ProcessorWait
{
public:
    using Clock = std::chrono::steady_clock;
    using Duration = Clock::duration;

    explicit ProcessorWait(qint64 processId);

    /// Looks what has been waited until now; nothing when it looked a moment ago.
    void look();
    /// What all the threads together have waited from the last look before the one moment to the
    /// first look after the other, or the last of all.
    [[nodiscard]] Duration between(Clock::time_point from, Clock::time_point to) const;

private:
    struct Look {
        Clock::time_point when;
        Duration waited; ///< since the first look
    };

    void lookNow();

    qint64 m_processId;
    QList<qint64> m_processes;
    QHash<QByteArray, Duration> m_threads; ///< by their directory
    std::vector<Look> m_looks;
};
