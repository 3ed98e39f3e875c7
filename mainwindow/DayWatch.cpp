#include "mainwindow/DayWatch.h"

#include <QGuiApplication>

#include <algorithm>
#include <chrono>

using namespace std::chrono_literals;

DayWatch::DayWatch(Clock clock, QObject *parent)
    : QObject(parent), m_clock(std::move(clock)), m_day(today())
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &DayWatch::check);
    if (auto *application = qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
        connect(application, &QGuiApplication::applicationStateChanged, this, &DayWatch::check);
    startTimer();
}

void DayWatch::check()
{
    const Day day = today();
    if (m_day != day) {
        m_day = day;
        Q_EMIT changed();
    }
    startTimer();
}

DayWatch::Day DayWatch::today() const
{
    const QDateTime now = m_clock();
    return {now.date(), now.offsetFromUtc()};
}

// A timer's time stands still while the machine sleeps and knows nothing of a clock that is set, so
// that none may run until midnight.
void DayWatch::startTimer()
{
    constexpr std::chrono::milliseconds longest = 1min;
    const QDateTime now = m_clock();
    QDateTime midnight = now; // keeps the time zone
    midnight.setDate(now.date().addDays(1));
    midnight.setTime(QTime(0, 0));
    const std::chrono::milliseconds untilMidnight(std::max<qint64>(now.msecsTo(midnight), 1));
    m_timer.setTimerType(untilMidnight > longest ? Qt::VeryCoarseTimer : Qt::PreciseTimer);
    m_timer.start(std::min(untilMidnight, longest));
}
