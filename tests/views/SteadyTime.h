#pragma once

#include <QAnimationDriver>
#include <QTimer>

/// As long as there is one, animations go on by 16 ms of their time at each step, however late the
/// step is: on a machine that stands still for a moment they stand still as well, and leave nothing
/// out.
class SteadyTime : public QAnimationDriver
{
    Q_OBJECT

public:
    explicit SteadyTime(QObject *parent);

    void advance() override;
    [[nodiscard]] qint64 elapsed() const override { return m_elapsed; }

private:
    QTimer m_steps;
    qint64 m_elapsed = 0; ///< ms since it was started
};
