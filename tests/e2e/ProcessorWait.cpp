#include "tests/e2e/ProcessorWait.h"

#include "tests/e2e/ProcessFamily.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>

using namespace std::chrono_literals;

namespace
{
constexpr auto betweenLooks = 50ms;
constexpr std::size_t looksAtOnce = 10; ///< before it looks who has come and gone
} // namespace

ProcessorWait::ProcessorWait(qint64 processId) : m_processId(processId)
{
    lookNow();
}

void ProcessorWait::look()
{
    if (Clock::now() - m_looks.back().when >= betweenLooks)
        lookNow();
}

void ProcessorWait::lookNow()
{
    if (m_looks.size() % looksAtOnce == 0)
        m_processes = ProcessFamily::members(m_processId);
    QHash<QByteArray, Duration> threads;
    Duration waited{};
    for (const qint64 id : std::as_const(m_processes)) {
        std::error_code error;
        for (std::filesystem::directory_iterator
                 task("/proc/" + std::to_string(id) + "/task", error),
             end;
             !error && task != end; task.increment(error)) {
            std::int64_t worked = 0;
            std::int64_t queued = 0; // a thread may end meanwhile
            std::ifstream(task->path() / "schedstat") >> worked >> queued;
            const auto name = QByteArray::fromStdString(task->path().string());
            const std::chrono::nanoseconds all(queued);
            waited += std::max(Duration::zero(), all - m_threads.value(name));
            threads.insert(name, all);
        }
    }
    m_threads = std::move(threads);
    if (m_looks.empty())
        waited = {};
    else
        waited += m_looks.back().waited;
    m_looks.push_back({Clock::now(), waited});
}

ProcessorWait::Duration ProcessorWait::between(Clock::time_point from, Clock::time_point to) const
{
    auto last = std::ranges::lower_bound(m_looks, to, {}, &Look::when);
    if (last == m_looks.end())
        --last;
    auto first = std::ranges::upper_bound(m_looks, from, {}, &Look::when);
    if (first != m_looks.begin())
        --first;
    return std::max(Duration::zero(), last->waited - first->waited);
}
