#include "core/JobAnswers.h"

#include <utility>

JobAnswers::JobAnswers(QObject *parent) : QObject(parent)
{
    connect(this, &JobAnswers::given, this, &JobAnswers::take, Qt::QueuedConnection);
}

void JobAnswers::give(std::function<void()> answer)
{
    {
        const std::lock_guard lock(m_mutex);
        m_answers.push_back(std::move(answer));
    }
    Q_EMIT given();
}

void JobAnswers::take()
{
    std::function<void()> answer;
    {
        const std::lock_guard lock(m_mutex);
        answer = std::move(m_answers.front());
        m_answers.pop_front();
    }
    answer();
}
