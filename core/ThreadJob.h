#pragma once

#include <functional>

class QThreadPool;

/// Has a thread of the pool do the work, which sees all that was done before.
///
/// So it does with QThreadPool::start(), too, but that hands over within a library into which the
/// thread sanitizer does not look: each value that the work reads would be reported. Here it can
/// see why not.
void startJob(QThreadPool &pool, std::function<void()> work);
