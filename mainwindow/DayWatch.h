#pragma once

#include <QDateTime>
#include <QObject>
#include <QTimer>

#include <functional>

/// Says when another day has begun, or the clock was set to another day or zone: texts that name a
/// day relative to today are then out of date.
class DayWatch : public QObject
{
    Q_OBJECT

public:
    using Clock = std::function<QDateTime()>;

    explicit DayWatch(Clock clock, QObject *parent = nullptr);

    [[nodiscard]] QDateTime now() const { return m_clock(); }
    /// Looks at the clock; happens by itself at midnight, every minute and whenever the application
    /// becomes active.
    void check();

Q_SIGNALS:
    void changed();

private:
    struct Day {
        QDate date;
        int secondsFromUtc = 0;

        [[nodiscard]] bool operator==(const Day &) const = default;
    };
    [[nodiscard]] Day today() const;
    void startTimer();

    Clock m_clock;
    Day m_day;
    QTimer m_timer{this};
};
