#include "core/ThreadJob.h"

#include <QRunnable>
#include <QThreadPool>

#include <atomic>
#include <utility>

namespace
{
// Not a job's own: to find that, the thread would have to read the job.
std::atomic<int> jobsHandedOver = 0;

class Job : public QRunnable
{
public:
    explicit Job(std::function<void()> work) : m_work(std::move(work)) {}

    void run() override
    {
        (void)jobsHandedOver.load(std::memory_order_acquire);
        m_work();
    }

private:
    std::function<void()> m_work;
};
} // namespace

void startJob(QThreadPool &pool, std::function<void()> work)
{
    auto *job = new Job(std::move(work)); // the pool deletes it
    jobsHandedOver.fetch_add(1, std::memory_order_release);
    pool.start(job);
}
