#include "core/SaveRetry.h"

#include <algorithm>

using namespace std::chrono_literals;

SaveRetry::SaveRetry(QObject *parent) : QObject(parent)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &SaveRetry::due);
}

std::chrono::seconds SaveRetry::pause(int failures)
{
    constexpr std::chrono::seconds longest = 30s;
    constexpr int doublings = 5; // one more would be longer than the longest
    return std::min(longest, 1s * (1 << std::clamp(failures - 1, 0, doublings)));
}

void SaveRetry::failed(const QDateTime &when)
{
    ++m_failures;
    m_timer.start(pause(m_failures));
    if (m_failingSince)
        return;
    m_failingSince = when;
    Q_EMIT failingSinceChanged();
}

void SaveRetry::succeeded()
{
    m_failures = 0;
    m_timer.stop();
    if (!m_failingSince)
        return;
    m_failingSince.reset();
    Q_EMIT failingSinceChanged();
}
