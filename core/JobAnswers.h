#pragma once

#include <QObject>

#include <deque>
#include <functional>
#include <mutex>

/// Brings what threads have found to the thread this lives in, which sees all that was done before:
/// each answer is a call there, from the event loop, in the order they were given. None comes once
/// this is gone; it must outlive the threads.
///
/// So QMetaObject::invokeMethod() does, too, but that hands over within a library into which the
/// thread sanitizer does not look, as startJob() says of the way there.
class JobAnswers : public QObject
{
    Q_OBJECT

public:
    explicit JobAnswers(QObject *parent = nullptr);

    void give(std::function<void()> answer); ///< from any thread

Q_SIGNALS:
    void given(); ///< for each answer; nobody else's concern

private:
    void take();

    std::mutex m_mutex;
    std::deque<std::function<void()>> m_answers; ///< under the mutex
};
