#include "tests/views/SteadyTime.h"

namespace
{
constexpr int step = 16; // ms
}

SteadyTime::SteadyTime(QObject *parent) : QAnimationDriver(parent)
{
    m_steps.setInterval(step);
    connect(&m_steps, &QTimer::timeout, this, &SteadyTime::advance);
    connect(this, &QAnimationDriver::started, this, [this] {
        m_elapsed = 0;
        m_steps.start();
    });
    connect(this, &QAnimationDriver::stopped, &m_steps, &QTimer::stop);
    install(); // until it ends
}

void SteadyTime::advance()
{
    m_elapsed += step;
    advanceAnimation();
}
